// The render half of the engine's flush: lay out again if owed, then send
// every pending node's queued changes to its host component.
#include "render/Component.h"
#include "render/ViewRenderNode.h"
#include "runtime/RuntimeEngine.h"

namespace Mero {

void RuntimeEngine::flushRender()
{
    if (needsLayout) {
        if (rootNode) {
            YGNodeCalculateLayout(rootNode->yogaNode, containerWidth, containerHeight, YGDirectionLTR);
            if (rootNode->hasComponent) {
                rootNode->applyLayout();
            }
        }
        needsLayout = false;
    }
    // Nodes queue from the first layout on, before any host view exists, and
    // a host may send an event before its views are made. A node without a
    // component sends nothing and keeps nothing: its view will be created
    // from the node's current values.
    for (ViewRenderNode* node : pendingNodes) {
        if (!node->queued) {
            continue;
        }
        node->queued = false;
        // A node hidden since it queued (itself or a container above it) has
        // no view in the host's tree: its changes go with it, and its views
        // are made anew from current values when it shows again.
        Component* component = node->isShown() ? node->component : nullptr;
        if (component != nullptr && !node->childChanges.empty()) {
            component->updateChildren(node->childChanges);
        }
        node->childChanges.clear();
        if (component != nullptr && !node->propertyUpdates.empty()) {
            component->updateProperties(node->propertyUpdates);
        }
        node->propertyUpdates.clear();
        if (component != nullptr && !node->animatedUpdates.empty()) {
            component->playAnimations(node->animatedUpdates);
        }
        node->animatedUpdates.clear();
    }
    pendingNodes.clear();
}

}  // namespace Mero
