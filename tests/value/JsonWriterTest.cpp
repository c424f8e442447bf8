#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "value/JsonParser.h"
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

TEST(JsonWriter, Scalars)
{
    EXPECT_EQ(toJsonString(Value()), "null");
    EXPECT_EQ(toJsonString(Value(2.0)), "2");
    EXPECT_EQ(toJsonString(Value(1.5)), "1.5");
    EXPECT_EQ(toJsonString(Value(true)), "true");
    EXPECT_EQ(toJsonString(Value(false)), "false");
    EXPECT_EQ(toJsonString(callback()), "");
}

TEST(JsonWriter, StringsAndKeysEscapeQuotesBackslashesAndControlCharacters)
{
    EXPECT_EQ(toJsonString(Value::makeObject({{"a\"b", 1}, {"line\n", 2}})), R"({"a\"b":1,"line\n":2})");
    EXPECT_EQ(toJsonString(Value("a\"b\\c")), R"("a\"b\\c")");
    EXPECT_EQ(toJsonString(Value("\b\f\n\r\t")), R"("\b\f\n\r\t")");
    EXPECT_EQ(toJsonString(Value(std::string("\0\x01\x1f", 3))), R"("\u0000\u0001\u001f")");
    // everything else is written as it is: "/", DEL and UTF-8
    EXPECT_EQ(toJsonString(Value("/\x7f\xC3\xA9\xF0\x9F\x98\x80")), "\"/\x7f\xC3\xA9\xF0\x9F\x98\x80\"");
}

TEST(JsonWriter, NumbersAreFixedNotationAndNonFiniteOnesNull)
{
    EXPECT_EQ(toJsonString(Value(0.1234567)), "0.123457");
    EXPECT_EQ(toJsonString(Value(1e20)), "100000000000000000000");
    EXPECT_EQ(toJsonString(Value(-1e-7)), "-0");
    EXPECT_EQ(toJsonString(Value::makeArray({std::nan(""), INFINITY, -INFINITY})), "[null,null,null]");
}

TEST(JsonWriter, NullsInContainersAreSkippedWithoutACommaButCallbacksKeepTheirPlace)
{
    EXPECT_EQ(toJsonString(Value::makeArray({Value(), 1})), "[1]");
    EXPECT_EQ(toJsonString(Value::makeArray({1, Value(), Value(), 2, Value()})), "[1,2]");
    EXPECT_EQ(toJsonString(Value::makeObject({{"k", Value()}})), "{}");
    EXPECT_EQ(toJsonString(Value::makeObject({{"k", Value()}, {"j", 3}})), R"({"j":3})");
    // A callback writes nothing but keeps its place.
    EXPECT_EQ(toJsonString(Value::makeArray({callback(), 1})), "[,1]");
}

// Nested containers, empty ones too, are written without whitespace.
TEST(JsonWriter, RoundTripsWhatTheReaderReadsInItsMemberOrder)
{
    const char* text = R"({"z":[1,2.5,"x",true,false,{"y":{"c":[],"b":1}},[],{}],"a":"\u0001\n"})";
    EXPECT_EQ(toJsonString(JsonParser::read(text)), text);
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
