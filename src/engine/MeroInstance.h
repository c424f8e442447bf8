// MeroInstance: one card, bound to one host container.
//
// The instance owns the card's script runtime (shared: render nodes,
// built-ins and pending jobs hold it weakly), its render tree, the jobs that
// wait for the host, and the host it is bound to. Its operations are the
// engine side of the host's natives: the bridge checks the handle, marshals
// the Java arguments and calls them.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "engine/Host.h"
#include "render/ChangeList.h"
#include "runtime/RuntimeServices.h"

namespace Mero {

class RenderTree;
class RuntimeEngine;
class ViewRenderNode;

// Pending jobs by id. Ordered, and an id already taken keeps its job.
using JobTable = std::map<int32_t, PendingJob>;

// Answers of bridge calls travel to the host and back as the address of a
// heap-held BridgeReply.
using BridgeCallbackId = int64_t;

class MeroInstance {
public:
    MeroInstance();
    ~MeroInstance();
    MeroInstance(const MeroInstance&) = delete;
    MeroInstance& operator=(const MeroInstance&) = delete;

    // Binds the instance to its host: its views, its log. Script's services
    // are installed on the runtime separately (they need the host's own
    // types). An instance without a host (tests, tools) sends nothing.
    void bindHost(std::unique_ptr<Host> host);
    Host* host() const { return host_.get(); }

    // Set-up, in the order the host calls them.
    void setScreenWidth(float screenWidth);
    void loadTemplate(std::string_view text);
    void setData(std::string_view data, std::string_view extraData);
    void initContainerSize(float width, float height, int32_t widthMode, int32_t heightMode);
    void initNode();
    void triggerInitEvent();
    void applyLayout();
    // The views of the whole card, for the host to make; none without a root.
    std::optional<ViewTree> createComponentTree();
    // The same views, made by `maker` one at a time (see ViewMaker);
    // answers the top view.
    ViewHandle createComponentTree(ViewMaker& maker);

    // Live updates.
    void updateLayout(float width, float height, int32_t widthMode, int32_t heightMode);
    void markDirty(const std::string& componentId);
    void sendEvent(const std::string& name, std::string_view payload);
    void sendClickEvent(const std::string& componentId);
    void sendSwiperEvent(const std::string& componentId, int32_t index);

    // Jobs. Ids are drawn with rand() % 10000 and never checked: an id that
    // is already taken keeps the earlier job and drops the new one, while the
    // host is still told the id. Kept on purpose. A card may have only so
    // many jobs waiting: past that the job is dropped (reported) and nothing
    // is given, so the host is not asked.
    std::optional<int32_t> addTimeoutJob(PendingJob&& job);
    // The first id of the entries' consecutive ids; nothing for an empty list
    // or one that would take the card past its pending jobs.
    std::optional<int32_t> addVideoTimerJobs(VideoTimerList& entries);
    void executeTimeoutJob(int32_t jobId);
    void executeVideoTimerJob(int32_t jobId);
    void clearVideoTimerJobs();
    std::size_t pendingJobCount() const { return timeoutJobs_.size() + videoTimerJobs_.size(); }

    // Bridge answers: the id is the reply's address, used unchanged.
    static BridgeCallbackId holdReply(BridgeReply reply);
    static void handleResult(std::string_view result, BridgeCallbackId callbackId);
    static void handleKeyPathResult(std::string_view result, BridgeCallbackId callbackId);

    // A released instance accepts no events; its host is no longer called.
    void release() { released_ = true; }
    bool released() const { return released_; }

    RuntimeEngine& runtime() const { return *engine_; }
    const std::shared_ptr<RuntimeEngine>& engine() const { return engine_; }
    RenderTree& renderTree() const { return *tree_; }

private:
    void flush();

    std::shared_ptr<RuntimeEngine> engine_;
    std::unique_ptr<Host> host_;
    // After the host: the nodes go before the views they point at.
    std::unique_ptr<RenderTree> tree_;
    bool released_ = false;
    JobTable timeoutJobs_;
    JobTable videoTimerJobs_;
};

// A measure mode as stored: 1 (exactly) and 2 (at most) stay, anything else
// is 0 (undefined).
int32_t normalizeMeasureMode(int32_t mode);

}  // namespace Mero
