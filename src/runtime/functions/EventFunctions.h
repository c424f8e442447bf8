// Named events from script: send one, subscribe to one, unsubscribe.
#pragma once

#include "runtime/functions/MRFunction.h"

namespace Mero {

// (name, payload): dispatches the event now.
Value sendEvent(ArgList& args, const EngineRef& engine);

// (name, callback): registers the callback unless the name is already handled.
Value onEvent(ArgList& args, const EngineRef& engine);

// (name): removes whatever handles the name, a template handler too.
Value removeEvent(ArgList& args, const EngineRef& engine);

}  // namespace Mero
