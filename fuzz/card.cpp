// Whole cards: the fuzzer's bytes become a well-formed card (random node
// kinds, properties, bindings, transitions, lists and swipers, functions and
// events that use the built-ins), its data, and a run of host actions
// (events, clicks, swipes, timers, video jobs, bridge replies, resizes,
// markDirty, a rebuild). After every action: no crash, leak or undefined behaviour,
// every limit holds, and a mirror host that keeps its own view tree from
// what the engine sent equals a fresh build from the engine's state.
//
// An input that starts with '{' is a card as text instead ("template", a NUL
// byte, "data", a NUL byte, then the action bytes): the example cards seed
// the corpus that way.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "bridge/NativeBoundary.h"
#include "engine/MeroInstance.h"
#include "render/RenderNodeFactory.h"
#include "render/ContainerRenderNode.h"
#include "render/RenderTree.h"
#include "runtime/RuntimeEngine.h"
#include "runtime/ScriptRun.h"
#include "support/MirrorHost.h"
#include "value/ErrorReporting.h"

namespace {

// Writes a random card as template text. Names come from small pools, so
// that the card's parts meet: variables v0-v5, events e0-e3, functions
// f0-f1, data members d0-d3; every node gets an id of its own, every list a
// distinct index name, so that the host can tell the views apart.
class CardWriter {
public:
    explicit CardWriter(FuzzedDataProvider& bytes) : bytes_(bytes) {}

    std::string templateText()
    {
        std::string text = R"({"variables":{)";
        for (int i = 0; i < 6; ++i) {
            text += (i > 0 ? "," : "") + quoted("v" + std::to_string(i)) + ":" + literal();
        }
        text += R"(},"elements":)" + element(1) + R"(,"functions":[)";
        for (int i = 0; i < 2; ++i) {
            text += std::string(i > 0 ? "," : "") + R"({"n":"f)" + std::to_string(i) + R"(","a":["p"],"defaultArgs":[1],"b":)" +
                    statements(2) + "}";
        }
        text += R"(],"events":[)";
        const char* events[] = {"onLoad", "e0", "e1", "e2", "e3"};
        for (int i = 0; i < 5; ++i) {
            text += std::string(i > 0 ? "," : "") + R"({"n":")" + events[i] + R"(","a":["payload"],"b":)" +
                    statements(3) + "}";
        }
        return text + "]}";
    }

    // Sometimes padded past the size from which a card keeps only the
    // members its template reads.
    std::string data()
    {
        const std::string padding = chance(2) ? R"("pad":")" + std::string(4096, 'x') + R"(",)" : "";
        return R"({"d0":[{"name":"a","n":1},{"name":"b","n":2},{"name":"c","n":3}],"d1":"text",)" + padding +
               R"("d2":)" + literal() + R"(,"d3":[1,2,3,4,5,6,7,8]})";
    }

private:
    static std::string quoted(const std::string& text) { return "\"" + text + "\""; }

    int pick(int count) { return bytes_.ConsumeIntegralInRange(0, count - 1); }
    bool chance(int inEight) { return pick(8) < inEight; }

    std::string literal()
    {
        switch (pick(6)) {
        case 0: return std::to_string(pick(400) - 100);
        case 1: return quoted(std::string(1, static_cast<char>('a' + pick(26))) + std::to_string(pick(9)));
        case 2: return chance(4) ? "true" : "false";
        case 3: return "[1,2,3]";
        case 4: return R"({"k":1})";
        default: return "null";
        }
    }

    std::string variable() { return "v" + std::to_string(pick(6)); }

