#include "engine/MeroInstance.h"

#include <yoga/Yoga.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <utility>

#include "render/RenderTree.h"
#include "render/SwiperRenderNode.h"
#include "runtime/RuntimeEngine.h"
#include "runtime/ScriptRun.h"
#include "value/JsonParser.h"

namespace Mero {

namespace {

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

MeroInstance::MeroInstance()
    : engine_(std::make_shared<RuntimeEngine>()), tree_(std::make_unique<RenderTree>(engine_))
{
    // Script that finishes a piece of work later (a timer, a bridge reply)
    // brings the host up to date through the render tree.
    engine_->setFlushHook([tree = tree_.get()] { tree->flush(); });
}

MeroInstance::~MeroInstance()
{
    // The runtime may outlive the tree for as long as something still holds
    // it: it must not reach the tree from then on.
    engine_->setFlushHook(nullptr);
    tree_.reset();
}

void MeroInstance::bindHost(std::unique_ptr<Host> host)
{
    host_ = std::move(host);
    tree_->setViewHost(host_.get());
}

void MeroInstance::setScreenWidth(float screenWidth)
{
    engine_->screenScale = static_cast<double>(screenWidth) / 750.0;
}

void MeroInstance::loadTemplate(std::string_view text)
{
    engine_->loadTemplate(text);
}

void MeroInstance::setData(std::string_view data, std::string_view extraData)
{
    engine_->setData(data, extraData, tree_->root() != nullptr);
}

void MeroInstance::initContainerSize(float width, float height, int32_t widthMode, int32_t heightMode)
{
    // In "at most" mode the stored size is undefined, not the bound given:
    // the maximum set from it in applyLayout is then undefined too. Kept on
    // purpose.
    engine_->containerHeight = heightMode == 1 ? height : YGUndefined;
    engine_->containerWidth = widthMode == 1 ? width : YGUndefined;
    engine_->widthMode = normalizeMeasureMode(widthMode);
    engine_->heightMode = normalizeMeasureMode(heightMode);
}

void MeroInstance::initNode()
{
    tree_->build(engine_->elementsForBuild());
    engine_->releaseElements();
}

void MeroInstance::triggerInitEvent()
{
    // No flush: the first layout and the host views come next.
    engine_->dispatchEvent("onLoad", Value());
}

void MeroInstance::applyLayout()
{
    tree_->applyLayout();
}

std::optional<ViewTree> MeroInstance::createComponentTree()
{
    return tree_->createViews();
}

ViewHandle MeroInstance::createComponentTree(ViewMaker& maker)
{
    return tree_->createViews(maker);
}

void MeroInstance::flush()
{
    tree_->flush();
}

void MeroInstance::updateLayout(float width, float height, int32_t widthMode, int32_t heightMode)
{
    RuntimeEngine& engine = *engine_;
    const int32_t newWidthMode = normalizeMeasureMode(widthMode);
    const int32_t newHeightMode = normalizeMeasureMode(heightMode);
    if (engine.widthMode == 0 && engine.heightMode == 0 && newWidthMode == 0 && newHeightMode == 0) {
        return;
    }
    // Only sizes are compared: a change of mode alone does nothing.
    if (sameSize(engine.containerWidth, width) && sameSize(engine.containerHeight, height)) {
        return;
    }
    engine.widthMode = newWidthMode;
    engine.heightMode = newHeightMode;
    engine.containerWidth = widthMode == 1 ? width : YGUndefined;
    engine.containerHeight = heightMode == 1 ? height : YGUndefined;
    tree_->applyContainerBounds();
    tree_->requestLayout();
    flush();
}

void MeroInstance::markDirty(const std::string& componentId)
{
    ViewRenderNode* node = tree_->find(componentId);
    if (node == nullptr || !node->hasView() || node->flattened()) {
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
    if (!node->engine().expired()) {
        tree_->requestLayout();
        flush();
    }
}

void MeroInstance::sendEvent(const std::string& name, std::string_view payload)
{
    const Value value = payload.empty() ? Value(Kind::Object) : JsonParser::read(payload);
    engine_->dispatchEvent(name, value);
    flush();
}

void MeroInstance::sendClickEvent(const std::string& componentId)
{
    ViewRenderNode* node = tree_->find(componentId);
    if (node == nullptr || node->onClick().empty()) {
        return;
    }
    if (std::shared_ptr<RuntimeEngine> runtime = node->engine().lock()) {
        // The handler's scope receives a copy of the node's locals; the
        // node's own scope is never changed.
        runtime->dispatchEvent(node->onClick(), Value(Kind::Object), node->scope());
        flush();
    }
}

void MeroInstance::sendSwiperEvent(const std::string& componentId, int32_t index)
{
    auto* swiper = dynamic_cast<SwiperRenderNode*>(tree_->find(componentId));
    if (swiper == nullptr) {
        return;
    }
    std::shared_ptr<RuntimeEngine> runtime = swiper->engine().lock();
    const std::string& eventName = swiper->onSwiperChange.string();
    if (!runtime || eventName.empty()) {
        return;
    }
    Value detail = Value::makeObject({{"current", Value(index)}});
    const Value payload = Value::makeObject({{"detail", std::move(detail)}});
    runtime->dispatchEvent(eventName, payload, swiper->scope());
    flush();
}

std::optional<int32_t> MeroInstance::addTimeoutJob(PendingJob&& job)
{
    if (timeoutJobs_.size() + videoTimerJobs_.size() >= Limits::kMaxPendingJobs) {
        reportLimit(Limit::PendingJobs);
        return std::nullopt;
    }
    const int32_t id = drawJobId();
    timeoutJobs_.try_emplace(id, std::move(job));
    return id;
}

std::optional<int32_t> MeroInstance::addVideoTimerJobs(VideoTimerList& entries)
{
    if (entries.empty()) {
        return std::nullopt;
    }
    if (timeoutJobs_.size() + videoTimerJobs_.size() + entries.size() > Limits::kMaxPendingJobs) {
        reportLimit(Limit::PendingJobs);
        return std::nullopt;
    }
    const int32_t firstId = drawJobId();
    int32_t id = firstId;
    for (VideoTimerEntry& entry : entries) {
        videoTimerJobs_.try_emplace(id++, std::move(entry.second));
    }
    return firstId;
}

void MeroInstance::executeTimeoutJob(int32_t jobId)
{
    auto found = timeoutJobs_.find(jobId);
    if (found != timeoutJobs_.end() && found->second) {
        found->second();
    }
    timeoutJobs_.erase(jobId);
}

void MeroInstance::executeVideoTimerJob(int32_t jobId)
{
    auto found = videoTimerJobs_.find(jobId);
    if (found != videoTimerJobs_.end() && found->second) {
        if (host_) {
            host_->logLine("find video task, executing...");
        }
        found->second();
    }
    videoTimerJobs_.erase(jobId);
}

void MeroInstance::clearVideoTimerJobs()
{
    videoTimerJobs_.clear();
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
