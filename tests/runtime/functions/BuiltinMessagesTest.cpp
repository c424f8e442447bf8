// The built-ins' own messages, both ways: thrown while debugMode is set;
// printed, and followed by the function's fallback result, while it is clear.
// Of the argument-count messages, which come straight from the built-in
// table, only a few stand for the mechanism and the odd ones.
#include <gtest/gtest.h>

#include "runtime/functions/BuiltinTestSupport.h"
#include "support/ReportedErrors.h"

namespace {

using namespace Mero;
using namespace MeroTest;

struct MessageCase {
    const char* function;
    const char* args;  // JSON array
    const char* message;
    const char* fallback;  // canonical JSON of the result when reporting returns
};

const MessageCase kMessageCases[] = {
    // Collections and JSON.
    {"ArrayPush", "[[1]]", "array add args size not match", "[]"},
    {"ArrayPush", "[[1],2]", "args must be array", "null"},
    {"ArrayGet", "[[1,2],2]", "array index out of range", "null"},
    {"ArrayGet", "[[1,2],\"0\"]", "args must be array or index must be number", "null"},
    {"JsonParse", "[{}]", "JsonParse args type not match", "null"},
    // Operators and numbers.
    {"Compare", "[0,1]", "compare args size not match", "false"},
    {"Compare", "[0,1,\"1\"]", "compare args type not match", "false"},
    {"Compare", "[2,[1],[1]]", "compare args type not match", "false"},
    {"Compare", "[6,1,2]", "compare operator not match", "false"},
    {"NumberOperation", "[[0]]", "number operation args size not match", "0"},
    {"NumberOperation", "[[0],1]", "number operation args type not match", "0"},
    {"NumberOperation", "[[0],[1]]", "array args size not match", "0"},
    // An unknown code skips its step and the fold goes on: 1 (skip 2) + 3.
    {"NumberOperation", "[[9,0],[1,2,3]]", "number operator not match", "4"},
    {"MathMax", "[5]", "MathMaxFunction args type not match", "0"},
    {"MathMin", "[\"1,2\"]", "MathMinFunction args type not match", "0"},
    {"Rounding", "[0,\"1.5\"]", "rounding args must be number", "0"},
    {"ToNumber", "[true]", "toNumber arg must be string", "0"},
    // Strings.
    {"ToString", "[1,2]", "to string args size not match", "\"\""},
    // Slice's count message is the log function's text, on purpose.
    {"Slice", "[\"abc\"]", "Log args size not match", "null"},
    {"IndexOf", "[\"abc\"]", "IndexOf args size not match", "\"\""},
    {"Split", "[\"a,b\",\",,\"]", "Splitter must be one character", "[]"},
    // Bridge, timers, video time and events: the count is checked before the
    // engine, so these report without one.
    {"CallBridge", "[\"m\",{}]", "call bridge args size not match", "null"},
};

TEST(BuiltinMessages, everyMessageIsThrownWhileDebuggingAndPrintedBeforeTheFallbackOtherwise)
{
    for (const MessageCase& row : kMessageCases) {
        SCOPED_TRACE(std::string(row.function) + " " + row.args);
        EXPECT_EQ(thrownMessage([&] { callBuiltin(row.function, row.args); }), row.message);
        Value result;
        EXPECT_EQ(printedOutput([&] { result = callBuiltin(row.function, row.args); }),
                  std::string(row.message) + "\n");
        EXPECT_EQ(canonicalJson(result), row.fallback);
    }
}

TEST(BuiltinMessages, countFallbacksAreFreshContainers)
{
    Value first;
    Value second;
    printedOutput([&] { first = callBuiltin("ArrayPush", "[]"), second = callBuiltin("Split", "[]"); });
    ASSERT_TRUE(first.is(Kind::Array) && second.is(Kind::Array));
    EXPECT_NE(first.arrayPtr(), second.arrayPtr());
}

}  // namespace
