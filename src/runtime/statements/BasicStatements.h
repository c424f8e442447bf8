// The statements that only make a completion: nothing, break, continue and
// return.
#pragma once

#include "runtime/RuntimeExecute.h"

namespace Mero {

// What every unknown or malformed statement node becomes.
class RuntimeExecuteNull final : public RuntimeExecute {
public:
    Value run(const LocalScope& scope, const EngineRef& engine) const override;
};

class BreakValue final : public RuntimeExecute {
public:
    Value run(const LocalScope& scope, const EngineRef& engine) const override;
};

class ContinueValue final : public RuntimeExecute {
public:
    Value run(const LocalScope& scope, const EngineRef& engine) const override;
};

// Completes with its expression's value, whatever its kind.
class ReturnValue final : public RuntimeExecute {
public:
    explicit ReturnValue(RuntimeObjectPtr returnValue) : returnValue_(std::move(returnValue)) {}
    Value run(const LocalScope& scope, const EngineRef& engine) const override;

private:
    RuntimeObjectPtr returnValue_;
};

}  // namespace Mero
