// CustomRenderNode (type code 9): a view the host defines. It has no size
// of its own: it must be given a fixed width and height.
#pragma once

#include <array>
#include <string>

#include "render/PropertyIds.h"
#include "render/ViewRenderNode.h"

namespace Mero {

class CustomRenderNode : public ViewRenderNode {
public:
    enum Slot : std::size_t { CustomType, Extra, SlotCount };
    static constexpr std::array<LeafProperty, SlotCount> propertyTable{{
        leafText("customType", PropertyId::CustomType),
        leafText("extra", PropertyId::Extra),
    }};

    CustomRenderNode(const Value& element, ContainerRenderNode* parentNode, RenderTree& renderTree, LocalScope localScope);

    const std::string& customType() const { return values[CustomType].string(); }
    const std::string& extra() const { return values[Extra].string(); }

    std::array<Value, SlotCount> values;
};

}  // namespace Mero
