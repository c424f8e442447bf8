// UTF-8 and UTF-16, for the strings that cross to Java.
//
// Java strings are UTF-16, and JNI's own byte form is modified UTF-8, where
// a character beyond U+FFFF is two 3-byte halves. The engine holds standard
// UTF-8 (the JSON reader decodes a surrogate pair escape to one 4-byte
// character), so strings are converted through UTF-16 both ways: the same
// character is the same bytes whether it came raw or escaped.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Mero {

// A surrogate without its other half becomes U+FFFD.
std::string utf8FromUtf16(std::u16string_view text);

// Bytes that are not UTF-8 each become U+FFFD. A 3-byte encoded surrogate
// (as modified UTF-8 writes one) is taken as that UTF-16 unit.
std::u16string utf16FromUtf8(std::string_view text);
// The same into `out`, which has room for text.size() units (a character
// never takes more units than bytes); answers how many were written.
size_t utf16FromUtf8(std::string_view text, char16_t* out);

}  // namespace Mero
