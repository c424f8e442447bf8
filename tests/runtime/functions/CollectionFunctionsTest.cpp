#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "runtime/functions/BuiltinTestSupport.h"
#include "runtime/functions/CollectionFunctions.h"
#include "support/ReportedErrors.h"

namespace {

using namespace Mero;
using namespace MeroTest;

TEST(ArrayPush, appendsTheWholeSourceToTheScriptsOwnArray)
{
    Value variable = json("[1,2]");
    Value length = callBuiltin<ArrayPushFunction>(ArgList{variable, json("[3,4]")});
    EXPECT_EQ(canonicalJson(length), "4");
    EXPECT_EQ(canonicalJson(variable), "[1,2,3,4]");

    EXPECT_EQ(canonicalJson(callBuiltin<ArrayPushFunction>(ArgList{variable, variable})), "8");
    EXPECT_EQ(canonicalJson(variable), "[1,2,3,4,1,2,3,4]");
}

TEST(ArrayWalks, passElementIndexAndTheSharedArray)
{
    Value array = json("[\"a\",\"b\"]");
    RecordingCallback callback;
    callback.answer = [](const ArgList& args) {
        // The third argument is the array itself, not a copy of it.
        return Value(args[2].arrayPtr() != nullptr);
    };
    Value result = callBuiltin<ArrayForEachFunction>(ArgList{array, callback.value()});
    EXPECT_EQ(canonicalJson(result), "null");
    EXPECT_EQ(callback.calls, (std::vector<std::string>{"[\"a\",0,[\"a\",\"b\"]]", "[\"b\",1,[\"a\",\"b\"]]"}));

    RecordingCallback sharing;
    sharing.answer = [&array](const ArgList& args) { return Value(args[2].arrayPtr() == array.arrayPtr()); };
    EXPECT_EQ(canonicalJson(callBuiltin<ArrayMapFunction>(ArgList{array, sharing.value()})), "[true,true]");
}

TEST(ArrayWalks, mapCollectsTheCallbackResultsInANewArray)
{
    Value array = json("[1,2,3]");
    RecordingCallback callback;
    callback.answer = [](const ArgList& args) { return Value(args[0].number() * 10 + args[1].number()); };
    Value mapped = callBuiltin<ArrayMapFunction>(ArgList{array, callback.value()});
    EXPECT_EQ(canonicalJson(mapped), "[10,21,32]");
    EXPECT_EQ(canonicalJson(array), "[1,2,3]");
    EXPECT_NE(mapped.arrayPtr(), array.arrayPtr());
}

TEST(ArrayWalks, filterKeepsOnlyForARealBooleanTrue)
{
    struct Case {
        Value answer;
        const char* kept;
    };
    const Case cases[] = {
        {Value(true), "[1,2,3]"}, {Value(false), "[]"}, {Value(1), "[]"}, {Value("x"), "[]"}, {json("{}"), "[]"},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(canonicalJson(row.answer));
        RecordingCallback callback;
        callback.answer = [&row](const ArgList&) { return row.answer; };
        EXPECT_EQ(canonicalJson(callBuiltin<ArrayFilterFunction>(ArgList{json("[1,2,3]"), callback.value()})),
                  row.kept);
    }
    RecordingCallback odd;
    odd.answer = [](const ArgList& args) { return Value(static_cast<int>(args[0].number()) % 2 == 1); };
    EXPECT_EQ(canonicalJson(callBuiltin<ArrayFilterFunction>(ArgList{json("[1,2,3,4,5]"), odd.value()})), "[1,3,5]");
}

TEST(ArrayWalks, aCallbackThatAppendsExtendsTheWalk)
{
    Value array = json("[1]");
    RecordingCallback callback;
    callback.answer = [&array](const ArgList& args) {
        if (args[0].number() < 3) {
            array.array().push_back(Value(args[0].number() + 1));
        }
        return Value();
    };
    callBuiltin<ArrayForEachFunction>(ArgList{array, callback.value()});
    EXPECT_EQ(callback.calls.size(), 3u);
    EXPECT_EQ(callback.calls.back(), "[3,2,[1,2,3]]");
}

TEST(ArrayWalks, kindsAreNotTested)
{
    RecordingCallback callback;
    EXPECT_EQ(canonicalJson(callBuiltin<ArrayMapFunction>(ArgList{json("{\"a\":1}"), callback.value()})), "[]");
    EXPECT_EQ(canonicalJson(callBuiltin<ArrayFilterFunction>(ArgList{Value("abc"), callback.value()})), "[]");
    EXPECT_TRUE(callback.calls.empty());
    // A non-callback is the empty callable, which fails on the first element.
    EXPECT_THROW(callBuiltin<ArrayForEachFunction>("[[1],5]"), std::bad_function_call);
    EXPECT_EQ(canonicalJson(callBuiltin<ArrayForEachFunction>("[[],5]")), "null");
}

TEST(DictForEach, passesEveryKeyAndValue)
{
    RecordingCallback callback;
    callback.answer = [](const ArgList&) { return Value(7); };
    Value result = callBuiltin<DictForEachFunction>(ArgList{json("{\"a\":1,\"b\":[2]}"), callback.value()});
    EXPECT_EQ(canonicalJson(result), "null");
    std::sort(callback.calls.begin(), callback.calls.end());
    EXPECT_EQ(callback.calls, (std::vector<std::string>{"[\"a\",1]", "[\"b\",[2]]"}));

    RecordingCallback unused;
    callBuiltin<DictForEachFunction>(ArgList{json("[1,2]"), unused.value()});
    EXPECT_TRUE(unused.calls.empty());
}

TEST(DictForEach, aCallbackMayAddMembersWhileItWalks)
{
    Value object = json("{\"a\":1,\"b\":2,\"c\":3}");
    RecordingCallback callback;
    callback.answer = [&object](const ArgList& args) {
        for (int i = 0; i < 50; ++i) {
            object.object()[args[0].string() + std::to_string(i)] = Value(i);
        }
        return Value();
    };
    callBuiltin<DictForEachFunction>(ArgList{object, callback.value()});
    EXPECT_EQ(callback.calls.size(), 3u);
    EXPECT_EQ(object.object().size(), 153u);
}

TEST(JsonSet, changesTheObjectInPlaceForEveryHolder)
{
    Value object = json("{\"a\":1}");
    // Each call gets its own copy of the Value; all of them share one map.
    EXPECT_EQ(canonicalJson(callBuiltin<JsonSetFunction>(ArgList{object, Value("a"), Value(2)})), "null");
    callBuiltin<JsonSetFunction>(ArgList{object, Value("b"), json("[3]")});
    EXPECT_EQ(canonicalJson(object), "{\"a\":2,\"b\":[3]}");
}

TEST(JsonSet, wrongKindsChangeNothingQuietly)
{
    Value object = json("{\"a\":1}");
    Value array = json("[1]");
    std::string printed = printedOutput([&] {
        callBuiltin<JsonSetFunction>(ArgList{object, Value(1), Value(2)});
        callBuiltin<JsonSetFunction>(ArgList{array, Value("0"), Value(2)});
    });
    EXPECT_EQ(printed, "");
    EXPECT_EQ(canonicalJson(object), "{\"a\":1}");
    EXPECT_EQ(canonicalJson(array), "[1]");
    EXPECT_TRUE(Value(Kind::Null).object().empty());  // the shared default is untouched
}

TEST(JsonParse, readsAnObjectTextAndLeavesTheEmptyTextNull)
{
    EXPECT_EQ(canonicalJson(callBuiltin<JsonParseFunction>(ArgList{Value("{\"a\":[1,{\"b\":true}]}")})),
              "{\"a\":[1,{\"b\":true}]}");
    EXPECT_EQ(canonicalJson(callBuiltin<JsonParseFunction>(ArgList{Value("")})), "null");
    EXPECT_EQ(thrownMessage([] { callBuiltin<JsonParseFunction>(ArgList{Value("[1]")}); }),
              "Syntax error: '{' expected.");
}

}  // namespace
