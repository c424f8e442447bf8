#include "runtime/expressions/VariableReads.h"

#include "runtime/RuntimeEngine.h"
#include "value/ErrorReporting.h"

namespace Mero {

namespace {

Value lookUp(const ValueObject* table, const std::string& name)
{
    if (table == nullptr) {
        return Value();
    }
    auto found = table->find(name);
    return found == table->end() ? Value() : found->second;
}

}  // namespace

Value RuntimeLocalVariable::evaluate(const LocalScope& scope, const EngineRef&) const
{
    return lookUp(scope.get(), name_);
}

Value RuntimeVariable::evaluate(const LocalScope&, const EngineRef& engine) const
{
    std::shared_ptr<RuntimeEngine> runtime = engine.lock();
    if (!runtime) {
        reportError("runtimeEngine is null");
        return Value();
    }
    return lookUp(runtime->uiVariables.get(), name_);
}

void RuntimeVariable::observe(const EngineRef& engine, const ObserverPtr& callback) const
{
    if (std::shared_ptr<RuntimeEngine> runtime = engine.lock()) {
        runtime->addObserver(name_, callback);
    }
}

Value RuntimeGlobalRef::evaluate(const LocalScope&, const EngineRef& engine) const
{
    std::shared_ptr<RuntimeEngine> runtime = engine.lock();
    if (!runtime) {
        reportError("runtimeEngine is null");
        return Value();
    }
    return lookUp(runtime->globalVariables.get(), name_);
}

Value RuntimeMaterial::evaluate(const LocalScope&, const EngineRef& engine) const
{
    std::shared_ptr<RuntimeEngine> runtime = engine.lock();
    if (!runtime) {
        reportError("runtimeEngine is null");
        return Value();
    }
    if (name_ == "$root") {
        return Value(runtime->data);
    }
    return lookUp(runtime->data.get(), name_);
}

}  // namespace Mero
