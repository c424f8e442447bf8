#include "runtime/functions/CustomFunction.h"

#include "runtime/ScriptRun.h"
#include "value/ErrorReporting.h"

namespace Mero {

CustomFunction::CustomFunction(std::string name, std::vector<std::string> parameters, ArrayPtr defaultArgs,
                               SharedStatements body)
    : name_(std::move(name)),
      parameters_(std::move(parameters)),
      defaultArgs_(std::move(defaultArgs)),
      body_(std::move(body))
{}

CustomFunction::~CustomFunction()
{
    // Break the cycle of a callback stored in the scope it was made in.
    if (scope_) {
        scope_->clear();
    }
}

Value CustomFunction::invoke(ArgList&& args, const EngineRef& engine)
{
    CallDepthGuard depth;
    if (!depth.allowed()) {
        return Value();
    }
    if (args.size() != parameters_.size() && !hasDefaults()) {
        reportError("custom args size not match");
        return Value();
    }
    // One scope for every call: a nested or recursive call of the same
    // function overwrites its caller's locals. Deliberate; templates are
    // written against it. The scope is made at the first call.
    if (!scope_) {
        scope_ = makeLocalScope();
    }
    scope_->clear();
    std::size_t nextDefault = 0;
    for (std::size_t i = 0; i < parameters_.size(); ++i) {
        if (i < args.size()) {
            (*scope_)[parameters_[i]] = std::move(args[i]);
        } else if (defaultArgs_ && nextDefault < defaultArgs_->size()) {
            // Defaults fill the missing parameters from the front of the
            // list, whatever the parameter's position.
            (*scope_)[parameters_[i]] = (*defaultArgs_)[nextDefault++];
        }
    }
    // Hold the scope: the body may reach this function again.
    LocalScope scope = scope_;
    Value completion = runStatements(*body_, scope, engine);
    return isCompleted(completion) ? Value() : completion;
}

}  // namespace Mero
