// Operator and number cases that a row of plain arguments cannot show: NaN,
// IEEE division, standard exceptions, shared containers, random numbers and
// the clock.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <set>
#include <stdexcept>

#include "runtime/functions/BuiltinTestSupport.h"
#include "runtime/functions/NumberFunctions.h"
#include "runtime/functions/OperatorFunctions.h"

namespace {

using namespace Mero;
using namespace MeroTest;

const double nan = std::numeric_limits<double>::quiet_NaN();
const double infinity = std::numeric_limits<double>::infinity();

TEST(Compare, nanFailsEveryTestButInequality)
{
    for (int code = 0; code <= 5; ++code) {
        SCOPED_TRACE(code);
        Value result = callBuiltin<CompareFunction>(ArgList{Value(code), Value(nan), Value(nan)});
        EXPECT_EQ(result.boolean(), code == 1);
    }
}

TEST(NumberOperation, divisionFollowsIeee)
{
    EXPECT_EQ(callBuiltin<NumberOperationFunction>("[[3],[1,0]]").number(), infinity);
    EXPECT_EQ(callBuiltin<NumberOperationFunction>("[[3],[-1,0]]").number(), -infinity);
    EXPECT_TRUE(std::isnan(callBuiltin<NumberOperationFunction>("[[3],[0,0]]").number()));
    EXPECT_TRUE(std::isnan(callBuiltin<NumberOperationFunction>("[[4],[1,0]]").number()));
}

TEST(OperatorResults, areTheOperandsThemselvesSharingTheirContainers)
{
    Value operands = json("[[1],2]");
    Value chosen = callBuiltin<BooleanOperationFunction>(ArgList{json("[1]"), operands});
    EXPECT_EQ(chosen.arrayPtr(), operands.array()[0].arrayPtr());
    EXPECT_EQ(canonicalJson(operands), "[[1],2]");  // a copy: the operands stay

    Value array = json("[1]");
    EXPECT_EQ(callBuiltin<ConditionalOperatorFunction>(ArgList{Value(true), array, Value()}).arrayPtr(),
              array.arrayPtr());
    EXPECT_EQ(callBuiltin<NullFallbackFunction>(ArgList{Value(), array}).arrayPtr(), array.arrayPtr());
}

TEST(MathMaxMin, nanNeverReplacesTheBestButStaysInFirstPlace)
{
    Value trailing = Value::makeArray({Value(1), Value(nan), Value(4)});
    EXPECT_EQ(callBuiltin<MathMaxFunction>(ArgList{trailing}).number(), 4);
    EXPECT_EQ(callBuiltin<MathMinFunction>(ArgList{trailing}).number(), 1);
    Value leading = Value::makeArray({Value(nan), Value(1), Value(4)});
    EXPECT_TRUE(std::isnan(callBuiltin<MathMaxFunction>(ArgList{leading}).number()));
    EXPECT_TRUE(std::isnan(callBuiltin<MathMinFunction>(ArgList{leading}).number()));
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
        auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
        return static_cast<double>(std::chrono::duration_cast<std::chrono::milliseconds>(sinceEpoch).count());
    };
    double before = millisNow();
    double none = callBuiltin<CurrentTimeFunction>(ArgList{}).number();
    double some = callBuiltin<CurrentTimeFunction>("[1,\"x\",null]").number();
    double after = millisNow();
    EXPECT_GE(none, before);
    EXPECT_LE(none, some);
    EXPECT_LE(some, after);
    EXPECT_EQ(none, std::floor(none));
}

TEST(TypeOf, aCallbackIsAnObject)
{
    EXPECT_EQ(callBuiltin<TypeOfFunction>(ArgList{callbackValue([](ArgList&&) { return Value(); })}).string(),
              "object");
}

}  // namespace
