// How a script callback runs when a host service answers later (a bridge
// reply, a timeout, a video-time point).
#pragma once

#include <utility>

#include "runtime/RuntimeEngine.h"
#include "runtime/ScriptRun.h"
#include "value/Value.h"

namespace Mero {

// Holds the engine only weakly: once the card is gone there is nothing to run
// and nothing to show, so it does nothing. Otherwise it calls the script
// callback (a stored argument of any other kind is skipped quietly), then
// flushes, which is how state changed by the callback reaches the screen.
inline void runDeferredCallback(const EngineRef& engine, const Value& callback, ArgList&& args)
{
    std::shared_ptr<RuntimeEngine> runtime = engine.lock();
    if (!runtime) {
        return;
    }
    if (callback.is(Kind::Callback)) {
        ScriptRun entry;
        callableOf(callback)(std::move(args));
    }
    runtime->flush();
}

}  // namespace Mero
