#include "runtime/functions/EventFunctions.h"

#include "runtime/RuntimeEngine.h"
#include "runtime/functions/FunctionSupport.h"

namespace Mero {

Value sendEvent(ArgList& args, const EngineRef& engine)
{
    if (std::shared_ptr<RuntimeEngine> runtime = engine.lock()) {
        runtime->dispatchEvent(args[0].string(), args[1]);
    }
    return Value();
}

Value onEvent(ArgList& args, const EngineRef& engine)
{
    std::shared_ptr<RuntimeEngine> runtime = engine.lock();
    CallbackPtr callback = args[1].callbackPtr();
    if (!runtime || !callback) {
        return Value();  // a non-callback registers nothing, quietly
    }
    // Never replaces: a name that is already handled, by the template or by
    // an earlier registration, keeps its handler.
    std::string name = takeString(args[0]);
    if (!runtime->eventTable().contains(name)) {
        auto handler = std::make_shared<EventHandler>(name, std::move(callback));
        runtime->registerEvent(std::move(name), std::move(handler));
    }
    return Value();
}

Value removeEvent(ArgList& args, const EngineRef& engine)
{
    if (std::shared_ptr<RuntimeEngine> runtime = engine.lock()) {
        runtime->removeEvent(args[0].string());
    }
    return Value();
}

}  // namespace Mero
