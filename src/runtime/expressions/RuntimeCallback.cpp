#include "runtime/expressions/RuntimeCallback.h"

#include "runtime/ScriptFactory.h"
#include "runtime/ScriptRun.h"
#include "value/ErrorReporting.h"

namespace Mero {

namespace {

Value runCallback(const RuntimeCallback::Definition& definition, const LocalScope& captured, const EngineRef& engine,
                  std::vector<Value>&& args)
{
    CallDepthGuard depth;
    if (!depth.allowed()) {
        return Value();
    }
    // Each call works on a copy of the defining scope taken now: writes
    // inside the callback never reach the scope it was made in.
    LocalScope scope = captured ? std::make_shared<ScopeMap>(*captured) : makeLocalScope();
    if (args.size() < definition.parameters.size()) {
        reportError("callback args size not match");
        return Value();
    }
    // Extra arguments are ignored.
    for (std::size_t i = 0; i < definition.parameters.size(); ++i) {
        (*scope)[definition.parameters[i]] = std::move(args[i]);
    }
    Value completion = runStatements(definition.body, scope, engine);
    // A break or continue completion is handed back as it is.
    return isCompleted(completion) ? Value() : completion;
}

}  // namespace

RuntimeCallback::RuntimeCallback(const Value& node)
{
    auto definition = std::make_shared<Definition>();
    auto found = node.object().find("a");
    if (found != node.object().end()) {
        for (const Value& parameter : found->second.array()) {
            definition->parameters.push_back(parameter.string());
        }
    }
    buildStatementList(node, "b", definition->body);
    definition_ = std::move(definition);
}

Value RuntimeCallback::evaluate(const LocalScope& scope, const EngineRef& engine) const
{
    auto callable =
        std::make_shared<ValueCallback>([definition = definition_, scope, engine](std::vector<Value>&& args) {
            return runCallback(*definition, scope, engine, std::move(args));
        });
    return Value(std::move(callable));
}

}  // namespace Mero
