#include "value/TextHash.h"

#include <functional>

namespace Mero {

std::size_t sampledHash(std::string_view text)
{
    constexpr std::size_t kHashedWhole = 4096;
    constexpr std::size_t kPieces = 32;
    constexpr std::size_t kPiece = 96;
    const std::hash<std::string_view> hash;
    if (text.size() <= kHashedWhole) {
        return hash(text);
    }
    std::size_t combined = text.size();
    const std::size_t stride = (text.size() - kPiece) / (kPieces - 1);
    for (std::size_t i = 0; i < kPieces; ++i) {
        combined = combined * 31 + hash(text.substr(i * stride, kPiece));
    }
    return combined;
}

}  // namespace Mero
