// RenderViewController: a render node's link to its host view over JNI.
//
// One per shown node, made with the node's host component and replaced
// whenever that component is made again. It keeps no JNI reference of its
// own: the host view is found by the node's id (findComponentById) whenever
// it is needed, and every call uses the instance's current environment, so
// controllers follow updateEnv.
#pragma once

#include <jni.h>

#include <string>
#include <vector>

#include "render/Component.h"

namespace Mero {

class MeroInstance;

class RenderViewController : public Component {
public:
    RenderViewController(MeroInstance& owner, std::string nodeId);

    void updateChildren(const std::vector<ChildChange>& changes) override;
    void updateProperties(const std::vector<PropertyUpdate>& properties) override;
    void playAnimations(const std::vector<AnimatedUpdate>& animations) override;
    ContentSize getContentSize() override;
    void releaseComponents(ViewRenderNode* node) override;

    MeroInstance& instance;
    std::string componentId;

private:
    JNIEnv* env() const;
    jobject hostObject() const;
};

// Makes the host component of `node` and, for containers and swipers, of
// its whole subtree; answers a local reference, or null when the host made
// none. Whatever the node had queued before is dropped: the component is made
// from the node's current values.
jobject createHostComponent(MeroInstance& instance, ViewRenderNode& node);

// Destroys the controllers of `node`'s subtree, children before parents.
void releaseHostComponents(ViewRenderNode* node);

}  // namespace Mero
