// The node factory: one template element to one render node, with its whole
// subtree built depth first.
#pragma once

#include <cstdint>

#include "render/RenderNodePtr.h"
#include "runtime/LocalScope.h"
#include "runtime/RuntimeObject.h"
#include "value/Value.h"

namespace Mero {

class ContainerRenderNode;
class RenderTree;

// Element type codes (the element's "$").
enum class ElementType : uint32_t {
    View = 0,
    For = 2,
    Flex = 3,
    Text = 4,
    Image = 5,
    Progress = 6,
    Rating = 7,
    Swiper = 8,
    Custom = 9,
    Video = 10,
    Blur = 11,
};

// Null when `element` is not an object, or when the node would cross the
// card's element depth or node count (reported). An unknown type code is
// logged as "render node type error" and built as a plain view.
RenderNodePtr createRenderNode(const Value& element, ContainerRenderNode* parent, RenderTree& tree,
                               const LocalScope& scope);

}  // namespace Mero
