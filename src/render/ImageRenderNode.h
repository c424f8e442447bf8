// ImageRenderNode (type code 5): a picture that keeps its aspect ratio.
#pragma once

#include <array>
#include <string>

#include "render/PropertyIds.h"
#include "render/ViewRenderNode.h"

namespace Mero {

class ImageRenderNode : public ViewRenderNode {
public:
    enum Slot : std::size_t { Src, ScaleMode, SlotCount };
    static constexpr std::array<LeafProperty, SlotCount> propertyTable{{
        leafText("src", PropertyId::Src),
        leafNumber("scaleMode", PropertyId::ScaleMode),
    }};

    ImageRenderNode(const Value& element, ContainerRenderNode* parentNode, RenderTree& renderTree, LocalScope localScope);

    const std::string& src() const { return values[Src].string(); }
    double scaleMode() const { return values[ScaleMode].number(); }

    // The size for the space Yoga offers, from the host view's content size;
    // 0 by 0 before the view exists (unless both sides are exact).
    YGSize measure(float width, YGMeasureMode widthMode, float height, YGMeasureMode heightMode) const;

    std::array<Value, SlotCount> values;
};

}  // namespace Mero
