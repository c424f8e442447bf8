// Layout arithmetic is the same on every processor: Yoga and the engine are
// compiled without contracting a * b + c into one fused multiply-add, which
// 64-bit ARM compilers do by default and which moves shrunk rows by whole
// pixels once Yoga rounds them. The rows below are ones where a fused build
// laid out other frames than the desktop.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "render/RenderCard.h"

using MeroTest::RenderCard;

namespace {

struct Child {
    const char* width;
    const char* height;
    const char* marginLeft;
    const char* flexShrink;
    const char* flexGrow;
};

std::string size(const char* points)
{
    return std::string(R"({"sizeType": 1, "value": )") + points + "}";
}

// A row 300 high of views with the given sizes, left margins and factors.
std::string rowTemplate(int justify, int align, const char* width, const std::vector<Child>& children)
{
    std::string elements;
    for (std::size_t i = 0; i < children.size(); ++i) {
        const Child& child = children[i];
        elements += std::string(i == 0 ? "" : ", ") + R"({"$": 0, "nodeId": "c)" + std::to_string(i) +
                    R"(", "width": )" + size(child.width) + R"(, "height": )" + size(child.height) +
                    R"(, "marginLeft": )" + size(child.marginLeft) + R"(, "flexShrink": )" + child.flexShrink +
                    R"(, "flexGrow": )" + child.flexGrow + "}";
    }
    return R"({"elements": {"$": 3, "nodeId": "row", "justifyContent": )" + std::to_string(justify) +
           R"(, "alignItems": )" + std::to_string(align) + R"(, "width": )" + size(width) + R"(, "height": )" +
           size("300") + R"(, "children": [)" + elements + "]}}";
}

}  // namespace

TEST(LayoutArithmetic, ShrunkRowsGetTheSameFramesOnEveryProcessor)
{
    const struct {
        int justify, align;
        const char* width;
        std::vector<Child> children;
        const char* frames;  // x y width height of each child
    } rows[] = {
        // Space around, aligned to the top; a fused build gives c1 no width at all.
        {4, 1, "320.4", {{"304", "160", "40.2", "0", "0"}, {"27.3", "42.1", "3.5", "0.6", "0"}}, "40 0 304 160, 348 0 11 42"},
        // Centred both ways; a fused build puts c1 at 94.
        {1, 2, "138.1",
         {{"324.8", "44.8", "38.1", "0.9", "0"}, {"159.7", "54.6", "16.3", "4.1", "4.9"},
          {"239.8", "126.4", "44.6", "2.2", "0"}},
         "38 128 39 44, 93 123 0 54, 138 87 0 126"},
    };
    for (const auto& row : rows) {
        RenderCard card(rowTemplate(row.justify, row.align, row.width, row.children));
        card.build();
        card.layout();
        std::string frames;
        for (const Mero::RenderNodePtr& child : RenderCard::childrenOf(card.root())) {
            const Mero::LayoutCache& frame = child->layout();
            frames += (frames.empty() ? "" : ", ") + Mero::numberToString(frame.x) + " " +
                      Mero::numberToString(frame.y) + " " + Mero::numberToString(frame.width) + " " +
                      Mero::numberToString(frame.height);
        }
        EXPECT_EQ(frames, row.frames) << "row " << row.width << " wide";
    }
}
