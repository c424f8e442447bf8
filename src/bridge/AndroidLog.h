// The Android log functions, and the one place that knows the platform.
//
// On Android they come from liblog. On desktop Linux a small compatibility
// layer (AndroidLog.cpp) writes each entry to standard error as one line:
// priority letter, "/", tag, ": ", text, e.g. "D/mero_log_jni: initMREngine".
#pragma once

#if defined(__ANDROID__)
#include <android/log.h>
#else

extern "C" {

typedef enum android_LogPriority {
    ANDROID_LOG_UNKNOWN = 0,
    ANDROID_LOG_DEFAULT,
    ANDROID_LOG_VERBOSE,
    ANDROID_LOG_DEBUG,
    ANDROID_LOG_INFO,
    ANDROID_LOG_WARN,
    ANDROID_LOG_ERROR,
    ANDROID_LOG_FATAL,
    ANDROID_LOG_SILENT,
} android_LogPriority;

// Returns the number of bytes written (positive) or a negative error.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the platform's own names
int __android_log_write(int priority, const char* tag, const char* text);
// NOLINTNEXTLINE(bugprone-reserved-identifier)
int __android_log_print(int priority, const char* tag, const char* format, ...) __attribute__((format(printf, 3, 4)));

}  // extern "C"

#endif
