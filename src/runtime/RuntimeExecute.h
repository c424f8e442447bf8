// RuntimeExecute: the base of every statement node, and the statement list.
//
// Control flow travels in completion values, never in exceptions: execute
// returns kind 7 (Completed) to go on, 8 (Break), 9 (Continue), or any data
// kind 0 to 6 to return that value.
#pragma once

#include <memory>
#include <vector>

#include "runtime/LocalScope.h"
#include "runtime/RuntimeObject.h"
#include "runtime/ScriptRun.h"
#include "value/Value.h"

namespace Mero {

class RuntimeExecute {
public:
    virtual ~RuntimeExecute() = default;

    // Runs in `scope`. Each statement is one step of the entry's budget and
    // one level of nesting; past either bound it gives null, which ends the
    // statement list and every loop around it like a return.
    Value execute(const LocalScope& scope, const EngineRef& engine) const
    {
        ScriptStep step;
        return step.allowed() ? run(scope, engine) : Value();
    }

protected:
    virtual Value run(const LocalScope& scope, const EngineRef& engine) const = 0;

    RuntimeExecute() = default;
    RuntimeExecute(const RuntimeExecute&) = default;
    RuntimeExecute& operator=(const RuntimeExecute&) = default;
};

using RuntimeExecutePtr = std::unique_ptr<RuntimeExecute>;
using StatementList = std::vector<RuntimeExecutePtr>;
// Statements that several owners run: the cards of one template share the
// bodies of its functions and events (no script node changes as it runs).
using SharedStatements = std::shared_ptr<const StatementList>;

inline bool isCompleted(const Value& completion) noexcept
{
    return completion.is(Kind::Completed);
}

inline Value completed()
{
    return Value(Kind::Completed);
}

// Runs the statements in order and hands up the first completion that is not
// Completed, unchanged; an exhausted list gives Completed.
Value runStatements(const StatementList& statements, const LocalScope& scope, const EngineRef& engine);

}  // namespace Mero
