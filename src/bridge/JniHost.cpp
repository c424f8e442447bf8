#include "bridge/JniHost.h"

#include <array>
#include <utility>
#include <variant>

#include "bridge/BridgeLog.h"
#include "bridge/JniSupport.h"
#include "engine/MeroInstance.h"
#include "runtime/NumberConversion.h"
#include "runtime/ScriptRun.h"
#include "value/JsonWriter.h"

namespace Mero {

namespace {

constexpr const char* kCreateComponentSignature =
    "(I[I[F[Ljava/lang/String;[ZLcom/fernwick/android/ad/mero/components/GradientInfo;)"
    "Lcom/fernwick/android/ad/mero/MRComponent;";
constexpr const char* kComponentArgument = "(Lcom/fernwick/android/ad/mero/MRComponent;)V";
constexpr uint32_t kSwiperType = 8;

bool threw(JNIEnv* env)
{
    return env->ExceptionCheck() == JNI_TRUE;
}

// Looks the method up on the target's class and calls it; nothing when a
// Java exception is pending, before or during the lookup.
void callOnObject(JNIEnv* env, jobject target, const char* name, const char* signature, auto... arguments)
{
    if (threw(env)) {
        return;
    }
    jclass targetClass = env->GetObjectClass(target);
    jmethodID method = env->GetMethodID(targetClass, name, signature);
    env->DeleteLocalRef(targetClass);
    if (!threw(env)) {
        env->CallVoidMethod(target, method, arguments...);
    }
}

jobject callStaticValueOf(JNIEnv* env, const char* className, const char* signature, auto argument)
{
    jclass boxClass = env->FindClass(className);
    if (threw(env)) {
        return nullptr;
    }
    jmethodID valueOf = env->GetStaticMethodID(boxClass, "valueOf", signature);
    jobject boxed = threw(env) ? nullptr : env->CallStaticObjectMethod(boxClass, valueOf, argument);
    env->DeleteLocalRef(boxClass);
    return boxed;
}

// Numbers as Float, booleans as Boolean, strings as String; arrays and
// objects as their JSON text; null and anything else as null.
jobject boxValue(JNIEnv* env, const Value& value)
{
    switch (value.kind()) {
    case Kind::Number:
        return callStaticValueOf(env, "java/lang/Float", "(F)Ljava/lang/Float;", static_cast<jfloat>(value.number()));
    case Kind::Boolean:
        return callStaticValueOf(env, "java/lang/Boolean", "(Z)Ljava/lang/Boolean;",
                                 value.boolean() ? JNI_TRUE : JNI_FALSE);
    case Kind::String: return newJavaString(env, value.string());
    case Kind::Array:
    case Kind::Object: return newJavaString(env, jsonWithinLimit(value));
    default: return nullptr;
    }
}

jobjectArray newStringArray(JNIEnv* env, jsize length, const char* initial)
{
    jclass stringClass = env->FindClass("java/lang/String");
    jstring filler = initial != nullptr ? env->NewStringUTF(initial) : nullptr;
    jobjectArray array = env->NewObjectArray(length, stringClass, filler);
    env->DeleteLocalRef(filler);
    env->DeleteLocalRef(stringClass);
    return array;
}

jobject newGradientInfo(JNIEnv* env, const GradientSlots& gradient)
{
    const auto stops = static_cast<jsize>(GradientSlots::kStops);
    jobjectArray colors = newStringArray(env, stops, nullptr);
    for (jsize stop = 0; stop < stops; ++stop) {
        if (gradient.used[static_cast<std::size_t>(stop)]) {
            jstring color = newJavaString(env, gradient.colors[static_cast<std::size_t>(stop)]);
            env->SetObjectArrayElement(colors, stop, color);
            env->DeleteLocalRef(color);
        }
    }
    jfloatArray positions = env->NewFloatArray(stops);
    env->SetFloatArrayRegion(positions, 0, stops, gradient.positions.data());
    jclass infoClass = env->FindClass(kGradientInfoClass);
    jobject info = nullptr;
    if (!threw(env)) {
        jmethodID constructor = env->GetMethodID(infoClass, "<init>", "(I[Ljava/lang/String;[F)V");
        info = threw(env) ? nullptr : env->NewObject(infoClass, constructor, gradient.type, colors, positions);
    }
    env->DeleteLocalRef(infoClass);
    env->DeleteLocalRef(colors);
    env->DeleteLocalRef(positions);
    return info;
}

// One createComponent call with the view's four arrays and gradient.
jobject callCreateComponent(JNIEnv* env, jobject host, const ViewSlots& slots)
{
    jintArray ints = env->NewIntArray(ViewSlots::kInts);
    env->SetIntArrayRegion(ints, 0, ViewSlots::kInts, slots.ints.data());
    jfloatArray floats = env->NewFloatArray(ViewSlots::kFloats);
    env->SetFloatArrayRegion(floats, 0, ViewSlots::kFloats, slots.floats.data());
    jobjectArray strings = newStringArray(env, ViewSlots::kStrings, "");
    for (std::size_t slot = 0; slot < ViewSlots::kStrings; ++slot) {
        if (!slots.strings[slot].empty()) {
            jstring text = newJavaString(env, slots.strings[slot]);
            env->SetObjectArrayElement(strings, static_cast<jsize>(slot), text);
            env->DeleteLocalRef(text);
        }
    }
    std::array<jboolean, ViewSlots::kBooleans> flags{};
    for (std::size_t slot = 0; slot < flags.size(); ++slot) {
        flags[slot] = slots.booleans[slot] ? JNI_TRUE : JNI_FALSE;
    }
    jbooleanArray booleans = env->NewBooleanArray(ViewSlots::kBooleans);
    env->SetBooleanArrayRegion(booleans, 0, ViewSlots::kBooleans, flags.data());
    jobject gradient = slots.gradient ? newGradientInfo(env, *slots.gradient) : nullptr;

    jobject component = nullptr;
    if (!threw(env)) {
        jclass hostClass = env->GetObjectClass(host);
        jmethodID create = env->GetMethodID(hostClass, "createComponent", kCreateComponentSignature);
        env->DeleteLocalRef(hostClass);
        if (!threw(env)) {
            component = env->CallObjectMethod(host, create, static_cast<jint>(slots.type), ints, floats, strings,
                                              booleans, gradient);
        }
    }
    env->DeleteLocalRef(ints);
    env->DeleteLocalRef(floats);
    env->DeleteLocalRef(strings);
    env->DeleteLocalRef(booleans);
    env->DeleteLocalRef(gradient);
    return threw(env) ? nullptr : component;
}

void startSwiper(JNIEnv* env, jobject component)
{
    jclass swiperClass = env->FindClass(kSwiperComponentClass);
    if (threw(env)) {
        return;
    }
    jmethodID start = env->GetMethodID(swiperClass, "start", "()V");
    env->DeleteLocalRef(swiperClass);
    if (!threw(env)) {
        env->CallVoidMethod(component, start);
    }
}

}  // namespace

JniHost& jniHost(const MeroInstance& instance)
{
    // initMREngine binds every instance it makes to a JniHost.
    return static_cast<JniHost&>(*instance.host());
}

void JniHost::logLine(const std::string& text)
{
    logBridge(text);
}

void JniHost::detach(JNIEnv* env)
{
    if (hostObject_ != nullptr) {
        env->DeleteGlobalRef(hostObject_);
        hostObject_ = nullptr;
    }
}

jobject JniHost::findView(const std::string& viewId)
{
    if (javaThrew()) {
        return nullptr;
    }
    jclass hostClass = env_->GetObjectClass(hostObject_);
    jmethodID find = env_->GetMethodID(hostClass, "findComponentById",
                                       "(Ljava/lang/String;)Lcom/fernwick/android/ad/mero/MRComponent;");
    env_->DeleteLocalRef(hostClass);
    if (javaThrew()) {
        return nullptr;
    }
    jstring id = newJavaString(env_, viewId);
    jobject component = env_->CallObjectMethod(hostObject_, find, id);
    env_->DeleteLocalRef(id);
    return javaThrew() ? nullptr : component;
}

ViewHandle JniHost::makeView(const ViewSlots& slots, const ViewRenderNode& /*node*/)
{
    return javaThrew() ? nullptr : callCreateComponent(env_, hostObject_, slots);
}

void JniHost::finishView(ViewHandle view, ViewHandle parent, uint32_t type)
{
    auto component = static_cast<jobject>(view);
    if (type == kSwiperType && !javaThrew()) {
        startSwiper(env_, component);
    }
    if (parent != nullptr) {
        callOnObject(env_, static_cast<jobject>(parent), "addChild", kComponentArgument, component);
        env_->DeleteLocalRef(component);
    }
}

jobject JniHost::makeViews(const ViewTree& view, std::vector<const ViewRenderNode*>& refused, jobject parent)
{
    auto component = static_cast<jobject>(makeView(view.slots, *view.node));
    if (component == nullptr) {
        // Not added anywhere: the host made no view.
        refused.push_back(view.node);
        return nullptr;
    }
    for (const ViewTree& child : view.children) {
        makeViews(child, refused, component);
    }
    finishView(component, parent, view.slots.type);
    return parent == nullptr ? component : nullptr;
}

std::vector<const ViewRenderNode*> JniHost::apply(const ChangeList& changes)
{
    std::vector<const ViewRenderNode*> refused;
    for (const Change& change : changes) {
        // The rest of the flush goes once the host has thrown: the exception
        // reaches the Java caller when the native returns.
        if (javaThrew()) {
            break;
        }
        std::visit(
            [this, &refused](const auto& record) {
                if constexpr (std::is_same_v<std::decay_t<decltype(record)>, InsertView>) {
                    applyChange(record, refused);
                } else {
                    applyChange(record);
                }
            },
            change);
    }
    return refused;
}

void JniHost::applyChange(const InsertView& insert, std::vector<const ViewRenderNode*>& refused)
{
    jobject parent = insert.index >= 0 ? findView(insert.parentId) : nullptr;
    // No view: the root, whose view is the host's own root view.
    if (parent == nullptr) {
        jobject root = makeViews(insert.view, refused);
        callOnObject(env_, hostObject_, "addRootView", kComponentArgument, root);
        env_->DeleteLocalRef(root);
        return;
    }
    jobject child = makeViews(insert.view, refused);
    if (child != nullptr) {
        callOnObject(env_, parent, "addChildAt", "(ILcom/fernwick/android/ad/mero/MRComponent;)V",
                     static_cast<jint>(insert.index), child);
        env_->DeleteLocalRef(child);
    }
    env_->DeleteLocalRef(parent);
}

void JniHost::applyChange(const RemoveView& remove)
{
    jobject parent = remove.index >= 0 ? findView(remove.parentId) : nullptr;
    if (parent == nullptr) {
        callOnObject(env_, hostObject_, "removeRootView", "()V");
        return;
    }
    callOnObject(env_, parent, "removeChildAt", "(I)V", static_cast<jint>(remove.index));
    env_->DeleteLocalRef(parent);
}

void JniHost::applyChange(const SetProperties& set)
{
    jstring id = newJavaString(env_, set.viewId);
    for (const PropertyUpdate& update : set.updates) {
        if (javaThrew()) {
            break;
        }
        jobject boxed = boxValue(env_, update.value);
        callOnObject(env_, hostObject_, "updateComponentProperty", "(Ljava/lang/String;ILjava/lang/Object;)V", id,
                     static_cast<jint>(update.propertyId), boxed);
        env_->DeleteLocalRef(boxed);
    }
    env_->DeleteLocalRef(id);
}

void JniHost::applyChange(const PlayAnimations& play)
{
    jstring id = newJavaString(env_, play.viewId);
    for (const AnimatedUpdate& update : play.animations) {
        if (javaThrew()) {
            break;
        }
        jobject boxed = boxValue(env_, update.value);
        callOnObject(env_, hostObject_, "playComponentAnimation", "(Ljava/lang/String;ILjava/lang/Object;III)V", id,
                     static_cast<jint>(update.propertyId), boxed, static_cast<jint>(update.transition.timing),
                     truncateToInt32(update.transition.duration), truncateToInt32(update.transition.delay));
        env_->DeleteLocalRef(boxed);
    }
    env_->DeleteLocalRef(id);
}

ContentSize JniHost::contentSize(const std::string& viewId)
{
    jobject component = findView(viewId);
    if (component == nullptr) {
        return {};
    }
    jclass componentClass = env_->GetObjectClass(component);
    jmethodID query = env_->GetMethodID(componentClass, "getContentSize", "()[F");
    env_->DeleteLocalRef(componentClass);
    auto size = javaThrew() ? nullptr : static_cast<jfloatArray>(env_->CallObjectMethod(component, query));
    env_->DeleteLocalRef(component);
    jfloat values[2] = {0.0F, 0.0F};
    if (!javaThrew() && size != nullptr && env_->GetArrayLength(size) >= 2) {
        env_->GetFloatArrayRegion(size, 0, 2, values);
    }
    env_->DeleteLocalRef(size);
    return {values[0], values[1]};
}

}  // namespace Mero
