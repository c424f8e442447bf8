// One row of a node kind's own property table (the leaves' and the swiper's):
// the template key, how it is read, the host id it is sent under, its
// default and whether a change re-measures or may animate.
#pragma once

#include <cstdint>
#include <string_view>

namespace Mero {

enum class LeafKind : uint8_t {
    String,  // a Value, text
    Number,
    Bool,
    Size,  // a size value, as a number
};

enum LeafFlag : uint8_t {
    NoFlags = 0,
    // The change marks the Yoga node dirty, so the next layout measures the
    // content again.
    Remeasure = 1,
    // Animated when "transition" names the key (or has "all").
    Animatable = 2,
};

struct LeafProperty {
    std::string_view key;
    LeafKind kind;
    uint32_t propertyId;
    std::string_view textDefault;  // String rows
    double numberDefault;          // Number rows
    uint8_t flags;
};

constexpr LeafProperty leafText(std::string_view key, uint32_t id, std::string_view fallback = {},
                                uint8_t flags = NoFlags)
{
    return {key, LeafKind::String, id, fallback, 0.0, flags};
}

constexpr LeafProperty leafNumber(std::string_view key, uint32_t id, uint8_t flags = NoFlags)
{
    return {key, LeafKind::Number, id, {}, 0.0, flags};
}

constexpr LeafProperty leafBool(std::string_view key, uint32_t id)
{
    return {key, LeafKind::Bool, id, {}, 0.0, NoFlags};
}

constexpr LeafProperty leafSize(std::string_view key, uint32_t id, uint8_t flags = NoFlags)
{
    return {key, LeafKind::Size, id, {}, 0.0, flags};
}

}  // namespace Mero
