// Small helpers shared by the built-in functions: reading positions and
// operator codes from numbers, and taking strings out of moved argument lists.
#pragma once

#include <cstdint>
#include <string>

#include "runtime/NumberConversion.h"
#include "runtime/ScriptRun.h"
#include "runtime/functions/MRFunction.h"
#include "value/Value.h"

namespace Mero {

// A position, count or operator code held by a Value: truncated toward zero
// to unsigned 32 bits, negatives giving 0; anything but a number reads 0.
inline uint32_t unsignedArgument(const Value& value)
{
    return truncateToUint32(value.number());
}

// The string of a Value, moved out when it is a string, else "". Never moves
// from the shared default that the string accessor hands out for other kinds.
inline std::string takeString(Value& value)
{
    return value.is(Kind::String) ? std::move(value.string()) : std::string();
}

}  // namespace Mero
