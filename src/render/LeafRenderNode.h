// LeafRenderNode: a view with content of its own: text, image, download
// button, rating, custom view, video or blur. The kinds differ only in their
// properties (NodeKinds.cpp) and in how their content is measured.
#pragma once

#include <yoga/Yoga.h>

#include "render/ViewRenderNode.h"
#include "runtime/RuntimeServices.h"

namespace Mero {

class LeafRenderNode : public ViewRenderNode {
public:
    LeafRenderNode(const NamedProperties& element, ContainerRenderNode* parentNode, RenderTree& renderTree,
                   LocalScope localScope);

    // The size of the content for the space Yoga offers (Yoga's measure
    // modes: 1 exactly, 2 at most).
    YGSize measure(float width, YGMeasureMode widthMode, float height, YGMeasureMode heightMode) const;

    // A text's measuring request for the host.
    TextContent measureRequest(float width, YGMeasureMode widthMode, float height, YGMeasureMode heightMode) const;

private:
    YGSize measureText(float width, YGMeasureMode widthMode, float height, YGMeasureMode heightMode) const;
    YGSize measureImage(float width, YGMeasureMode widthMode, float height, YGMeasureMode heightMode) const;
};

}  // namespace Mero
