#include "render/RenderNodeFactory.h"

#include <iostream>

#include "render/FlexRenderNode.h"
#include "render/ForRenderNode.h"
#include "render/LeafRenderNode.h"
#include "render/NodeKinds.h"
#include "render/RenderTree.h"
#include "render/SwiperRenderNode.h"
#include "runtime/ScriptRun.h"

namespace Mero {

namespace {

template <typename Node>
RenderNodePtr make(const NamedProperties& element, ContainerRenderNode* parent, RenderTree& tree,
                   const LocalScope& scope)
{
    return RenderNodePtr(new Node(element, parent, tree, scope));
}

RenderNodePtr constructNode(const NamedProperties& named, ContainerRenderNode* parent, RenderTree& tree,
                            const LocalScope& scope)
{
    if (named.kind == nullptr) {
        // 1, and 12 and above: a plain view stands in (and builds no children).
        std::cout << "render node type error" << std::endl;
        return make<ViewRenderNode>(named, parent, tree, scope);
    }
    switch (named.kind->nodeClass) {
    case NodeClass::View: return make<ViewRenderNode>(named, parent, tree, scope);
    case NodeClass::Flex: return make<FlexRenderNode>(named, parent, tree, scope);
    case NodeClass::For: return make<ForRenderNode>(named, parent, tree, scope);
    case NodeClass::Swiper: return make<SwiperRenderNode>(named, parent, tree, scope);
    case NodeClass::Leaf: return make<LeafRenderNode>(named, parent, tree, scope);
    }
    return nullptr;
}

// The root is at depth 1.
int depthBelow(const ContainerRenderNode* parent)
{
    int depth = 1;
    for (const ViewRenderNode* node = parent; node != nullptr; node = node->parent) {
        ++depth;
    }
    return depth;
}

}  // namespace

RenderNodePtr createRenderNode(const Value& element, ContainerRenderNode* parent, RenderTree& tree,
                               const LocalScope& scope)
{
    if (!element.is(Kind::Object) || !tree.mayAddNode()) {
        return nullptr;
    }
    // The host builds its views recursively too: deeper elements are not
    // built at all.
    if (depthBelow(parent) > Limits::kMaxElementDepth) {
        reportLimit(Limit::ElementDepth);
        return nullptr;
    }
    // One pass over the element's members finds all that building the node
    // and its children reads.
    const NamedProperties named = namedProperties(element);
    RenderNodePtr node = constructNode(named, parent, tree, scope);
    node->createChildren(named);
    return node;
}

}  // namespace Mero
