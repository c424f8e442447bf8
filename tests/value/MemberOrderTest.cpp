// An object's members come in its map's order, which follows the hash of
// their names. That hash is fixed, so one object is written as the same JSON
// text on 64-bit and 32-bit processors and whatever the signedness of char.
#include <gtest/gtest.h>

#include <cstddef>
#include <string_view>

#include "value/JsonParser.h"
#include "value/JsonWriter.h"
#include "value/Value.h"

using namespace Mero;

TEST(MemberNameHash, IsThirtyTwoBitFnv1aOverUnsignedBytes)
{
    const struct {
        std::string_view name;
        std::size_t hash;
    } rows[] = {
        {"", 0x811C9DC5U},         {"a", 0xE40C292CU},    {"foobar", 0xBF9CF968U},
        {"\xC3\xA9", 0x1E9DE8C1U},  // bytes above 0x7F count as 0x80..0xFF, never negative
        {"\xFF", 0x7A0B824EU},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(MemberNameHash{}(row.name), row.hash) << row.name;
    }
}

TEST(MemberOrder, AnObjectIsWrittenInOneOrderOnEveryProcessor)
{
    // With the standard library's hash, x86-64 wrote "é", "id", "y", "x" and
    // 32-bit ARM "é", "id", "x", "y".
    const Value object = JsonParser::read(R"({"width": 1, "height": 2, "x": 3, "y": 4, "id": "a", "é": 5})");
    EXPECT_EQ(toJsonString(object), R"({"id":"a","y":4,"é":5,"x":3,"height":2,"width":1})");
}
