// The checker over a corpus of broken templates, one family of mistakes each:
// tests/check/corpus/NAME.json is checked (with NAME.data.json as its data
// when there is one) and must give exactly the findings in NAME.expected, one
// per line as LINE:COLUMN: error|warning: message.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "check/TemplateChecker.h"

namespace {

std::string readText(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string describe(const Mero::Check::CheckResult& result)
{
    std::string text;
    for (const Mero::Check::Finding& finding : result.findings) {
        text += std::to_string(finding.at.line) + ":" + std::to_string(finding.at.column) + ": " +
                (finding.severity == Mero::Check::Severity::Error ? "error" : "warning") + ": " + finding.message +
                "\n";
    }
    return text;
}

TEST(TemplateChecker, EachCorpusTemplateGivesExactlyItsExpectedFindings)
{
    int checked = 0;
    for (const auto& entry : std::filesystem::directory_iterator(MERO_CHECK_CORPUS)) {
        const std::filesystem::path path = entry.path();
        if (path.extension() != ".json" || path.stem().extension() == ".data") {
            continue;
        }
        SCOPED_TRACE(path.filename().string());
        std::filesystem::path dataPath = path;
        dataPath.replace_extension(".data.json");
        std::optional<std::string> data;
        if (std::filesystem::exists(dataPath)) {
            data = readText(dataPath);
        }
        std::filesystem::path expected = path;
        expected.replace_extension(".expected");
        EXPECT_EQ(describe(Mero::Check::checkTemplate(readText(path), data)), readText(expected));
        ++checked;
    }
    EXPECT_GE(checked, 1);
}

}  // namespace
