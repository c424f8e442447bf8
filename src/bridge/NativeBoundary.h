// Where a native meets the host: what happens to an exception that reaches it.
//
// While debugMode is set an error propagates out of the native, which ends
// the process: faults show at once while a card is developed. With debugMode
// clear a standard exception that still reaches the native (a number
// conversion, an out-of-range position, a non-callback called) is written to
// standard output (the "mero_log_cpp" log) as the native's name, ": " and the
// exception's text, and the native returns its fallback. One bad card never
// takes the host app down.
#pragma once

#include <exception>
#include <iostream>

#include "value/ErrorReporting.h"

namespace Mero {

template <typename Result, typename Body>
Result runAtBoundary(const char* native, Result fallback, Body&& body)
{
    try {
        return body();
    } catch (const std::exception& error) {
        if (debugMode) {
            throw;
        }
        std::cout << native << ": " << error.what() << std::endl;
        return fallback;
    }
}

template <typename Body>
void runAtBoundary(const char* native, Body&& body)
{
    try {
        body();
    } catch (const std::exception& error) {
        if (debugMode) {
            throw;
        }
        std::cout << native << ": " << error.what() << std::endl;
    }
}

}  // namespace Mero
