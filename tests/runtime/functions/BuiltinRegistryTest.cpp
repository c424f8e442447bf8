#include <gtest/gtest.h>

#include <typeindex>
#include <typeinfo>

#include "runtime/functions/BuiltinFunctions.h"
#include "runtime/functions/CustomFunction.h"
#include "support/TemplateHarness.h"

namespace {

using namespace Mero;
using namespace MeroTest;

std::type_index typeAt(const RuntimeEngine& engine, const char* key)
{
    const MRFunction& function = *engine.functionTable.at(key);
    return typeid(function);
}

TEST(BuiltinRegistry, aTemplateFunctionKeepsTheKeyItTook)
{
    TemplateHarness card(R"({"functions": [{"n": "m", "a": ["x"], "b": [{"$": 11, "returnValue": "mine"}]}]})");
    // 43 keys in all: the template's "m" took the place of ToString.
    EXPECT_EQ(card.engine->functionTable.size(), 43u);
    EXPECT_EQ(typeAt(*card.engine, "m"), std::type_index(typeid(CustomFunction)));
    EXPECT_EQ(card.call("m", {Value(true)}).string(), "mine");
    EXPECT_EQ(card.call("7", {Value("abc")}).number(), 3);
}

TEST(BuiltinRegistry, registeringAgainReplacesNothing)
{
    RuntimeEngine engine;
    registerBuiltinFunctions(engine);
    EXPECT_EQ(engine.functionTable.size(), 43u);
    const MRFunction* before = engine.functionTable.at("k").get();
    registerBuiltinFunctions(engine);
    EXPECT_EQ(engine.functionTable.size(), 43u);
    EXPECT_EQ(engine.functionTable.at("k").get(), before);
}

}  // namespace
