// Built-ins as templates use them: registered by key, called from script on
// the engine's own variables and data.
#include <gtest/gtest.h>

#include <typeinfo>

#include "runtime/functions/BuiltinFunctions.h"
#include "runtime/functions/CustomFunction.h"
#include "support/CanonicalJson.h"
#include "support/ReportedErrors.h"
#include "support/TemplateHarness.h"

namespace {

using namespace Mero;
using namespace MeroTest;

TEST(BuiltinRegistry, aTemplateFunctionKeepsTheKeyItTookAndRegisteringAgainReplacesNothing)
{
    TemplateHarness card(R"({"functions": [{"n": "m", "a": ["x"], "b": [{"$": 11, "returnValue": "mine"}]}]})");
    // The template's "m" took the place of ToString; the built-ins are shared,
    // not copied into the card's table.
    EXPECT_EQ(card.engine->functionTable().size(), 1u);
    EXPECT_EQ(typeid(*card.engine->findFunction("m")), typeid(CustomFunction));
    EXPECT_EQ(card.call("m", {Value(true)}).string(), "mine");
    EXPECT_EQ(card.call("7", {Value("abc")}).number(), 3);
    TemplateHarness other;
    EXPECT_EQ(other.engine->findFunction("k"), card.engine->findFunction("k"));

    const MRFunction* before = card.engine->findFunction("k");
    registerBuiltinFunctions(*card.engine);
    EXPECT_FALSE(card.engine->registerFunction("k", nullptr));
    EXPECT_EQ(card.engine->functionTable().size(), 1u);
    EXPECT_EQ(card.engine->findFunction("k"), before);
    EXPECT_EQ(RuntimeEngine().findFunction("k"), nullptr) << "no built-in before a template is loaded";
}

TEST(ScriptBuiltins, pushAndJsonSetChangeTheEnginesOwnVariablesAndDataInPlace)
{
    TemplateHarness card(R"({"variables": {"list": [1, 2]}})");
    card.setData(R"({"title": "old"})");
    DebugModeScope quiet(false);
    card.run(R"([{"$": 5, "n": "j", "a": [{"$": 3, "n": "list"}, [3, 4]]},
                 {"$": 5, "n": "w", "a": [{"$": 19, "n": "$root"}, "title", "new"]}])");
    EXPECT_EQ(canonicalJson(card.ui("list")), "[1,2,3,4]");
    EXPECT_EQ(canonicalJson(Value(card.engine->data)), R"({"title":"new"})");
}

}  // namespace
