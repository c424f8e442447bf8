// Every fixed message of the built-ins, both ways: thrown while debugMode is
// set; printed, and followed by the function's fallback result, while it is
// clear.
#include <gtest/gtest.h>

#include "runtime/functions/BridgeFunctions.h"
#include "runtime/functions/BuiltinTestSupport.h"
#include "runtime/functions/CollectionFunctions.h"
#include "runtime/functions/EventFunctions.h"
#include "runtime/functions/NumberFunctions.h"
#include "runtime/functions/OperatorFunctions.h"
#include "runtime/functions/StringFunctions.h"
#include "runtime/functions/TimerFunctions.h"
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
    {"ArrayPush", invokeFresh<ArrayPushFunction>, "[[1]]", "array add args size not match", "[]"},
    {"ArrayPush", invokeFresh<ArrayPushFunction>, "[[1],2]", "args must be array", "null"},
    {"ArrayGet", invokeFresh<ArrayGetFunction>, "[[1]]", "array get args size not match", "null"},
    {"ArrayGet", invokeFresh<ArrayGetFunction>, "[[1,2],2]", "array index out of range", "null"},
    {"ArrayGet", invokeFresh<ArrayGetFunction>, "[[1,2],\"0\"]", "args must be array or index must be number", "null"},
    {"ArrayForEach", invokeFresh<ArrayForEachFunction>, "[[1]]", "ArrayForEach args size not match", "null"},
    {"ArrayMap", invokeFresh<ArrayMapFunction>, "[[1],1,2]", "ArrayMap args size not match", "null"},
    {"ArrayFilter", invokeFresh<ArrayFilterFunction>, "[]", "ArrayFilter args size not match", "null"},
    {"JSONGet", invokeFresh<JSONGetFunction>, "[{},\"a\",1,2]", "json get args size not match", "null"},
    {"DictForEach", invokeFresh<DictForEachFunction>, "[{}]", "DictForEach args size not match", "null"},
    {"JsonSet", invokeFresh<JsonSetFunction>, "[{},\"a\"]", "JsonSet args size not match", "null"},
    {"JsonParse", invokeFresh<JsonParseFunction>, "[]", "JsonParse args size not match", "null"},
    {"JsonParse", invokeFresh<JsonParseFunction>, "[{}]", "JsonParse args type not match", "null"},
    // Operators and numbers.
    {"Compare", invokeFresh<CompareFunction>, "[0,1]", "compare args size not match", "false"},
    {"Compare", invokeFresh<CompareFunction>, "[0,1,\"1\"]", "compare args type not match", "false"},
    {"Compare", invokeFresh<CompareFunction>, "[2,[1],[1]]", "compare args type not match", "false"},
    {"Compare", invokeFresh<CompareFunction>, "[6,1,2]", "compare operator not match", "false"},
    {"NumberOperation", invokeFresh<NumberOperationFunction>, "[[0]]", "number operation args size not match", "0"},
    {"NumberOperation", invokeFresh<NumberOperationFunction>, "[[0],1]", "number operation args type not match", "0"},
    {"NumberOperation", invokeFresh<NumberOperationFunction>, "[[0],[1]]", "array args size not match", "0"},
    // An unknown code skips its step and the fold goes on: 1 (skip 2) + 3.
    {"NumberOperation", invokeFresh<NumberOperationFunction>, "[[9,0],[1,2,3]]", "number operator not match", "4"},
    {"BooleanOperation", invokeFresh<BooleanOperationFunction>, "[[0]]", "bool operation args size not match", "false"},
    {"BooleanOperation", invokeFresh<BooleanOperationFunction>, "[[0,1],[1,2]]", "array args size not match", "false"},
    {"Conditional", invokeFresh<ConditionalOperatorFunction>, "[true,1]", "conditional args size not match", "null"},
    {"NullFallback", invokeFresh<NullFallbackFunction>, "[1]", "NullFallback args size not match", "null"},
    {"PrefixUnary", invokeFresh<PrefixUnaryFunction>, "[1,2]", "PrefixUnaryFunction args size not match", "false"},
    {"Negative", invokeFresh<NegativeFunction>, "[]", "NagativeFunction args size not match", "0"},
    {"MathMax", invokeFresh<MathMaxFunction>, "[[1],[2]]", "MathMaxFunction args size not match", "0"},
    {"MathMax", invokeFresh<MathMaxFunction>, "[5]", "MathMaxFunction args type not match", "0"},
    {"MathMin", invokeFresh<MathMinFunction>, "[]", "MathMinFunction args size not match", "0"},
    {"MathMin", invokeFresh<MathMinFunction>, "[\"1,2\"]", "MathMinFunction args type not match", "0"},
    {"Rounding", invokeFresh<RoundingFunction>, "[1.5]", "rounding args size not match", "null"},
    {"Rounding", invokeFresh<RoundingFunction>, "[0,\"1.5\"]", "rounding args must be number", "0"},
    {"ToNumber", invokeFresh<ToNumberFunction>, "[\"1\",\"2\"]", "to number args size not match", "0"},
    {"ToNumber", invokeFresh<ToNumberFunction>, "[true]", "toNumber arg must be string", "0"},
    {"Random", invokeFresh<RandomFunction>, "[1]", "random args size not match", "0"},
    {"TypeOf", invokeFresh<TypeOfFunction>, "[]", "TypeOf args size not match", "null"},
    // Strings.
    {"Replace", invokeFresh<StringReplaceFunction>, "[\"a\",\"b\"]", "string replace args size not match", "null"},
    {"SubString", invokeFresh<SubStringFunction>, "[\"abc\",1]", "sub_string args size not match", "null"},
    {"GetLength", invokeFresh<GetLengthFunction>, "[]", "get length args size not match", "0"},
    {"ToString", invokeFresh<ToStringFunction>, "[1,2]", "to string args size not match", "\"\""},
    // Slice's count message is the log function's text, on purpose.
    {"Slice", invokeFresh<SliceFunction>, "[\"abc\"]", "Log args size not match", "null"},
    {"IndexOf", invokeFresh<IndexOfFunction>, "[\"abc\"]", "IndexOf args size not match", "\"\""},
    {"Split", invokeFresh<SplitFunction>, "[\"a,b\"]", "Split args size not match", "[]"},
    {"Split", invokeFresh<SplitFunction>, "[\"a,b\",\",,\"]", "Splitter must be one character", "[]"},
    {"CharAt", invokeFresh<CharAtFunction>, "[\"abc\"]", "CharAt args size not match", "\"\""},
    {"Concat", invokeFresh<ConcatFunction>, "[\"a\"]", "Concat args size not match", "null"},
    {"Include", invokeFresh<IncludeFunction>, "[\"a\",\"b\",\"c\"]", "Include args size not match", "null"},
    {"Log", invokeFresh<LogFunction>, "[]", "Log args size not match", "null"},
    // Bridge, timers, video time and events: the count is checked before the
    // engine, so these report without one.
    {"CallBridge", invokeFresh<CallBridgeFunction>, "[\"m\",{}]", "call bridge args size not match", "null"},
    {"BridgeSync", invokeFresh<CallBridgeSyncFunction>, "[\"m\",{},1]", "call bridge sync args size not match", "null"},
    {"KeyPath", invokeFresh<CallBridgeSyncWithKeyPathFunction>, "[\"m\",{}]", "call bridge sync args size not match",
     "null"},
    {"SetTimeout", invokeFresh<SetTimeoutFunction>, "[100]", "set timeout args size not match", "null"},
    {"VideoTimeOnce", invokeFresh<VideoTimeOnceFunction>, "[5]", "VideoTimeOnce args size not match", "null"},
    {"VideoTimeStart", invokeFresh<VideoTimeStartFunction>, "[1,2,3]", "VideoTimeStart args size not match", "null"},
    {"SendEvent", invokeFresh<SendEventFunction>, "[\"tap\"]", "SendEvent args size not match", "null"},
    {"OnEvent", invokeFresh<OnEventFunction>, "[\"tap\"]", "OnEvent args size not match", "null"},
    {"RemoveEvent", invokeFresh<RemoveEventFunction>, "[]", "RemoveEvent args size not match", "null"},
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
    printedOutput([&] { first = callBuiltin<ArrayPushFunction>("[]"), second = callBuiltin<SplitFunction>("[]"); });
    ASSERT_TRUE(first.is(Kind::Array) && second.is(Kind::Array));
    EXPECT_NE(first.arrayPtr(), second.arrayPtr());
}

}  // namespace
