// What each built-in gives for plain arguments: arguments as a JSON array,
// the result as canonical JSON. None of these cases reports anything.
#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "runtime/functions/BuiltinTestSupport.h"
#include "support/ReportedErrors.h"

namespace {

using namespace Mero;
using namespace MeroTest;

struct ResultGroup {
    const char* function;
    std::vector<std::pair<const char*, const char*>> cases;  // arguments, result
};

// clang-format off
const ResultGroup kResults[] = {
    // (code, a, b): numbers follow the code table; the code is truncated.
    {"Compare", {
        {"[0,1,1]", "true"}, {"[1,2,2]", "false"}, {"[2,2,1]", "true"}, {"[2,1,2]", "false"}, {"[3,2,2]", "true"},
        {"[3,1,2]", "false"}, {"[4,1,2]", "true"}, {"[4,2,1]", "false"}, {"[5,2,2]", "true"}, {"[4.9,1,2]", "true"},
        // Strings and booleans have no ordering: every code but 0 tests inequality.
        {"[0,\"a\",\"a\"]", "true"}, {"[0,\"a\",\"b\"]", "false"}, {"[3,\"a\",\"a\"]", "false"},
        {"[9,\"a\",\"b\"]", "true"}, {"[0,true,false]", "false"}, {"[2,true,false]", "true"},
        // A null on the left is below anything; one on the right makes every code but 0 true.
        {"[0,null,null]", "true"}, {"[1,null,null]", "false"}, {"[0,null,5]", "false"}, {"[4,null,5]", "true"},
        {"[2,null,5]", "true"}, {"[0,5,null]", "false"}, {"[3,5,null]", "true"}, {"[1,[1],null]", "true"}}},
    // (codes, operands): strictly left to right; one string operand
    // concatenates every operand's text and ignores the codes.
    {"NumberOperation", {
        {"[[0,2],[1,2,3]]", "9"}, {"[[2,1],[2,3,4]]", "2"}, {"[[3],[7,2]]", "3.5"}, {"[[4],[-7,3]]", "-1"},
        {"[[],[42]]", "42"}, {"[[0,0,0],[null,true,[5],1]]", "1"},
        {"[[2,3],[1.5,\"b\",2]]", "\"1.5b2\""}, {"[[0,0,0,0],[\"a\",null,true,[1],{}]]", "\"a\""}}},
    // Selects an operand like script and/or; any other code takes the right
    // operand; non-arrays give false quietly.
    {"BooleanOperation", {
        {"[[0],[0,\"x\"]]", "0"}, {"[[0],[1,\"x\"]]", "\"x\""}, {"[[1],[\"\",\"x\"]]", "\"x\""},
        {"[[1],[2,\"x\"]]", "2"}, {"[[1],[[],\"x\"]]", "[]"}, {"[[0,1],[1,0,\"y\"]]", "\"y\""},
        {"[[7],[0,null]]", "null"}, {"[[],[3]]", "3"}, {"[0,[1,2]]", "false"}}},
    {"ConditionalOperator", {
        {"[true,\"a\",\"b\"]", "\"a\""}, {"[0,\"a\",\"b\"]", "\"b\""}, {"[\"\",1,2]", "2"}, {"[[],1,2]", "1"}}},
    {"NullFallback", {
        {"[null,1]", "1"}, {"[false,1]", "false"}, {"[0,1]", "0"}, {"[\"\",1]", "\"\""}}},
    {"PrefixUnary", {
        {"[null]", "true"}, {"[0]", "true"}, {"[\"\"]", "true"}, {"[false]", "true"}, {"[1]", "false"},
        {"[\"0\"]", "false"}, {"[[]]", "false"}}},
    {"Negative", {{"[3]", "-3"}, {"[-2.5]", "2.5"}, {"[\"3\"]", "0"}}},
    // Non-numbers read as 0; an empty array gives 0.
    {"MathMax", {{"[[3,9,2]]", "9"}, {"[[-3,-9]]", "-3"}, {"[[]]", "0"},
        {"[[-1,\"a\"]]", "0"}}},
    {"MathMin", {{"[[3,9,2]]", "2"}, {"[[]]", "0"}, {"[[null,5]]", "0"}}},
    // (mode, x): 1 ceiling, 2 unchanged, others round half away from zero.
    {"Rounding", {
        {"[1,1.1]", "2"}, {"[1,-1.9]", "-1"}, {"[2,1.7]", "1.7"}, {"[0,-2.5]", "-3"}, {"[7,2.4]", "2"},
        {"[\"1\",1.1]", "1"}, {"[1.9,1.1]", "2"}}},
    // Text with a point reads as a double, other text as a whole number.
    {"ToNumber", {
        {"[\"3.9\"]", "3.9"}, {"[\"12px\"]", "12"}, {"[\"1e5\"]", "1"}, {"[\"1.5e2\"]", "150"}, {"[4.25]", "4.25"}}},
    {"TypeOf", {{"[1]", "\"number\""}, {"[null]", "\"object\""}, {"[[]]", "\"object\""}}},
    // The first occurrence only; an empty pattern matches at the front; non-strings read as "".
    {"StringReplace", {
        {"[\"a-b-c\",\"-\",\"+\"]", "\"a+b-c\""}, {"[\"abc\",\"x\",\"y\"]", "\"abc\""},
        {"[\"abc\",\"\",\">\"]", "\">abc\""}, {"[\"abc\",\"b\",1]", "\"ac\""}, {"[5,\"\",\"x\"]", "\"x\""}}},
    // (text, start, end): the length end - start wraps when end < start.
    {"SubString", {
        {"[\"abcdef\",1,3]", "\"bc\""}, {"[\"abcdef\",4,2]", "\"ef\""}, {"[\"abcdef\",2,99]", "\"cdef\""},
        {"[\"abcdef\",-3,2]", "\"ab\""}, {"[\"abcdef\",1.9,3.9]", "\"bc\""}, {"[\"ab\",2,5]", "\"\""}}},
    // Bytes or elements.
    {"GetLength", {
        {"[\"abc\"]", "3"}, {"[\"\xE2\x82\xAC\"]", "3"}, {"[[1,null,3]]", "3"}, {"[7]", "0"}}},
    // Booleans give digits and a string gives "", on purpose. (Canonical JSON
    // writes the resulting text unescaped.)
    {"ToString", {
        {"[null]", "\"null\""}, {"[2.50]", "\"2.5\""}, {"[0.1234567]", "\"0.123457\""}, {"[true]", "\"1\""},
        {"[\"text\"]", "\"\""}, {"[[1,null]]", "\"[1]\""}, {"[{\"k\":\"v\"}]", R"("{"k":"v"}")"}}},
    // The third argument is a length for text and an end for arrays.
    {"Slice", {
        {"[\"abcdef\",2,3]", "\"cde\""}, {"[\"abcdef\",2]", "\"cdef\""}, {"[\"abcdef\",4,9]", "\"ef\""},
        {"[\"abcdef\",6]", "\"\""}, {"[\"\",5]", "\"\""}, {"[[1,2,3,4],1,3]", "[2,3]"}, {"[[1,2],0,9]", "[1,2]"},
        {"[[1,2,3],2,1]", "[]"}, {"[[1,2,3],7]", "[]"}, {"[5,0,1]", "null"}}},
    // Byte positions in text, equals on elements (never for null).
    {"IndexOf", {
        {"[\"hello\",\"l\"]", "2"}, {"[\"hello\",\"z\"]", "-1"}, {"[\"hello\",\"\"]", "0"},
        {"[\"h\xC3\xA9llo\",\"l\"]", "3"}, {"[[1,\"1\",true],true]", "2"}, {"[[1,\"1\",true],\"1\"]", "1"},
        {"[[null],null]", "-1"}, {"[[[1]],[1]]", "-1"}, {"[\"123\",2]", "-1"}, {"[5,5]", "-1"}}},
    // Cuts like line reads: inner empty tokens stay, a trailing one does not.
    {"Split", {
        {"[\"a,,b\",\",\"]", "[\"a\",\"\",\"b\"]"}, {"[\"a,b,\",\",\"]", "[\"a\",\"b\"]"},
        {"[\",a\",\",\"]", "[\"\",\"a\"]"}, {"[\",\",\",\"]", "[\"\"]"}, {"[\"\",\",\"]", "[]"}, {"[7,\",\"]", "[]"}}},
    // The byte's number as text, not the character.
    {"CharAt", {{"[\"abc\",1]", "\"98\""}, {"[\"\xC3\xA9\",0]", "\"195\""},
        {"[\"abc\",-4]", "\"97\""}}},
    // Two arrays or two strings only.
    {"Concat", {
        {"[\"ab\",\"cd\"]", "\"abcd\""}, {"[[1],[2,3]]", "[1,2,3]"}, {"[[1],2]", "null"}}},
    {"Include", {
        {"[\"abc\",\"\"]", "true"}, {"[\"abc\",\"bc\"]", "true"}, {"[\"abc\",\"x\"]", "false"},
        {"[[1,\"a\"],\"a\"]", "true"}, {"[[1],\"1\"]", "false"}, {"[[null],null]", "false"}, {"[\"1\",1]", "false"},
        {"[{},\"a\"]", "false"}}},
    // A truncated index that saturates at 0, or a member by key text; a falsy
    // container gives null quietly.
    {"ArrayGet", {
        {"[[10,20],1.9]", "20"}, {"[[10,20],-1]", "10"}, {"[{\"2\":\"two\"},2]", "\"two\""},
        {"[{\"1.5\":\"x\"},1.5]", "\"x\""}, {"[{\"a\":[1]},\"a\"]", "[1]"}, {"[{\"a\":1},\"b\"]", "null"},
        {"[{\"\":5},true]", "5"}, {"[null,3]", "null"}, {"[\"\",3]", "null"}}},
    // A present member wins over the fallback, even a null one.
    {"JSONGet", {
        {"[{\"a\":null},\"a\",5]", "null"}, {"[{},\"a\",5]", "5"}, {"[{},\"a\"]", "null"},
        {"[{\"a\":{\"b\":1}},\"a\"]", "{\"b\":1}"}, {"[[1],\"0\",7]", "7"}, {"[{\"1\":2},1,3]", "3"}}},
};
// clang-format on

TEST(BuiltinResults, eachCaseGivesItsExactResultQuietly)
{
    for (const ResultGroup& group : kResults) {
        for (const auto& [args, expected] : group.cases) {
            SCOPED_TRACE(std::string(group.function) + " " + args);
            std::string result;
            EXPECT_EQ(printedOutput([&] { result = canonicalJson(callBuiltin(group.function, args)); }), "");
            EXPECT_EQ(result, expected);
        }
    }
}

}  // namespace
