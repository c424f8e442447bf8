// MeroInstance: one card, bound to one host container.
//
// The instance owns the card's RuntimeEngine (shared: render nodes, built-ins
// and pending jobs hold it weakly) and what the engine needs to reach the host.
// Its operations are the engine side of the host's natives; the host bridge
// checks the handle, marshals the Java arguments and calls them.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/HostHooks.h"

namespace Mero {

class RuntimeEngine;
class ViewRenderNode;

// The host's JNI environment and MeroNative object. Only the host bridge
// knows their types (JNI stays in src/bridge); here the link is opaque, and
// an instance made without a host (tests, tools) has none.
struct HostLink;
struct HostLinkDeleter {
    void operator()(HostLink* link) const noexcept;  // defined in bridge/HostLink.cpp
};
using HostLinkPtr = std::unique_ptr<HostLink, HostLinkDeleter>;

// Pending jobs by id. Ordered, and an id already taken keeps its job.
using JobTable = std::map<int32_t, HostJob>;

// Answers of bridge calls travel to the host and back as the address of a
// heap-held BridgeReply.
using BridgeCallbackId = int64_t;

class MeroInstance {
public:
    // Makes the RuntimeEngine; the host link and hooks are the bridge's.
    MeroInstance();
    // Destroys the host-side controllers of every node before the engine
    // reference goes: nodes do not own them.
    ~MeroInstance();
    MeroInstance(const MeroInstance&) = delete;
    MeroInstance& operator=(const MeroInstance&) = delete;

    // Set-up, in the order the host calls them.
    void setScreenWidth(float screenWidth);
    void loadTemplate(std::string_view text);
    void setData(std::string_view data, std::string_view extraData);
    void initContainerSize(float width, float height, int32_t widthMode, int32_t heightMode);
    void initNode();
    void triggerInitEvent();
    void applyLayout();

    // Live updates.
    void updateLayout(float width, float height, int32_t widthMode, int32_t heightMode);
    void markDirty(const std::string& componentId);
    void sendEvent(const std::string& name, std::string_view payload);
    void sendClickEvent(const std::string& componentId);
    void sendSwiperEvent(const std::string& componentId, int32_t index);

    // Jobs. Ids are drawn with rand() % 10000 and never checked: an id that
    // is already taken keeps the earlier job and drops the new one, while the
    // host is still told the id. Kept on purpose.
    // A card may have only so many jobs waiting: past that the job is
    // dropped (reported) and nothing is given, so the host is not asked.
    std::optional<int32_t> addTimeoutJob(HostJob&& job);
    // The first id of the entries' consecutive ids; nothing for an empty list
    // or one that would take the card past its pending jobs.
    std::optional<int32_t> addVideoTimerJobs(VideoTimerList& entries);
    void executeTimeoutJob(int32_t jobId);
    void executeVideoTimerJob(int32_t jobId);
    void clearVideoTimerJobs();

    // Bridge answers: the id is the reply's address, used unchanged.
    static BridgeCallbackId holdReply(BridgeReply reply);
    static void handleResult(std::string_view result, BridgeCallbackId callbackId);
    static void handleKeyPathResult(std::string_view result, BridgeCallbackId callbackId);

    RuntimeEngine& runtime() const { return *engine; }

    std::shared_ptr<RuntimeEngine> engine;
    HostLinkPtr host;  // null until the bridge binds the instance to its host
    bool released = false;
    JobTable timeoutJobs;
    JobTable videoTimerJobs;

private:
    void applyContainerBounds();
    void flushEngine();
};

// A measure mode as stored: 1 (exactly) and 2 (at most) stay, anything else
// is 0 (undefined).
int32_t normalizeMeasureMode(int32_t mode);

// Breadth first from `root`, children in stored order, entering only
// containers; the first node whose id matches, or null.
ViewRenderNode* findRenderNode(ViewRenderNode* root, std::string_view nodeId);

}  // namespace Mero
