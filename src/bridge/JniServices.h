// The six services script asks of the host over JNI (text measurement, timeouts, video
// timers, the log sink and the two bridge calls), each turned into one call
// of a MeroNative method on the instance's host object.
#pragma once

namespace Mero {

class MeroInstance;

// Installs the six hooks on the instance's engine. Each captures the
// instance, which owns the engine and so outlives every call of its services.
void installJniServices(MeroInstance& instance);

}  // namespace Mero
