// The owning pointer to a render node, usable where the node classes are only
// declared (the engine holds its root through it).
#pragma once

#include <memory>

namespace Mero {

class ViewRenderNode;

struct RenderNodeDeleter {
    void operator()(ViewRenderNode* node) const noexcept;
};

using RenderNodePtr = std::unique_ptr<ViewRenderNode, RenderNodeDeleter>;

}  // namespace Mero
