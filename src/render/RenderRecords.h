// The records a render node queues for its host component, and the
// transition that turns a property change into an animation.
#pragma once

#include <cstdint>
#include <vector>

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

// A host child inserted at (or removed from) `index` among the host
// children of the node that queues it; -1 means the root's own view was
// shown. Whether it inserts or removes is decided when it is queued, so a
// child hidden and shown again before the next flush is removed and then
// inserted: replayed in order, the changes leave exactly the shown children.
struct ChildChange {
    enum class Kind : uint8_t { Insert, Remove };
    int32_t index = 0;
    ViewRenderNode* node = nullptr;  // the view inserted, or the child hidden; not owned
    Kind kind = Kind::Insert;
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

// What a node has queued for its view since the last flush.
struct NodeQueues {
    std::vector<ChildChange> childChanges;
    std::vector<PropertyUpdate> propertyUpdates;
    std::vector<AnimatedUpdate> animatedUpdates;
};

}  // namespace Mero
