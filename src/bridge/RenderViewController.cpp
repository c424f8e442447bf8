#include "bridge/RenderViewController.h"

#include <optional>
#include <utility>

#include "bridge/ComponentSlots.h"
#include "bridge/HostLink.h"
#include "bridge/JniSupport.h"
#include "render/ContainerRenderNode.h"
#include "render/RenderNodeFactory.h"
#include "render/ViewRenderNode.h"
#include "runtime/NumberConversion.h"
#include "value/JsonWriter.h"

namespace Mero {

namespace {

constexpr const char* kCreateComponentSignature =
    "(I[I[F[Ljava/lang/String;[ZLcom/fernwick/android/ad/mero/components/GradientInfo;)"
    "Lcom/fernwick/android/ad/mero/MRComponent;";
constexpr const char* kComponentArgument = "(Lcom/fernwick/android/ad/mero/MRComponent;)V";

void callOnObject(JNIEnv* env, jobject target, const char* name, const char* signature, auto... arguments)
{
    jclass targetClass = env->GetObjectClass(target);
    jmethodID method = env->GetMethodID(targetClass, name, signature);
    env->DeleteLocalRef(targetClass);
    env->CallVoidMethod(target, method, arguments...);
}

jobject boxFloat(JNIEnv* env, double number)
{
    jclass boxClass = env->FindClass("java/lang/Float");
    jmethodID valueOf = env->GetStaticMethodID(boxClass, "valueOf", "(F)Ljava/lang/Float;");
    jobject boxed = env->CallStaticObjectMethod(boxClass, valueOf, static_cast<jfloat>(number));
    env->DeleteLocalRef(boxClass);
    return boxed;
}

jobject boxBoolean(JNIEnv* env, bool flag)
{
    jclass boxClass = env->FindClass("java/lang/Boolean");
    jmethodID valueOf = env->GetStaticMethodID(boxClass, "valueOf", "(Z)Ljava/lang/Boolean;");
    jobject boxed = env->CallStaticObjectMethod(boxClass, valueOf, flag ? JNI_TRUE : JNI_FALSE);
    env->DeleteLocalRef(boxClass);
    return boxed;
}

// Numbers as Float, booleans as Boolean, strings as String; arrays and
// objects as their JSON text; null and anything else as null.
jobject boxValue(JNIEnv* env, const Value& value)
{
    switch (value.kind()) {
    case Kind::Number: return boxFloat(env, value.number());
    case Kind::Boolean: return boxBoolean(env, value.boolean());
    case Kind::String: return newJavaString(env, value.string());
    case Kind::Array:
    case Kind::Object: return newJavaString(env, toJsonString(value));
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
    jmethodID constructor = env->GetMethodID(infoClass, "<init>", "(I[Ljava/lang/String;[F)V");
    jobject info = env->NewObject(infoClass, constructor, gradient.type, colors, positions);
    env->DeleteLocalRef(infoClass);
    env->DeleteLocalRef(colors);
    env->DeleteLocalRef(positions);
    return info;
}

// One createComponent call with the node's four arrays and gradient.
jobject callCreateComponent(JNIEnv* env, jobject host, const ComponentSlots& slots)
{
    jintArray ints = env->NewIntArray(ComponentSlots::kInts);
    env->SetIntArrayRegion(ints, 0, ComponentSlots::kInts, slots.ints.data());
    jfloatArray floats = env->NewFloatArray(ComponentSlots::kFloats);
    env->SetFloatArrayRegion(floats, 0, ComponentSlots::kFloats, slots.floats.data());
    jobjectArray strings = newStringArray(env, ComponentSlots::kStrings, "");
    for (std::size_t slot = 0; slot < ComponentSlots::kStrings; ++slot) {
        if (!slots.strings[slot].empty()) {
            jstring text = newJavaString(env, slots.strings[slot]);
            env->SetObjectArrayElement(strings, static_cast<jsize>(slot), text);
            env->DeleteLocalRef(text);
        }
    }
    std::array<jboolean, ComponentSlots::kBooleans> flags{};
    for (std::size_t slot = 0; slot < flags.size(); ++slot) {
        flags[slot] = slots.booleans[slot] ? JNI_TRUE : JNI_FALSE;
    }
    jbooleanArray booleans = env->NewBooleanArray(ComponentSlots::kBooleans);
    env->SetBooleanArrayRegion(booleans, 0, ComponentSlots::kBooleans, flags.data());
    jobject gradient = slots.gradient ? newGradientInfo(env, *slots.gradient) : nullptr;

    jclass hostClass = env->GetObjectClass(host);
    jmethodID create = env->GetMethodID(hostClass, "createComponent", kCreateComponentSignature);
    env->DeleteLocalRef(hostClass);
    jobject component =
        env->CallObjectMethod(host, create, static_cast<jint>(slots.type), ints, floats, strings, booleans, gradient);
    env->DeleteLocalRef(ints);
    env->DeleteLocalRef(floats);
    env->DeleteLocalRef(strings);
    env->DeleteLocalRef(booleans);
    env->DeleteLocalRef(gradient);
    return component;
}

// The nodes that stand for `container`'s children among its host children:
// shown children, with flattened containers replaced by their own.
HostNodeList hostChildrenOf(const ContainerRenderNode& container)
{
    HostNodeList nodes;
    for (const RenderNodePtr& child : container.children) {
        if (std::optional<HostNodeList> childNodes = child->collectHostNodes()) {
            nodes.insert(nodes.end(), childNodes->begin(), childNodes->end());
        }
    }
    return nodes;
}

void addHostChildren(MeroInstance& instance, const ContainerRenderNode& container, jobject component)
{
    JNIEnv* env = hostLink(instance).env;
    for (ViewRenderNode* child : hostChildrenOf(container)) {
        jobject childComponent = createHostComponent(instance, *child);
        // A child the host made no view for is simply not added.
        if (childComponent != nullptr) {
            callOnObject(env, component, "addChild", kComponentArgument, childComponent);
            env->DeleteLocalRef(childComponent);
        }
    }
}

void startSwiper(JNIEnv* env, jobject component)
{
    jclass swiperClass = env->FindClass(kSwiperComponentClass);
    jmethodID start = env->GetMethodID(swiperClass, "start", "()V");
    env->DeleteLocalRef(swiperClass);
    env->CallVoidMethod(component, start);
}

// The host view of a node, or null (the host's root view is not handed out).
jobject findHostComponent(JNIEnv* env, jobject host, const std::string& nodeId)
{
    jclass hostClass = env->GetObjectClass(host);
    jmethodID find = env->GetMethodID(hostClass, "findComponentById",
                                      "(Ljava/lang/String;)Lcom/fernwick/android/ad/mero/MRComponent;");
    env->DeleteLocalRef(hostClass);
    jstring id = newJavaString(env, nodeId);
    jobject component = env->CallObjectMethod(host, find, id);
    env->DeleteLocalRef(id);
    return component;
}

}  // namespace

jobject createHostComponent(MeroInstance& instance, ViewRenderNode& node)
{
    const HostLink& link = hostLink(instance);
    const ComponentSlots slots = collectComponentSlots(node);

    delete node.component;
    node.component = new RenderViewController(instance, node.nodeId);
    node.hasComponent = true;
    node.childChanges.clear();
    node.propertyUpdates.clear();
    node.animatedUpdates.clear();

    jobject component = callCreateComponent(link.env, link.hostObject, slots);
    if (component == nullptr) {
        return nullptr;
    }
    const auto type = static_cast<ElementType>(node.type);
    if (type == ElementType::For || type == ElementType::Flex || type == ElementType::Swiper) {
        addHostChildren(instance, static_cast<const ContainerRenderNode&>(node), component);
    }
    if (type == ElementType::Swiper) {
        startSwiper(link.env, component);
    }
    return component;
}

void releaseHostComponents(ViewRenderNode* node)
{
    if (node == nullptr) {
        return;
    }
    if (node->isContainer()) {
        const auto& container = static_cast<const ContainerRenderNode&>(*node);
        // The list is built again before each step: releasing may change it.
        for (std::size_t step = 0;; ++step) {
            HostNodeList children = hostChildrenOf(container);
            if (step >= children.size()) {
                break;
            }
            releaseHostComponents(children[step]);
        }
    }
    Component* component = std::exchange(node->component, nullptr);
    delete component;
}

RenderViewController::RenderViewController(MeroInstance& owner, std::string nodeId)
    : instance(owner), componentId(std::move(nodeId))
{}

JNIEnv* RenderViewController::env() const
{
    return hostLink(instance).env;
}

jobject RenderViewController::hostObject() const
{
    return hostLink(instance).hostObject;
}

void RenderViewController::updateChildren(const std::vector<ChildChange>& changes)
{
    // Showing the root again makes the root's component anew, which replaces
    // this controller and clears the list being sent: work from copies.
    MeroInstance& owner = instance;
    JNIEnv* jni = env();
    jobject host = hostObject();
    const std::string id = componentId;
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the original may be cleared under us
    const std::vector<ChildChange> pending = changes;
    for (const ChildChange& change : pending) {
        const bool inserted = change.kind == ChildChange::Kind::Insert;
        jobject parent = change.index >= 0 ? findHostComponent(jni, host, id) : nullptr;
        if (parent == nullptr) {
            // No component: the root, whose view is the host's root view.
            if (inserted) {
                jobject root = createHostComponent(owner, *change.node);
                callOnObject(jni, host, "addRootView", kComponentArgument, root);
                jni->DeleteLocalRef(root);
            } else {
                callOnObject(jni, host, "removeRootView", "()V");
            }
            continue;
        }
        if (inserted) {
            jobject child = createHostComponent(owner, *change.node);
            if (child != nullptr) {
                callOnObject(jni, parent, "addChildAt", "(ILcom/fernwick/android/ad/mero/MRComponent;)V",
                             static_cast<jint>(change.index), child);
                jni->DeleteLocalRef(child);
            }
        } else {
            callOnObject(jni, parent, "removeChildAt", "(I)V", static_cast<jint>(change.index));
        }
        jni->DeleteLocalRef(parent);
    }
}

void RenderViewController::updateProperties(const std::vector<PropertyUpdate>& properties)
{
    JNIEnv* jni = env();
    jstring id = newJavaString(jni, componentId);
    for (const PropertyUpdate& update : properties) {
        jobject boxed = boxValue(jni, update.value);
        callOnObject(jni, hostObject(), "updateComponentProperty", "(Ljava/lang/String;ILjava/lang/Object;)V", id,
                     static_cast<jint>(update.propertyId), boxed);
        jni->DeleteLocalRef(boxed);
    }
    jni->DeleteLocalRef(id);
}

void RenderViewController::playAnimations(const std::vector<AnimatedUpdate>& animations)
{
    JNIEnv* jni = env();
    jstring id = newJavaString(jni, componentId);
    for (const AnimatedUpdate& update : animations) {
        jobject boxed = boxValue(jni, update.value);
        callOnObject(jni, hostObject(), "playComponentAnimation", "(Ljava/lang/String;ILjava/lang/Object;III)V", id,
                     static_cast<jint>(update.propertyId), boxed, static_cast<jint>(update.transition.timing),
                     truncateToInt32(update.transition.duration), truncateToInt32(update.transition.delay));
        jni->DeleteLocalRef(boxed);
    }
    jni->DeleteLocalRef(id);
}

ContentSize RenderViewController::getContentSize()
{
    JNIEnv* jni = env();
    jobject component = findHostComponent(jni, hostObject(), componentId);
    if (component == nullptr) {
        return {};
    }
    jclass componentClass = jni->GetObjectClass(component);
    jmethodID query = jni->GetMethodID(componentClass, "getContentSize", "()[F");
    jni->DeleteLocalRef(componentClass);
    auto size = static_cast<jfloatArray>(jni->CallObjectMethod(component, query));
    jni->DeleteLocalRef(component);
    jfloat values[2] = {0.0F, 0.0F};
    if (size != nullptr && jni->GetArrayLength(size) >= 2) {
        jni->GetFloatArrayRegion(size, 0, 2, values);
    }
    jni->DeleteLocalRef(size);
    return {values[0], values[1]};
}

void RenderViewController::releaseComponents(ViewRenderNode* node)
{
    // May destroy this controller: nothing of it is used afterwards.
    releaseHostComponents(node);
}

}  // namespace Mero