    std::string expression(int depth)
    {
        const int choice = pick(depth > 2 ? 4 : 12);
        switch (choice) {
        case 0: return literal();
        case 1: return R"({"$":3,"n":")" + variable() + R"("})";
        case 2: return R"({"$":1,"n":")" + std::string(chance(4) ? "p" : "loc") + R"("})";
        case 3: return R"({"$":19,"n":"d)" + std::to_string(pick(4)) + R"("})";
        case 4:
            return R"({"$":5,"n":"1","a":[[)" + std::to_string(pick(5)) + "],[" + expression(depth + 1) + "," +
                   expression(depth + 1) + "]]}";
        case 5:
            return R"({"$":5,"n":"4","a":[)" + expression(depth + 1) + "," + expression(depth + 1) + "," +
                   expression(depth + 1) + "]}";
        case 6:
            return R"({"$":5,"n":"0","a":[)" + std::to_string(pick(6)) + "," + expression(depth + 1) + "," +
                   expression(depth + 1) + "]}";
        case 7: return R"({"$":5,"n":"m","a":[)" + expression(depth + 1) + "]}";
        case 8: return R"({"$":5,"n":"f)" + std::to_string(pick(2)) + R"(","a":[)" + expression(depth + 1) + "]}";
        case 9: return "[" + expression(depth + 1) + "," + expression(depth + 1) + "]";
        case 10: return R"({"$":16,"value":[)" + expression(depth + 1) + "," + expression(depth + 1) + "]}";
        default: return R"({"$":5,"n":"5","a":[)" + expression(depth + 1) + "," + std::to_string(pick(4)) + "]}";
        }
    }

    std::string callback(int depth)
    {
        return R"({"$":14,"a":["r"],"b":)" + statements(depth + 1) + "}";
    }

    std::string statement(int depth)
    {
        const int choice = pick(depth > 2 ? 3 : 16);
        switch (choice) {
        case 0: return R"({"$":4,"n":")" + variable() + R"(","value":)" + expression(0) + "}";
        case 1: return R"({"$":2,"n":"loc","value":)" + expression(0) + "}";
        case 2: return R"({"$":5,"n":"z","a":["e)" + std::to_string(pick(4)) + R"(",)" + expression(0) + "]}";
        case 3:
            return R"({"$":6,"c":[)" + expression(0) + "],\"bs\":[" + statements(depth + 1) + "," +
                   statements(depth + 1) + "]}";
        case 4:
            return R"({"$":7,"startIndex":0,"endIndex":)" + std::to_string(pick(6)) + R"(,"index":"k","b":)" +
                   statements(depth + 1) + "}";
        case 5: return R"({"$":5,"n":"p","a":[)" + std::to_string(pick(3) * 100) + "," + callback(depth) + "]}";
        case 6: return R"({"$":5,"n":"x","a":[)" + std::to_string(pick(5)) + "," + callback(depth) + "]}";
        case 7: return R"({"$":5,"n":"y","a":[0,)" + std::to_string(pick(3) * 1000) + "]}";
        case 8: return R"({"$":5,"n":"k","a":["method",)" + expression(0) + "," + callback(depth) + "]}";
        case 9: return R"({"$":5,"n":"A","a":["e)" + std::to_string(pick(4)) + R"(",)" + callback(depth) + "]}";
        case 10: return R"({"$":5,"n":"B","a":["e)" + std::to_string(pick(4)) + R"("]})";
        case 11:
            return R"({"$":10,"t":{"$":19,"n":"d0"},"index":"k","item":"it","b":)" + statements(depth + 1) + "}";
        case 12: return R"({"$":5,"n":"f)" + std::to_string(pick(2)) + R"(","a":[)" + expression(0) + "]}";
        case 13: return R"({"$":5,"n":"c","a":[{"$":19,"n":"d3"},)" + callback(depth) + "]}";
        case 14: return R"({"$":11,"returnValue":)" + expression(0) + "}";
        default: return R"({"$":4,"n":")" + variable() + R"(","value":)" + literal() + "}";
        }
    }

    std::string statements(int depth)
    {
        std::string list = "[";
        const int count = pick(depth > 2 ? 2 : 4);
        for (int i = 0; i < count; ++i) {
            list += (i > 0 ? "," : "") + statement(depth);
        }
        return list + "]";
    }

    // A value bound to a variable, or a constant.
    std::string bound(const std::string& constant) { return chance(3) ? expression(1) : constant; }

    std::string size()
    {
        const int type = pick(7);
        const std::string value = chance(2) ? expression(2) : std::to_string(pick(300));
        return R"({"sizeType":)" + std::to_string(type) + R"(,"value":)" + value + "}";
    }

