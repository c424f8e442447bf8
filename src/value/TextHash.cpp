#include "value/TextHash.h"

#include <cstdint>
#include <cstring>

namespace Mero {

uint64_t hashWords(std::string_view text, uint64_t hash)
{
    constexpr uint64_t kMultiplier = 0x9E3779B97F4A7C15ULL;
    auto mix = [&hash](uint64_t word) {
        hash = (hash ^ word) * kMultiplier;
        hash ^= hash >> 29;
    };
    const char* p = text.data();
    std::size_t left = text.size();
    for (; left >= 8; p += 8, left -= 8) {
        uint64_t word = 0;
        std::memcpy(&word, p, 8);
        mix(word);
    }
    uint64_t tail = left;  // the length of the tail, so "a" and "a\0" differ
    if (left != 0) {
        uint64_t bytes = 0;
        std::memcpy(&bytes, p, left);
        tail ^= bytes << 8;
    }
    mix(tail);
    return hash;
}

std::size_t sampledHash(std::string_view text)
{
    constexpr std::size_t kHashedWhole = 1024;
    constexpr std::size_t kPieces = 16;
    constexpr std::size_t kPiece = 64;
    if (text.size() <= kHashedWhole) {
        return hashWords(text, text.size());
    }
    uint64_t combined = text.size();
    const std::size_t stride = (text.size() - kPiece) / (kPieces - 1);
    for (std::size_t i = 0; i < kPieces; ++i) {
        combined = hashWords(text.substr(i * stride, kPiece), combined);
    }
    return combined;
}

}  // namespace Mero
