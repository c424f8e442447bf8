// countBits: how many bits of a 32-bit word are set, in line.
//
// The baseline x86-64 target has no popcount instruction, so std::popcount
// becomes a call into the compiler's runtime library. Render nodes count
// bits to find their packed values on every read; this takes a dozen
// instructions and no call.
#pragma once

#include <cstdint>

namespace Mero {

constexpr unsigned countBits(uint32_t word) noexcept
{
    word = word - ((word >> 1) & 0x55555555U);
    word = (word & 0x33333333U) + ((word >> 2) & 0x33333333U);
    return (((word + (word >> 4)) & 0x0F0F0F0FU) * 0x01010101U) >> 24;
}

static_assert(countBits(0) == 0 && countBits(1) == 1 && countBits(0xFFFFFFFFU) == 32 && countBits(0x80000001U) == 2);

}  // namespace Mero
