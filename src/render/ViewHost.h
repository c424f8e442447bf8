// ViewHost: what the render tree needs of the host's views. The bridge
// implements it over JNI; tests implement it with a mirror or a recorder.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "render/ChangeList.h"

namespace Mero {

// The content size a host view reports (an image's natural size).
struct ContentSize {
    float width = 0.0F;
    float height = 0.0F;
};

class ViewHost {
public:
    virtual ~ViewHost() = default;

    // Applies the changes in order. Answers the views it refused to make
    // (their nodes): the views that would have gone under them were never
    // made.
    virtual std::vector<const ViewRenderNode*> apply(const ChangeList& changes) = 0;

    // The content size of the view `viewId`, zero when the host has none.
    virtual ContentSize contentSize(const std::string& viewId) = 0;

protected:
    ViewHost() = default;
    ViewHost(const ViewHost&) = default;
    ViewHost& operator=(const ViewHost&) = default;
};

// The host's side of createComponentTree: it makes a card's views one at a
// time, as the tree describes them, each before its children. A whole
// card's description is never held at once: the one buffer of slots is
// filled again for the next view, so it stays in the cache.
using ViewHandle = void*;

class ViewMaker {
public:
    virtual ~ViewMaker() = default;

    // Makes the view `slots` describes for `node`. Null when the host
    // refuses: no view under it is offered.
    virtual ViewHandle makeView(const ViewSlots& slots, const ViewRenderNode& node) = 0;

    // Every view under `view` is made and finished. `parent` is the view it
    // goes under, null for the top view (which createComponentTree answers).
    // `type` is the view's type slot.
    virtual void finishView(ViewHandle view, ViewHandle parent, uint32_t type) = 0;

protected:
    ViewMaker() = default;
    ViewMaker(const ViewMaker&) = default;
    ViewMaker& operator=(const ViewMaker&) = default;
};

}  // namespace Mero
