// EventHandler: what runs when an event name is dispatched.
//
// Either a template handler (from "events": a body run in the handler's own
// scope) or a callback registered from script (isCallback set).
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "runtime/LocalScope.h"
#include "runtime/RuntimeExecute.h"
#include "value/Value.h"

namespace Mero {

class EventHandler {
public:
    // A template handler; `parameterName` is empty when it takes none. The
    // body may be shared with the handlers of other cards.
    EventHandler(std::string name, std::string parameterName, SharedStatements body);
    EventHandler(std::string handlerName, std::string parameter, StatementList statements)
        : EventHandler(std::move(handlerName), std::move(parameter),
                       std::make_shared<const StatementList>(std::move(statements)))
    {}
    // A handler registered from script: calls `callback` with the payload.
    EventHandler(std::string name, CallbackPtr callback);

    // Runs the handler once; the result is dropped. `extra` may be null. It
    // is never changed: its members are copied into the handler's scope.
    void dispatch(const Value& payload, const ObjectPtr& extra, const EngineRef& engine);

    std::string name;
    std::string parameterName;
    SharedStatements body;
    // One map, made at the first dispatch and reused (cleared) by every
    // dispatch after it; most of a card's handlers never run, and a
    // callback handler needs none.
    LocalScope scope;
    bool isCallback = false;
    CallbackPtr callback;
};

// Shared, so a dispatch keeps its handler alive even when the handler's body
// removes its own event name.
using EventHandlerPtr = std::shared_ptr<EventHandler>;

}  // namespace Mero
