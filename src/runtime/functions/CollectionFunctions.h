// Built-ins on arrays, objects and JSON text: push, get, the three array
// walks, the dictionary walk, member get and set, and parsing.
#pragma once

#include "runtime/functions/MRFunction.h"

namespace Mero {

// Appends every element of the second array to the first, in place.
class ArrayPushFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

// An element of an array by index, or a member of an object by key.
class ArrayGetFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

class ArrayForEachFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

class ArrayMapFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

// Keeps the elements for which the callback returns a real boolean true.
class ArrayFilterFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

// A member of an object, else the optional fallback, else null.
class JSONGetFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

class DictForEachFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

// Sets a member of an object in place.
class JsonSetFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

class JsonParseFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

}  // namespace Mero
