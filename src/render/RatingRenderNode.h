// RatingRenderNode (type code 7): a row of stars.
#pragma once

#include <array>

#include "render/PropertyIds.h"
#include "render/ViewRenderNode.h"

namespace Mero {

class RatingRenderNode : public ViewRenderNode {
public:
    enum Slot : std::size_t { Score, StarColor, StarSize, EmptyOpacity, SlotCount };
    static constexpr std::array<LeafProperty, SlotCount> propertyTable{{
        leafNumber("rating_score", PropertyId::RatingScore),
        leafText("rating_star_color", PropertyId::RatingStarColor),
        leafNumber("rating_star_size", PropertyId::RatingStarSize),
        leafNumber("rating_empty_opacity", PropertyId::RatingEmptyOpacity),
    }};

    RatingRenderNode(const Value& element, ContainerRenderNode* parentNode, RenderTree& renderTree, LocalScope localScope)
        : ViewRenderNode(element, parentNode, renderTree, std::move(localScope))
    {
        bindLeafProperties(element, propertyTable, values);
    }

    std::array<Value, SlotCount> values;
};

}  // namespace Mero
