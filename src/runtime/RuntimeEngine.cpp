#include "runtime/RuntimeEngine.h"

#include "runtime/ScriptRun.h"
#include "runtime/functions/BuiltinFunctions.h"

#include <algorithm>

namespace Mero {

RuntimeEngine::RuntimeEngine()
    : uiVariables(std::make_shared<ValueObject>()),
      globalVariables(std::make_shared<ValueObject>()),
      // Never null, so "$root" always reads an object.
      data(std::make_shared<ValueObject>())
{
}

RuntimeEngine::~RuntimeEngine()
{
    // A callback keeps its defining scope alive, so one stored in that very
    // scope (a handler's local holding a callback made there) is a cycle.
    // Nothing can dispatch these handlers any more: empty their scopes.
    for (auto& entry : eventTable_) {
        if (entry.second->scope) {
            entry.second->scope->clear();
        }
    }
}

Value RuntimeEngine::invokeFunction(const std::string& name, ArgList&& args)
{
    MRFunction* function = findFunction(name);
    return function != nullptr ? function->invoke(std::move(args), weak_from_this()) : Value();
}

MRFunction* RuntimeEngine::findFunction(const std::string& name) const
{
    // Most calls are of built-ins (the operators are), and templates rarely
    // define functions: an empty table is not even searched.
    if (!functionTable_.empty()) {
        auto found = functionTable_.find(name);
        if (found != functionTable_.end()) {
            return found->second.get();
        }
    }
    return builtinsAdded_ ? builtinFunction(name) : nullptr;
}

bool RuntimeEngine::registerFunction(std::string name, MRFunctionPtr function)
{
    if (builtinsAdded_ && builtinFunction(name) != nullptr) {
        return false;
    }
    return functionTable_.try_emplace(std::move(name), std::move(function)).second;
}

bool RuntimeEngine::removeEvent(const std::string& name)
{
    return eventTable_.erase(name) > 0;
}

bool RuntimeEngine::registerEvent(std::string name, EventHandlerPtr handler)
{
    return eventTable_.try_emplace(std::move(name), std::move(handler)).second;
}

void RuntimeEngine::dispatchEvent(const std::string& name, const Value& payload, const ObjectPtr& extra)
{
    auto found = eventTable_.find(name);
    if (found == eventTable_.end()) {
        return;
    }
    // Keep the engine alive for the whole dispatch, and the handler too: a
    // handler may remove its own event name while it runs.
    std::shared_ptr<RuntimeEngine> self = shared_from_this();
    EventHandlerPtr handler = found->second;
    ScriptRun entry;
    handler->dispatch(payload, extra, self);
}

void RuntimeEngine::flush()
{
    // Script state needs nothing further; all that is owed is the host's.
    if (flushHook_) {
        flushHook_();
    }
}

void RuntimeEngine::addObserver(const std::string& name, const ObserverPtr& callback)
{
    std::shared_ptr<ObserverList>& list = observers_[name];
    if (!list) {
        list = std::make_shared<ObserverList>();
    }
    std::vector<std::weak_ptr<ObserverCallback>>& callbacks = list->callbacks;
    if (callbacks.size() >= list->compactAt) {
        std::erase_if(callbacks, [](const std::weak_ptr<ObserverCallback>& entry) { return entry.expired(); });
        list->compactAt = std::max<std::size_t>(8, 2 * callbacks.size());
    }
    callbacks.push_back(callback);
}

void RuntimeEngine::notifyObservers(const std::string& name)
{
    auto found = observers_.find(name);
    if (found == observers_.end()) {
        return;
    }
    // Hold the list: a callback may bind new properties under this name.
    // Those join from the next change on.
    std::shared_ptr<ObserverList> list = found->second;
    const std::size_t count = list->callbacks.size();
    for (std::size_t i = 0; i < count; ++i) {
        // Held while it runs: its node may go in the middle of the call.
        if (ObserverPtr callback = list->callbacks[i].lock()) {
            (*callback)();
        }
    }
}

}  // namespace Mero
