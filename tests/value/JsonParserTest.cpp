#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "support/CanonicalJson.h"
#include "support/ReportedErrors.h"
#include "value/JsonParser.h"
#include "value/JsonWriter.h"

using namespace Mero;
using MeroTest::canonicalJson;
using MeroTest::DebugModeScope;
using MeroTest::printedOutput;
using MeroTest::thrownMessage;

namespace {

// Parses with debugMode set and writes the result back as JSON.
std::string read(std::string_view text)
{
    DebugModeScope debug(true);
    return canonicalJson(JsonParser::read(text));
}

}  // namespace

// What a text reads as, written back as canonical JSON. Beyond plain JSON the
// reader is lenient and reads a broken text as far as it can; each row names
// the rule it shows. Repeated keys in plain JSON are read as the differential
// test's oracle reads them, the first value kept or merged into.
struct TextCase {
    const char* name;
    const char* text;
    const char* read;
};

class JsonParserTexts : public testing::TestWithParam<TextCase> {};

TEST_P(JsonParserTexts, ReadAs)
{
    EXPECT_EQ(read(GetParam().text), GetParam().read) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Rules, JsonParserTexts,
    testing::Values(
        TextCase{"WhitespaceAroundTokensIsSkipped", " \t\r\n{ \"a\" :\n 1 } ", R"({"a":1})"},
        TextCase{"DuplicateContainerAfterANumberIsDropped", R"({"a":1,"a":{"x":{"y":2}},"b":[3]})",
                 R"({"a":1,"b":[3]})"},
        TextCase{"DuplicateContainerAfterAStringIsDropped", R"({"a":"s","a":[1,[2]],"b":4})", R"({"a":"s","b":4})"},
        TextCase{"EmptyAndTrailingCommasAreSkipped", R"({"a":[1,,2,]})", R"({"a":[1,2]})"},
        TextCase{"CommasBetweenElementsAreOptional", R"({"a":[1 2]})", R"({"a":[1,2]})"},
        TextCase{"CommasBetweenMembersAreOptional", R"({"a":1 "b":2,})", R"({"a":1,"b":2})"},
        TextCase{"AnArrayCloserEndsAnObject", R"({"o":{"k":1],"after":2})", R"({"after":2,"o":{"k":1}})"},
        TextCase{"AnObjectCloserEndsAnArray", R"({"a":[1}})", R"({"a":[1]})"},
        TextCase{"LiteralsAreKnownByTheirFirstLetter", R"({"a":tzzz,"b":fyyyy,"c":nqqq})",
                 R"({"a":true,"b":false,"c":null})"},
        TextCase{"TextAfterALiteralStopsAtTheFirstStrayByte", R"({"a":truex,"b":1})", R"({"a":true})"},
        TextCase{"TruncatedTrueAtTheEndIsBounded", R"({"a":t)", R"({"a":true})"},
        TextCase{"TruncatedFalseAtTheEndIsBounded", R"({"a":fa)", R"({"a":false})"},
        TextCase{"AnotherObjectAfterTheRootIsIgnored", R"({"a":1}{"b":2})", R"({"a":1})"},
        TextCase{"ClosersAfterTheRootAreIgnored", R"({"a":1}}]})", R"({"a":1})"},
        TextCase{"GarbageAfterTheRootIsIgnored", R"({"a":1} garbage)", R"({"a":1})"},
        TextCase{"UnterminatedContainersKeepWhatWasRead", R"({"a":{"b":[1,2)", R"({"a":{"b":[1,2]}})"},
        TextCase{"AnUnterminatedStringKeepsWhatWasRead", R"({"s":"never closed)", R"({"s":"never closed"})"},
        TextCase{"RawBytesInStringsPassThrough", "{\"s\":\"caf\xC3\xA9\x01\n\"}", "{\"s\":\"caf\xC3\xA9\x01\n\"}"},
        TextCase{"LeadingZerosAreRead", R"({"a":0.25,"b":-7,"c":007})", R"({"a":0.25,"b":-7,"c":7})"},
        TextCase{"ASecondPointEndsTheNumber", R"({"a":1.2.3,"b":1})", R"({"a":1.2,"b":1})"},
        // Below the root, members are read on a faster path that hands
        // anything unusual back to the careful reading mid-member.
        TextCase{"NestedMembersReadAsTheRootsAre",
                 R"({"o":{"a":1 "b":tzz,"c":1e2,"d":"x\"y","k\u0041":[1 2,],"e":-0.5,"a":9,"f":{"g":[]}]})",
                 R"({"o":{"a":1,"b":true,"c":100,"d":"x"y","e":-0.5,"f":{"g":[]},"kA":[1,2]}})"}),
    [](const testing::TestParamInfo<TextCase>& param) { return std::string(param.param.name); });

