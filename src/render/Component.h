// Component: how a render node reaches its host view.
//
// The host bridge implements it over JNI; tests implement it with a recorder.
// A node holds its component without owning it; the engine's flush hands each
// node's queued records to it (children first, then properties, then
// animations) and clears them.
#pragma once

#include <vector>

#include "render/RenderRecords.h"

namespace Mero {

class ViewRenderNode;

// The content size the host view reports (an image's natural size).
struct ContentSize {
    float width = 0.0F;
    float height = 0.0F;
};

class Component {
public:
    virtual ~Component() = default;

    virtual void updateChildren(const std::vector<ChildChange>& changes) = 0;
    virtual void updateProperties(const std::vector<PropertyUpdate>& properties) = 0;
    virtual void playAnimations(const std::vector<AnimatedUpdate>& animations) = 0;
    virtual ContentSize getContentSize() = 0;
    // Detaches and destroys the host side of the subtree under `node`.
    virtual void releaseComponents(ViewRenderNode* node) = 0;

protected:
    Component() = default;
    Component(const Component&) = default;
    Component& operator=(const Component&) = default;
};

}  // namespace Mero
