// The built-in function library: one function per built-in, and one list
// that names them all, with the key templates call each by and the number of
// arguments it takes.
#pragma once

#include <span>
#include <string_view>

#include "runtime/functions/MRFunction.h"

namespace Mero {

class RuntimeEngine;

// What a built-in gives when its argument count is wrong (after reporting
// its count message).
enum class Fallback : uint8_t { Null, Zero, False, EmptyString, EmptyArray };

using BuiltinBody = Value (*)(ArgList& args, const EngineRef& engine);

struct BuiltinInfo {
    std::string_view key;   // what templates call it by ("n" of a call)
    std::string_view name;  // what it is
    int leastArguments;
    int mostArguments;  // -1: any number
    std::string_view countMessage;
    Fallback countFallback;
    BuiltinBody body;
};

// Every built-in, in registration order.
std::span<const BuiltinInfo> builtinFunctions();

// Calls a built-in as the function table does: its argument count checked
// first (reporting its own message and giving its fallback), then its body.
Value invokeBuiltin(const BuiltinInfo& builtin, ArgList&& args, const EngineRef& engine);

// The built-in registered under `key`, or null.
const BuiltinInfo* builtinOfKey(std::string_view key);

// The one function object of the built-in of `key`, shared by every card;
// null when no built-in has that key.
MRFunction* builtinFunction(std::string_view key);

// Makes the built-ins callable on the engine, from now on under every key that
// the engine's own functions have not taken (a template function of the same
// key shadows the built-in, and no later one can take a built-in's key).
void registerBuiltinFunctions(RuntimeEngine& engine);

}  // namespace Mero
