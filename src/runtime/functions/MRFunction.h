// MRFunction: everything a script can call by name.
//
// The built-ins and the template's own functions (CustomFunction) derive from
// it. The engine owns one object per name in its function table; a built-in
// keeps no state between calls and serves every call.
//
// The built-ins share one style: check the argument count first, then the
// kinds where they matter; report every misuse with its fixed message through
// reportError (thrown while debugMode is set) and, when reporting returns,
// give the fallback result.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "runtime/RuntimeObject.h"
#include "value/Value.h"

namespace Mero {

class RuntimeEngine;

using ArgList = std::vector<Value>;

class MRFunction {
public:
    virtual ~MRFunction() = default;

    // `args` is handed over: the callee may move out of it.
    virtual Value invoke(ArgList&& args, const EngineRef& engine) = 0;

protected:
    MRFunction() = default;
    MRFunction(const MRFunction&) = default;
    MRFunction& operator=(const MRFunction&) = default;
};

// Shared: the built-ins keep no state, so one object of each serves every
// card's table.
using MRFunctionPtr = std::shared_ptr<MRFunction>;

// The callable of a callback Value. Any other kind gives one shared empty
// callable, which throws std::bad_function_call when called: built-ins that do
// not test the kind of a callback argument rely on that.
const ValueCallback& callableOf(const Value& callback);

}  // namespace Mero
