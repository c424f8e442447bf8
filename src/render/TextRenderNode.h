// TextRenderNode (type code 4): a run of text, measured by the host.
#pragma once

#include <array>
#include <string>

#include "render/PropertyIds.h"
#include "render/ViewRenderNode.h"
#include "runtime/RuntimeServices.h"

namespace Mero {

class TextRenderNode : public ViewRenderNode {
public:
    enum Slot : std::size_t {
        Text,
        TextColor,
        MaxLines,
        TextAlign,
        FontWeight,
        FontSize,
        LineHeight,
        TextInterval,
        SlotCount
    };
    // What changes the text's size re-measures it; weight and alignment
    // deliberately do not.
    static constexpr std::array<LeafProperty, SlotCount> propertyTable{{
        leafText("text", PropertyId::Text, "", Remeasure),
        leafText("textColor", PropertyId::TextColor, "#000000FF"),
        leafNumber("maxLines", PropertyId::MaxLines, Remeasure),
        leafNumber("textAlign", PropertyId::TextAlign),
        leafNumber("fontWeight", PropertyId::FontWeight),
        leafSize("fontSize", PropertyId::FontSize, Remeasure),
        leafSize("lineHeight", PropertyId::LineHeight, Remeasure),
        leafSize("textInterval", PropertyId::TextInterval, Remeasure),
    }};

    TextRenderNode(const Value& element, ContainerRenderNode* parentNode, RenderTree& renderTree, LocalScope localScope);

    const std::string& text() const { return values[Text].string(); }
    const std::string& textColor() const { return values[TextColor].string(); }
    double maxLines() const { return values[MaxLines].number(); }
    double textAlign() const { return values[TextAlign].number(); }
    double fontWeight() const { return values[FontWeight].number(); }
    double fontSize() const { return values[FontSize].number(); }
    double lineHeight() const { return values[LineHeight].number(); }
    double textInterval() const { return values[TextInterval].number(); }

    // The host's measuring request for the space Yoga offers.
    TextContent measureRequest(float width, YGMeasureMode widthMode, float height, YGMeasureMode heightMode) const;

    std::array<Value, SlotCount> values;
};

}  // namespace Mero
