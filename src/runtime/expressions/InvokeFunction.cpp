#include "runtime/expressions/InvokeFunction.h"

#include <algorithm>
#include <iostream>

#include "runtime/RuntimeEngine.h"
#include "value/ErrorReporting.h"
#include "value/JsonWriter.h"

namespace Mero {

namespace {

// The trace is written for every call but LOG's own.
bool traces(const std::string& name)
{
    return debugMode && name != "LOG";
}

void traceInvoke(const std::string& name, const std::vector<Value>& args)
{
    std::cout << "Mero_log-> invoke func: " << name << " args:"
              << "[";
    for (const Value& arg : args) {
        std::cout << arg << ",";
    }
    // std::endl, not '\n': each trace line is flushed, so it becomes one log
    // entry of its own once standard output is redirected into the log.
    std::cout << "]" << std::endl;
}

}  // namespace

Value InvokeFunction::evaluate(const LocalScope& scope, const EngineRef& engine) const
{
    std::vector<Value> args;
    args.reserve(arguments_.size());
    for (const RuntimeObjectPtr& argument : arguments_) {
        args.push_back(argument->value(scope, engine));
    }
    if (traces(name_)) {
        traceInvoke(name_, args);
    }
    Value result = call(scope, engine, std::move(args));
    if (traces(name_)) {
        std::cout << "Mero_log-> func result: " << result << std::endl << std::endl;
    }
    return result;
}

Value InvokeFunction::call(const LocalScope& scope, const EngineRef& engine, std::vector<Value>&& args) const
{
    std::size_t argumentSteps = 0;
    for (const Value& arg : args) {
        argumentSteps += sizeInSteps(arg);
    }
    chargeSteps(argumentSteps);
    Value result = callee(scope, engine, std::move(args));
    chargeSteps(sizeInSteps(result));
    return result;
}

Value InvokeFunction::callee(const LocalScope& scope, const EngineRef& engine, std::vector<Value>&& args) const
{
    // A local holding a callback shadows a function of the same name.
    if (scope) {
        auto local = scope->find(name_);
        if (local != scope->end() && local->second.is(Kind::Callback)) {
            // Keep the callable alive even if the call overwrites the local.
            CallbackPtr callable = local->second.callbackPtr();
            return (*callable)(std::move(args));
        }
    }
    if (std::shared_ptr<RuntimeEngine> runtime = engine.lock()) {
        return runtime->invokeFunction(name_, std::move(args));
    }
    return Value();
}

bool InvokeFunction::isDynamic() const
{
    return std::any_of(arguments_.begin(), arguments_.end(),
                       [](const RuntimeObjectPtr& argument) { return argument->isDynamic(); });
}

void InvokeFunction::observe(const EngineRef& engine, const ObserverPtr& callback) const
{
    for (const RuntimeObjectPtr& argument : arguments_) {
        argument->observe(engine, callback);
    }
}

Value InvokeFunction::run(const LocalScope& scope, const EngineRef& engine) const
{
    // The statement's own step covers the call: evaluate, not value().
    evaluate(scope, engine);
    return completed();
}

}  // namespace Mero
