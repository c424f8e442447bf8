// The node factory: one template element to one render node, with its whole
// subtree built depth first.
#pragma once

#include "render/RenderNodePtr.h"
#include "runtime/LocalScope.h"
#include "runtime/RuntimeObject.h"
#include "value/Value.h"

namespace Mero {

class ContainerRenderNode;
class RenderTree;

// Null when `element` is not an object, or when the node would cross the
// card's element depth or node count (reported). An unknown type code is
// logged as "render node type error" and built as a plain view.
RenderNodePtr createRenderNode(const Value& element, ContainerRenderNode* parent, RenderTree& tree,
                               const LocalScope& scope);

}  // namespace Mero
