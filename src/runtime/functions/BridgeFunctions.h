// Calls of the host app's own APIs through the bridge hooks, answered later
// (CallBridge) or before the hook returns (the synchronous two).
#pragma once

#include "runtime/functions/MRFunction.h"

namespace Mero {

// (method, params, callback): the callback gets the reply, then the engine flushes.
class CallBridgeFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

// (method, params): the reply, which the host must give before its call returns.
class CallBridgeSyncFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

// (method, params, key path): as the synchronous call, through the key-path hook.
class CallBridgeSyncWithKeyPathFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

}  // namespace Mero
