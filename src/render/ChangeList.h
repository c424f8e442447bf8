// What a flush tells the host, as plain records: views to make and insert,
// views to remove, properties to set and animations to play, in the order in
// which the host must apply them. A flush computes the whole list from the
// render tree first and only then hands it to the host's adapter, so no
// engine state is walked while the host runs; the list can be logged,
// counted, compared with a mirror and sent across JNI in one go.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "render/RenderRecords.h"
#include "render/ViewSlots.h"

namespace Mero {

class ViewRenderNode;

// One view to make, with the views to make under it: the host makes the
// view (createComponent with `slots`), then each child's view, adding each
// to it in order; a swiper is started once its pages are added. A view the
// host refuses to make gets no children.
struct ViewTree {
    ViewSlots slots;
    std::vector<ViewTree> children;
    // The node the view stands for. Not for the host: it tells the tree
    // which nodes lost their views when the host refused one.
    const ViewRenderNode* node = nullptr;
};

// Make `view` and insert it at `index` among the children of the view
// `parentId`. Where the host has no view of that id (its root view is the
// host's own), the view becomes the host's root view instead; -1 is the root
// node shown again.
struct InsertView {
    std::string parentId;
    int32_t index = 0;
    ViewTree view;
};

// Remove the child at `index` of the view `parentId`, or, where the host has
// no view of that id, the host's root view.
struct RemoveView {
    std::string parentId;
    int32_t index = 0;
};

struct SetProperties {
    std::string viewId;
    std::vector<PropertyUpdate> updates;
};

struct PlayAnimations {
    std::string viewId;
    std::vector<AnimatedUpdate> animations;
};

using Change = std::variant<InsertView, RemoveView, SetProperties, PlayAnimations>;
using ChangeList = std::vector<Change>;

}  // namespace Mero
