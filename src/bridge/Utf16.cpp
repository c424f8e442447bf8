#include "bridge/Utf16.h"

#include <cstdint>
#include <cstring>

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

// The code point at `at` of UTF-16 `text` and how many units it takes: a
// surrogate without its other half is U+FFFD.
struct Unit {
    char32_t codePoint;
    size_t length;
};

Unit decodeUtf16(std::u16string_view text, size_t at)
{
    const char32_t unit = text[at];
    if (isHighSurrogate(unit) && at + 1 < text.size() && isLowSurrogate(text[at + 1])) {
        return {0x10000 + ((unit - 0xD800) << 10) + (text[at + 1] - 0xDC00), 2};
    }
    return {isHighSurrogate(unit) || isLowSurrogate(unit) ? kReplacement : unit, 1};
}

// Runs of ASCII go sixteen units at a time, in loops the compiler turns
// into vector instructions.
constexpr size_t kBlock = 16;

bool asciiBlockAt(std::u16string_view text, size_t at)
{
    if (at + kBlock > text.size()) {
        return false;
    }
    char16_t any = 0;
    for (size_t i = 0; i < kBlock; ++i) {
        any |= text[at + i];
    }
    return any < 0x80;
}

bool asciiBlockAt(std::string_view text, size_t at)
{
    if (at + kBlock > text.size()) {
        return false;
    }
    unsigned char any = 0;
    for (size_t i = 0; i < kBlock; ++i) {
        any |= static_cast<unsigned char>(text[at + i]);
    }
    return any < 0x80;
}

}  // namespace

// Both conversions measure first and then write into exactly the room the
// text takes: the strings that cross are mostly ASCII and can be long (a
// card's data), and growing them a character at a time was most of the time
// a card spent in the bridge.
std::string utf8FromUtf16(std::u16string_view text)
{
    size_t length = 0;
    for (size_t at = 0; at < text.size();) {
        if (asciiBlockAt(text, at)) {
            length += kBlock;
            at += kBlock;
            continue;
        }
        if (text[at] < 0x80) {
            ++length;
            ++at;
            continue;
        }
        const Unit unit = decodeUtf16(text, at);
        length += utf8Length(unit.codePoint);
        at += unit.length;
    }
    std::string out(length, '\0');
    char* next = out.data();
    for (size_t at = 0; at < text.size();) {
        if (asciiBlockAt(text, at)) {
            // Through a local block: `next` could alias the text otherwise,
            // and the copy would go a unit at a time.
            char bytes[kBlock];
            for (size_t i = 0; i < kBlock; ++i) {
                bytes[i] = static_cast<char>(text[at + i]);
            }
            std::memcpy(next, bytes, kBlock);
            next += kBlock;
            at += kBlock;
            continue;
        }
        if (text[at] < 0x80) {
            *next++ = static_cast<char>(text[at++]);
            continue;
        }
        const Unit unit = decodeUtf16(text, at);
        next = writeUtf8(next, unit.codePoint);
        at += unit.length;
    }
    return out;
}

size_t utf16FromUtf8(std::string_view text, char16_t* out)
{
    size_t written = 0;
    for (size_t at = 0; at < text.size();) {
        if (asciiBlockAt(text, at)) {
            char16_t units[kBlock];
            for (size_t i = 0; i < kBlock; ++i) {
                units[i] = static_cast<char16_t>(text[at + i]);
            }
            std::memcpy(out + written, units, sizeof units);
            written += kBlock;
            at += kBlock;
            continue;
        }
        if (static_cast<uint8_t>(text[at]) < 0x80) {
            out[written++] = static_cast<char16_t>(text[at++]);
            continue;
        }
        const auto [codePoint, length] = decodeUtf8(text, at);
        at += length;
        if (codePoint >= 0x10000) {
            out[written++] = static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10));
            out[written++] = static_cast<char16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
        } else {
            out[written++] = static_cast<char16_t>(codePoint);
        }
    }
    return written;
}

std::u16string utf16FromUtf8(std::string_view text)
{
    // At most one unit per byte: written, then cut to what was written.
    std::u16string out(text.size(), u'\0');
    out.resize(utf16FromUtf8(text, out.data()));
    return out;
}

}  // namespace Mero
