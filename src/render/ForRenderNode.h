// ForRenderNode: a repeated list (type code 2). One child per item of
// "list", each built from the first child template in its own scope, where
// "index" names the item's position and "item" the item.
#pragma once

#include <cstddef>
#include <string>

#include "render/FlexRenderNode.h"

namespace Mero {

class ForRenderNode : public FlexRenderNode {
public:
    ForRenderNode(const NamedProperties& element, ContainerRenderNode* parentNode, RenderTree& renderTree,
                  LocalScope localScope);

    // Builds every item and puts the shown ones into the Yoga tree.
    void createChildren(const NamedProperties& element) override;

    ArrayPtr list;  // evaluated once: a later data change adds no items
    std::string indexName;
    std::string itemName;
    Value itemTemplate;  // further templates are ignored

protected:
    // Appends one child per item, in list order.
    void buildItems();

private:
    RenderNodePtr buildItem(std::size_t index);
};

}  // namespace Mero
