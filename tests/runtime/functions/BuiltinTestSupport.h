// Shorthands for calling built-ins directly in tests: arguments written as
// JSON array text, results compared as canonical JSON.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/RuntimeEngine.h"
#include <gtest/gtest.h>

#include "runtime/functions/BuiltinFunctions.h"
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

// Calls the built-in of that name ("ArrayPush") as a template's call does,
// its argument count checked first; with no engine unless given.
inline Mero::Value callBuiltin(std::string_view name, Mero::ArgList args, const Mero::EngineRef& engine = {})
{
    const auto& builtins = Mero::builtinFunctions();
    auto found = std::find_if(builtins.begin(), builtins.end(),
                              [name](const Mero::BuiltinInfo& info) { return info.name == name; });
    if (found == builtins.end()) {
        ADD_FAILURE() << "no built-in " << name;
        return Mero::Value();
    }
    return Mero::invokeBuiltin(*found, std::move(args), engine);
}

inline Mero::Value callBuiltin(std::string_view name, std::string_view arrayText)
{
    return callBuiltin(name, argsOf(arrayText));
}

}  // namespace MeroTest
