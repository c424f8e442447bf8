#include "value/ErrorReporting.h"

#include <iostream>
#include <stdexcept>
#include <string>

namespace Mero {

bool debugMode = true;

namespace {

thread_local std::size_t* quietCount = nullptr;

}  // namespace

QuietReports::QuietReports() noexcept : outer_(quietCount)
{
    quietCount = &count_;
}

QuietReports::~QuietReports()
{
    quietCount = outer_;
}

void reportError(std::string_view message)
{
    if (quietCount != nullptr) {
        ++*quietCount;
        return;
    }
    std::cout << message << std::endl;
    if (debugMode) {
        throw std::runtime_error(std::string(message));
    }
}

}  // namespace Mero
