// A Value of any kind written as JSON text. The reader's root is always an
// object, so the text is read as the member of one.
#pragma once

#include <string>
#include <string_view>

#include "value/JsonParser.h"
#include "value/Value.h"

namespace MeroTest {

inline Mero::Value json(std::string_view text)
{
    Mero::Value root = Mero::JsonParser::read("{\"v\":" + std::string(text) + "}");
    return root.object()["v"];
}

}  // namespace MeroTest
