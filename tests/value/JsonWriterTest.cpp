#include <gtest/gtest.h>

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

TEST(JsonWriter, StringsEscapeOnlyQuoteAndBackslash)
{
    EXPECT_EQ(toJsonString(Value("a\"b\\c")), R"("a\"b\\c")");
    EXPECT_EQ(toJsonString(Value("line\nfeed/\t\xC3\xA9")), "\"line\nfeed/\t\xC3\xA9\"");
}

TEST(JsonWriter, NullsInContainersAreSkippedWithoutAComma)
{
    EXPECT_EQ(toJsonString(Value::makeArray({Value(), 1})), "[1]");
    EXPECT_EQ(toJsonString(Value::makeArray({1, Value(), Value(), 2, Value()})), "[1,2]");
    EXPECT_EQ(toJsonString(Value::makeObject({{"k", Value()}})), "{}");
    EXPECT_EQ(toJsonString(Value::makeObject({{"k", Value()}, {"j", 3}})), R"({"j":3})");
}

TEST(JsonWriter, CallbacksInContainersWriteNothingButKeepTheirPlace)
{
    EXPECT_EQ(toJsonString(Value::makeArray({callback(), 1})), "[,1]");
}

TEST(JsonWriter, KeysAreWrittenRaw)
{
    EXPECT_EQ(toJsonString(Value::makeObject({{"a\"b", 1}})), "{\"a\"b\":1}");
}

TEST(JsonWriter, NestedContainersWithoutWhitespace)
{
    Value value = Value::makeObject({{"list", Value::makeArray({1, Value::makeArray(), Value::makeObject()})}});
    EXPECT_EQ(toJsonString(value), R"({"list":[1,[],{}]})");
}

TEST(JsonWriter, RoundTripsWhatTheReaderReads)
{
    const char* text = R"({"a":[1,2.5,"x",true,false,{"b":{"c":[]}}]})";
    EXPECT_EQ(toJsonString(JsonParser::read(text)), text);
}

TEST(StreamWriter, ScalarsAreWrittenPlainly)
{
    EXPECT_EQ(streamed(Value()), "null");
    EXPECT_EQ(streamed(Value(1.0 / 3.0)), "0.333333");
    EXPECT_EQ(streamed(Value(1e20)), "1e+20");
    EXPECT_EQ(streamed(Value("no quotes")), "no quotes");
    EXPECT_EQ(streamed(Value(true)), "true");
    EXPECT_EQ(streamed(callback()), "callback");
}

TEST(StreamWriter, EveryEntryIsFollowedByAComma)
{
    EXPECT_EQ(streamed(Value::makeArray({1, 2})), "[1,2,]");
    EXPECT_EQ(streamed(Value::makeArray({Value(), Value::makeArray({3})})), "[null,[3,],]");
    EXPECT_EQ(streamed(Value::makeObject({{"k", "v"}})), "{k:v,}");
    EXPECT_EQ(streamed(Value::makeObject({{"o", Value::makeObject({{"n", Value()}})}})), "{o:{n:null,},}");
    EXPECT_EQ(streamed(Value::makeArray()), "[]");
}
