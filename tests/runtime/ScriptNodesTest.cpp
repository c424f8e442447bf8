// The table of script node codes (what the template checker reads) against
// what the factory builds: a code the table lacks must be one the factory
// does not know either, and the other way round.
#include <gtest/gtest.h>

#include <string>

#include "runtime/ScriptFactory.h"
#include "runtime/ScriptNodes.h"
#include "runtime/statements/BasicStatements.h"
#include "value/ErrorReporting.h"
#include "support/JsonValue.h"
#include "support/TemplateHarness.h"

namespace {

std::string nodeWithCode(int code)
{
    return R"({"$": )" + std::to_string(code) + R"(, "n": "v", "value": [], "a": [], "b": [], "c": [], "bs": []})";
}

TEST(ScriptNodes, TheTableNamesExactlyTheCodesTheFactoryBuilds)
{
    MeroTest::TemplateHarness card(R"({"variables": {"v": 1}})");
    Mero::debugMode = false;  // a call of "v" reports that no such function exists
    for (int code = -1; code <= 30; ++code) {
        SCOPED_TRACE(code);
        // An unknown code makes an object literal, which keeps its "$".
        const Mero::Value value = card.eval(nodeWithCode(code));
        const bool literal = value.is(Mero::Kind::Object) && value.object().contains("$");
        EXPECT_EQ(literal, Mero::expressionNode(code) == nullptr);

        const Mero::RuntimeExecutePtr statement = Mero::createRuntimeExecute(MeroTest::json(nodeWithCode(code)));
        const bool nothing = dynamic_cast<Mero::RuntimeExecuteNull*>(statement.get()) != nullptr;
        EXPECT_EQ(nothing, Mero::statementNode(code) == nullptr);
    }
    Mero::debugMode = true;
}

}  // namespace
