// Desktop stand-in for liblog; compiled to nothing on Android.
#if !defined(__ANDROID__)

#include "bridge/AndroidLog.h"

#include <cstdarg>
#include <cstdio>
#include <string>

namespace {

char priorityLetter(int priority)
{
    static constexpr char kLetters[] = "??VDIWEFS";
    return priority >= 0 && priority <= ANDROID_LOG_SILENT ? kLetters[priority] : '?';
}

}  // namespace

extern "C" int __android_log_write(int priority, const char* tag, const char* text)
{
    std::string line;
    line += priorityLetter(priority);
    line += '/';
    line += tag != nullptr ? tag : "";
    line += ": ";
    line += text != nullptr ? text : "";
    if (line.back() != '\n') {
        line += '\n';
    }
    // One write, so entries from one process never interleave mid-line.
    const size_t written = std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
    return written == line.size() ? static_cast<int>(written) : -1;
}

extern "C" int __android_log_print(int priority, const char* tag, const char* format, ...)
{
    char text[1024];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    if (length < 0) {
        return -1;
    }
    if (static_cast<size_t>(length) < sizeof text) {
        return __android_log_write(priority, tag, text);
    }
    // Longer than the stack buffer: format again into one that fits.
    std::string longText(static_cast<size_t>(length), '\0');
    va_start(arguments, format);
    std::vsnprintf(longText.data(), longText.size() + 1, format, arguments);
    va_end(arguments);
    return __android_log_write(priority, tag, longText.c_str());
}

#endif
