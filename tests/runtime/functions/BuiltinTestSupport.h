// Shorthands for calling built-ins directly in tests: arguments written as
// JSON array text, results compared as canonical JSON.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/RuntimeEngine.h"
#include "runtime/functions/MRFunction.h"
#include "support/CanonicalJson.h"
#include "support/JsonValue.h"

namespace MeroTest {

// An argument list written as a JSON array.
inline Mero::ArgList argsOf(std::string_view arrayText)
{
    return json(arrayText).array();
}

// A callback Value around a plain callable.
inline Mero::Value callbackValue(Mero::ValueCallback callable)
{
    return Mero::Value(std::make_shared<Mero::ValueCallback>(std::move(callable)));
}

// Records every call of a callback as the canonical JSON of its arguments and
// answers with `answer(arguments)`.
struct RecordingCallback {
    std::vector<std::string> calls;
    std::function<Mero::Value(const Mero::ArgList&)> answer = [](const Mero::ArgList&) { return Mero::Value(); };

    Mero::Value value()
    {
        return callbackValue([this](Mero::ArgList&& args) {
            calls.push_back(canonicalJson(Mero::Value::makeArray(args)));
            return answer(args);
        });
    }
};

// Calls a fresh object of the built-in class, with no engine unless given.
template <typename Function>
Mero::Value callBuiltin(Mero::ArgList args, const Mero::EngineRef& engine = {})
{
    return Function().invoke(std::move(args), engine);
}

template <typename Function>
Mero::Value callBuiltin(std::string_view arrayText)
{
    return callBuiltin<Function>(argsOf(arrayText));
}

// The same as a plain function pointer, for tables of cases.
using Invoke = Mero::Value (*)(Mero::ArgList);

template <typename Function>
Mero::Value invokeFresh(Mero::ArgList args)
{
    return callBuiltin<Function>(std::move(args));
}

}  // namespace MeroTest