    std::string commonProperties()
    {
        std::string text;
        const char* sizes[] = {"width", "height", "minWidth", "maxWidth", "marginLeft", "marginTop", "paddingLeft",
                               "paddingTop", "borderLeft", "left", "top", "cornerLeftTop"};
        for (const char* key : sizes) {
            if (chance(2)) {
                text += "," + quoted(key) + ":" + size();
            }
        }
        const char* numbers[] = {"opacity", "flexGrow", "flexShrink", "position", "scaleX", "rotationZ", "translateX"};
        for (const char* key : numbers) {
            if (chance(1)) {
                text += "," + quoted(key) + ":" + bound(std::to_string(pick(3)));
            }
        }
        if (chance(2)) {
            text += R"(,"backgroundColor":)" + bound(R"("#FF0000FF")");
        }
        if (chance(3)) {
            text += R"(,"visible":)" + bound(chance(6) ? "true" : "false");
        }
        if (chance(2)) {
            const char* keys[] = {"opacity", "transform", "all", "width", "x", "backgroundColor"};
            text += R"(,"transition":{)" + quoted(keys[pick(6)]) + R"(:{"timing":1,"duration":300,"delay":0}})";
        }
        if (chance(2)) {
            text += R"(,"onClick":"e)" + std::to_string(pick(4)) + "\"";
        }
        return text;
    }

    std::string children(int depth)
    {
        std::string list = R"(,"children":[)";
        const int count = depth > 5 ? 0 : pick(4);
        for (int i = 0; i < count; ++i) {
            list += (i > 0 ? "," : "") + element(depth + 1);
        }
        return list + "]";
    }

    std::string element(int depth)
    {
        const int kinds[] = {3, 0, 3, 2, 4, 4, 5, 6, 7, 8, 9, 10, 11, 1};
        const int kind = depth == 1 ? 3 : kinds[pick(depth > 5 ? 2 : 14)];
        std::string text = R"({"$":)" + std::to_string(kind) + R"(,"nodeId":"n)" + std::to_string(nextId_++) + "\"" +
                           commonProperties();
        switch (kind) {
        case 3:
            text += R"(,"flexDirection":)" + bound(std::to_string(pick(4)));
            if (chance(2)) {
                text += R"(,"isEmpty":true)";
            }
            text += children(depth);
            break;
        case 2:
        case 8: {
            const std::string index = "i" + std::to_string(nextList_++);
            text += R"(,"list":)" + std::string(chance(4) ? R"({"$":19,"n":"d0"})" : "[1,2,3]") + R"(,"index":")" +
                    index + R"(","item":"it")";
            if (kind == 8) {
                text += R"(,"onSwiperChange":"e)" + std::to_string(pick(4)) + R"(","autoplay":)" + bound("true");
            }
            text += children(depth);
            break;
        }
        case 4:
            text += R"(,"text":)" + bound(R"("hello")") + R"(,"fontSize":)" + size() + R"(,"maxLines":)" +
                    bound(std::to_string(pick(4)));
            break;
        case 5: text += R"(,"src":)" + bound(R"("a.png")"); break;
        case 6: text += R"(,"dl_color_text":)" + bound(R"("#000000FF")") + R"(,"businessData":{"a":1})"; break;
        case 7: text += R"(,"rating_score":)" + bound("4"); break;
        case 10: text += R"(,"autoplay":)" + bound("false") + R"(,"initTime":)" + bound("3"); break;
        default: break;
        }
        return text + "}";
    }

    FuzzedDataProvider& bytes_;
    int nextId_ = 0;
    int nextList_ = 0;
};

// With CARD_FUZZ_TRACE set, the card and every action go to standard error:
// what a finding needs to become a test.
const bool tracing = std::getenv("CARD_FUZZ_TRACE") != nullptr;

void trace(const std::string& line)
{
    if (tracing) {
        std::fprintf(stderr, "%s\n", line.c_str());
    }
}

[[noreturn]] void fail(const std::string& what)
{
    std::fprintf(stderr, "card fuzzer: %s\n", what.c_str());
    std::abort();
}

// The host side of one card: the mirror, the jobs and bridge calls it holds.
struct FuzzHost {
    MeroTest::MirrorHost* mirror = nullptr;  // owned by the instance
    std::vector<int32_t> timeouts;
    std::vector<int32_t> videoJobs;
    std::vector<Mero::BridgeCallbackId> bridgeCalls;
};

