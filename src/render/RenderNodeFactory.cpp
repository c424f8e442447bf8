#include "render/RenderNodeFactory.h"

#include <iostream>

#include "render/BlurRenderNode.h"
#include "render/CustomRenderNode.h"
#include "render/FlexRenderNode.h"
#include "render/ForRenderNode.h"
#include "render/ImageRenderNode.h"
#include "render/ProgressRenderNode.h"
#include "render/RatingRenderNode.h"
#include "render/SwiperRenderNode.h"
#include "render/TextRenderNode.h"
#include "render/VideoRenderNode.h"
#include "runtime/NumberConversion.h"
#include "render/RenderTree.h"
#include "runtime/ScriptRun.h"

namespace Mero {

namespace {

template <typename Node>
RenderNodePtr make(const Value& element, ContainerRenderNode* parent, RenderTree& tree, const LocalScope& scope)
{
    return RenderNodePtr(new Node(element, parent, tree, scope));
}

RenderNodePtr constructNode(const Value& element, ContainerRenderNode* parent, RenderTree& tree,
                            const LocalScope& scope)
{
    auto found = element.object().find("$");
    const double code = found == element.object().end() ? 0.0 : found->second.number();
    switch (static_cast<ElementType>(truncateToUint32(code))) {
    case ElementType::View: return make<ViewRenderNode>(element, parent, tree, scope);
    case ElementType::For: return make<ForRenderNode>(element, parent, tree, scope);
    case ElementType::Flex: return make<FlexRenderNode>(element, parent, tree, scope);
    case ElementType::Text: return make<TextRenderNode>(element, parent, tree, scope);
    case ElementType::Image: return make<ImageRenderNode>(element, parent, tree, scope);
    case ElementType::Progress: return make<ProgressRenderNode>(element, parent, tree, scope);
    case ElementType::Rating: return make<RatingRenderNode>(element, parent, tree, scope);
    case ElementType::Swiper: return make<SwiperRenderNode>(element, parent, tree, scope);
    case ElementType::Custom: return make<CustomRenderNode>(element, parent, tree, scope);
    case ElementType::Video: return make<VideoRenderNode>(element, parent, tree, scope);
    case ElementType::Blur: return make<BlurRenderNode>(element, parent, tree, scope);
    }
    // 1, and 12 and above: a plain view stands in (and builds no children).
    std::cout << "render node type error" << std::endl;
    return make<ViewRenderNode>(element, parent, tree, scope);
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
    RenderNodePtr node = constructNode(element, parent, tree, scope);
    node->createChildren();
    return node;
}

}  // namespace Mero
