#include "engine/MeroInstance.h"

#include <yoga/Yoga.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <utility>

#include "bridge/BridgeLog.h"
#include "render/Component.h"
#include "render/ContainerRenderNode.h"
#include "render/RenderNodeFactory.h"
#include "render/SwiperRenderNode.h"
#include "runtime/RuntimeEngine.h"
#include "value/JsonParser.h"

namespace Mero {

namespace {

// Visits `root` and every node below it, breadth first, until `visit`
// answers true; hidden children included. Answers the node that stopped it.
template <typename Visit>
ViewRenderNode* walkBreadthFirst(ViewRenderNode* root, Visit visit)
{
    std::deque<ViewRenderNode*> waiting;
    if (root != nullptr) {
        waiting.push_back(root);
    }
    while (!waiting.empty()) {
        ViewRenderNode* node = waiting.front();
        waiting.pop_front();
        if (visit(node)) {
            return node;
        }
        if (node->isContainer()) {
            for (const RenderNodePtr& child : static_cast<ContainerRenderNode*>(node)->children) {
                waiting.push_back(child.get());
            }
        }
    }
    return nullptr;
}

// A node holds its host controller without owning it; the instance that made
// the controllers destroys them when the tree goes. Nodes then hold none, so
// a node that outlives this (an engine still held by a running dispatch)
// simply sends nothing.
void destroyComponents(ViewRenderNode* root)
{
    walkBreadthFirst(root, [](ViewRenderNode* node) {
        delete node->component;
        node->component = nullptr;
        return false;
    });
}

bool sameSize(float stored, float given)
{
    return (std::isnan(stored) && std::isnan(given)) || stored == given;
}

bool isFixedSize(YGValue size)
{
    return size.unit == YGUnitPoint || size.unit == YGUnitPercent;
}

int32_t drawJobId()
{
    // NOLINTNEXTLINE(cert-msc30-c,cert-msc50-cpp): the host contract's ids, never seeded here
    return std::rand() % 10000;
}

}  // namespace

int32_t normalizeMeasureMode(int32_t mode)
{
    return mode == 1 || mode == 2 ? mode : 0;
}

ViewRenderNode* findRenderNode(ViewRenderNode* root, std::string_view nodeId)
{
    return walkBreadthFirst(root, [nodeId](const ViewRenderNode* node) { return node->nodeId == nodeId; });
}

MeroInstance::MeroInstance() : engine(std::make_shared<RuntimeEngine>()) {}

MeroInstance::~MeroInstance()
{
    if (engine) {
        destroyComponents(engine->rootNode.get());
    }
}

void MeroInstance::setScreenWidth(float screenWidth)
{
    engine->screenScale = static_cast<double>(screenWidth) / 750.0;
}

void MeroInstance::loadTemplate(std::string_view text)
{
    engine->loadTemplate(text);
}

void MeroInstance::setData(std::string_view data, std::string_view extraData)
{
    Value values = JsonParser::read(data);
    Value extra = JsonParser::read(extraData);
    // The reader's root is always an object; the data map is shared, not
    // copied. Extra data never replaces a key the data already has.
    engine->data = values.objectPtr();
    for (const auto& [key, value] : extra.object()) {
        engine->data->try_emplace(key, value);
    }
}

void MeroInstance::initContainerSize(float width, float height, int32_t widthMode, int32_t heightMode)
{
    // In "at most" mode the stored size is undefined, not the bound given:
    // the maximum set from it in applyLayout is then undefined too. Kept on
    // purpose.
    engine->containerHeight = heightMode == 1 ? height : YGUndefined;
    engine->containerWidth = widthMode == 1 ? width : YGUndefined;
    engine->widthMode = normalizeMeasureMode(widthMode);
    engine->heightMode = normalizeMeasureMode(heightMode);
}

void MeroInstance::initNode()
{
    RenderNodePtr previous = std::move(engine->rootNode);
    engine->rootNode = createRenderNode(engine->elements, nullptr, engine, nullptr);
    destroyComponents(previous.get());
}

void MeroInstance::triggerInitEvent()
{
    // No flush: the first layout and the host views come next.
    engine->dispatchEvent("onLoad", Value());
}

void MeroInstance::applyContainerBounds()
{
    ViewRenderNode* root = engine->rootNode.get();
    if (engine->widthMode == 2) {
        YGNodeStyleSetMaxWidth(root->yogaNode, engine->containerWidth);
    }
    if (engine->heightMode == 2) {
        YGNodeStyleSetMaxHeight(root->yogaNode, engine->containerHeight);
    }
}

void MeroInstance::applyLayout()
{
    ViewRenderNode* root = engine->rootNode.get();
    if (root == nullptr) {
        engine->layoutApplied = true;
        return;
    }
    applyContainerBounds();
    YGNodeCalculateLayout(root->yogaNode, engine->containerWidth, engine->containerHeight, YGDirectionLTR);
    // Also before the host views exist: reading the results fills the
    // layout caches that each view is created from. What the nodes queue on
    // the way is dropped when their views are made.
    root->applyLayout();
    engine->layoutApplied = true;
}

void MeroInstance::flushEngine()
{
    engine->flush();
}

void MeroInstance::updateLayout(float width, float height, int32_t widthMode, int32_t heightMode)
{
    const int32_t newWidthMode = normalizeMeasureMode(widthMode);
    const int32_t newHeightMode = normalizeMeasureMode(heightMode);
    if (engine->widthMode == 0 && engine->heightMode == 0 && newWidthMode == 0 && newHeightMode == 0) {
        return;
    }
    // Only sizes are compared: a change of mode alone does nothing.
    if (sameSize(engine->containerWidth, width) && sameSize(engine->containerHeight, height)) {
        return;
    }
    engine->widthMode = newWidthMode;
    engine->heightMode = newHeightMode;
    engine->containerWidth = widthMode == 1 ? width : YGUndefined;
    engine->containerHeight = heightMode == 1 ? height : YGUndefined;
    if (engine->rootNode) {
        applyContainerBounds();
    }
    engine->needsLayout = true;
    flushEngine();
}

void MeroInstance::markDirty(const std::string& componentId)
{
    ViewRenderNode* node = findRenderNode(engine->rootNode.get(), componentId);
    if (node == nullptr || !node->hasComponent || node->isEmpty) {
        return;
    }
    if (isFixedSize(YGNodeStyleGetWidth(node->yogaNode)) && isFixedSize(YGNodeStyleGetHeight(node->yogaNode))) {
        return;
    }
    // Yoga lets only nodes that measure their own content be marked (it
    // throws for the others); their parents are marked with them.
    if (YGNodeHasMeasureFunc(node->yogaNode)) {
        YGNodeMarkDirty(node->yogaNode);
    }
    if (std::shared_ptr<RuntimeEngine> runtime = node->engine.lock()) {
        runtime->needsLayout = true;
        runtime->flush();
    }
}

void MeroInstance::sendEvent(const std::string& name, std::string_view payload)
{
    const Value value = payload.empty() ? Value(Kind::Object) : JsonParser::read(payload);
    engine->dispatchEvent(name, value);
    flushEngine();
}

void MeroInstance::sendClickEvent(const std::string& componentId)
{
    ViewRenderNode* node = findRenderNode(engine->rootNode.get(), componentId);
    if (node == nullptr || node->onClick.empty()) {
        return;
    }
    if (std::shared_ptr<RuntimeEngine> runtime = node->engine.lock()) {
        // The handler's scope receives a copy of the node's locals; the
        // node's own scope is never changed.
        runtime->dispatchEvent(node->onClick, Value(Kind::Object), node->scope);
        runtime->flush();
    }
}

void MeroInstance::sendSwiperEvent(const std::string& componentId, int32_t index)
{
    auto* swiper = dynamic_cast<SwiperRenderNode*>(findRenderNode(engine->rootNode.get(), componentId));
    if (swiper == nullptr || swiper->type != static_cast<uint32_t>(ElementType::Swiper)) {
        return;
    }
    std::shared_ptr<RuntimeEngine> runtime = swiper->engine.lock();
    const std::string& eventName = swiper->onSwiperChange.string();
    if (!runtime || eventName.empty()) {
        return;
    }
    Value detail = Value::makeObject({{"current", Value(index)}});
    const Value payload = Value::makeObject({{"detail", std::move(detail)}});
    runtime->dispatchEvent(eventName, payload, swiper->scope);
    runtime->flush();
}

int32_t MeroInstance::addTimeoutJob(HostJob&& job)
{
    const int32_t id = drawJobId();
    timeoutJobs.try_emplace(id, std::move(job));
    return id;
}

std::optional<int32_t> MeroInstance::addVideoTimerJobs(VideoTimerList& entries)
{
    if (entries.empty()) {
        return std::nullopt;
    }
    const int32_t firstId = drawJobId();
    int32_t id = firstId;
    for (VideoTimerEntry& entry : entries) {
        videoTimerJobs.try_emplace(id++, std::move(entry.second));
    }
    return firstId;
}

void MeroInstance::executeTimeoutJob(int32_t jobId)
{
    auto found = timeoutJobs.find(jobId);
    if (found != timeoutJobs.end() && found->second) {
        found->second();
    }
    timeoutJobs.erase(jobId);
}

void MeroInstance::executeVideoTimerJob(int32_t jobId)
{
    auto found = videoTimerJobs.find(jobId);
    if (found != videoTimerJobs.end() && found->second) {
        logBridge("find video task, executing...");
        found->second();
    }
    videoTimerJobs.erase(jobId);
}

void MeroInstance::clearVideoTimerJobs()
{
    videoTimerJobs.clear();
}

// The id is the reply's address as an unsigned number: on 32-bit processors
// it is widened without a sign, so an address above 2 GiB is still a
// positive id, and it comes back unchanged.
BridgeCallbackId MeroInstance::holdReply(BridgeReply reply)
{
    const auto address = reinterpret_cast<std::uintptr_t>(new BridgeReply(std::move(reply)));
    return static_cast<BridgeCallbackId>(address);
}

void MeroInstance::handleResult(std::string_view result, BridgeCallbackId callbackId)
{
    // Owned from here: freed once answered, also when the answer throws.
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the id is the reply's address, by contract
    std::unique_ptr<BridgeReply> reply(reinterpret_cast<BridgeReply*>(static_cast<std::uintptr_t>(callbackId)));
    Value value = JsonParser::read(result);
    (*reply)(std::move(value));
}

void MeroInstance::handleKeyPathResult(std::string_view result, BridgeCallbackId callbackId)
{
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the id is the reply's address, by contract
    std::unique_ptr<BridgeReply> reply(reinterpret_cast<BridgeReply*>(static_cast<std::uintptr_t>(callbackId)));
    const Value value = JsonParser::read(result);
    const ValueObject& members = value.object();
    auto data = members.find("data");
    (*reply)(data != members.end() ? Value(data->second) : Value());
}

}  // namespace Mero
