// The natives of MeroNative. Each takes the instance handle first, checks it
// as its group requires, marshals its Java arguments and forwards to the
// instance. An unknown handle is ignored, never reported.
#include "bridge/Natives.h"

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "bridge/AndroidBuf.h"
#include "bridge/BridgeLog.h"
#include "bridge/JniServices.h"
#include "bridge/JniSupport.h"
#include "bridge/JniHost.h"
#include "bridge/NativeBoundary.h"
#include "engine/InstanceRegistry.h"
#include "render/RenderTree.h"
#include "runtime/RuntimeEngine.h"
#include "value/ErrorReporting.h"

namespace Mero {

namespace {

// The set-up natives do not look the handle up defensively: the host calls
// them right after initMREngine and must only name a live instance.
MeroInstance& setUpInstance(jint handle)
{
    return *findInstance(handle);
}

// Registered.
MeroInstance* presentInstance(jint handle)
{
    return findInstance(handle);
}

// Registered, bound to its host and not released.
MeroInstance* liveInstance(jint handle)
{
    MeroInstance* instance = findInstance(handle);
    if (instance == nullptr || instance->host() == nullptr || !instance->host()->attached() ||
        instance->released()) {
        return nullptr;
    }
    return instance;
}

// Live, with its engine.
MeroInstance* liveInstanceWithEngine(jint handle)
{
    MeroInstance* instance = liveInstance(handle);
    return instance != nullptr && instance->engine() ? instance : nullptr;
}

void initMREngine(JNIEnv* env, jobject self, jint handle, jboolean log, jboolean debug)
{
    runAtBoundary("initMREngine", [&] {
        logEnabled = log != JNI_FALSE;
        debugMode = debug != JNI_FALSE;
        logBridge("initMREngine");
        redirectStdoutToAndroidLog();
        // A handle already taken keeps its instance: a new one would never
        // be reachable, so none is made.
        if (findInstance(handle) != nullptr) {
            return;
        }
        auto instance = std::make_unique<MeroInstance>();
        instance->bindHost(std::make_unique<JniHost>(env, env->NewGlobalRef(self)));
        installJniServices(*instance);
        registerInstance(handle, std::move(instance));
    });
}

void updateEnv(JNIEnv* env, jobject /*self*/, jint handle)
{
    runAtBoundary("updateEnv", [&] {
        logBridge("updateEnv");
        jniHost(setUpInstance(handle)).setEnv(env);
    });
}

void setScreenWidth(JNIEnv* /*env*/, jobject /*self*/, jint handle, jfloat screenWidth)
{
    runAtBoundary("setScreenWidth", [&] {
        logBridge("setScreenWidth");
        setUpInstance(handle).setScreenWidth(screenWidth);
    });
}

void loadTemplate(JNIEnv* env, jobject /*self*/, jint handle, jstring text)
{
    runAtBoundary("loadTemplate", [&] {
        logBridge("loadTemplate");
        const JniUtfString bytes(env, text);
        setUpInstance(handle).loadTemplate(bytes.view());
    });
}

void setData(JNIEnv* env, jobject /*self*/, jint handle, jstring data, jstring extraData)
{
    runAtBoundary("setData", [&] {
        logBridge("setData");
        const JniUtfString dataText(env, data);
        const JniUtfString extraText(env, extraData);
        setUpInstance(handle).setData(dataText.view(), extraText.view());
    });
}

void handleResult(JNIEnv* env, jobject /*self*/, jint handle, jstring result, jlong callbackId)
{
    runAtBoundary("handleResult", [&] {
        if (liveInstance(handle) == nullptr) {
            return;
        }
        const JniUtfString text(env, result);
        MeroInstance::handleResult(text.view(), callbackId);
    });
}

void handleKeyPathResult(JNIEnv* env, jobject /*self*/, jint handle, jstring result, jlong callbackId)
{
    runAtBoundary("handleKeyPathResult", [&] {
        if (liveInstance(handle) == nullptr) {
            return;
        }
        const JniUtfString text(env, result);
        MeroInstance::handleKeyPathResult(text.view(), callbackId);
    });
}

void releaseInstance(JNIEnv* env, jobject /*self*/, jint handle)
{
    runAtBoundary("releaseInstance", [&] {
        MeroInstance* instance = presentInstance(handle);
        if (instance == nullptr) {
            return;
        }
        instance->release();
        if (instance->host() != nullptr) {
            jniHost(*instance).detach(env);
        }
        // Pending jobs go with the instance and never run.
        unregisterInstance(handle);
    });
}

void sendEvent(JNIEnv* env, jobject /*self*/, jint handle, jstring name, jstring payload)
{
    runAtBoundary("sendEvent", [&] {
        MeroInstance* instance = liveInstance(handle);
        if (instance == nullptr) {
            return;
        }
        const std::string eventName = JniUtfString(env, name).str();
        // The host sends "notification" often; it is never logged.
        if (eventName != "notification") {
            logBridge("sendEvent: " + eventName);
        }
        const JniUtfString payloadText(env, payload);
        instance->sendEvent(eventName, payloadText.view());
    });
}

void sendClickEvent(JNIEnv* env, jobject /*self*/, jint handle, jstring componentId)
{
    runAtBoundary("sendClickEvent", [&] {
        MeroInstance* instance = liveInstanceWithEngine(handle);
        if (instance == nullptr) {
            return;
        }
        logBridge("sendClickEvent");
        instance->sendClickEvent(JniUtfString(env, componentId).str());
    });
}

void initNode(JNIEnv* /*env*/, jobject /*self*/, jint handle)
{
    runAtBoundary("initNode", [&] {
        logBridge("initNode");
        setUpInstance(handle).initNode();
    });
}

void initContainerSize(JNIEnv* /*env*/, jobject /*self*/, jint handle, jfloat width, jfloat height, jint widthMode,
                       jint heightMode)
{
    runAtBoundary("initContainerSize", [&] {
        logBridge("initContainerSize");
        setUpInstance(handle).initContainerSize(width, height, widthMode, heightMode);
    });
}

void triggerInitEvent(JNIEnv* /*env*/, jobject /*self*/, jint handle)
{
    runAtBoundary("triggerInitEvent", [&] {
        logBridge("triggerInitEvent");
        setUpInstance(handle).triggerInitEvent();
    });
}

void applyLayout(JNIEnv* /*env*/, jobject /*self*/, jint handle)
{
    runAtBoundary("applyLayout", [&] {
        logBridge("applyLayout");
        setUpInstance(handle).applyLayout();
    });
}

jobject createComponentTree(JNIEnv* /*env*/, jobject /*self*/, jint handle)
{
    return runAtBoundary("createComponentTree", static_cast<jobject>(nullptr), [&]() -> jobject {
        logBridge("createComponentTree");
        MeroInstance& instance = setUpInstance(handle);
        return static_cast<jobject>(instance.createComponentTree(jniHost(instance)));
    });
}

void executeTimeoutJob(JNIEnv* /*env*/, jobject /*self*/, jint handle, jint jobId)
{
    runAtBoundary("executeTimeoutJob", [&] {
        if (MeroInstance* instance = liveInstanceWithEngine(handle)) {
            instance->executeTimeoutJob(jobId);
        }
    });
}

void executeVideoTimerJob(JNIEnv* /*env*/, jobject /*self*/, jint handle, jint jobId)
{
    runAtBoundary("executeVideoTimerJob", [&] {
        if (MeroInstance* instance = liveInstanceWithEngine(handle)) {
            instance->executeVideoTimerJob(jobId);
        }
    });
}

void clearVideoTimerJobs(JNIEnv* /*env*/, jobject /*self*/, jint handle)
{
    runAtBoundary("clearVideoTimerJobs", [&] {
        if (MeroInstance* instance = presentInstance(handle)) {
            instance->clearVideoTimerJobs();
        }
    });
}

void sendSwiperEvent(JNIEnv* env, jobject /*self*/, jint handle, jstring componentId, jint index)
{
    runAtBoundary("sendSwiperEvent", [&] {
        if (MeroInstance* instance = liveInstanceWithEngine(handle)) {
            instance->sendSwiperEvent(JniUtfString(env, componentId).str(), index);
        }
    });
}

void updateLayout(JNIEnv* /*env*/, jobject /*self*/, jint handle, jfloat width, jfloat height, jint widthMode,
                  jint heightMode)
{
    runAtBoundary("updateLayout", [&] {
        if (MeroInstance* instance = presentInstance(handle)) {
            instance->updateLayout(width, height, widthMode, heightMode);
        }
    });
}

void markDirty(JNIEnv* env, jobject /*self*/, jint handle, jstring componentId)
{
    runAtBoundary("markDirty", [&] {
        MeroInstance* instance = liveInstanceWithEngine(handle);
        if (instance == nullptr) {
            return;
        }
        logBridge("markComponentDirty");
        instance->markDirty(JniUtfString(env, componentId).str());
    });
}

template <typename Function>
JNINativeMethod native(const char* name, const char* signature, Function function)
{
    return {const_cast<char*>(name), const_cast<char*>(signature), reinterpret_cast<void*>(function)};
}

}  // namespace

std::span<const JNINativeMethod> nativeMethods()
{
    static const std::array<JNINativeMethod, 21> table{
        native("initMREngine", "(IZZ)V", initMREngine),
        native("updateEnv", "(I)V", updateEnv),
        native("setScreenWidth", "(IF)V", setScreenWidth),
        native("loadTemplate", "(ILjava/lang/String;)V", loadTemplate),
        native("setData", "(ILjava/lang/String;Ljava/lang/String;)V", setData),
        native("handleResult", "(ILjava/lang/String;J)V", handleResult),
        native("handleKeyPathResult", "(ILjava/lang/String;J)V", handleKeyPathResult),
        native("releaseInstance", "(I)V", releaseInstance),
        native("sendEvent", "(ILjava/lang/String;Ljava/lang/String;)V", sendEvent),
        native("sendClickEvent", "(ILjava/lang/String;)V", sendClickEvent),
        native("initNode", "(I)V", initNode),
        native("initContainerSize", "(IFFII)V", initContainerSize),
        native("triggerInitEvent", "(I)V", triggerInitEvent),
        native("applyLayout", "(I)V", applyLayout),
        native("createComponentTree", "(I)Lcom/fernwick/android/ad/mero/MRComponent;", createComponentTree),
        native("executeTimeoutJob", "(II)V", executeTimeoutJob),
        native("executeVideoTimerJob", "(II)V", executeVideoTimerJob),
        native("clearVideoTimerJobs", "(I)V", clearVideoTimerJobs),
        native("sendSwiperEvent", "(ILjava/lang/String;I)V", sendSwiperEvent),
        native("updateLayout", "(IFFII)V", updateLayout),
        native("markDirty", "(ILjava/lang/String;)V", markDirty),
    };
    return table;
}

}  // namespace Mero
