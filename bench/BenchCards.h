// Cards the benchmarks build: a feed card of 1 + 5 × rows nodes, and the
// host that the instance benchmarks show cards to.
#pragma once

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <yoga/Yoga.h>

#include "engine/Host.h"
#include "engine/MeroInstance.h"
#include "runtime/RuntimeEngine.h"
#include "value/RecyclingAllocator.h"

namespace MeroBench {

// One app row of a feed card: a row with padding holding a fixed-size icon
// and a column of two texts, five nodes. A card is a column of rows.
inline constexpr const char* rowTemplate = R"({"$": 3, "nodeId": "row", "flexDirection": 2, "alignItems": 2,
    "paddingLeft": {"sizeType": 4, "value": 24}, "paddingTop": {"sizeType": 4, "value": 12},
    "paddingRight": {"sizeType": 4, "value": 24}, "paddingBottom": {"sizeType": 4, "value": 12},
    "backgroundColor": "#FFFFFFFF", "children": [
    {"$": 5, "nodeId": "icon", "src": "https://example.invalid/icon.png",
     "width": {"sizeType": 4, "value": 96}, "height": {"sizeType": 4, "value": 96},
     "cornerLeftTop": {"sizeType": 4, "value": 16}, "cornerRightTop": {"sizeType": 4, "value": 16},
     "cornerRightBottom": {"sizeType": 4, "value": 16}, "cornerLeftBottom": {"sizeType": 4, "value": 16}},
    {"$": 3, "nodeId": "titles", "flexDirection": 0, "flexGrow": 1, "flexShrink": 1,
     "marginLeft": {"sizeType": 4, "value": 16}, "children": [
        {"$": 4, "nodeId": "title", "text": TITLE, "fontSize": {"sizeType": 4, "value": 32}, "maxLines": 1,
         "fontWeight": 700, "textColor": "#111111FF"},
        {"$": 4, "nodeId": "subtitle", "text": "A short description of the app", "fontSize": {"sizeType": 4, "value": 24},
         "maxLines": 2, "textColor": "#666666FF", "marginTop": {"sizeType": 4, "value": 8}}]}]})";

inline constexpr int nodesPerRow = 5;

// The heap's bytes in use (mallinfo2), less the freed blocks the engine
// keeps on its lists for reuse: those are the heap's, but no card's.
inline std::size_t heapInUse()
{
    return mallinfo2().uordblks - Mero::keptBlockBytes;
}

// A card of 1 + 5 × rows nodes; the first row's title is bound to the UI
// variable "title", the others are constants. The events "short" and "long"
// set the title. A fixed title is 240 by 32:
// changing it can move no frame.
inline std::string cardTemplate(int rows, bool fixedTitle = false)
{
    std::string children;
    for (int i = 0; i < rows; ++i) {
        std::string row = rowTemplate;
        std::string title = i == 0 ? R"({"$": 3, "n": "title"})" : R"("App )" + std::to_string(i) + "\"";
        if (i == 0 && fixedTitle) {
            title += R"(, "width": {"sizeType": 1, "value": 240}, "height": {"sizeType": 1, "value": 32})";
        }
        row.replace(row.find("TITLE"), 5, title);
        children += (i == 0 ? "" : ",") + row;
    }
    return R"({"variables": {"title": "First"}, "elements": {"$": 3, "nodeId": "card", "flexDirection": 0,
        "width": {"sizeType": 6, "value": 100}, "children": [)" +
           children + R"(]}, "events": [{"n": "short", "a": [], "b": [{"$": 4, "n": "title", "value": "Short"}]},
        {"n": "long", "a": [], "b": [{"$": 4, "n": "title", "value": "A much longer title"}]}]})";
}

inline int rowsFor(int64_t nodes)
{
    return static_cast<int>((nodes - 1) / nodesPerRow);
}

// The host's text measurement stands in as a fixed-cost answer.
inline std::pair<double, double> fakeMeasure(const Mero::TextContent& content)
{
    return {std::min(content.width, 14.0 * static_cast<double>(content.text->size())), 40.0};
}

// A host that makes no views and answers a fixed content size.
class NullHost : public Mero::Host, public Mero::ViewMaker {
public:
    Mero::ViewHandle makeView(const Mero::ViewSlots& slots, const Mero::ViewRenderNode& /*node*/) override
    {
        benchmark::DoNotOptimize(slots);
        return this;
    }
    void finishView(Mero::ViewHandle /*view*/, Mero::ViewHandle /*parent*/, uint32_t /*type*/) override {}
    bool attached() const override { return true; }
    void logLine(const std::string& /*text*/) override {}
    std::vector<const Mero::ViewRenderNode*> apply(const Mero::ChangeList& changes) override
    {
        benchmark::DoNotOptimize(changes.data());
        return {};
    }
    Mero::ContentSize contentSize(const std::string& /*viewId*/) override { return {200.0F, 50.0F}; }
};

// A card shown as the JVM benchmark shows it: 1080 wide, height from content,
// texts measured at 120 by 30 by the host.
inline void showCard(Mero::MeroInstance& instance, const std::string& templateText, const std::string& data)
{
    auto owned = std::make_unique<NullHost>();
    NullHost& host = *owned;
    instance.bindHost(std::move(owned));
    instance.runtime().services.measureText = [](const Mero::TextContent&) { return std::pair(120.0, 30.0); };
    instance.setScreenWidth(1080.0F);
    instance.loadTemplate(templateText);
    instance.setData(data, "{}");
    instance.initContainerSize(1080.0F, 0.0F, 1, 0);
    instance.initNode();
    instance.triggerInitEvent();
    instance.applyLayout();
    // What createComponentTree does for each host view, short of calling
    // Java: the node's slot buffers, handed to the host one view at a time.
    benchmark::DoNotOptimize(instance.createComponentTree(host));
}

// Reads back every frame of a Yoga tree, as a render node reads its own.
inline double readFrames(YGNodeRef node)
{
    double sum =
        YGNodeLayoutGetLeft(node) + YGNodeLayoutGetTop(node) + YGNodeLayoutGetWidth(node) + YGNodeLayoutGetHeight(node);
    for (YGEdge edge : {YGEdgeLeft, YGEdgeTop, YGEdgeRight, YGEdgeBottom}) {
        sum += YGNodeLayoutGetPadding(node, edge) + YGNodeLayoutGetBorder(node, edge);
    }
    const std::size_t count = YGNodeGetChildCount(node);
    for (std::size_t i = 0; i < count; ++i) {
        sum += readFrames(YGNodeGetChild(node, i));
    }
    return sum;
}

}  // namespace MeroBench
