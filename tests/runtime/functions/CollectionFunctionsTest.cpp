// Collection built-ins on shared containers, with recording callbacks.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "runtime/functions/BuiltinTestSupport.h"
#include "support/ReportedErrors.h"

namespace {

using namespace Mero;
using namespace MeroTest;
using Strings = std::vector<std::string>;

TEST(ArrayPush, appendsTheWholeSourceToTheScriptsOwnArray)
{
    Value variable = json("[1,2]");
    EXPECT_EQ(canonicalJson(callBuiltin("ArrayPush", ArgList{variable, json("[3,4]")})), "4");
    EXPECT_EQ(canonicalJson(callBuiltin("ArrayPush", ArgList{variable, variable})), "8");
    EXPECT_EQ(canonicalJson(variable), "[1,2,3,4,1,2,3,4]");
}

TEST(ArrayWalks, passElementIndexAndTheSharedArrayAndMapCollectsIntoANewArray)
{
    Value array = json("[1,2]");
    RecordingCallback callback;
    callback.answer = [&array](const ArgList& args) {
        return Value(args[0].number() * 10 + args[1].number() + (args[2].arrayPtr() == array.arrayPtr() ? 0.5 : 0));
    };
    EXPECT_EQ(canonicalJson(callBuiltin("ArrayForEach", ArgList{array, callback.value()})), "null");
    EXPECT_EQ(callback.calls, (Strings{"[1,0,[1,2]]", "[2,1,[1,2]]"}));
    Value mapped = callBuiltin("ArrayMap", ArgList{array, callback.value()});
    EXPECT_EQ(canonicalJson(mapped), "[10.5,21.5]");
    EXPECT_EQ(canonicalJson(array), "[1,2]");
}

TEST(ArrayWalks, filterKeepsOnlyForARealBooleanTrue)
{
    for (const char* answer : {"true", "1", "{}"}) {
        RecordingCallback callback;
        callback.answer = [answer](const ArgList&) { return json(answer); };
        EXPECT_EQ(canonicalJson(callBuiltin("ArrayFilter", ArgList{json("[1,2]"), callback.value()})),
                  std::string(answer) == "true" ? "[1,2]" : "[]")
            << answer;
    }
    RecordingCallback odd;
    odd.answer = [](const ArgList& args) { return Value(static_cast<int>(args[0].number()) % 2 == 1); };
    EXPECT_EQ(canonicalJson(callBuiltin("ArrayFilter", ArgList{json("[1,2,3,4,5]"), odd.value()})), "[1,3,5]");
}

TEST(ArrayWalks, aCallbackThatAppendsExtendsTheWalkAndKindsAreNotTested)
{
    Value array = json("[1]");
    RecordingCallback callback;
    callback.answer = [&array](const ArgList& args) {
        if (args[0].number() < 3) {
            array.array().push_back(Value(args[0].number() + 1));
        }
        return Value();
    };
    callBuiltin("ArrayForEach", ArgList{array, callback.value()});
    EXPECT_EQ(callback.calls.size(), 3u);
    EXPECT_EQ(callback.calls.back(), "[3,2,[1,2,3]]");

    RecordingCallback unused;
    EXPECT_EQ(canonicalJson(callBuiltin("ArrayMap", ArgList{json("{\"a\":1}"), unused.value()})), "[]");
    EXPECT_EQ(canonicalJson(callBuiltin("ArrayFilter", ArgList{Value("abc"), unused.value()})), "[]");
    EXPECT_TRUE(unused.calls.empty());
    // A non-callback is the empty callable, which fails on the first element.
    EXPECT_THROW(callBuiltin("ArrayForEach", "[[1],5]"), std::bad_function_call);
    EXPECT_EQ(canonicalJson(callBuiltin("ArrayForEach", "[[],5]")), "null");
}

TEST(DictForEach, passesEveryKeyAndValueWhileTheCallbackMayAddMembers)
{
    Value object = json("{\"a\":1,\"b\":[2]}");
    RecordingCallback callback;
    callback.answer = [&object](const ArgList& args) {
        for (int i = 0; i < 50; ++i) {
            object.object()[args[0].string() + std::to_string(i)] = Value(i);
        }
        return Value(7);
    };
    EXPECT_EQ(canonicalJson(callBuiltin("DictForEach", ArgList{object, callback.value()})), "null");
    std::sort(callback.calls.begin(), callback.calls.end());
    EXPECT_EQ(callback.calls, (Strings{"[\"a\",1]", "[\"b\",[2]]"}));
    EXPECT_EQ(object.object().size(), 102u);

    RecordingCallback unused;
    callBuiltin("DictForEach", ArgList{json("[1,2]"), unused.value()});
    EXPECT_TRUE(unused.calls.empty());
}

TEST(JsonSet, changesTheObjectInPlaceForEveryHolderAndWrongKindsNothingQuietly)
{
    Value object = json("{\"a\":1}");
    Value array = json("[1]");
    EXPECT_EQ(printedOutput([&] {
                  EXPECT_TRUE(callBuiltin("JsonSet", ArgList{object, Value("a"), Value(2)}).isNull());
                  callBuiltin("JsonSet", ArgList{object, Value("b"), json("[3]")});
                  callBuiltin("JsonSet", ArgList{object, Value(1), Value(2)});
                  callBuiltin("JsonSet", ArgList{array, Value("0"), Value(2)});
              }),
              "");
    EXPECT_EQ(canonicalJson(object), "{\"a\":2,\"b\":[3]}");
    EXPECT_EQ(canonicalJson(array), "[1]");
    EXPECT_TRUE(Value(Kind::Null).object().empty());  // the shared default is untouched
}

TEST(JsonParse, readsAnObjectTextAndLeavesTheEmptyTextNull)
{
    const char* text = R"({"a":[1,{"b":true}]})";
    EXPECT_EQ(canonicalJson(callBuiltin("JsonParse", ArgList{Value(text)})), text);
    EXPECT_EQ(canonicalJson(callBuiltin("JsonParse", "[\"\"]")), "null");
    EXPECT_EQ(thrownMessage([] { callBuiltin("JsonParse", "[\"[1]\"]"); }), "Syntax error: '{' expected.");
}

}  // namespace
