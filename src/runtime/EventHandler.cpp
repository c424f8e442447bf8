#include "runtime/EventHandler.h"

#include "runtime/ScriptRun.h"

namespace Mero {

EventHandler::EventHandler(std::string handlerName, std::string parameter, SharedStatements statements)
    : name(std::move(handlerName)),
      parameterName(std::move(parameter)),
      body(std::move(statements))
{}

EventHandler::EventHandler(std::string handlerName, CallbackPtr callable)
    : name(std::move(handlerName)), isCallback(true), callback(std::move(callable))
{}

void EventHandler::dispatch(const Value& payload, const ObjectPtr& extra, const EngineRef& engine)
{
    // A handler that sends its own event is a call like any other.
    CallDepthGuard depth;
    if (!depth.allowed()) {
        return;
    }
    if (isCallback) {
        if (callback && *callback) {
            std::vector<Value> args;
            args.push_back(payload);
            (*callback)(std::move(args));
        }
        return;
    }
    if (!scope) {
        scope = makeLocalScope();
    }
    scope->clear();
    if (!parameterName.empty()) {
        (*scope)[parameterName] = payload;
    }
    // The outer scope is copied in, never emptied; the parameter (and any
    // name already there) wins.
    if (extra) {
        for (const auto& [key, value] : *extra) {
            scope->try_emplace(key, value);
        }
    }
    LocalScope running = scope;
    runStatements(*body, running, engine);
}

}  // namespace Mero
