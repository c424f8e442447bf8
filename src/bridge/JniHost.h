// JniHost: an instance's host over JNI. It keeps the Java environment of
// the thread that drives the card and a global reference to the MeroNative
// object the card was made on, and applies each flush's list of changes
// through the host's view calls.
//
// It keeps no reference to the host's views: a view is found by its node's
// id (findComponentById) whenever it is needed, and every call uses the
// current environment, so views follow updateEnv. After every call into
// Java a pending exception is checked: once one is pending, no further JNI
// call is made until the native returns and the exception reaches its
// Java caller.
#pragma once

#include <jni.h>

#include <string>
#include <vector>

#include "engine/Host.h"

namespace Mero {

class MeroInstance;

class JniHost final : public Host, public ViewMaker {
public:
    JniHost(JNIEnv* env, jobject hostObject) : env_(env), hostObject_(hostObject) {}
    ~JniHost() override = default;
    JniHost(const JniHost&) = delete;
    JniHost& operator=(const JniHost&) = delete;

    bool attached() const override { return hostObject_ != nullptr; }
    void logLine(const std::string& text) override;
    std::vector<const ViewRenderNode*> apply(const ChangeList& changes) override;
    ContentSize contentSize(const std::string& viewId) override;

    // Makes the view of `view` and the views under it, as createComponent
    // and addChild calls; answers a local reference, or null when the host
    // made none (that view goes into `refused`). Under a `parent`, the view
    // is added to it instead, and null answered.
    jobject makeViews(const ViewTree& view, std::vector<const ViewRenderNode*>& refused, jobject parent = nullptr);

    // createComponentTree's views, one createComponent call each; a view
    // is added to its parent once the views under it are (handles are
    // local references).
    ViewHandle makeView(const ViewSlots& slots, const ViewRenderNode& node) override;
    void finishView(ViewHandle view, ViewHandle parent, uint32_t type) override;

    // The environment of the thread now driving the card (updateEnv).
    void setEnv(JNIEnv* env) { env_ = env; }
    JNIEnv* env() const { return env_; }
    jobject hostObject() const { return hostObject_; }

    // Deletes the global reference with the releasing call's environment;
    // the host is not called again.
    void detach(JNIEnv* env);

    // True while a Java exception is pending: every call is then skipped.
    bool javaThrew() const { return env_->ExceptionCheck() == JNI_TRUE; }

private:
    void applyChange(const InsertView& insert, std::vector<const ViewRenderNode*>& refused);
    void applyChange(const RemoveView& remove);
    void applyChange(const SetProperties& set);
    void applyChange(const PlayAnimations& play);
    jobject findView(const std::string& viewId);

    JNIEnv* env_;
    jobject hostObject_;  // global reference
};

// The JNI host an instance was bound to by initMREngine.
JniHost& jniHost(const MeroInstance& instance);

}  // namespace Mero
