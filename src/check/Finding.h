// What the template checker reports: a mistake at a line and column.
#pragma once

#include <cstdint>
#include <string>
#include <tuple>

namespace Mero::Check {

// 1-based, counted in bytes of the line.
struct Position {
    uint32_t line = 1;
    uint32_t column = 1;
};

enum class Severity : uint8_t { Error, Warning };

struct Finding {
    Position at;
    Severity severity = Severity::Error;
    std::string message;
};

inline bool operator<(const Finding& a, const Finding& b)
{
    return std::tie(a.at.line, a.at.column, a.message) < std::tie(b.at.line, b.at.column, b.message);
}

inline Finding error(Position at, std::string message)
{
    return {at, Severity::Error, std::move(message)};
}

inline Finding warning(Position at, std::string message)
{
    return {at, Severity::Warning, std::move(message)};
}

}  // namespace Mero::Check
