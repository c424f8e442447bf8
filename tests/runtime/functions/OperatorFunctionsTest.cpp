#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "runtime/functions/BuiltinTestSupport.h"
#include "runtime/functions/OperatorFunctions.h"
#include "support/ReportedErrors.h"

namespace {

using namespace Mero;
using namespace MeroTest;

struct Case {
    const char* args;  // JSON array
    const char* expected;  // canonical JSON
};

template <typename Function, size_t N>
void expectResults(const Case (&cases)[N])
{
    for (const Case& row : cases) {
        SCOPED_TRACE(row.args);
        EXPECT_EQ(resultOf<Function>(row.args), row.expected);
    }
}

TEST(Compare, numbersFollowTheCodeTable)
{
    const Case cases[] = {
        {"[0,1,1]", "true"}, {"[0,1,2]", "false"}, {"[1,1,2]", "true"}, {"[1,2,2]", "false"},
        {"[2,2,1]", "true"}, {"[2,1,2]", "false"}, {"[3,2,2]", "true"}, {"[3,1,2]", "false"},
        {"[4,1,2]", "true"}, {"[4,2,1]", "false"}, {"[5,2,2]", "true"}, {"[5,3,2]", "false"},
        {"[4.9,1,2]", "true"},  // the code is truncated
    };
    expectResults<CompareFunction>(cases);
}

TEST(Compare, nanFailsEveryTestButInequality)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (int code = 0; code <= 5; ++code) {
        SCOPED_TRACE(code);
        Value result = callBuiltin<CompareFunction>(ArgList{Value(code), Value(nan), Value(nan)});
        EXPECT_EQ(result.boolean(), code == 1);
    }
}

TEST(Compare, stringsAndBooleansOnlyTestEquality)
{
    const Case cases[] = {
        {"[0,\"a\",\"a\"]", "true"},
        {"[0,\"a\",\"b\"]", "false"},
        // Every code other than 0 tests inequality: there is no ordering.
        {"[2,\"b\",\"a\"]", "true"},
        {"[4,\"b\",\"a\"]", "true"},
        {"[3,\"a\",\"a\"]", "false"},
        {"[5,\"a\",\"a\"]", "false"},
        {"[9,\"a\",\"b\"]", "true"},
        {"[0,true,true]", "true"},
        {"[0,true,false]", "false"},
        {"[2,true,false]", "true"},
        {"[5,false,false]", "false"},
    };
    expectResults<CompareFunction>(cases);
}

TEST(Compare, nullOnEitherSide)
{
    const Case cases[] = {
        {"[0,null,null]", "true"},
        {"[1,null,null]", "false"},
        {"[0,null,5]", "false"},
        // A null on the left is below anything: null < 5 holds on purpose.
        {"[4,null,5]", "true"},
        {"[2,null,5]", "true"},
        {"[9,null,[1]]", "true"},
        {"[0,5,null]", "false"},
        {"[3,5,null]", "true"},
        {"[4,\"a\",null]", "true"},
        {"[1,[1],null]", "true"},
    };
    expectResults<CompareFunction>(cases);
}

TEST(Compare, mixedKindsAreATypeError)
{
    EXPECT_EQ(thrownMessage([] { callBuiltin<CompareFunction>("[0,1,\"1\"]"); }), "compare args type not match");
    EXPECT_EQ(thrownMessage([] { callBuiltin<CompareFunction>("[0,true,1]"); }), "compare args type not match");
    EXPECT_EQ(thrownMessage([] { callBuiltin<CompareFunction>("[0,{},{}]"); }), "compare args type not match");
}

TEST(NumberOperation, foldsStrictlyLeftToRight)
{
    const Case cases[] = {
        {"[[0,2],[1,2,3]]", "9"},  // (1 + 2) * 3, no precedence
        {"[[1],[5,7]]", "-2"},
        {"[[2,1],[2,3,4]]", "2"},
        {"[[3],[7,2]]", "3.5"},
        {"[[4],[7,3]]", "1"},
        {"[[4],[-7,3]]", "-1"},
        {"[[],[42]]", "42"},
        {"[[0],[null,2]]", "2"},  // non-numbers read as 0
        {"[[0,0],[true,[5],1]]", "1"},
    };
    expectResults<NumberOperationFunction>(cases);
}

TEST(NumberOperation, divisionFollowsIeee)
{
    EXPECT_EQ(callBuiltin<NumberOperationFunction>("[[3],[1,0]]").number(), std::numeric_limits<double>::infinity());
    EXPECT_EQ(callBuiltin<NumberOperationFunction>("[[3],[-1,0]]").number(), -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(callBuiltin<NumberOperationFunction>("[[3],[0,0]]").number()));
    EXPECT_TRUE(std::isnan(callBuiltin<NumberOperationFunction>("[[4],[1,0]]").number()));
}

