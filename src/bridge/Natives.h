// The natives of MeroNative, in registration order.
#pragma once

#include <jni.h>

#include <span>

namespace Mero {

// The 21 entries RegisterNatives receives: names, Java signatures and the
// functions, in the host contract's order.
std::span<const JNINativeMethod> nativeMethods();

}  // namespace Mero
