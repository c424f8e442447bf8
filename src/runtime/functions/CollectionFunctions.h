// Built-ins on arrays, objects and JSON text: push, get, the three array
// walks, the dictionary walk, member get and set, and parsing.
#pragma once

#include "runtime/functions/MRFunction.h"

namespace Mero {

// Appends every element of the second array to the first, in place.
Value arrayPush(ArgList& args, const EngineRef& engine);

// An element of an array by index, or a member of an object by key.
Value arrayGet(ArgList& args, const EngineRef& engine);

Value arrayForEach(ArgList& args, const EngineRef& engine);

Value arrayMap(ArgList& args, const EngineRef& engine);

// Keeps the elements for which the callback returns a real boolean true.
Value arrayFilter(ArgList& args, const EngineRef& engine);

// A member of an object, else the optional fallback, else null.
Value jsonGet(ArgList& args, const EngineRef& engine);

Value dictForEach(ArgList& args, const EngineRef& engine);

// Sets a member of an object in place.
Value jsonSet(ArgList& args, const EngineRef& engine);

Value jsonParse(ArgList& args, const EngineRef& engine);

}  // namespace Mero
