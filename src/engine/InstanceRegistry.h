// The process-wide registry: the host's 32-bit handle to the instance it
// names. A plain global without a lock: the host serialises every native call.
#pragma once

#include <cstdint>
#include <memory>

#include "engine/MeroInstance.h"

namespace Mero {

// Registers `instance` under `handle`. A handle already taken keeps its
// instance: false is answered and `instance` is left to the caller.
bool registerInstance(int32_t handle, std::unique_ptr<MeroInstance>&& instance);

// The instance registered under `handle`, or null.
MeroInstance* findInstance(int32_t handle);

// Removes the handle and hands its instance back to be destroyed; null when
// the handle is unknown.
std::unique_ptr<MeroInstance> unregisterInstance(int32_t handle);

// The number of live handles.
std::size_t instanceCount();

}  // namespace Mero
