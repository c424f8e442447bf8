// Calls of the host app's own APIs through the bridge hooks, answered later
// (CallBridge) or before the hook returns (the synchronous two).
#pragma once

#include "runtime/functions/MRFunction.h"

namespace Mero {

// (method, params, callback): the callback gets the reply, then the engine flushes.
Value callBridge(ArgList& args, const EngineRef& engine);

// (method, params): the reply, which the host must give before its call returns.
Value callBridgeSync(ArgList& args, const EngineRef& engine);

// (method, params, key path): as the synchronous call, through the key-path hook.
Value callBridgeSyncWithKeyPath(ArgList& args, const EngineRef& engine);

}  // namespace Mero