void installHooks(Mero::MeroInstance& instance, FuzzHost& host)
{
    host.mirror = MeroTest::MirrorHost::bind(instance);
    Mero::RuntimeServices& services = instance.runtime().services;
    services.measureText = [](const Mero::TextContent& content) {
        const double width = content.text != nullptr ? static_cast<double>(content.text->size()) * 7.0 : 0.0;
        return std::pair<double, double>(width, content.fontSize + 4.0);
    };
    services.setTimeout = [&instance, &host](double, Mero::PendingJob job) {
        if (std::optional<int32_t> id = instance.addTimeoutJob(std::move(job))) {
            host.timeouts.push_back(*id);
        }
    };
    services.startVideoTimer = [&instance, &host](double, double, Mero::VideoTimerListPtr entries) {
        if (std::optional<int32_t> first = instance.addVideoTimerJobs(*entries)) {
            for (std::size_t i = 0; i < entries->size(); ++i) {
                host.videoJobs.push_back(*first + static_cast<int32_t>(i));
            }
        }
    };
    services.log = [](const std::string&) {};
    services.callBridge = [&host](const std::string&, const Mero::Value&, Mero::BridgeReply reply) {
        host.bridgeCalls.push_back(Mero::MeroInstance::holdReply(std::move(reply)));
    };
    services.callBridgeWithKeyPath = [&host](const std::string&, const Mero::Value&, const Mero::Value&,
                                          Mero::BridgeReply reply) {
        host.bridgeCalls.push_back(Mero::MeroInstance::holdReply(std::move(reply)));
    };
}

// Calls visit(node) for every node of the tree, depth first, and goes into a
// node's children when it answers true.
template <typename Visit>
void forEachNode(Mero::MeroInstance& instance, Visit visit)
{
    std::vector<Mero::ViewRenderNode*> waiting;
    if (instance.renderTree().root() != nullptr) {
        waiting.push_back(instance.renderTree().root());
    }
    while (!waiting.empty()) {
        Mero::ViewRenderNode* node = waiting.back();
        waiting.pop_back();
        if (visit(*node) && node->isContainer()) {
            for (const Mero::RenderNodePtr& child : static_cast<Mero::ContainerRenderNode*>(node)->children) {
                waiting.push_back(child.get());
            }
        }
    }
}

// Every node id of the tree, hidden nodes' included.
std::vector<std::string> nodeIds(Mero::MeroInstance& instance)
{
    std::vector<std::string> ids;
    forEachNode(instance, [&ids](const Mero::ViewRenderNode& node) {
        ids.push_back(node.nodeId);
        return true;
    });
    return ids;
}

// The host finds a view by its id: when two nodes share one (a template
// mistake the checker reports), no host can tell their views apart.
bool idsAreUnique(Mero::MeroInstance& instance)
{
    std::vector<std::string> ids = nodeIds(instance);
    std::sort(ids.begin(), ids.end());
    return std::adjacent_find(ids.begin(), ids.end()) == ids.end();
}

// Whether a padding of the node's style is a percentage: Yoga resolves it
// against the width it is handed, and a measuring pass may leave its own
// result in the node's layout without marking the node laid out anew.
bool hasPercentPadding(YGNodeConstRef node)
{
    for (const YGEdge edge : {YGEdgeLeft, YGEdgeTop, YGEdgeRight, YGEdgeBottom, YGEdgeStart, YGEdgeEnd,
                              YGEdgeHorizontal, YGEdgeVertical, YGEdgeAll}) {
        if (YGNodeStyleGetPadding(node, edge).unit == YGUnitPercent) {
            return true;
        }
    }
    return false;
}

// A shown node's insets as the host was last sent them, against Yoga's: the
// walk after a layout reads them only from nodes whose element names a
// padding or a border, and a fresh build takes them from the node too, so
// only Yoga can tell a read that was skipped wrongly.
std::string insetsDifference(Mero::MeroInstance& instance)
{
    // The insets are listed padding first, then border, each left, top, right, bottom.
    constexpr YGEdge kEdges[] = {YGEdgeLeft, YGEdgeTop, YGEdgeRight, YGEdgeBottom};
    std::string difference;
    forEachNode(instance, [&](const Mero::ViewRenderNode& node) {
        if (!node.visible() || !difference.empty()) {
            return false;
        }
        if (!node.hasView() || node.flattened() || hasPercentPadding(node.yogaNode)) {
            return true;
        }
        const Mero::LayoutCache sent = node.layout();
        for (std::size_t i = 0; i < Mero::PackedField::insets.size() && difference.empty(); ++i) {
            const float laidOut = i < 4 ? YGNodeLayoutGetPadding(node.yogaNode, kEdges[i])
                                        : YGNodeLayoutGetBorder(node.yogaNode, kEdges[i - 4]);
            if (const float was = sent.*Mero::PackedField::insets[i].member; was != laidOut) {
                difference = "node \"" + node.nodeId + "\" inset " + std::to_string(i) + ": sent " +
                             std::to_string(was) + ", laid out " + std::to_string(laidOut);
            }
        }
        return true;
    });
    return difference;
}

