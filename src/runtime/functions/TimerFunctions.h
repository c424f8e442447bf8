// Timeouts and jobs against video playback time, run by the host.
#pragma once

#include "runtime/functions/MRFunction.h"

namespace Mero {

// (delay in ms, callback)
Value setTimeout(ArgList& args, const EngineRef& engine);

// (time in seconds, callback): collected until VideoTimeStart hands them over.
Value videoTimeOnce(ArgList& args, const EngineRef& engine);

// (first, second): hands every collected video-time point to the host.
Value videoTimeStart(ArgList& args, const EngineRef& engine);

}  // namespace Mero
