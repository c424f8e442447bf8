#include <gtest/gtest.h>

#include <iostream>
#include <ostream>

#include "bridge/AndroidBuf.h"
#include "bridge/BridgeLog.h"
#include "value/ErrorReporting.h"

using Mero::AndroidBuf;

namespace {

class AndroidBufTest : public testing::Test {
protected:
    void SetUp() override { saved_ = Mero::logEnabled; }
    void TearDown() override { Mero::logEnabled = saved_; }

    std::string captured(const std::function<void(std::ostream&)>& write)
    {
        testing::internal::CaptureStderr();
        std::ostream stream(&buffer_);
        write(stream);
        return testing::internal::GetCapturedStderr();
    }

    AndroidBuf buffer_;

private:
    bool saved_ = false;
};

constexpr size_t kPutArea = AndroidBuf::kBufferSize - 1;

}  // namespace

TEST_F(AndroidBufTest, EachFlushIsOneEntryUnderTheCppTagAndNothingIsWrittenBefore)
{
    Mero::logEnabled = true;
    EXPECT_EQ(captured([](std::ostream& out) { out << "first line" << std::endl
                                                   << "second" << std::flush; }),
              "D/mero_log_cpp: first line\nD/mero_log_cpp: second\n");
    EXPECT_EQ(captured([](std::ostream& out) { out << "pending"; }), "");
}

TEST_F(AndroidBufTest, TextIsDiscardedWhileLoggingIsOffAndOverflowKeepsTheStreamGood)
{
    Mero::logEnabled = false;
    EXPECT_EQ(captured([](std::ostream& out) {
                  out << "lost" << std::endl;
                  out << std::string(kPutArea, 'a') << 'b';
                  EXPECT_TRUE(out.good());
              }),
              "");
    Mero::logEnabled = true;
    EXPECT_EQ(captured([](std::ostream& out) { out << std::flush; }), "");
}

TEST_F(AndroidBufTest, AFullBufferLogsItsTextAndDropsTheOverflowingCharacter)
{
    Mero::logEnabled = true;
    bool failedAfterOverflow = false;
    const std::string logged = captured([&](std::ostream& out) {
        out << std::string(kPutArea, 'a');
        EXPECT_TRUE(out.good());
        out << 'b';  // overflow: logs the 51,199 'a's, never stores 'b'
        failedAfterOverflow = out.bad();
        out.clear();
        out << "c" << std::flush;
    });
    EXPECT_TRUE(failedAfterOverflow);  // a successful write is reported as a failure
    EXPECT_EQ(logged, "D/mero_log_cpp: " + std::string(kPutArea, 'a') + "\nD/mero_log_cpp: c\n");
}

TEST(StdoutRedirection, ReportedErrorsReachTheLogAndTheStreamIsCleared)
{
    std::streambuf* original = std::cout.rdbuf();
    const bool savedLog = Mero::logEnabled;
    const bool savedDebug = Mero::debugMode;
    Mero::logEnabled = true;
    Mero::debugMode = false;

    std::cout.setstate(std::ios::badbit);
    Mero::redirectStdoutToAndroidLog();
    EXPECT_TRUE(std::cout.good());
    testing::internal::CaptureStderr();
    Mero::reportError("object key is failed");
    Mero::redirectStdoutToAndroidLog();  // a second instance replaces the buffer
    std::cout << "again" << std::endl;
    const std::string logged = testing::internal::GetCapturedStderr();

    std::cout.rdbuf(original);
    Mero::logEnabled = savedLog;
    Mero::debugMode = savedDebug;
    EXPECT_EQ(logged, "D/mero_log_cpp: object key is failed\nD/mero_log_cpp: again\n");
}
