#include <gtest/gtest.h>

#include <stdexcept>

#include "runtime/functions/BuiltinTestSupport.h"
#include "runtime/functions/StringFunctions.h"
#include "support/ReportedErrors.h"
#include "support/TemplateHarness.h"

namespace {

using namespace Mero;
using namespace MeroTest;

struct Case {
    const char* args;
    const char* expected;
};

template <typename Function, size_t N>
void expectQuietResults(const Case (&cases)[N])
{
    for (const Case& row : cases) {
        SCOPED_TRACE(row.args);
        EXPECT_EQ(printedOutput([&] { EXPECT_EQ(resultOf<Function>(row.args), row.expected); }), "");
    }
}

TEST(StringReplace, replacesOnlyTheFirstOccurrence)
{
    const Case cases[] = {
        {"[\"a-b-c\",\"-\",\"+\"]", "\"a+b-c\""},
        {"[\"abc\",\"x\",\"y\"]", "\"abc\""},
        {"[\"abc\",\"\",\">\"]", "\">abc\""},  // an empty pattern matches at the front
        {"[\"aaa\",\"aa\",\"b\"]", "\"ba\""},
        {"[\"abc\",\"b\",1]", "\"ac\""},  // a non-string reads as ""
        {"[5,\"\",\"x\"]", "\"x\""},
    };
    expectQuietResults<StringReplaceFunction>(cases);
}

TEST(SubString, takesEndMinusStartInUnsignedArithmetic)
{
    const Case cases[] = {
        {"[\"abcdef\",1,3]", "\"bc\""},
        {"[\"abcdef\",4,2]", "\"ef\""},  // the length wraps around: to the end
        {"[\"abcdef\",2,99]", "\"cdef\""},
        {"[\"abcdef\",-3,2]", "\"ab\""},
        {"[\"abcdef\",1.9,3.9]", "\"bc\""},
        {"[\"ab\",2,5]", "\"\""},
    };
    expectQuietResults<SubStringFunction>(cases);
    EXPECT_THROW(callBuiltin<SubStringFunction>("[\"ab\",5,6]"), std::out_of_range);
}

TEST(GetLength, countsBytesOrElements)
{
    const Case cases[] = {
        {"[\"abc\"]", "3"}, {"[\"\xE2\x82\xAC\"]", "3"}, {"[[1,null,3]]", "3"}, {"[{\"a\":1}]", "0"}, {"[7]", "0"},
    };
    expectQuietResults<GetLengthFunction>(cases);
}

TEST(ToString, writesByKindWithItsDeliberateQuirks)
{
    const Case cases[] = {
        {"[null]", "\"null\""},
        {"[2.50]", "\"2.5\""},
        {"[0.1234567]", "\"0.123457\""},
        {"[true]", "\"1\""},  // digits, not true/false
        {"[false]", "\"0\""},
        {"[\"text\"]", "\"\""},  // a string gives the empty string
        {"[[1,null]]", "\"[1]\""},
        {"[{\"k\":\"v\"}]", R"("{"k":"v"}")"},  // canonical JSON writes strings unescaped
    };
    expectQuietResults<ToStringFunction>(cases);
    EXPECT_EQ(callBuiltin<ToStringFunction>(ArgList{callbackValue([](ArgList&&) { return Value(); })}).string(), "");
}

TEST(Slice, theThirdArgumentIsALengthForTextAndAnEndForArrays)
{
    const Case cases[] = {
        {"[\"abcdef\",2,3]", "\"cde\""},
        {"[\"abcdef\",2]", "\"cdef\""},
        {"[\"abcdef\",4,9]", "\"ef\""},
        {"[\"abcdef\",6]", "\"\""},
        {"[\"\",5]", "\"\""},
        {"[[1,2,3,4],1,3]", "[2,3]"},
        {"[[1,2],0,9]", "[1,2]"},
        {"[[1,2,3],1]", "[2,3]"},
        {"[[1,2,3],2,1]", "[]"},
        {"[[1,2,3],7]", "[]"},
        {"[[],3,4]", "[]"},
        {"[5,0,1]", "null"},
        {"[{\"a\":1},0]", "null"},
    };
    expectQuietResults<SliceFunction>(cases);
    EXPECT_THROW(callBuiltin<SliceFunction>("[\"abc\",4]"), std::out_of_range);
}

TEST(Slice, givesNewArraysButAnEmptyInputBackAsItIs)
{
    Value empty = json("[]");
    EXPECT_EQ(callBuiltin<SliceFunction>(ArgList{empty, Value(0)}).arrayPtr(), empty.arrayPtr());
    Value full = json("[1,2]");
    EXPECT_NE(callBuiltin<SliceFunction>(ArgList{full, Value(0)}).arrayPtr(), full.arrayPtr());
}

TEST(IndexOf, findsBytePositionsOrEqualElements)
{
    const Case cases[] = {
        {"[\"hello\",\"l\"]", "2"},
        {"[\"hello\",\"z\"]", "-1"},
        {"[\"hello\",\"\"]", "0"},
        {"[\"h\xC3\xA9llo\",\"l\"]", "3"},  // bytes, not characters
        {"[[1,\"1\",true],true]", "2"},
        {"[[1,\"1\",true],\"1\"]", "1"},
        {"[[null],null]", "-1"},  // null never equals null
        {"[[[1]],[1]]", "-1"},
        {"[\"123\",2]", "-1"},
        {"[5,5]", "-1"},
    };
    expectQuietResults<IndexOfFunction>(cases);
}

TEST(Split, cutsLikeLineReadsKeepingInnerEmptyTokensOnly)
{
    const Case cases[] = {
        {"[\"a,,b\",\",\"]", "[\"a\",\"\",\"b\"]"},
        {"[\"a,b,\",\",\"]", "[\"a\",\"b\"]"},
        {"[\",a\",\",\"]", "[\"\",\"a\"]"},
        {"[\",\",\",\"]", "[\"\"]"},
        {"[\"\",\",\"]", "[]"},
        {"[\"abc\",\";\"]", "[\"abc\"]"},
        {"[7,\",\"]", "[]"},
    };
    expectQuietResults<SplitFunction>(cases);
}

TEST(CharAt, givesTheBytesNumberAsText)
{
    const Case cases[] = {
        {"[\"abc\",1]", "\"98\""}, {"[\"A\",0]", "\"65\""}, {"[\"\xC3\xA9\",0]", "\"195\""}, {"[\"abc\",-4]", "\"97\""},
    };
    expectQuietResults<CharAtFunction>(cases);
    EXPECT_THROW(callBuiltin<CharAtFunction>("[\"abc\",3]"), std::out_of_range);
}

TEST(Concat, joinsTwoArraysOrTwoStringsOnly)
{
    const Case cases[] = {
        {"[\"ab\",\"cd\"]", "\"abcd\""}, {"[[1],[2,3]]", "[1,2,3]"}, {"[[1],2]", "null"},
        {"[\"a\",1]", "null"},           {"[null,null]", "null"},
    };
    expectQuietResults<ConcatFunction>(cases);

    Value first = json("[1]");
    Value second = json("[2]");
    Value joined = callBuiltin<ConcatFunction>(ArgList{first, second});
    EXPECT_EQ(canonicalJson(first), "[1]");
    EXPECT_EQ(canonicalJson(second), "[2]");
    EXPECT_NE(joined.arrayPtr(), first.arrayPtr());
}

TEST(Include, testsElementsByEqualsOrTextBySearch)
{
    const Case cases[] = {
        {"[\"abc\",\"\"]", "true"},  {"[\"abc\",\"bc\"]", "true"}, {"[\"abc\",\"x\"]", "false"},
        {"[[1,\"a\"],\"a\"]", "true"}, {"[[1],\"1\"]", "false"},     {"[[null],null]", "false"},
        {"[\"1\",1]", "false"},        {"[{},\"a\"]", "false"},
    };
    expectQuietResults<IncludeFunction>(cases);
}

TEST(Log, handsTheMessageToTheHostLogSink)
{
    TemplateHarness card;
    EXPECT_EQ(canonicalJson(callBuiltin<LogFunction>(ArgList{Value("hello")}, card.weak())), "null");
    callBuiltin<LogFunction>(ArgList{Value(5)}, card.weak());  // a non-string logs ""
    EXPECT_EQ(card.logs, (std::vector<std::string>{"hello", ""}));
}

TEST(Log, aGoneEngineOrOneWithoutASinkLogsNothing)
{
    TemplateHarness card;
    EngineRef weak = card.weak();
    card.engine->hooks.log = nullptr;
    EXPECT_EQ(canonicalJson(callBuiltin<LogFunction>(ArgList{Value("x")}, weak)), "null");
    card.release();
    EXPECT_EQ(canonicalJson(callBuiltin<LogFunction>(ArgList{Value("x")}, weak)), "null");
    EXPECT_TRUE(card.logs.empty());
}

}  // namespace