// Numbers, escapes and \u escapes of the JSON grammar are checked against
// RapidJSON and a correctly rounded strtod, bit for bit, in differential/.
TEST(JsonParserNumbers, LoneMinusThrowsTheConversionError)
{
    DebugModeScope quiet(false);
    EXPECT_THROW(JsonParser::read(R"({"a":-})"), std::invalid_argument);
    EXPECT_THROW(JsonParser::read(R"({"o":{"a":-}})"), std::invalid_argument);
    EXPECT_THROW(JsonParser::read("{\"a\":1" + std::string(400, '0') + "}"), std::out_of_range);
}

TEST(JsonParserStrings, TextNeedNotEndWithAZeroByte)
{
    const std::string text = R"({"s":"abc"})";
    JsonParser parser;
    parser.parse(text.data(), text.data() + 8);  // cut inside the string
    EXPECT_EQ(parser.root().object().at("s").string(), "ab");
}

// Strings are scanned for their closing quote or first escape many bytes at
// a time: every length puts the end of the string at another place in a block
// and in the tail after the last whole block, and the text is cut right after
// it, so that nothing past the end may be read.
TEST(JsonParserStrings, EveryLengthEndsWhereItsQuoteOrEscapeIs)
{
    for (size_t length = 0; length <= 40; ++length) {
        std::string plain;
        for (size_t i = 0; i < length; ++i) {
            plain += static_cast<char>('a' + i % 26);
        }
        const std::string text = "{\"" + plain + "\":\"" + plain + "\\n" + plain + "\"}";
        const std::vector<char> exact(text.begin(), text.end());
        JsonParser parser;
        parser.parse(exact.data(), exact.data() + exact.size());
        EXPECT_EQ(parser.root().object().at(plain).string(), plain + "\n" + plain) << length;

        const std::string unterminated = "{\"s\":\"" + plain;
        const std::vector<char> cut(unterminated.begin(), unterminated.end());
        JsonParser cutParser;
        cutParser.parse(cut.data(), cut.data() + cut.size());
        EXPECT_EQ(cutParser.root().object().at("s").string(), plain) << length;
    }
}

TEST(JsonParserStrings, EmbeddedZeroByteReadsAsEnd)
{
    const std::string text("{\"a\":1,\0\"b\":2}", 14);
    EXPECT_EQ(printedOutput([&] { JsonParser::read(text); }), "object key is failed\n");
}

// Each message of the reader, thrown while debugMode is set; with it clear the
// message is printed and the parse keeps what it had.
struct ReaderErrorCase {
    const char* name;
    const char* text;
    const char* message;
    const char* keptWhenQuiet;
    const char* thenPrinted = "";  // later reports of the same quiet parse
};

class JsonParserErrors : public testing::TestWithParam<ReaderErrorCase> {};

TEST_P(JsonParserErrors, ThrownWithDebugModeAndPrintedWithout)
{
    const ReaderErrorCase& error = GetParam();
    EXPECT_EQ(thrownMessage([&] { JsonParser::read(error.text); }), error.message);
    std::string kept;
    EXPECT_EQ(printedOutput([&] { kept = canonicalJson(JsonParser::read(error.text)); }),
              std::string(error.message) + "\n" + error.thenPrinted);
    EXPECT_EQ(kept, error.keptWhenQuiet);
}

