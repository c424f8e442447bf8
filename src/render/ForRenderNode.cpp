#include "render/ForRenderNode.h"

#include "render/NodeBinding.h"
#include "render/RenderNodeFactory.h"
#include "render/RenderTree.h"

namespace Mero {

ForRenderNode::ForRenderNode(const NamedProperties& element, ContainerRenderNode* parentNode, RenderTree& renderTree,
                             LocalScope localScope)
    : FlexRenderNode(element, parentNode, renderTree, std::move(localScope))
{
    if (const Value* source = element.ownMember(Property::List)) {
        Value items =
            NodeBinding::isScalar(*source) ? *source : createRuntimeObject(*source)->value(this->scope(), this->engine());
        list = items.arrayPtr();
    }
    if (const Value* name = element.ownMember(Property::Index)) {
        indexName = name->string();
    }
    if (const Value* name = element.ownMember(Property::Item)) {
        itemName = name->string();
    }
    if (const Value* elements = element.ownMember(Property::Children);
        elements != nullptr && elements->is(Kind::Array) && !elements->array().empty()) {
        itemTemplate = elements->array().front();
    }
}

RenderNodePtr ForRenderNode::buildItem(std::size_t index)
{
    LocalScope itemScope = scope() ? std::make_shared<ScopeMap>(*scope()) : makeLocalScope();
    (*itemScope)[indexName] = Value(static_cast<double>(index));
    (*itemScope)[itemName] = (*list)[index];
    return createRenderNode(itemTemplate, this, tree(), itemScope);
}

void ForRenderNode::buildItems()
{
    if (!list || list->empty()) {
        return;
    }
    children.reserve(list->size());
    for (std::size_t i = 0; i < list->size(); ++i) {
        // A list longer than the card may hold builds the items that fit.
        if (!tree().mayAddNode()) {
            break;
        }
        if (RenderNodePtr item = buildItem(i)) {
            children.push_back(std::move(item));
        }
    }
}

void ForRenderNode::createChildren(const NamedProperties& /*element*/)
{
    buildItems();
    insertShownChildren();
}

}  // namespace Mero