void checkInvariants(Mero::MeroInstance& instance, FuzzHost& host, const char* action)
{
    if (std::string difference = idsAreUnique(instance) ? host.mirror->difference(instance) : "";
        !difference.empty()) {
        fail(std::string("after ") + action + ", the host's tree differs: " + difference);
    }
    if (std::string difference = insetsDifference(instance); !difference.empty()) {
        fail(std::string("after ") + action + ", an inset differs from Yoga's: " + difference);
    }
    if (instance.renderTree().nodeCount() > Mero::Limits::kMaxRenderNodes) {
        fail("too many render nodes");
    }
    if (instance.pendingJobCount() > Mero::Limits::kMaxPendingJobs) {
        fail("too many pending jobs");
    }
    const Mero::ScriptRunState& run = Mero::scriptRunState;
    if (run.entries != 0 || run.nesting != 0 || run.callDepth != 0) {
        fail("script run state left behind");
    }
}

template <typename T>
T takeOne(std::vector<T>& pool, FuzzedDataProvider& bytes)
{
    const std::size_t at = bytes.ConsumeIntegralInRange<std::size_t>(0, pool.size() - 1);
    T taken = pool[at];
    pool.erase(pool.begin() + static_cast<std::ptrdiff_t>(at));
    return taken;
}

void act(Mero::MeroInstance& instance, FuzzHost& host, FuzzedDataProvider& bytes)
{
    const std::vector<std::string> ids = nodeIds(instance);
    auto anyId = [&] { return ids.empty() ? std::string() : ids[bytes.ConsumeIntegralInRange<std::size_t>(0, ids.size() - 1)]; };
    const char* action = "an event";
    switch (bytes.ConsumeIntegralInRange(0, 9)) {
    case 0: {
        const std::string name = "e" + std::to_string(bytes.ConsumeIntegralInRange(0, 3));
        trace("sendEvent " + name);
        Mero::runAtBoundary("sendEvent", [&] { instance.sendEvent(name, R"({"x":1})"); });
        break;
    }
    case 1: {
        action = "a click";
        const std::string id = anyId();
        trace("sendClickEvent " + id);
        Mero::runAtBoundary("sendClickEvent", [&] { instance.sendClickEvent(id); });
        break;
    }
    case 2: {
        action = "a swipe";
        const std::string id = anyId();
        const int page = bytes.ConsumeIntegralInRange(0, 3);
        trace("sendSwiperEvent " + id + " " + std::to_string(page));
        Mero::runAtBoundary("sendSwiperEvent", [&] { instance.sendSwiperEvent(id, page); });
        break;
    }
    case 3:
        action = "a timeout";
        if (!host.timeouts.empty()) {
            const int32_t id = takeOne(host.timeouts, bytes);
            trace("executeTimeoutJob " + std::to_string(id));
            Mero::runAtBoundary("executeTimeoutJob", [&] { instance.executeTimeoutJob(id); });
        }
        break;
    case 4:
        action = "a video job";
        if (!host.videoJobs.empty()) {
            const int32_t id = takeOne(host.videoJobs, bytes);
            trace("executeVideoTimerJob " + std::to_string(id));
            Mero::runAtBoundary("executeVideoTimerJob", [&] { instance.executeVideoTimerJob(id); });
        }
        break;
    case 5:
        action = "a bridge reply";
        if (!host.bridgeCalls.empty()) {
            trace("handleResult");
            const Mero::BridgeCallbackId id = takeOne(host.bridgeCalls, bytes);
            Mero::runAtBoundary("handleResult", [&] {
                Mero::MeroInstance::handleResult(R"({"downloadStatus":"active","progress":30,"data":[1]})", id);
            });
        }
        break;
    case 6: {
        action = "a resize";
        const int width = bytes.ConsumeIntegralInRange(100, 900);
        const int mode = bytes.ConsumeBool() ? 1 : 2;
        trace("updateLayout " + std::to_string(width) + " 1334 1 " + std::to_string(mode));
        Mero::runAtBoundary("updateLayout", [&] { instance.updateLayout(static_cast<float>(width), 1334.0F, 1, mode); });
        break;
    }
    case 7: {
        action = "markDirty";
        const std::string id = anyId();
        trace("markDirty " + id);
        Mero::runAtBoundary("markDirty", [&] { instance.markDirty(id); });
        break;
    }
    case 8:
        // The host builds the card anew: a second build reads the element
        // tree again from the template's text.
        action = "a rebuild";
        trace("initNode");
        Mero::runAtBoundary("initNode", [&] { instance.initNode(); });
        Mero::runAtBoundary("applyLayout", [&] { instance.applyLayout(); });
        Mero::runAtBoundary("createComponentTree", [&] { host.mirror->createComponentTree(instance); });
        break;
    default:
        action = "clearing video jobs";
        trace("clearVideoTimerJobs");
        instance.clearVideoTimerJobs();
        host.videoJobs.clear();
        break;
    }
    checkInvariants(instance, host, action);
}