INSTANTIATE_TEST_SUITE_P(
    AllMessages, JsonParserErrors,
    testing::Values(
        ReaderErrorCase{"EmptyText", "", "Syntax error: '{' expected.", "{}"},
        ReaderErrorCase{"ArrayRoot", "[1,2]", "Syntax error: '{' expected.", "{}", "object key is failed\n"},
        ReaderErrorCase{"StrayFirstByte", R"(x"a":1})", "Syntax error: '{' expected.", R"({"a":1})"},
        ReaderErrorCase{"NumberAsKey", R"({"a":1,2:3})", "object key is failed", R"({"a":1})"},
        ReaderErrorCase{"WhitespaceThenEnd", R"({"a":1 )", "object key is failed", R"({"a":1})"},
        ReaderErrorCase{"MissingColon", R"({"a" 1})", "object member separator is failed", "{}"},
        ReaderErrorCase{"CloseAsValue", R"({"a":1,"b":})", "object value is failed", R"({"a":1})"},
        ReaderErrorCase{"ColonInArray", R"({"a":[1,:]})", "object value is failed", R"({"a":[1]})"},
        ReaderErrorCase{"EndAsValue", R"({"a":)", "object value is failed", "{}"},
        ReaderErrorCase{"UnknownEscape", R"({"s":"a\qb","t":1})", "string escape error", R"({"s":"ab","t":1})"},
        ReaderErrorCase{"UnicodeEscapeWithoutFourHexDigits", R"({"s":"\u00G1","t":1})", "string escape error",
                        R"({"s":"00G1","t":1})"},
        ReaderErrorCase{"NestedWhitespaceThenEnd", "{\"o\":{\"a\":1 \n", "object key is failed", R"({"o":{"a":1}})"},
        ReaderErrorCase{"NestedMissingColon", R"({"o":{"a" 1}})", "object member separator is failed", R"({"o":{}})"},
        ReaderErrorCase{"NestedCloseAsValue", R"({"o":{"a":1,"b":}})", "object value is failed", R"({"o":{"a":1}})"},
        ReaderErrorCase{"NestedEndAsValue", R"({"o":{"a": )", "object value is failed", R"({"o":{}})"},
        ReaderErrorCase{"NestedUnknownEscape", R"({"o":{"s":"a\qb","t":1}})", "string escape error",
                        R"({"o":{"s":"ab","t":1}})"},
        // A bad escape in a key is reported once, whatever follows the key.
        ReaderErrorCase{"NestedBadEscapeInKeyThenMissingColon", R"({"o":{"\q" 1}})", "string escape error",
                        R"({"o":{}})", "object member separator is failed\n"},
        ReaderErrorCase{"NestedBadEscapeInKeyThenCloseAsValue", R"({"o":{"\q":}})", "string escape error",
                        R"({"o":{}})", "object value is failed\n"},
        ReaderErrorCase{"NestedBadUnicodeEscapeInKeyAtEnd", R"({"o":{"\u)", "string escape error", R"({"o":{}})",
                        "object member separator is failed\n"}),
    [](const testing::TestParamInfo<ReaderErrorCase>& param) { return std::string(param.param.name); });

// Templates are read sharing the objects they repeat. Shared or not, a text
// reads the same, in the same order, with the same reports. The rows are
// texts where an object's first '}' is not its end, where members are read
// into an object met before (or into a container inside one), or where an
// error comes first.
namespace {

std::string readSharing(const std::string& text, bool share)
{
    std::string read;
    const std::string printed = printedOutput([&] {
        JsonParser parser;
        if (share) {
            parser.shareRepeatedObjects();
        }
        parser.parse(text);
        read = toJsonString(parser.root()) + " " + canonicalJson(parser.root());
    });
    return printed + read;
}

// Long enough to be found by its first bytes, not by its first '}'.
const std::string kElement = R"({"$":4,"nodeId":"subtitle","text":"A short description","size":{"v":24},"c":[1]})";

// More different objects than the reader keeps, short ones and long ones
// alike from their first bytes on, each written twice.
std::string manyRepeatedObjects()
{
    std::string text = R"({"o":[)";
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < 300; ++i) {
            const std::string n = std::to_string(i);
            text += R"({"v":)" + n + "},";
            text += kElement.substr(0, kElement.size() - 1) + R"(,"n":)" + n + "},";
        }
    }
    return text + "{}]}";
}

}  // namespace

