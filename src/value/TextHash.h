// Quick hashes of texts, for tables whose finds compare the texts whole.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Mero {

// Every byte, eight a step, multiplied and folded, starting from `seed`:
// several times faster than the standard library's string hash.
uint64_t hashWords(std::string_view text, uint64_t seed);

// For tables that find a long text met before (a template already read,
// data already left unread by another card).

// A hash of the text's length and of pieces spread over it, not of every
// byte: hashing a 100 KB text whole would cost a good part of what finding
// it saves, and a text found is compared whole anyway.
std::size_t sampledHash(std::string_view text);

}  // namespace Mero
