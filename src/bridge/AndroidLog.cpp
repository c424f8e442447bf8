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
    va_list arguments;
    va_start(arguments, format);
    va_list counting;
    va_copy(counting, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, counting);
    va_end(counting);
    if (length < 0) {
        va_end(arguments);
        return -1;
    }
    std::string text(static_cast<size_t>(length), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, arguments);
    va_end(arguments);
    return __android_log_write(priority, tag, text.c_str());
}

#endif
