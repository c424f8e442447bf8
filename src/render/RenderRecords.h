// The records a render node queues for its host component, and the
// transition that turns a property change into an animation.
#pragma once

#include <cstdint>

#include "value/Value.h"

namespace Mero {

class ViewRenderNode;

// One entry of an element's "transition": the curve number as the template
// gives it, then duration and delay, passed through to the host.
struct Transition {
    uint32_t timing = 0;
    double duration = 0.0;
    double delay = 0.0;
};

// A child shown (or hidden) at `index` among its parent's host children;
// -1 means the root node's own visibility changed.
struct ChildChange {
    int32_t index = 0;
    ViewRenderNode* node = nullptr;  // not owned
};

struct PropertyUpdate {
    uint32_t propertyId = 0;
    Value value;
};

struct AnimatedUpdate {
    uint32_t propertyId = 0;
    Value value;
    Transition transition;
};

}  // namespace Mero
