// Numeric helpers: extremes of an array, rounding, text to number, random
// numbers, the clock, and the kind name of a value.
#pragma once

#include "runtime/functions/MRFunction.h"

namespace Mero {

Value mathMax(ArgList& args, const EngineRef& engine);

Value mathMin(ArgList& args, const EngineRef& engine);

// Mode 1 ceiling, 2 unchanged, anything else round half away from zero.
Value rounding(ArgList& args, const EngineRef& engine);

Value toNumber(ArgList& args, const EngineRef& engine);

// A number in [0, 1).
Value randomNumber(ArgList& args, const EngineRef& engine);

// Milliseconds since the Unix epoch.
Value currentTime(ArgList& args, const EngineRef& engine);

Value typeOf(ArgList& args, const EngineRef& engine);

}  // namespace Mero