void runCard(const std::string& templateText, const std::string& data, FuzzedDataProvider& bytes)
{
    FuzzHost host;
    {
        Mero::MeroInstance instance;
        installHooks(instance, host);
        trace("template " + templateText);
        trace("data " + data);
        // Each call as a native makes it: a standard exception that reaches
        // the boundary is printed there, and the card goes on.
        instance.setScreenWidth(750.0F);
        Mero::runAtBoundary("loadTemplate", [&] { instance.loadTemplate(templateText); });
        Mero::runAtBoundary("setData", [&] { instance.setData(data, "{}"); });
        instance.initContainerSize(750.0F, 1334.0F, 1, 2);
        Mero::runAtBoundary("initNode", [&] { instance.initNode(); });
        Mero::runAtBoundary("triggerInitEvent", [&] { instance.triggerInitEvent(); });
        Mero::runAtBoundary("applyLayout", [&] { instance.applyLayout(); });
        Mero::runAtBoundary("createComponentTree", [&] { host.mirror->createComponentTree(instance); });
        checkInvariants(instance, host, "the first layout");
        for (int step = 0; step < 24 && bytes.remaining_bytes() > 0; ++step) {
            act(instance, host, bytes);
        }
    }
    // Bridge calls the host never answered: answered after the card is gone,
    // which must do nothing but free them.
    for (Mero::BridgeCallbackId id : host.bridgeCalls) {
        Mero::runAtBoundary("handleResult", [&] { Mero::MeroInstance::handleResult("{}", id); });
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    Mero::debugMode = false;  // as in a release build: reported errors only print
    // A spent budget is what a hostile card gets; a smaller one reaches that
    // sooner, so more cards are tried.
    Mero::scriptRunState.stepBudget = 20'000;
    // Reported errors go nowhere: printing them would be most of the work.
    struct Discard : std::streambuf {
        int overflow(int c) override { return c; }
    };
    static Discard discard;
    std::cout.rdbuf(&discard);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size > 0 && data[0] == '{') {
        const std::string text(reinterpret_cast<const char*>(data), size);
        const std::size_t templateEnd = text.find('\0');
        const std::size_t dataEnd = templateEnd == std::string::npos ? std::string::npos : text.find('\0', templateEnd + 1);
        const std::string templateText = text.substr(0, templateEnd);
        const std::string cardData =
            templateEnd == std::string::npos ? "{}" : text.substr(templateEnd + 1, dataEnd - templateEnd - 1);
        const std::string actions = dataEnd == std::string::npos ? "" : text.substr(dataEnd + 1);
        FuzzedDataProvider bytes(reinterpret_cast<const uint8_t*>(actions.data()), actions.size());
        runCard(templateText, cardData, bytes);
        return 0;
    }
    FuzzedDataProvider bytes(data, size);
    CardWriter writer(bytes);
    const std::string templateText = writer.templateText();
    const std::string cardData = writer.data();
    runCard(templateText, cardData, bytes);
    return 0;
}
