// The two writers of a Value: JSON for what goes back to the host, and a plain
// stream form for logs. Both walk the value with an explicit stack, so any
// nesting depth is safe.
#pragma once

#include <optional>
#include <ostream>
#include <string>

#include "value/Value.h"

namespace Mero {

// Compact JSON that a strict parser reads back to the same value (numbers to
// six decimals, as numberToString writes them). Nulls inside arrays and
// objects are left out and callbacks write nothing; strings and keys escape
// '"', '\' and control characters; NaN and infinities are written as null.
// Members come in their insertion order.
std::string toJsonString(const Value& value);
// The same, or nullopt for a value whose text would be longer than
// `maxBytes`: shared arrays let a small value stand for an enormous text, so
// everything a card hands out is written with a bound.
std::optional<std::string> toJsonString(const Value& value, std::size_t maxBytes);

// The log form: strings unquoted, numbers as the stream formats a double, and
// a comma after every array element and object member ("[1,2,]"): that
// trailing comma is part of the form. It stops after about the longest
// string a card may build (Limits::kMaxStringBytes).
std::ostream& operator<<(std::ostream& stream, const Value& value);

}  // namespace Mero
