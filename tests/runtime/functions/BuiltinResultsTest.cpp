// What each built-in gives for plain arguments, one row per case: arguments
// as a JSON array, the result as canonical JSON. None of these cases reports
// anything.
#include <gtest/gtest.h>

#include "runtime/functions/BuiltinTestSupport.h"
#include "runtime/functions/CollectionFunctions.h"
#include "runtime/functions/NumberFunctions.h"
#include "runtime/functions/OperatorFunctions.h"
#include "runtime/functions/StringFunctions.h"
#include "support/ReportedErrors.h"

namespace {

using namespace Mero;
using namespace MeroTest;

struct ResultCase {
    Invoke invoke;
    const char* args;
    const char* expected;
};

const Invoke compare = invokeFresh<CompareFunction>;
const Invoke numberOperation = invokeFresh<NumberOperationFunction>;
const Invoke booleanOperation = invokeFresh<BooleanOperationFunction>;
const Invoke conditional = invokeFresh<ConditionalOperatorFunction>;
const Invoke nullFallback = invokeFresh<NullFallbackFunction>;
const Invoke prefixUnary = invokeFresh<PrefixUnaryFunction>;
const Invoke negative = invokeFresh<NegativeFunction>;
const Invoke mathMax = invokeFresh<MathMaxFunction>;
const Invoke mathMin = invokeFresh<MathMinFunction>;
const Invoke rounding = invokeFresh<RoundingFunction>;
const Invoke toNumber = invokeFresh<ToNumberFunction>;
const Invoke typeOf = invokeFresh<TypeOfFunction>;
const Invoke replace = invokeFresh<StringReplaceFunction>;
const Invoke subString = invokeFresh<SubStringFunction>;
const Invoke getLength = invokeFresh<GetLengthFunction>;
const Invoke toString = invokeFresh<ToStringFunction>;
const Invoke slice = invokeFresh<SliceFunction>;
const Invoke indexOf = invokeFresh<IndexOfFunction>;
const Invoke split = invokeFresh<SplitFunction>;
const Invoke charAt = invokeFresh<CharAtFunction>;
const Invoke concat = invokeFresh<ConcatFunction>;
const Invoke include = invokeFresh<IncludeFunction>;
const Invoke arrayGet = invokeFresh<ArrayGetFunction>;
const Invoke jsonGet = invokeFresh<JSONGetFunction>;

// Several short rows share a line, grouped by function.
// clang-format off
const ResultCase kResults[] = {
    // Compare (code, a, b): numbers follow the code table; the code is truncated.
    {compare, "[0,1,1]", "true"}, {compare, "[0,1,2]", "false"}, {compare, "[1,1,2]", "true"},
    {compare, "[1,2,2]", "false"}, {compare, "[2,2,1]", "true"}, {compare, "[2,1,2]", "false"},
    {compare, "[3,2,2]", "true"}, {compare, "[3,1,2]", "false"}, {compare, "[4,1,2]", "true"},
    {compare, "[4,2,1]", "false"}, {compare, "[5,2,2]", "true"}, {compare, "[5,3,2]", "false"},
    {compare, "[4.9,1,2]", "true"},
    // Strings and booleans have no ordering: every code but 0 tests inequality.
    {compare, "[0,\"a\",\"a\"]", "true"}, {compare, "[0,\"a\",\"b\"]", "false"}, {compare, "[2,\"b\",\"a\"]", "true"},
    {compare, "[4,\"b\",\"a\"]", "true"}, {compare, "[3,\"a\",\"a\"]", "false"}, {compare, "[9,\"a\",\"b\"]", "true"},
    {compare, "[0,true,true]", "true"}, {compare, "[0,true,false]", "false"}, {compare, "[2,true,false]", "true"},
    {compare, "[5,false,false]", "false"},
    // A null on the left is below anything (null < 5 holds); one on the right
    // makes every code but 0 true.
    {compare, "[0,null,null]", "true"}, {compare, "[1,null,null]", "false"}, {compare, "[0,null,5]", "false"},
    {compare, "[4,null,5]", "true"}, {compare, "[2,null,5]", "true"}, {compare, "[9,null,[1]]", "true"},
    {compare, "[0,5,null]", "false"}, {compare, "[3,5,null]", "true"}, {compare, "[4,\"a\",null]", "true"},
    {compare, "[1,[1],null]", "true"},

    // NumberOperation (codes, operands): strictly left to right.
    {numberOperation, "[[0,2],[1,2,3]]", "9"}, {numberOperation, "[[1],[5,7]]", "-2"},
    {numberOperation, "[[2,1],[2,3,4]]", "2"}, {numberOperation, "[[3],[7,2]]", "3.5"},
    {numberOperation, "[[4],[7,3]]", "1"}, {numberOperation, "[[4],[-7,3]]", "-1"},
    {numberOperation, "[[],[42]]", "42"}, {numberOperation, "[[0],[null,2]]", "2"},
    {numberOperation, "[[0,0],[true,[5],1]]", "1"},
    // One string operand concatenates every operand's text and ignores the codes.
    {numberOperation, "[[1],[\"x\",2]]", "\"x2\""}, {numberOperation, "[[1],[\"a\",1]]", "\"a1\""},
    {numberOperation, "[[2,3],[1.5,\"b\",2]]", "\"1.5b2\""},
    {numberOperation, "[[0,0,0,0],[\"a\",null,true,[1],{}]]", "\"a\""},
    {numberOperation, "[[0],[\"\",0.1234567]]", "\"0.123457\""}, {numberOperation, "[[9],[\"x\",1]]", "\"x1\""},

    // BooleanOperation (codes, operands) selects an operand like script and/or;
    // any other code takes the right operand; non-arrays give false quietly.
    {booleanOperation, "[[0],[0,\"x\"]]", "0"}, {booleanOperation, "[[0],[1,\"x\"]]", "\"x\""},
    {booleanOperation, "[[1],[\"\",\"x\"]]", "\"x\""}, {booleanOperation, "[[1],[2,\"x\"]]", "2"},
    {booleanOperation, "[[1],[[],\"x\"]]", "[]"}, {booleanOperation, "[[0],[{},false]]", "false"},
    {booleanOperation, "[[0,1],[1,0,\"y\"]]", "\"y\""}, {booleanOperation, "[[1,0],[0,5,6]]", "6"},
    {booleanOperation, "[[7],[1,\"z\"]]", "\"z\""}, {booleanOperation, "[[7],[0,null]]", "null"},
    {booleanOperation, "[[],[3]]", "3"}, {booleanOperation, "[0,[1,2]]", "false"},
    {booleanOperation, "[[0],\"ab\"]", "false"},

    // Conditional; NullFallback, where only null falls back.
    {conditional, "[true,\"a\",\"b\"]", "\"a\""}, {conditional, "[0,\"a\",\"b\"]", "\"b\""},
    {conditional, "[\"\",1,2]", "2"}, {conditional, "[null,1,2]", "2"}, {conditional, "[[],1,2]", "1"},
    {nullFallback, "[null,1]", "1"}, {nullFallback, "[false,1]", "false"}, {nullFallback, "[0,1]", "0"},
    {nullFallback, "[\"\",1]", "\"\""}, {nullFallback, "[[2],1]", "[2]"},

    // Logical not; negation, where a non-number gives 0.
    {prefixUnary, "[null]", "true"}, {prefixUnary, "[0]", "true"}, {prefixUnary, "[\"\"]", "true"},
    {prefixUnary, "[false]", "true"}, {prefixUnary, "[1]", "false"}, {prefixUnary, "[\"0\"]", "false"},
    {prefixUnary, "[[]]", "false"}, {prefixUnary, "[{}]", "false"},
    {negative, "[3]", "-3"}, {negative, "[-2.5]", "2.5"}, {negative, "[\"3\"]", "0"}, {negative, "[null]", "0"},

    // MathMax, MathMin: non-numbers read as 0, an empty array gives 0.
    {mathMax, "[[3,9,2]]", "9"}, {mathMax, "[[-3,-9]]", "-3"}, {mathMax, "[[]]", "0"},
    {mathMax, "[[-1,\"a\"]]", "0"}, {mathMin, "[[3,9,2]]", "2"}, {mathMin, "[[3,\"a\",1]]", "0"},
    {mathMin, "[[]]", "0"}, {mathMin, "[[null,5]]", "0"},

    // Rounding (mode, x): 1 ceiling, 2 unchanged, others round half away from zero.
    {rounding, "[1,1.1]", "2"}, {rounding, "[1,-1.9]", "-1"}, {rounding, "[2,1.7]", "1.7"},
    {rounding, "[0,-2.5]", "-3"}, {rounding, "[0,2.5]", "3"}, {rounding, "[0,2.4]", "2"},
    {rounding, "[7,1.5]", "2"}, {rounding, "[\"1\",1.1]", "1"}, {rounding, "[1.9,1.1]", "2"},

    // ToNumber: text with a point reads as a double, other text as a whole number.
    {toNumber, "[\"3.9\"]", "3.9"}, {toNumber, "[\"3\"]", "3"}, {toNumber, "[\"12px\"]", "12"},
    {toNumber, "[\"1e5\"]", "1"}, {toNumber, "[\"  -7\"]", "-7"}, {toNumber, "[\"1.5e2\"]", "150"},
    {toNumber, "[4.25]", "4.25"},

    // TypeOf names only numbers, booleans and strings.
    {typeOf, "[1]", "\"number\""}, {typeOf, "[true]", "\"boolean\""}, {typeOf, "[\"\"]", "\"string\""},
    {typeOf, "[null]", "\"object\""}, {typeOf, "[[]]", "\"object\""}, {typeOf, "[{}]", "\"object\""},

    // StringReplace changes the first occurrence only; an empty pattern
    // matches at the front; non-strings read as "".
    {replace, "[\"a-b-c\",\"-\",\"+\"]", "\"a+b-c\""}, {replace, "[\"abc\",\"x\",\"y\"]", "\"abc\""},
    {replace, "[\"abc\",\"\",\">\"]", "\">abc\""}, {replace, "[\"aaa\",\"aa\",\"b\"]", "\"ba\""},
    {replace, "[\"abc\",\"b\",1]", "\"ac\""}, {replace, "[5,\"\",\"x\"]", "\"x\""},

    // SubString (text, start, end): the length end - start wraps when end < start.
    {subString, "[\"abcdef\",1,3]", "\"bc\""}, {subString, "[\"abcdef\",4,2]", "\"ef\""},
    {subString, "[\"abcdef\",2,99]", "\"cdef\""}, {subString, "[\"abcdef\",-3,2]", "\"ab\""},
    {subString, "[\"abcdef\",1.9,3.9]", "\"bc\""}, {subString, "[\"ab\",2,5]", "\"\""},

    // GetLength counts bytes or elements.
    {getLength, "[\"abc\"]", "3"}, {getLength, "[\"\xE2\x82\xAC\"]", "3"}, {getLength, "[[1,null,3]]", "3"},
    {getLength, "[{\"a\":1}]", "0"}, {getLength, "[7]", "0"},

    // ToString: booleans give digits and a string gives "", on purpose.
    // (Canonical JSON writes the resulting text unescaped.)
    {toString, "[null]", "\"null\""}, {toString, "[2.50]", "\"2.5\""}, {toString, "[0.1234567]", "\"0.123457\""},
    {toString, "[true]", "\"1\""}, {toString, "[false]", "\"0\""}, {toString, "[\"text\"]", "\"\""},
    {toString, "[[1,null]]", "\"[1]\""}, {toString, "[{\"k\":\"v\"}]", R"("{"k":"v"}")"},

    // Slice: the third argument is a length for text and an end for arrays.
    {slice, "[\"abcdef\",2,3]", "\"cde\""}, {slice, "[\"abcdef\",2]", "\"cdef\""}, {slice, "[\"abcdef\",4,9]", "\"ef\""},
    {slice, "[\"abcdef\",6]", "\"\""}, {slice, "[\"\",5]", "\"\""}, {slice, "[[1,2,3,4],1,3]", "[2,3]"},
    {slice, "[[1,2],0,9]", "[1,2]"}, {slice, "[[1,2,3],1]", "[2,3]"}, {slice, "[[1,2,3],2,1]", "[]"},
    {slice, "[[1,2,3],7]", "[]"}, {slice, "[[],3,4]", "[]"}, {slice, "[5,0,1]", "null"},
    {slice, "[{\"a\":1},0]", "null"},

    // IndexOf: byte positions in text, equals on elements (never for null).
    {indexOf, "[\"hello\",\"l\"]", "2"}, {indexOf, "[\"hello\",\"z\"]", "-1"}, {indexOf, "[\"hello\",\"\"]", "0"},
    {indexOf, "[\"h\xC3\xA9llo\",\"l\"]", "3"}, {indexOf, "[[1,\"1\",true],true]", "2"},
    {indexOf, "[[1,\"1\",true],\"1\"]", "1"}, {indexOf, "[[null],null]", "-1"}, {indexOf, "[[[1]],[1]]", "-1"},
    {indexOf, "[\"123\",2]", "-1"}, {indexOf, "[5,5]", "-1"},

    // Split cuts like line reads: inner empty tokens stay, a trailing one does not.
    {split, "[\"a,,b\",\",\"]", "[\"a\",\"\",\"b\"]"}, {split, "[\"a,b,\",\",\"]", "[\"a\",\"b\"]"},
    {split, "[\",a\",\",\"]", "[\"\",\"a\"]"}, {split, "[\",\",\",\"]", "[\"\"]"}, {split, "[\"\",\",\"]", "[]"},
    {split, "[\"abc\",\";\"]", "[\"abc\"]"}, {split, "[7,\",\"]", "[]"},

    // CharAt gives the byte's number as text, not the character.
    {charAt, "[\"abc\",1]", "\"98\""}, {charAt, "[\"A\",0]", "\"65\""}, {charAt, "[\"\xC3\xA9\",0]", "\"195\""},
    {charAt, "[\"abc\",-4]", "\"97\""},

    // Concat joins two arrays or two strings only; Include tests equals or text.
    {concat, "[\"ab\",\"cd\"]", "\"abcd\""}, {concat, "[[1],[2,3]]", "[1,2,3]"}, {concat, "[[1],2]", "null"},
    {concat, "[\"a\",1]", "null"}, {concat, "[null,null]", "null"},
    {include, "[\"abc\",\"\"]", "true"}, {include, "[\"abc\",\"bc\"]", "true"}, {include, "[\"abc\",\"x\"]", "false"},
    {include, "[[1,\"a\"],\"a\"]", "true"}, {include, "[[1],\"1\"]", "false"}, {include, "[[null],null]", "false"},
    {include, "[\"1\",1]", "false"}, {include, "[{},\"a\"]", "false"},

    // ArrayGet: a truncated index that saturates at 0, or a member by key text;
    // a falsy container gives null quietly.
    {arrayGet, "[[10,20],1]", "20"}, {arrayGet, "[[10,20],1.9]", "20"}, {arrayGet, "[[10,20],-1]", "10"},
    {arrayGet, "[{\"2\":\"two\"},2]", "\"two\""}, {arrayGet, "[{\"1.5\":\"x\"},1.5]", "\"x\""},
    {arrayGet, "[{\"a\":[1]},\"a\"]", "[1]"}, {arrayGet, "[{\"a\":1},\"b\"]", "null"},
    {arrayGet, "[{\"\":5},true]", "5"}, {arrayGet, "[null,3]", "null"}, {arrayGet, "[0,3]", "null"},
    {arrayGet, "[\"\",3]", "null"}, {arrayGet, "[false,3]", "null"},

    // JSONGet: a present member wins over the fallback, even a null one.
    {jsonGet, "[{\"a\":null},\"a\",5]", "null"}, {jsonGet, "[{},\"a\",5]", "5"}, {jsonGet, "[{},\"a\"]", "null"},
    {jsonGet, "[{\"a\":{\"b\":1}},\"a\"]", "{\"b\":1}"}, {jsonGet, "[[1],\"0\",7]", "7"},
    {jsonGet, "[{\"1\":2},1,3]", "3"},
};
// clang-format on

TEST(BuiltinResults, eachCaseGivesItsExactResultQuietly)
{
    for (size_t i = 0; i < std::size(kResults); ++i) {
        const ResultCase& row = kResults[i];
        SCOPED_TRACE("row " + std::to_string(i) + ": " + row.args);
        std::string result;
        EXPECT_EQ(printedOutput([&] { result = canonicalJson(row.invoke(argsOf(row.args))); }), "");
        EXPECT_EQ(result, row.expected);
    }
}

}  // namespace
