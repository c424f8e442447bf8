// Entry point of libmero.so when a Java runtime loads it: registers the
// natives of MeroNative. Nothing is cached here; every host call looks its
// class and method up when it is made.
#include <jni.h>

#include "bridge/BridgeLog.h"
#include "bridge/JniSupport.h"
#include "bridge/Natives.h"

extern "C" JNIEXPORT jint JNI_OnLoad(JavaVM* vm, void* /*reserved*/)
{
    Mero::logBridge("JNI-OnLoad");
    JNIEnv* env = nullptr;
    if (vm->GetEnv(reinterpret_cast<void**>(&env), JNI_VERSION_1_6) != JNI_OK) {
        return -1;
    }
    jclass nativeClass = env->FindClass(Mero::kMeroNativeClass);
    if (nativeClass == nullptr) {
        Mero::logBridge(Mero::kMeroNativeClass);
        return -1;
    }
    const auto natives = Mero::nativeMethods();
    if (env->RegisterNatives(nativeClass, natives.data(), static_cast<jint>(natives.size())) != JNI_OK) {
        Mero::logBridge("register native method failed!");
        return -1;
    }
    return JNI_VERSION_1_6;
}
