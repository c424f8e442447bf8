// The process-wide log switch and the host bridge's own log lines.
#pragma once

#include <string>

namespace Mero {

// Gates everything that reaches the Android log. Off until an initMREngine
// call turns it on; every initMREngine overwrites it.
extern bool logEnabled;

// Logs a bridge line (lifecycle natives, event names) under "mero_log_jni".
void logBridge(const char* text);
// The same with a string's characters.
void logBridge(const std::string& text);

}  // namespace Mero
