// Every fixed message of the built-ins, both ways: thrown while debugMode is
// set; printed, and followed by the function's fallback result, while it is
// clear.
#include <gtest/gtest.h>

#include "runtime/functions/BuiltinTestSupport.h"
#include "support/ReportedErrors.h"

namespace {

using namespace Mero;
using namespace MeroTest;

struct MessageCase {
    const char* function;
    Invoke invoke;
    const char* args;  // JSON array
    const char* message;
    const char* fallback;  // canonical JSON of the result when reporting returns
};

const MessageCase kMessageCases[] = {
    // Collections and JSON.
    {"ArrayPush", invokeFresh<"ArrayPush">, "[[1]]", "array add args size not match", "[]"},
    {"ArrayPush", invokeFresh<"ArrayPush">, "[[1],2]", "args must be array", "null"},
    {"ArrayGet", invokeFresh<"ArrayGet">, "[[1]]", "array get args size not match", "null"},
    {"ArrayGet", invokeFresh<"ArrayGet">, "[[1,2],2]", "array index out of range", "null"},
    {"ArrayGet", invokeFresh<"ArrayGet">, "[[1,2],\"0\"]", "args must be array or index must be number", "null"},
    {"ArrayForEach", invokeFresh<"ArrayForEach">, "[[1]]", "ArrayForEach args size not match", "null"},
    {"ArrayMap", invokeFresh<"ArrayMap">, "[[1],1,2]", "ArrayMap args size not match", "null"},
    {"ArrayFilter", invokeFresh<"ArrayFilter">, "[]", "ArrayFilter args size not match", "null"},
    {"JSONGet", invokeFresh<"JSONGet">, "[{},\"a\",1,2]", "json get args size not match", "null"},
    {"DictForEach", invokeFresh<"DictForEach">, "[{}]", "DictForEach args size not match", "null"},
    {"JsonSet", invokeFresh<"JsonSet">, "[{},\"a\"]", "JsonSet args size not match", "null"},
    {"JsonParse", invokeFresh<"JsonParse">, "[]", "JsonParse args size not match", "null"},
    {"JsonParse", invokeFresh<"JsonParse">, "[{}]", "JsonParse args type not match", "null"},
    // Operators and numbers.
    {"Compare", invokeFresh<"Compare">, "[0,1]", "compare args size not match", "false"},
    {"Compare", invokeFresh<"Compare">, "[0,1,\"1\"]", "compare args type not match", "false"},
    {"Compare", invokeFresh<"Compare">, "[2,[1],[1]]", "compare args type not match", "false"},
    {"Compare", invokeFresh<"Compare">, "[6,1,2]", "compare operator not match", "false"},
    {"NumberOperation", invokeFresh<"NumberOperation">, "[[0]]", "number operation args size not match", "0"},
    {"NumberOperation", invokeFresh<"NumberOperation">, "[[0],1]", "number operation args type not match", "0"},
    {"NumberOperation", invokeFresh<"NumberOperation">, "[[0],[1]]", "array args size not match", "0"},
    // An unknown code skips its step and the fold goes on: 1 (skip 2) + 3.
    {"NumberOperation", invokeFresh<"NumberOperation">, "[[9,0],[1,2,3]]", "number operator not match", "4"},
    {"BooleanOperation", invokeFresh<"BooleanOperation">, "[[0]]", "bool operation args size not match", "false"},
    {"BooleanOperation", invokeFresh<"BooleanOperation">, "[[0,1],[1,2]]", "array args size not match", "false"},
    {"Conditional", invokeFresh<"ConditionalOperator">, "[true,1]", "conditional args size not match", "null"},
    {"NullFallback", invokeFresh<"NullFallback">, "[1]", "NullFallback args size not match", "null"},
    {"PrefixUnary", invokeFresh<"PrefixUnary">, "[1,2]", "PrefixUnaryFunction args size not match", "false"},
    {"Negative", invokeFresh<"Negative">, "[]", "NagativeFunction args size not match", "0"},
    {"MathMax", invokeFresh<"MathMax">, "[[1],[2]]", "MathMaxFunction args size not match", "0"},
    {"MathMax", invokeFresh<"MathMax">, "[5]", "MathMaxFunction args type not match", "0"},
    {"MathMin", invokeFresh<"MathMin">, "[]", "MathMinFunction args size not match", "0"},
    {"MathMin", invokeFresh<"MathMin">, "[\"1,2\"]", "MathMinFunction args type not match", "0"},
    {"Rounding", invokeFresh<"Rounding">, "[1.5]", "rounding args size not match", "null"},
    {"Rounding", invokeFresh<"Rounding">, "[0,\"1.5\"]", "rounding args must be number", "0"},
    {"ToNumber", invokeFresh<"ToNumber">, "[\"1\",\"2\"]", "to number args size not match", "0"},
    {"ToNumber", invokeFresh<"ToNumber">, "[true]", "toNumber arg must be string", "0"},
    {"Random", invokeFresh<"Random">, "[1]", "random args size not match", "0"},
    {"TypeOf", invokeFresh<"TypeOf">, "[]", "TypeOf args size not match", "null"},
    // Strings.
    {"Replace", invokeFresh<"StringReplace">, "[\"a\",\"b\"]", "string replace args size not match", "null"},
    {"SubString", invokeFresh<"SubString">, "[\"abc\",1]", "sub_string args size not match", "null"},
    {"GetLength", invokeFresh<"GetLength">, "[]", "get length args size not match", "0"},
    {"ToString", invokeFresh<"ToString">, "[1,2]", "to string args size not match", "\"\""},
    // Slice's count message is the log function's text, on purpose.
    {"Slice", invokeFresh<"Slice">, "[\"abc\"]", "Log args size not match", "null"},
    {"IndexOf", invokeFresh<"IndexOf">, "[\"abc\"]", "IndexOf args size not match", "\"\""},
    {"Split", invokeFresh<"Split">, "[\"a,b\"]", "Split args size not match", "[]"},
    {"Split", invokeFresh<"Split">, "[\"a,b\",\",,\"]", "Splitter must be one character", "[]"},
    {"CharAt", invokeFresh<"CharAt">, "[\"abc\"]", "CharAt args size not match", "\"\""},
    {"Concat", invokeFresh<"Concat">, "[\"a\"]", "Concat args size not match", "null"},
    {"Include", invokeFresh<"Include">, "[\"a\",\"b\",\"c\"]", "Include args size not match", "null"},
    {"Log", invokeFresh<"Log">, "[]", "Log args size not match", "null"},
    // Bridge, timers, video time and events: the count is checked before the
    // engine, so these report without one.
    {"CallBridge", invokeFresh<"CallBridge">, "[\"m\",{}]", "call bridge args size not match", "null"},
    {"BridgeSync", invokeFresh<"CallBridgeSync">, "[\"m\",{},1]", "call bridge sync args size not match", "null"},
    {"KeyPath", invokeFresh<"CallBridgeSyncWithKeyPath">, "[\"m\",{}]", "call bridge sync args size not match",
     "null"},
    {"SetTimeout", invokeFresh<"SetTimeout">, "[100]", "set timeout args size not match", "null"},
    {"VideoTimeOnce", invokeFresh<"VideoTimeOnce">, "[5]", "VideoTimeOnce args size not match", "null"},
    {"VideoTimeStart", invokeFresh<"VideoTimeStart">, "[1,2,3]", "VideoTimeStart args size not match", "null"},
    {"SendEvent", invokeFresh<"SendEvent">, "[\"tap\"]", "SendEvent args size not match", "null"},
    {"OnEvent", invokeFresh<"OnEvent">, "[\"tap\"]", "OnEvent args size not match", "null"},
    {"RemoveEvent", invokeFresh<"RemoveEvent">, "[]", "RemoveEvent args size not match", "null"},
};

TEST(BuiltinMessages, everyMessageIsThrownWhileDebuggingAndPrintedBeforeTheFallbackOtherwise)
{
    for (const MessageCase& row : kMessageCases) {
        SCOPED_TRACE(std::string(row.function) + " " + row.args);
        EXPECT_EQ(thrownMessage([&] { row.invoke(argsOf(row.args)); }), row.message);
        Value result;
        EXPECT_EQ(printedOutput([&] { result = row.invoke(argsOf(row.args)); }), std::string(row.message) + "\n");
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
