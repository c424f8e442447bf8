// String cases that a row of plain arguments cannot show: standard
// exceptions, container identity, callbacks, and the host log sink.
#include <gtest/gtest.h>

#include <stdexcept>

#include "runtime/functions/BuiltinTestSupport.h"
#include "runtime/functions/StringFunctions.h"
#include "support/TemplateHarness.h"

namespace {

using namespace Mero;
using namespace MeroTest;

TEST(StringFunctions, aPositionPastTheTextThrowsTheStandardOutOfRange)
{
    EXPECT_THROW(callBuiltin<SubStringFunction>("[\"ab\",5,6]"), std::out_of_range);
    EXPECT_THROW(callBuiltin<SliceFunction>("[\"abc\",4]"), std::out_of_range);
    EXPECT_THROW(callBuiltin<CharAtFunction>("[\"abc\",3]"), std::out_of_range);
}

TEST(StringFunctions, newArraysAreMadeButAnEmptySliceInputComesBackAsItIs)
{
    Value empty = json("[]");
    EXPECT_EQ(callBuiltin<SliceFunction>(ArgList{empty, Value(0)}).arrayPtr(), empty.arrayPtr());
    Value first = json("[1,2]");
    Value second = json("[3]");
    EXPECT_NE(callBuiltin<SliceFunction>(ArgList{first, Value(0)}).arrayPtr(), first.arrayPtr());
    EXPECT_NE(callBuiltin<ConcatFunction>(ArgList{first, second}).arrayPtr(), first.arrayPtr());
    EXPECT_EQ(canonicalJson(first), "[1,2]");
    EXPECT_EQ(canonicalJson(second), "[3]");
}

TEST(StringFunctions, aCallbackWritesAsTheEmptyString)
{
    EXPECT_EQ(callBuiltin<ToStringFunction>(ArgList{callbackValue([](ArgList&&) { return Value(); })}).string(), "");
}

TEST(Log, handsTheMessageToTheHostLogSink)
{
    TemplateHarness card;
    EXPECT_TRUE(callBuiltin<LogFunction>(ArgList{Value("hello")}, card.weak()).isNull());
    callBuiltin<LogFunction>(ArgList{Value(5)}, card.weak());  // a non-string logs ""
    EXPECT_EQ(card.logs, (std::vector<std::string>{"hello", ""}));
}

TEST(Log, aGoneEngineOrOneWithoutASinkLogsNothing)
{
    TemplateHarness card;
    EngineRef weak = card.weak();
    card.engine->hooks.log = nullptr;
    EXPECT_TRUE(callBuiltin<LogFunction>(ArgList{Value("x")}, weak).isNull());
    card.release();
    EXPECT_TRUE(callBuiltin<LogFunction>(ArgList{Value("x")}, weak).isNull());
    EXPECT_TRUE(card.logs.empty());
}

}  // namespace
