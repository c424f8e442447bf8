#include "bridge/JniServices.h"

#include <cmath>
#include <limits>
#include <optional>
#include <vector>

#include "bridge/JniHost.h"
#include "engine/MeroInstance.h"
#include "bridge/JniSupport.h"
#include "runtime/NumberConversion.h"
#include "runtime/RuntimeEngine.h"
#include "runtime/ScriptRun.h"
#include "value/JsonWriter.h"

namespace Mero {

namespace {

jlong truncateToLong(double number)
{
    if (std::isnan(number)) {
        return 0;
    }
    if (number <= static_cast<double>(std::numeric_limits<jlong>::min())) {
        return std::numeric_limits<jlong>::min();
    }
    if (number >= static_cast<double>(std::numeric_limits<jlong>::max())) {
        return std::numeric_limits<jlong>::max();
    }
    return static_cast<jlong>(number);
}

// Whether the host may still be called: bound and not released.
bool hostAvailable(const MeroInstance& instance)
{
    return instance.host() != nullptr && instance.host()->attached() && !instance.released();
}

// Text measurement, timeouts and video timers look their method up on the
// MeroNative class by name; the log sink and the bridges on the host
// object's own class. Every call looks up again: nothing is cached.
jmethodID methodOfNativeClass(JNIEnv* env, const char* name, const char* signature)
{
    jclass nativeClass = env->FindClass(kMeroNativeClass);
    jmethodID method = env->GetMethodID(nativeClass, name, signature);
    env->DeleteLocalRef(nativeClass);
    return method;
}

jmethodID methodOfHost(JNIEnv* env, jobject host, const char* name, const char* signature)
{
    jclass hostClass = env->GetObjectClass(host);
    jmethodID method = env->GetMethodID(hostClass, name, signature);
    env->DeleteLocalRef(hostClass);
    return method;
}

std::pair<double, double> measureText(const MeroInstance& instance, const TextContent& content)
{
    const JniHost& host = jniHost(instance);
    JNIEnv* env = host.env();
    // After a Java exception no further JNI call is made: the text measures 0.
    if (host.javaThrew()) {
        return {0.0, 0.0};
    }
    jmethodID method = methodOfNativeClass(env, "measureText", "(Ljava/lang/String;FIIFFFIFI)[F");
    if (host.javaThrew()) {
        return {0.0, 0.0};
    }
    jstring text = newJavaString(env, content.text != nullptr ? *content.text : std::string());
    auto size = static_cast<jfloatArray>(
        env->CallObjectMethod(host.hostObject(), method, text, static_cast<jfloat>(content.fontSize),
                              content.textStyle, content.maxLines, static_cast<jfloat>(content.lineHeight),
                              static_cast<jfloat>(content.textInterval), static_cast<jfloat>(content.width),
                              content.widthMode, static_cast<jfloat>(content.height), content.heightMode));
    env->DeleteLocalRef(text);
    // Copied out rather than pinned, so nothing is left to release.
    jfloat values[2] = {0.0F, 0.0F};
    if (!host.javaThrew() && size != nullptr && env->GetArrayLength(size) >= 2) {
        env->GetFloatArrayRegion(size, 0, 2, values);
    }
    env->DeleteLocalRef(size);
    return {values[0], values[1]};
}

void setTimeout(MeroInstance& instance, double delay, PendingJob job)
{
    // No check of the host here: a released instance is never driven.
    const int32_t milliseconds = truncateToInt32(delay);
    const std::optional<int32_t> id = instance.addTimeoutJob(std::move(job));
    const JniHost& host = jniHost(instance);
    if (!id || host.javaThrew()) {
        return;
    }
    jmethodID method = methodOfNativeClass(host.env(), "setTimeout", "(JI)V");
    if (!host.javaThrew()) {
        host.env()->CallVoidMethod(host.hostObject(), method, static_cast<jlong>(milliseconds), *id);
    }
}

void startVideoTimer(MeroInstance& instance, double first, double second, VideoTimerListPtr entries)
{
    if (!hostAvailable(instance) || !entries || entries->empty() || jniHost(instance).javaThrew()) {
        return;
    }
    const std::optional<int32_t> firstJob = instance.addVideoTimerJobs(*entries);
    if (!firstJob) {
        return;
    }
    const int32_t firstId = *firstJob;
    const auto count = static_cast<jsize>(entries->size());
    std::vector<jint> times(entries->size());
    std::vector<jint> ids(entries->size());
    for (jsize entry = 0; entry < count; ++entry) {
        // Whole seconds, then milliseconds: 2.7 s is sent as 2000.
        const int64_t seconds = truncateToInt32((*entries)[static_cast<std::size_t>(entry)].first);
        times[static_cast<std::size_t>(entry)] = static_cast<jint>(seconds * 1000);
        ids[static_cast<std::size_t>(entry)] = firstId + entry;
    }
    const JniHost& host = jniHost(instance);
    JNIEnv* env = host.env();
    jintArray timeArray = env->NewIntArray(count);
    env->SetIntArrayRegion(timeArray, 0, count, times.data());
    jintArray idArray = env->NewIntArray(count);
    env->SetIntArrayRegion(idArray, 0, count, ids.data());
    jmethodID method = methodOfNativeClass(env, "startVideoTimerTask", "(JI[I[I)V");
    if (!host.javaThrew()) {
        env->CallVoidMethod(host.hostObject(), method, truncateToLong(second), truncateToInt32(first), timeArray,
                            idArray);
    }
    env->DeleteLocalRef(timeArray);
    env->DeleteLocalRef(idArray);
}

void sendLog(const MeroInstance& instance, const std::string& message)
{
    if (!hostAvailable(instance) || jniHost(instance).javaThrew()) {
        return;
    }
    const JniHost& host = jniHost(instance);
    jmethodID method = methodOfHost(host.env(), host.hostObject(), "sendALog", "(Ljava/lang/String;)V");
    if (host.javaThrew()) {
        return;
    }
    jstring text = newJavaString(host.env(), message);
    host.env()->CallVoidMethod(host.hostObject(), method, text);
    host.env()->DeleteLocalRef(text);
}

void callBridge(const MeroInstance& instance, const std::string& name, const Value& params, const Value* keyPath,
                BridgeReply reply)
{
    if (!hostAvailable(instance) || jniHost(instance).javaThrew()) {
        return;
    }
    const JniHost& host = jniHost(instance);
    JNIEnv* env = host.env();
    jobject hostObject = host.hostObject();
    jstring method = newJavaString(env, name);
    jstring paramsJson = newJavaString(env, jsonWithinLimit(params));
    // Held only once the call is certain to be made: a reply that can never
    // come would never be freed.
    if (keyPath == nullptr) {
        jmethodID call = methodOfHost(env, hostObject, "callJSB", "(Ljava/lang/String;Ljava/lang/String;J)V");
        if (!host.javaThrew()) {
            const BridgeCallbackId callbackId = MeroInstance::holdReply(std::move(reply));
            env->CallVoidMethod(hostObject, call, method, paramsJson, static_cast<jlong>(callbackId));
        }
    } else {
        jstring keyPathJson = newJavaString(env, jsonWithinLimit(*keyPath));
        jmethodID call = methodOfHost(env, hostObject, "callJSBWithKeyPath",
                                      "(Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;J)V");
        if (!host.javaThrew()) {
            const BridgeCallbackId callbackId = MeroInstance::holdReply(std::move(reply));
            env->CallVoidMethod(hostObject, call, method, paramsJson, keyPathJson, static_cast<jlong>(callbackId));
        }
        env->DeleteLocalRef(keyPathJson);
    }
    env->DeleteLocalRef(method);
    env->DeleteLocalRef(paramsJson);
}

}  // namespace

void installJniServices(MeroInstance& instance)
{
    RuntimeServices& services = instance.runtime().services;
    MeroInstance* owner = &instance;
    services.measureText = [owner](const TextContent& content) { return measureText(*owner, content); };
    services.setTimeout = [owner](double delay, PendingJob job) { setTimeout(*owner, delay, std::move(job)); };
    services.startVideoTimer = [owner](double first, double second, VideoTimerListPtr entries) {
        startVideoTimer(*owner, first, second, std::move(entries));
    };
    services.log = [owner](const std::string& message) { sendLog(*owner, message); };
    services.callBridge = [owner](const std::string& name, const Value& params, BridgeReply reply) {
        callBridge(*owner, name, params, nullptr, std::move(reply));
    };
    services.callBridgeWithKeyPath = [owner](const std::string& name, const Value& params, const Value& keyPath,
                                          BridgeReply reply) {
        callBridge(*owner, name, params, &keyPath, std::move(reply));
    };
}

}  // namespace Mero
