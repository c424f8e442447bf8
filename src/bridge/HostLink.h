// What an instance keeps of its host: the Java environment of the thread that
// drives it, and a global reference to the MeroNative object it was made on.
#pragma once

#include <jni.h>

#include "engine/MeroInstance.h"

namespace Mero {

struct HostLink {
    JNIEnv* env = nullptr;         // replaced by updateEnv
    jobject hostObject = nullptr;  // global reference, deleted by releaseInstance
};

// The link of a bound instance.
inline HostLink& hostLink(const MeroInstance& instance)
{
    return *instance.host;
}

}  // namespace Mero
