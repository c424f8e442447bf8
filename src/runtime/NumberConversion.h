// Number-to-integer conversions used wherever script numbers become counts,
// indexes or codes.
//
// They truncate toward zero and saturate at the type's limits, with NaN
// giving 0, as the devices we run on convert; unlike a plain cast they are
// defined for every double.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace Mero {

inline int32_t truncateToInt32(double number) noexcept
{
    if (std::isnan(number)) {
        return 0;
    }
    if (number <= static_cast<double>(std::numeric_limits<int32_t>::min())) {
        return std::numeric_limits<int32_t>::min();
    }
    if (number >= static_cast<double>(std::numeric_limits<int32_t>::max())) {
        return std::numeric_limits<int32_t>::max();
    }
    return static_cast<int32_t>(number);
}

// Negative numbers give 0.
inline uint32_t truncateToUint32(double number) noexcept
{
    if (std::isnan(number) || number <= 0.0) {
        return 0;
    }
    if (number >= static_cast<double>(std::numeric_limits<uint32_t>::max())) {
        return std::numeric_limits<uint32_t>::max();
    }
    return static_cast<uint32_t>(number);
}

}  // namespace Mero