TEST(NumberOperation, aStringOperandConcatenatesEveryOperandAndIgnoresTheCodes)
{
    const Case cases[] = {
        {"[[1],[\"x\",2]]", "\"x2\""},
        {"[[1],[\"a\",1]]", "\"a1\""},
        {"[[2,3],[1.5,\"b\",2]]", "\"1.5b2\""},
        {"[[0,0,0,0],[\"a\",null,true,[1],{}]]", "\"a\""},
        {"[[0],[\"\",0.1234567]]", "\"0.123457\""},
        {"[[9],[\"x\",1]]", "\"x1\""},  // an unknown code is not even read
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.args);
        EXPECT_EQ(printedOutput([&] { EXPECT_EQ(resultOf<NumberOperationFunction>(row.args), row.expected); }), "");
    }
}

TEST(BooleanOperation, selectsAnOperandLikeScriptAndOr)
{
    const Case cases[] = {
        {"[[0],[0,\"x\"]]", "0"},
        {"[[0],[1,\"x\"]]", "\"x\""},
        {"[[1],[\"\",\"x\"]]", "\"x\""},
        {"[[1],[2,\"x\"]]", "2"},
        {"[[1],[[],\"x\"]]", "[]"},  // arrays are never falsy
        {"[[0],[{},false]]", "false"},
        {"[[0,1],[1,0,\"y\"]]", "\"y\""},  // (1 && 0) || "y"
        {"[[1,0],[0,5,6]]", "6"},  // (0 || 5) && 6
        {"[[7],[1,\"z\"]]", "\"z\""},  // any other code takes the right operand
        {"[[7],[0,null]]", "null"},
        {"[[],[3]]", "3"},
    };
    expectResults<BooleanOperationFunction>(cases);
}

TEST(BooleanOperation, nonArraysGiveFalseQuietly)
{
    EXPECT_EQ(printedOutput([] { EXPECT_EQ(resultOf<BooleanOperationFunction>("[0,[1,2]]"), "false"); }), "");
    EXPECT_EQ(printedOutput([] { EXPECT_EQ(resultOf<BooleanOperationFunction>("[[0],\"ab\"]"), "false"); }), "");
}

TEST(BooleanOperation, theResultIsACopyThatSharesContainers)
{
    Value operands = json("[[1],2]");
    Value result = callBuiltin<BooleanOperationFunction>(ArgList{json("[1]"), operands});
    EXPECT_EQ(result.arrayPtr(), operands.array()[0].arrayPtr());
    EXPECT_EQ(canonicalJson(operands), "[[1],2]");
}

TEST(ConditionalAndNullFallback, chooseWithoutChangingTheChosenValue)
{
    const Case conditional[] = {
        {"[true,\"a\",\"b\"]", "\"a\""}, {"[0,\"a\",\"b\"]", "\"b\""}, {"[\"\",1,2]", "2"},
        {"[null,1,2]", "2"},             {"[[],1,2]", "1"},             {"[-1,{\"k\":1},2]", "{\"k\":1}"},
    };
    expectResults<ConditionalOperatorFunction>(conditional);
    // Only null falls back: false, 0 and "" are kept.
    const Case fallback[] = {
        {"[null,1]", "1"}, {"[false,1]", "false"}, {"[0,1]", "0"}, {"[\"\",1]", "\"\""}, {"[[2],1]", "[2]"},
    };
    expectResults<NullFallbackFunction>(fallback);
}

TEST(ConditionalAndNullFallback, theChosenContainerIsTheArgumentItself)
{
    Value array = json("[1]");
    EXPECT_EQ(callBuiltin<ConditionalOperatorFunction>(ArgList{Value(true), array, Value()}).arrayPtr(), array.arrayPtr());
    EXPECT_EQ(callBuiltin<NullFallbackFunction>(ArgList{Value(), array}).arrayPtr(), array.arrayPtr());
}

TEST(PrefixUnaryAndNegative, logicalNotAndArithmeticNegation)
{
    const Case not_[] = {
        {"[null]", "true"}, {"[0]", "true"}, {"[\"\"]", "true"}, {"[false]", "true"},
        {"[1]", "false"},   {"[\"0\"]", "false"}, {"[[]]", "false"}, {"[{}]", "false"},
    };
    expectResults<PrefixUnaryFunction>(not_);
    const Case negative[] = {{"[3]", "-3"}, {"[-2.5]", "2.5"}, {"[\"3\"]", "0"}, {"[true]", "0"}, {"[null]", "0"}};
    for (const Case& row : negative) {
        SCOPED_TRACE(row.args);
        EXPECT_EQ(printedOutput([&] { EXPECT_EQ(resultOf<NegativeFunction>(row.args), row.expected); }), "");
    }
}

}  // namespace
