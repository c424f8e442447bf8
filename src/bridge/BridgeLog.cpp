#include "bridge/BridgeLog.h"

#include "bridge/AndroidLog.h"

namespace Mero {

bool logEnabled = false;

void logBridge(const char* text)
{
    if (logEnabled) {
        __android_log_print(ANDROID_LOG_DEBUG, "mero_log_jni", "%s", text);
    }
}

void logBridge(const std::string& text)
{
    logBridge(text.c_str());
}

}  // namespace Mero
