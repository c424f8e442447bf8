// Entry point of libmero.so when a Java runtime loads it.
#include <jni.h>

#include "bridge/BridgeLog.h"

extern "C" JNIEXPORT jint JNI_OnLoad(JavaVM* vm, void* /*reserved*/)
{
    Mero::logBridge("JNI-OnLoad");
    JNIEnv* env = nullptr;
    if (vm->GetEnv(reinterpret_cast<void**>(&env), JNI_VERSION_1_6) != JNI_OK) {
        return -1;
    }
    // The natives of MeroNative are registered here once the instance layer
    // exists.
    return JNI_VERSION_1_6;
}
