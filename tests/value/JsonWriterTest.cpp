#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "value/JsonWriter.h"

using namespace Mero;

namespace {

std::string streamed(const Value& value)
{
    std::ostringstream out;
    out << value;
    return out.str();
}

Value callback()
{
    return Value(std::make_shared<ValueCallback>([](std::vector<Value>&&) { return Value(); }));
}

}  // namespace

// Numbers are written by numberToString (its own table is in ValueTest);
// these rows show the writer's own choices.
TEST(JsonWriter, WritesEachValueAsItsText)
{
    const std::pair<Value, const char*> rows[] = {
        {Value(), "null"},
        {Value(2.0), "2"},
        {Value(1.5), "1.5"},
        {Value(true), "true"},
        {Value(false), "false"},
        {callback(), ""},
        {Value(1e20), "100000000000000000000"},
        {Value::makeArray({std::nan(""), INFINITY, -INFINITY}), "[null,null,null]"},
        // Quotes, backslashes and control characters are escaped, in keys too;
        // everything else is written as it is: "/", DEL and UTF-8.
        {Value::makeObject({{"a\"b", 1}, {"line\n", 2}}), R"({"a\"b":1,"line\n":2})"},
        {Value("a\"b\\c"), R"("a\"b\\c")"},
        {Value("\b\f\n\r\t"), R"("\b\f\n\r\t")"},
        {Value(std::string("\0\x01\x1f", 3)), R"("\u0000\u0001\u001f")"},
        {Value("/\x7f\xC3\xA9\xF0\x9F\x98\x80"), "\"/\x7f\xC3\xA9\xF0\x9F\x98\x80\""},
        // Nulls in containers are skipped without a comma; a callback writes
        // nothing but keeps its place.
        {Value::makeArray({Value(), 1}), "[1]"},
        {Value::makeArray({1, Value(), Value(), 2, Value()}), "[1,2]"},
        {Value::makeObject({{"k", Value()}}), "{}"},
        {Value::makeObject({{"k", Value()}, {"j", 3}}), R"({"j":3})"},
        {Value::makeArray({callback(), 1}), "[,1]"},
    };
    for (const auto& [value, text] : rows) {
        EXPECT_EQ(toJsonString(value), text) << text;
    }
}

// Containers, with a comma after every entry, are checked in the trace lines
// of StatementTest.
TEST(StreamWriter, ScalarsAreWrittenPlainly)
{
    EXPECT_EQ(streamed(Value()), "null");
    EXPECT_EQ(streamed(Value(1.0 / 3.0)), "0.333333");
    EXPECT_EQ(streamed(Value(1e20)), "1e+20");
    EXPECT_EQ(streamed(Value("no quotes")), "no quotes");
    EXPECT_EQ(streamed(Value(true)), "true");
    EXPECT_EQ(streamed(callback()), "callback");
}
