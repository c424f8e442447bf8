// Helpers for checking messages that go through reportError, both ways: with
// debugMode set they are thrown, with it clear they are printed and the
// operation goes on to its fallback.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>

#include "value/ErrorReporting.h"

namespace MeroTest {

// Sets debugMode for one scope and restores it afterwards.
class DebugModeScope {
public:
    explicit DebugModeScope(bool enabled) : saved_(Mero::debugMode) { Mero::debugMode = enabled; }
    ~DebugModeScope() { Mero::debugMode = saved_; }
    DebugModeScope(const DebugModeScope&) = delete;
    DebugModeScope& operator=(const DebugModeScope&) = delete;

private:
    bool saved_;
};

// The message of the std::runtime_error that `action` throws with debugMode
// set, or "<nothing thrown>".
inline std::string thrownMessage(const std::function<void()>& action)
{
    DebugModeScope debug(true);
    testing::internal::CaptureStdout();
    std::string message = "<nothing thrown>";
    try {
        action();
    } catch (const std::runtime_error& error) {
        message = error.what();
    }
    testing::internal::GetCapturedStdout();
    return message;
}

// What `action` prints to standard output with debugMode clear.
inline std::string printedOutput(const std::function<void()>& action)
{
    DebugModeScope debug(false);
    testing::internal::CaptureStdout();
    action();
    return testing::internal::GetCapturedStdout();
}

}  // namespace MeroTest
