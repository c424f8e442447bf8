// UTF-8 encoding of one code point, shared by the JSON reader (\u escapes)
// and the bridge (Java's UTF-16 strings).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace Mero {

// How many bytes `codePoint` takes.
inline std::size_t utf8Length(uint32_t codePoint)
{
    return codePoint < 0x80 ? 1 : codePoint < 0x800 ? 2 : codePoint < 0x10000 ? 3 : 4;
}

// Writes `codePoint` at `out`, which has room for it; answers the byte after.
inline char* writeUtf8(char* out, uint32_t codePoint)
{
    if (codePoint < 0x80) {
        *out++ = static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        *out++ = static_cast<char>(0xC0 | (codePoint >> 6));
        *out++ = static_cast<char>(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        *out++ = static_cast<char>(0xE0 | (codePoint >> 12));
        *out++ = static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        *out++ = static_cast<char>(0x80 | (codePoint & 0x3F));
    } else {
        *out++ = static_cast<char>(0xF0 | (codePoint >> 18));
        *out++ = static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F));
        *out++ = static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        *out++ = static_cast<char>(0x80 | (codePoint & 0x3F));
    }
    return out;
}

inline void appendUtf8(std::string& out, uint32_t codePoint)
{
    char bytes[4];
    out.append(bytes, static_cast<std::size_t>(writeUtf8(bytes, codePoint) - bytes));
}

}  // namespace Mero
