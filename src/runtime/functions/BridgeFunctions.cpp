#include "runtime/functions/BridgeFunctions.h"

#include "runtime/functions/DeferredCallback.h"
#include "runtime/functions/FunctionSupport.h"
#include "value/ErrorReporting.h"

namespace Mero {

namespace {

// The reply of a synchronous bridge call. Shared with the reply handler, so a
// reply that comes after the call has returned finds `waiting` clear and is
// dropped instead of writing into a result that is gone.
struct SyncReply {
    Value result;
    bool replied = false;
    bool waiting = true;
};

// Starts a bridge call through `start` (given the reply handler) and gives
// the reply, which must have arrived by the time `start` returns.
template <typename Start>
Value callSynchronously(Start&& start)
{
    auto reply = std::make_shared<SyncReply>();
    start([reply](Value&& answer) {
        if (reply->waiting) {
            reply->result = std::move(answer);
            reply->replied = true;
        }
    });
    reply->waiting = false;
    if (!reply->replied) {
        reportError("call bridge sync not sync");
        return Value();
    }
    return std::move(reply->result);
}

}  // namespace

Value callBridge(ArgList& args, const EngineRef& engine)
{
    std::shared_ptr<RuntimeEngine> runtime = engine.lock();
    if (!runtime || !runtime->services.callBridge) {
        return Value();
    }
    runtime->services.callBridge(args[0].string(), args[1], [engine, callback = std::move(args[2])](Value&& answer) {
        ArgList callbackArgs;
        callbackArgs.push_back(std::move(answer));
        runDeferredCallback(engine, callback, std::move(callbackArgs));
    });
    return Value();
}

Value callBridgeSync(ArgList& args, const EngineRef& engine)
{
    std::shared_ptr<RuntimeEngine> runtime = engine.lock();
    if (!runtime) {
        return Value();
    }
    // Without a bridge hook no reply can come: that is reported as not sync.
    return callSynchronously([&](BridgeReply handler) {
        if (runtime->services.callBridge) {
            runtime->services.callBridge(args[0].string(), args[1], std::move(handler));
        }
    });
}

Value callBridgeSyncWithKeyPath(ArgList& args, const EngineRef& engine)
{
    std::shared_ptr<RuntimeEngine> runtime = engine.lock();
    if (!runtime) {
        return Value();
    }
    return callSynchronously([&](BridgeReply handler) {
        if (runtime->services.callBridgeWithKeyPath) {
            runtime->services.callBridgeWithKeyPath(args[0].string(), args[1], args[2], std::move(handler));
        }
    });
}

}  // namespace Mero
