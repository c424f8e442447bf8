#include "bridge/Utf16.h"

#include <cstdint>

#include "value/Utf8.h"

namespace Mero {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool isHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

// One UTF-8 sequence at `at`: its code point and length, or U+FFFD and 1.
struct Decoded {
    char32_t codePoint;
    size_t length;
};

Decoded decodeUtf8(std::string_view text, size_t at)
{
    // Per lead byte: the sequence length and the smallest code point it may carry.
    const auto lead = static_cast<uint8_t>(text[at]);
    if (lead < 0x80) {
        return {lead, 1};
    }
    size_t length = lead >= 0xF0 && lead <= 0xF4 ? 4 : lead >= 0xE0 ? (lead <= 0xEF ? 3 : 0) : lead >= 0xC2 ? 2 : 0;
    if (length == 0 || at + length > text.size()) {
        return {kReplacement, 1};
    }
    char32_t codePoint = lead & (0xFF >> (length + 1));
    for (size_t i = 1; i < length; ++i) {
        const auto next = static_cast<uint8_t>(text[at + i]);
        if ((next & 0xC0) != 0x80) {
            return {kReplacement, 1};
        }
        codePoint = (codePoint << 6) | (next & 0x3F);
    }
    static constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (codePoint < kSmallest[length] || codePoint > 0x10FFFF) {
        return {kReplacement, 1};
    }
    return {codePoint, length};
}

}  // namespace

std::string utf8FromUtf16(std::u16string_view text)
{
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        const char32_t unit = text[i];
        if (isHighSurrogate(unit) && i + 1 < text.size() && isLowSurrogate(text[i + 1])) {
            appendUtf8(out, 0x10000 + ((unit - 0xD800) << 10) + (text[i + 1] - 0xDC00));
            ++i;
        } else {
            appendUtf8(out, isHighSurrogate(unit) || isLowSurrogate(unit) ? kReplacement : unit);
        }
    }
    return out;
}

std::u16string utf16FromUtf8(std::string_view text)
{
    std::u16string out;
    out.reserve(text.size());
    for (size_t at = 0; at < text.size();) {
        const auto [codePoint, length] = decodeUtf8(text, at);
        at += length;
        if (codePoint >= 0x10000) {
            out += static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10));
            out += static_cast<char16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
        } else {
            out += static_cast<char16_t>(codePoint);
        }
    }
    return out;
}

}  // namespace Mero
