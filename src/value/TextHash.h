// sampledHash: a quick hash for tables that find a long text met before (a
// template already read, data already left unread by another card).
#pragma once

#include <cstddef>
#include <string_view>

namespace Mero {

// A hash of the text's length and of pieces spread over it, not of every
// byte: hashing a 100 KB text whole would cost a good part of what finding
// it saves, and a text found is compared whole anyway.
std::size_t sampledHash(std::string_view text);

}  // namespace Mero
