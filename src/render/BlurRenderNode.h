// BlurRenderNode (type code 11): a blurred backdrop.
#pragma once

#include <array>

#include "render/PropertyIds.h"
#include "render/ViewRenderNode.h"

namespace Mero {

class BlurRenderNode : public ViewRenderNode {
public:
    enum Slot : std::size_t { Radius, Alpha, SlotCount };
    static constexpr std::array<LeafProperty, SlotCount> propertyTable{{
        leafNumber("blurRadius", PropertyId::BlurRadius),
        leafNumber("blurAlpha", PropertyId::BlurAlpha),
    }};

    BlurRenderNode(const Value& element, ContainerRenderNode* parentNode, RenderTree& renderTree, LocalScope localScope)
        : ViewRenderNode(element, parentNode, renderTree, std::move(localScope))
    {
        bindLeafProperties(element, propertyTable, values);
    }

    std::array<Value, SlotCount> values;
};

}  // namespace Mero
