// The engine's one way of reporting script-level misuse.
#pragma once

#include <string_view>

namespace Mero {

// Process-wide. Set at library load; every initMREngine overwrites it. While
// set, reportError throws and the runtime writes its trace lines.
extern bool debugMode;

// Writes the message and a newline to standard output and flushes; then, while
// debugMode is set, throws std::runtime_error carrying the message. Callers go
// on with their fallback when it returns.
void reportError(std::string_view message);

}  // namespace Mero
