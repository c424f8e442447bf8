// RuntimeObject: the base of every expression node.
//
// An expression evaluates to a Value in a scope, knows whether it reads a UI
// variable (isDynamic), and can register a re-evaluation callback for the UI
// variables it reads (observe). Literals and spreads answer isDynamic through
// their children but do not pass observe on: see the expression classes.
#pragma once

#include <functional>
#include <memory>

#include "runtime/LocalScope.h"
#include "runtime/ScriptRun.h"
#include "value/Value.h"

namespace Mero {

class RuntimeEngine;

using EngineRef = std::weak_ptr<RuntimeEngine>;
using ObserverCallback = std::function<void()>;
using ObserverPtr = std::shared_ptr<ObserverCallback>;

class RuntimeObject {
public:
    virtual ~RuntimeObject() = default;

    // Evaluates in `scope`. Each evaluation is one step of the entry's
    // budget and one level of nesting; past either bound it gives null.
    Value value(const LocalScope& scope, const EngineRef& engine) const
    {
        ScriptStep step;
        return step.allowed() ? evaluate(scope, engine) : Value();
    }
    virtual bool isDynamic() const { return false; }
    virtual void observe(const EngineRef& engine, const ObserverPtr& callback) const;

protected:
    virtual Value evaluate(const LocalScope& scope, const EngineRef& engine) const = 0;

    RuntimeObject() = default;
    RuntimeObject(const RuntimeObject&) = default;
    RuntimeObject& operator=(const RuntimeObject&) = default;
};

using RuntimeObjectPtr = std::unique_ptr<RuntimeObject>;

}  // namespace Mero
