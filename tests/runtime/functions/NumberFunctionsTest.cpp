#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <set>
#include <stdexcept>

#include "runtime/functions/BuiltinTestSupport.h"
#include "runtime/functions/NumberFunctions.h"
#include "support/ReportedErrors.h"

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

TEST(MathMaxMin, scanFromTheFirstElementWithNonNumbersAsZero)
{
    const Case max[] = {
        {"[[3,9,2]]", "9"}, {"[[-3,-9]]", "-3"}, {"[[]]", "0"}, {"[[-1,\"a\"]]", "0"}, {"[[7]]", "7"},
    };
    expectQuietResults<MathMaxFunction>(max);
    const Case min[] = {
        {"[[3,9,2]]", "2"}, {"[[3,\"a\",1]]", "0"}, {"[[]]", "0"}, {"[[null,5]]", "0"}, {"[[-1.5,2]]", "-1.5"},
    };
    expectQuietResults<MathMinFunction>(min);
}

TEST(MathMaxMin, nanNeverReplacesTheBestButStaysInFirstPlace)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    Value trailing = Value::makeArray({Value(1), Value(nan), Value(4)});
    EXPECT_EQ(callBuiltin<MathMaxFunction>(ArgList{trailing}).number(), 4);
    EXPECT_EQ(callBuiltin<MathMinFunction>(ArgList{trailing}).number(), 1);
    Value leading = Value::makeArray({Value(nan), Value(1), Value(4)});
    EXPECT_TRUE(std::isnan(callBuiltin<MathMaxFunction>(ArgList{leading}).number()));
    EXPECT_TRUE(std::isnan(callBuiltin<MathMinFunction>(ArgList{leading}).number()));
}

TEST(Rounding, modeOneIsCeilingModeTwoLeavesTheValueOthersRoundHalfAway)
{
    const Case cases[] = {
        {"[1,1.1]", "2"},   {"[1,-1.9]", "-1"},  {"[2,1.7]", "1.7"}, {"[2,-1.7]", "-1.7"},
        {"[0,-2.5]", "-3"}, {"[0,2.5]", "3"},    {"[0,2.4]", "2"},   {"[7,1.5]", "2"},
        {"[\"1\",1.1]", "1"},  // a non-number mode reads as 0
        {"[1.9,1.1]", "2"},    // the mode is truncated
    };
    expectQuietResults<RoundingFunction>(cases);
}

TEST(ToNumber, pointedTextReadsAsDoubleOtherTextAsWholeNumber)
{
    const Case cases[] = {
        {"[\"3.9\"]", "3.9"}, {"[\"3\"]", "3"},   {"[\"12px\"]", "12"}, {"[\"1e5\"]", "1"},
        {"[\"  -7\"]", "-7"}, {"[\"-0.5x\"]", "-0.5"}, {"[\"1.5e2\"]", "150"}, {"[4.25]", "4.25"},
    };
    expectQuietResults<ToNumberFunction>(cases);
}

TEST(ToNumber, textWithoutALeadingNumberThrowsTheStandardConversionError)
{
    EXPECT_THROW(callBuiltin<ToNumberFunction>("[\"\"]"), std::invalid_argument);
    EXPECT_THROW(callBuiltin<ToNumberFunction>("[\"px\"]"), std::invalid_argument);
    EXPECT_THROW(callBuiltin<ToNumberFunction>("[\".\"]"), std::invalid_argument);
    EXPECT_THROW(callBuiltin<ToNumberFunction>("[\"99999999999999999999\"]"), std::out_of_range);
}

TEST(Random, drawsFreshNumbersInTheUnitInterval)
{
    std::set<double> seen;
    for (int i = 0; i < 200; ++i) {
        Value drawn = callBuiltin<RandomFunction>(ArgList{});
        ASSERT_TRUE(drawn.is(Kind::Number));
        EXPECT_GE(drawn.number(), 0.0);
        EXPECT_LT(drawn.number(), 1.0);
        seen.insert(drawn.number());
    }
    EXPECT_GT(seen.size(), 190u);
}

TEST(CurrentTime, givesWholeMillisecondsSinceTheEpochWhateverTheArguments)
{
    auto millisNow = [] {
        return static_cast<double>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                       std::chrono::system_clock::now().time_since_epoch())
                                       .count());
    };
    double before = millisNow();
    double none = callBuiltin<CurrentTimeFunction>(ArgList{}).number();
    double some = callBuiltin<CurrentTimeFunction>("[1,\"x\",null]").number();
    double after = millisNow();
    EXPECT_GE(none, before);
    EXPECT_LE(some, after);
    EXPECT_LE(none, some);
    EXPECT_EQ(none, std::floor(none));
}

TEST(TypeOf, namesOnlyNumbersBooleansAndStrings)
{
    const Case cases[] = {
        {"[1]", "\"number\""},   {"[true]", "\"boolean\""}, {"[\"\"]", "\"string\""},
        {"[null]", "\"object\""}, {"[[]]", "\"object\""},     {"[{}]", "\"object\""},
    };
    expectQuietResults<TypeOfFunction>(cases);
    EXPECT_EQ(callBuiltin<TypeOfFunction>(ArgList{callbackValue([](ArgList&&) { return Value(); })}).string(), "object");
}

}  // namespace
