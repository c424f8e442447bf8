// Operator, number and string cases that a row of plain arguments cannot
// show: NaN, IEEE division, standard exceptions, shared containers,
// callbacks, random numbers, the clock and the host log sink.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <set>
#include <stdexcept>

#include "runtime/functions/BuiltinTestSupport.h"
#include "support/TemplateHarness.h"

namespace {

using namespace Mero;
using namespace MeroTest;

const double nan = std::numeric_limits<double>::quiet_NaN();

TEST(NumberFunctions, nanAndDivisionByZeroFollowIeee)
{
    for (int code = 0; code <= 5; ++code) {
        EXPECT_EQ(callBuiltin("Compare", ArgList{Value(code), Value(nan), Value(nan)}).boolean(), code == 1)
            << code;
    }
    EXPECT_EQ(callBuiltin("NumberOperation", "[[3],[-1,0]]").number(), -std::numeric_limits<double>::infinity());
}

TEST(NumberFunctions, positionsPastTheTextAndUnreadableNumbersThrowTheStandardExceptions)
{
    EXPECT_THROW(callBuiltin("ToNumber", "[\"px\"]"), std::invalid_argument);
    EXPECT_THROW(callBuiltin("ToNumber", "[\"99999999999999999999\"]"), std::out_of_range);
    EXPECT_THROW(callBuiltin("SubString", "[\"ab\",5,6]"), std::out_of_range);
    EXPECT_THROW(callBuiltin("Slice", "[\"abc\",4]"), std::out_of_range);
    EXPECT_THROW(callBuiltin("CharAt", "[\"abc\",3]"), std::out_of_range);
}

// An operator hands back the operand itself; Slice makes a new array, but
// for an empty input, which comes back as it is.
TEST(ContainerResults, operatorsShareTheOperandsContainerAndSliceCopiesAllButAnEmptyInput)
{
    Value operands = json("[[1],2]");
    EXPECT_EQ(callBuiltin("BooleanOperation", ArgList{json("[1]"), operands}).arrayPtr(),
              operands.array()[0].arrayPtr());
    Value empty = json("[]");
    EXPECT_EQ(callBuiltin("Slice", ArgList{empty, Value(0)}).arrayPtr(), empty.arrayPtr());
    Value first = json("[1,2]");
    EXPECT_NE(callBuiltin("Slice", ArgList{first, Value(0)}).arrayPtr(), first.arrayPtr());
}

TEST(StringFunctions, aCallbackIsAnObjectThatWritesAsTheEmptyString)
{
    Value callback = callbackValue([](ArgList&&) { return Value(); });
    EXPECT_EQ(callBuiltin("TypeOf", ArgList{callback}).string(), "object");
    EXPECT_EQ(callBuiltin("ToString", ArgList{callback}).string(), "");
}

TEST(RandomAndTime, randomDrawsFreshNumbersInTheUnitIntervalAndTimeIsWholeMillisecondsNow)
{
    std::set<double> seen;
    for (int i = 0; i < 200; ++i) {
        const double drawn = callBuiltin("Random", ArgList{}).number();
        EXPECT_GE(drawn, 0.0);
        EXPECT_LT(drawn, 1.0);
        seen.insert(drawn);
    }
    EXPECT_GT(seen.size(), 190u);

    auto millisNow = [] {
        auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
        return static_cast<double>(std::chrono::duration_cast<std::chrono::milliseconds>(sinceEpoch).count());
    };
    const double before = millisNow();
    const double none = callBuiltin("CurrentTime", ArgList{}).number();
    const double some = callBuiltin("CurrentTime", "[1,\"x\",null]").number();  // arguments are ignored
    EXPECT_GE(none, before);
    EXPECT_LE(none, some);
    EXPECT_LE(some, millisNow());
    EXPECT_EQ(none, std::floor(none));
}

TEST(Log, handsTextToTheHostSinkAndNothingWithoutASinkOrEngine)
{
    TemplateHarness card;
    EngineRef weak = card.weak();
    EXPECT_TRUE(callBuiltin("Log", ArgList{Value("hello")}, weak).isNull());
    callBuiltin("Log", ArgList{Value(5)}, weak);  // a non-string logs ""
    card.engine->services.log = nullptr;
    callBuiltin("Log", ArgList{Value("x")}, weak);
    card.release();
    EXPECT_TRUE(callBuiltin("Log", ArgList{Value("x")}, weak).isNull());
    EXPECT_EQ(card.logs, (std::vector<std::string>{"hello", ""}));
}

}  // namespace