class JsonParserRepeatedObjects : public testing::TestWithParam<std::string> {};

TEST_P(JsonParserRepeatedObjects, ReadAsWithoutSharing)
{
    EXPECT_EQ(readSharing(GetParam(), true), readSharing(GetParam(), false)) << GetParam();
}

INSTANTIATE_TEST_SUITE_P(
    Texts, JsonParserRepeatedObjects,
    testing::Values(R"({"o":{"a":{"v":1},"b":[{"v":1},{"v":1}],"c":{"v":1},"d":{"v":1}}})",
                    R"({"o":{"a":{"v":1},"b":{"v":1},"b":{"w":2},"c":{"v":1}}})",
                    R"({"o":{"a":{"v":1},"a":{"w":2},"c":{"v":1}}})", R"({"o":{"a":{"k}":1},"b":{"k}":1}}})",
                    R"({"o":{"a":{"s":"}"},"b":{"s":"}"},"c":{"s":"}"}}})", R"({"o":{"a":{"v":1],"b":{"v":1]}})",
                    R"({"o":{"a":{"v":tru},"b":{"v":tru},"c":{"v":1}}})", R"({"o":{"a":{"\q":1},"b":{"\q":1}}})",
                    R"({"o":{"a":{"\u0076":1},"b":{"\u0076":1},"c":{"v":1}}})",
                    R"({"o":{"a":{"p":{"v":1}},"b":{"p":{"v":1}},"c":{"v":1}}})",
                    R"({"o":{"a":{},"b":{},"c":[{},{}]}})", R"({"o":{"a":{"v":1,"v":2},"b":{"v":1,"v":2}}})",
                    R"({"o":{"a":{"v":1e2},"b":{"v":1e2},"c":{"v":-0.5},"d":{"v":-0.5}}})",
                    R"({"o":[)" + kElement + "," + kElement + "," + kElement + "]}",
                    R"({"o":{"a":)" + kElement + R"(,"b":)" + kElement + R"(,"b":{"size":{"w":2},"c":[2]},"d":)" +
                        kElement + "}}",
                    R"({"o":{"a":)" + kElement + R"(,"b":)" + kElement.substr(0, 60) + "}}",
                    R"({"o":[)" + kElement + "," + kElement.substr(0, kElement.size() - 1) + "]}",
                    manyRepeatedObjects()));

TEST(JsonParserRepeatedObjects, ObjectsWrittenAlikeAreShared)
{
    const std::string text = R"({"o":{"a":{"v":1},"b":{"v":1},"c":{"v":2},"d":{"v": 1},"e":)" + kElement +
                             R"(,"f":)" + kElement + "}}";
    JsonParser sharing;
    sharing.shareRepeatedObjects();
    sharing.parse(text);
    const ValueObject& read = sharing.root().object().at("o").object();
    auto objectAt = [&read](const char* key) { return &read.at(key).object(); };
    EXPECT_EQ(objectAt("a"), objectAt("b"));
    EXPECT_NE(objectAt("a"), objectAt("c"));
    EXPECT_NE(objectAt("a"), objectAt("d"));  // written otherwise
    EXPECT_EQ(objectAt("e"), objectAt("f"));

    // Data is changed in place by scripts: a reader shares nothing unless told.
    const Value plain = JsonParser::read(text);
    EXPECT_NE(&plain.object().at("o").object().at("a").object(), &plain.object().at("o").object().at("b").object());
}
