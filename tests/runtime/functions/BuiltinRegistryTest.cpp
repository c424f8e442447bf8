#include <gtest/gtest.h>

#include <typeindex>
#include <typeinfo>

#include "runtime/functions/BridgeFunctions.h"
#include "runtime/functions/BuiltinFunctions.h"
#include "runtime/functions/CollectionFunctions.h"
#include "runtime/functions/CustomFunction.h"
#include "runtime/functions/EventFunctions.h"
#include "runtime/functions/NumberFunctions.h"
#include "runtime/functions/OperatorFunctions.h"
#include "runtime/functions/StringFunctions.h"
#include "runtime/functions/TimerFunctions.h"
#include "support/TemplateHarness.h"

namespace {

using namespace Mero;
using namespace MeroTest;

struct KeyCase {
    const char* key;
    std::type_index type;
};

const KeyCase kKeys[] = {
    {"k", typeid(CallBridgeFunction)},
    {"p", typeid(SetTimeoutFunction)},
    {"i", typeid(LogFunction)},
    {"s", typeid(TypeOfFunction)},
    {"t", typeid(CurrentTimeFunction)},
    {"l", typeid(CallBridgeSyncFunction)},
    {"G", typeid(CallBridgeSyncWithKeyPathFunction)},
    {"x", typeid(VideoTimeOnceFunction)},
    {"y", typeid(VideoTimeStartFunction)},
    {"z", typeid(SendEventFunction)},
    {"A", typeid(OnEventFunction)},
    {"B", typeid(RemoveEventFunction)},
    {"0", typeid(CompareFunction)},
    {"1", typeid(NumberOperationFunction)},
    {"2", typeid(BooleanOperationFunction)},
    {"4", typeid(ConditionalOperatorFunction)},
    {"8", typeid(NullFallbackFunction)},
    {"u", typeid(PrefixUnaryFunction)},
    {"v", typeid(NegativeFunction)},
    {"C", typeid(MathMaxFunction)},
    {"D", typeid(MathMinFunction)},
    {"g", typeid(RoundingFunction)},
    {"F", typeid(ToNumberFunction)},
    {"h", typeid(RandomFunction)},
    {"o", typeid(StringReplaceFunction)},
    {"n", typeid(SubStringFunction)},
    {"7", typeid(GetLengthFunction)},
    {"m", typeid(ToStringFunction)},
    {"6", typeid(SliceFunction)},
    {"f", typeid(IndexOfFunction)},
    {"e", typeid(SplitFunction)},
    {"d", typeid(CharAtFunction)},
    {"9", typeid(ConcatFunction)},
    {"r", typeid(IncludeFunction)},
    {"E", typeid(JsonParseFunction)},
    {"j", typeid(ArrayPushFunction)},
    {"5", typeid(ArrayGetFunction)},
    {"c", typeid(ArrayForEachFunction)},
    {"b", typeid(ArrayMapFunction)},
    {"a", typeid(ArrayFilterFunction)},
    {"3", typeid(JSONGetFunction)},
    {"q", typeid(DictForEachFunction)},
    {"w", typeid(JsonSetFunction)},
};

std::type_index typeAt(const RuntimeEngine& engine, const char* key)
{
    const MRFunction& function = *engine.functionTable.at(key);
    return typeid(function);
}

TEST(BuiltinRegistry, everyKeyNamesItsClass)
{
    RuntimeEngine engine;
    registerBuiltinFunctions(engine);
    EXPECT_EQ(engine.functionTable.size(), 43u);
    for (const KeyCase& row : kKeys) {
        SCOPED_TRACE(row.key);
        ASSERT_TRUE(engine.functionTable.contains(row.key));
        EXPECT_EQ(typeAt(engine, row.key), row.type);
    }
}

TEST(BuiltinRegistry, aTemplateFunctionKeepsTheKeyItTook)
{
    TemplateHarness card(R"({"functions": [{"n": "m", "a": ["x"], "b": [{"$": 11, "returnValue": "mine"}]}]})");
    EXPECT_EQ(card.engine->functionTable.size(), 43u);
    EXPECT_EQ(typeAt(*card.engine, "m"), std::type_index(typeid(CustomFunction)));
    EXPECT_EQ(card.call("m", {Value(true)}).string(), "mine");
    EXPECT_EQ(card.call("7", {Value("abc")}).number(), 3);
}

TEST(BuiltinRegistry, registeringAgainReplacesNothing)
{
    RuntimeEngine engine;
    registerBuiltinFunctions(engine);
    const MRFunction* before = engine.functionTable.at("k").get();
    registerBuiltinFunctions(engine);
    EXPECT_EQ(engine.functionTable.size(), 43u);
    EXPECT_EQ(engine.functionTable.at("k").get(), before);
}

}  // namespace
