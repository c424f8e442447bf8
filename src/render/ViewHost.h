// ViewHost: what the render tree needs of the host's views. The bridge
// implements it over JNI; tests implement it with a mirror or a recorder.
#pragma once

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

}  // namespace Mero
