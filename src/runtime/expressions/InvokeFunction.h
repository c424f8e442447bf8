// A function call ("$" 5), both an expression and a statement.
#pragma once

#include <string>
#include <vector>

#include "runtime/RuntimeExecute.h"
#include "runtime/RuntimeObject.h"

namespace Mero {

class InvokeFunction final : public RuntimeObject, public RuntimeExecute {
public:
    InvokeFunction(std::string name, std::vector<RuntimeObjectPtr> arguments)
        : name_(std::move(name)), arguments_(std::move(arguments))
    {}

    // Evaluates the arguments left to right and calls: a callback held by a
    // local of that name first, else the engine's function table.
    Value evaluate(const LocalScope& scope, const EngineRef& engine) const override;
    bool isDynamic() const override;
    void observe(const EngineRef& engine, const ObserverPtr& callback) const override;

    // As a statement the result is dropped: a function's return never stops
    // the list it is called from.
    Value run(const LocalScope& scope, const EngineRef& engine) const override;

private:
    // The call, charged by the size of what it is handed and hands back.
    Value call(const LocalScope& scope, const EngineRef& engine, std::vector<Value>&& args) const;
    Value callee(const LocalScope& scope, const EngineRef& engine, std::vector<Value>&& args) const;

    std::string name_;
    std::vector<RuntimeObjectPtr> arguments_;
};

}  // namespace Mero
