// The cache of template readings: what it shares, what it reports, what it keeps.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "runtime/ParsedTemplate.h"
#include "runtime/RuntimeEngine.h"
#include "support/ReportedErrors.h"
#include "value/ErrorReporting.h"

namespace {

using Mero::ParsedTemplate;

std::string templateNumbered(int n, std::size_t padding = 0)
{
    return R"({"elements": {"$": 1, "nodeId": "n)" + std::to_string(n) + R"("}, "pad": ")" +
           std::string(padding, 'x') + R"("})";
}

TEST(ParsedTemplate, ATextIsReadOnceWhileACardHoldsItOrItWasLoadedRecently)
{
    ParsedTemplate::forgetRecent();
    const std::string text = templateNumbered(0);
    auto first = ParsedTemplate::read(text);
    EXPECT_EQ(ParsedTemplate::read(text), first);
    EXPECT_EQ(ParsedTemplate::read(std::string(text)), first) << "found by its text, not its address";
    EXPECT_NE(ParsedTemplate::read(templateNumbered(1)), first);
    EXPECT_EQ(ParsedTemplate::sharedCount(), 2u);

    // Kept without a holder: the eight most recent, within 256 KiB of text.
    first.reset();
    for (int n = 2; n <= 9; ++n) {
        ParsedTemplate::read(templateNumbered(n));
    }
    EXPECT_EQ(ParsedTemplate::sharedCount(), 8u);
    const auto held = ParsedTemplate::read(templateNumbered(10, 300 * 1024));
    EXPECT_EQ(ParsedTemplate::sharedCount(), 9u) << "a large text is shared while held";
    const std::weak_ptr<const ParsedTemplate> large = held;
    ParsedTemplate::read(templateNumbered(11, 200 * 1024));
    EXPECT_EQ(ParsedTemplate::sharedCount(), 9u);
    ParsedTemplate::read(templateNumbered(12, 200 * 1024));
    EXPECT_EQ(ParsedTemplate::sharedCount(), 2u) << "the held one and the last, which alone fits";
    ParsedTemplate::forgetRecent();
    EXPECT_EQ(ParsedTemplate::sharedCount(), 1u);
    EXPECT_FALSE(large.expired());
}

// A reading that reported an error is not shared: each card that loads the
// text reports it, and a quiet read of it reports nothing.
TEST(ParsedTemplate, ATextWithAnErrorIsReadAndReportedByEveryCard)
{
    Mero::debugMode = false;
    const std::string text = R"({"elements": {"$": 1, "nodeId": "a\qb"}})";
    std::vector<std::shared_ptr<Mero::RuntimeEngine>> cards;
    for (int card = 0; card < 2; ++card) {
        cards.push_back(std::make_shared<Mero::RuntimeEngine>());
        EXPECT_EQ(MeroTest::printedOutput([&] { cards.back()->loadTemplate(text); }), "string escape error\n");
    }
    EXPECT_EQ(MeroTest::printedOutput([&] { ParsedTemplate::read(text, ParsedTemplate::Reports::Quiet); }), "");
    EXPECT_EQ(Mero::memberOf(cards[1]->elementsForBuild(), "nodeId").string(), "ab");
}

}  // namespace
