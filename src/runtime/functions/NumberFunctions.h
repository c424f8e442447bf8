// Numeric helpers: extremes of an array, rounding, text to number, random
// numbers, the clock, and the kind name of a value.
#pragma once

#include "runtime/functions/MRFunction.h"

namespace Mero {

class MathMaxFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

class MathMinFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

// Mode 1 ceiling, 2 unchanged, anything else round half away from zero.
class RoundingFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

class ToNumberFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

// A number in [0, 1).
class RandomFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

// Milliseconds since the Unix epoch.
class CurrentTimeFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

class TypeOfFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

}  // namespace Mero
