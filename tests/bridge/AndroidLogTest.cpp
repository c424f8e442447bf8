#include <gtest/gtest.h>

#include "bridge/AndroidLog.h"
#include "bridge/BridgeLog.h"

namespace {

// Runs `action` with logEnabled as given and returns what reached stderr.
template <typename Action>
std::string loggedBy(bool enabled, Action action)
{
    const bool saved = Mero::logEnabled;
    Mero::logEnabled = enabled;
    testing::internal::CaptureStderr();
    action();
    Mero::logEnabled = saved;
    return testing::internal::GetCapturedStderr();
}

}  // namespace

TEST(DesktopAndroidLog, OneLinePerEntryWithPriorityLetterAndTag)
{
    testing::internal::CaptureStderr();
    for (int priority = ANDROID_LOG_VERBOSE; priority <= ANDROID_LOG_SILENT; ++priority) {
        __android_log_write(priority, "t", "m");
    }
    EXPECT_GT(__android_log_write(ANDROID_LOG_DEBUG, "mero_log_jni", "initMREngine"), 0);
    __android_log_write(ANDROID_LOG_ERROR, "t", "already ends\n");
    __android_log_print(ANDROID_LOG_INFO, "p", "%s=%d", "x", 7);
    __android_log_write(ANDROID_LOG_WARN, "w", "");
    const std::string longText(5000, 'x');  // formatted text is not cut
    __android_log_print(ANDROID_LOG_DEBUG, "t", "<%s>", longText.c_str());
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "V/t: m\nD/t: m\nI/t: m\nW/t: m\nE/t: m\nF/t: m\nS/t: m\n"
              "D/mero_log_jni: initMREngine\nE/t: already ends\nI/p: x=7\nW/w: \nD/t: <" +
                  longText + ">\n");
}

TEST(BridgeLog, WritesItsTextUnderItsTagOnlyWhileLoggingIsOn)
{
    EXPECT_EQ(loggedBy(true, [] { Mero::logBridge("JNI-OnLoad"); }), "D/mero_log_jni: JNI-OnLoad\n");
    EXPECT_EQ(loggedBy(true, [] { Mero::logBridge("100%s done"); }), "D/mero_log_jni: 100%s done\n")
        << "the text is not a format";
    EXPECT_EQ(loggedBy(false, [] { Mero::logBridge("JNI-OnLoad"); }), "");
}
