#include "runtime/statements/Assignments.h"

#include <iostream>

#include "runtime/RuntimeEngine.h"
#include "value/ErrorReporting.h"
#include "value/JsonWriter.h"

namespace Mero {

namespace {

void traceSet(const char* table, const std::string& name, const Value& value)
{
    if (debugMode) {
        // Flushed, so that each trace line is one log entry of its own.
        std::cout << "Mero_log-> set " << table << ", name: " << name << " value: " << value << std::endl;
    }
}

}  // namespace

Value SetLocalVar::run(const LocalScope& scope, const EngineRef& engine) const
{
    Value value = value_->value(scope, engine);
    // Statements always run in a scope; a missing one has nowhere to store.
    if (!scope) {
        return completed();
    }
    Value& stored = (*scope)[name_];
    stored = std::move(value);
    traceSet("localRef", name_, stored);
    return completed();
}

Value SetVariable::run(const LocalScope& scope, const EngineRef& engine) const
{
    std::shared_ptr<RuntimeEngine> runtime = engine.lock();
    if (!runtime) {
        return completed();
    }
    Value value = value_->value(scope, engine);
    // Keep a copy for the trace: an observer may change the variable again.
    if (debugMode) {
        (*runtime->uiVariables)[name_] = value;
        runtime->notifyObservers(name_);
        traceSet("uiRef", name_, value);
    } else {
        (*runtime->uiVariables)[name_] = std::move(value);
        runtime->notifyObservers(name_);
    }
    return completed();
}

Value SetGlobalVar::run(const LocalScope& scope, const EngineRef& engine) const
{
    std::shared_ptr<RuntimeEngine> runtime = engine.lock();
    if (!runtime) {
        return completed();
    }
    Value value = value_->value(scope, engine);
    Value& stored = (*runtime->globalVariables)[name_];
    stored = std::move(value);
    traceSet("globalRef", name_, stored);
    return completed();
}

}  // namespace Mero
