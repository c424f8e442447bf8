// Assignments to a local, a UI variable (which notifies its observers) and a
// global variable.
#pragma once

#include <string>

#include "runtime/RuntimeExecute.h"

namespace Mero {

class SetLocalVar final : public RuntimeExecute {
public:
    SetLocalVar(std::string name, RuntimeObjectPtr value) : name_(std::move(name)), value_(std::move(value)) {}
    Value run(const LocalScope& scope, const EngineRef& engine) const override;

private:
    std::string name_;
    RuntimeObjectPtr value_;
};

// Stores the value and calls the name's observers synchronously, in
// registration order. With the engine gone it does nothing, not even evaluate.
class SetVariable final : public RuntimeExecute {
public:
    SetVariable(std::string name, RuntimeObjectPtr value) : name_(std::move(name)), value_(std::move(value)) {}
    Value run(const LocalScope& scope, const EngineRef& engine) const override;

private:
    std::string name_;
    RuntimeObjectPtr value_;
};

// Like SetVariable, but global variables have no observers.
class SetGlobalVar final : public RuntimeExecute {
public:
    SetGlobalVar(std::string name, RuntimeObjectPtr value) : name_(std::move(name)), value_(std::move(value)) {}
    Value run(const LocalScope& scope, const EngineRef& engine) const override;

private:
    std::string name_;
    RuntimeObjectPtr value_;
};

}  // namespace Mero
