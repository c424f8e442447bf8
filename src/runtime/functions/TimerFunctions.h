// Timeouts and jobs against video playback time, run by the host.
#pragma once

#include "runtime/functions/MRFunction.h"

namespace Mero {

// (delay in ms, callback)
class SetTimeoutFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

// (time in seconds, callback): collected until VideoTimeStart hands them over.
class VideoTimeOnceFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

// (first, second): hands every collected video-time point to the host.
class VideoTimeStartFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

}  // namespace Mero
