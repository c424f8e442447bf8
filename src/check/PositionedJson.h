// A strict JSON reader that remembers where each value starts, for the
// template checker. The engine's own reader keeps no positions and accepts
// texts that are not JSON; this one reads the same texts the same way (a
// repeated key keeps its first value) but reports, as findings, everything in
// them that a strict parser would refuse.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "check/Finding.h"

namespace Mero::Check {

struct JsonMember;

struct JsonNode {
    enum class Kind : uint8_t { Null, Boolean, Number, String, Array, Object };

    Kind kind = Kind::Null;
    Position at;
    bool boolean = false;
    double number = 0.0;
    std::string text;  // a string's value
    std::vector<JsonNode> items;
    // Members in the order of the text, the first of a repeated key only.
    std::vector<JsonMember> members;
    std::vector<Position> keyPositions;  // beside `members`

    bool is(Kind wanted) const { return kind == wanted; }
    // The member `key`, or null.
    const JsonNode* member(std::string_view key) const;
    // The position of the member's key, for findings about the name itself.
    Position keyPosition(std::string_view key) const;
};

// A member of an object: its key and its value.
struct JsonMember {
    std::string first;
    JsonNode second;
};

struct ReadResult {
    JsonNode root;
    std::vector<Finding> findings;
    bool complete = false;  // the text held one whole value
};

// Reads `text`; never throws. The root may be any value (the checker says
// when it is not an object).
ReadResult readPositionedJson(std::string_view text);

}  // namespace Mero::Check
