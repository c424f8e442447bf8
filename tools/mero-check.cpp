// mero-check TEMPLATE [--data DATA] [--json]
//
// Checks a card's template, and with --data the business data it reads, and
// prints each finding as FILE:LINE:COLUMN: error|warning: message, sorted by
// position (--json: the same findings as a JSON array). Exits 0 when there is
// no error, 1 when there is one, 2 when it cannot read its input.
#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>

#include "check/TemplateChecker.h"
#include "value/JsonWriter.h"
#include "value/Value.h"

namespace {

std::optional<std::string> readFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        return std::nullopt;
    }
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

const char* severityName(Mero::Check::Severity severity)
{
    return severity == Mero::Check::Severity::Error ? "error" : "warning";
}

void printJson(const std::string& file, const Mero::Check::CheckResult& result)
{
    Mero::Value list(Mero::Kind::Array);
    for (const Mero::Check::Finding& finding : result.findings) {
        Mero::Value entry = Mero::Value::makeObject();
        entry.object().try_emplace("file", Mero::Value(file));
        entry.object().try_emplace("line", Mero::Value(static_cast<double>(finding.at.line)));
        entry.object().try_emplace("column", Mero::Value(static_cast<double>(finding.at.column)));
        entry.object().try_emplace("severity", Mero::Value(severityName(finding.severity)));
        entry.object().try_emplace("message", Mero::Value(finding.message));
        list.array().push_back(std::move(entry));
    }
    std::cout << Mero::toJsonString(list) << '\n';
}

int usage()
{
    std::cerr << "usage: mero-check TEMPLATE [--data DATA] [--json]\n";
    return 2;
}

}  // namespace

int main(int argc, char** argv)
{
    std::string templatePath;
    std::optional<std::string> dataPath;
    bool json = false;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--json") {
            json = true;
        } else if (argument == "--data" && i + 1 < argc) {
            dataPath = argv[++i];
        } else if (templatePath.empty() && !argument.starts_with("--")) {
            templatePath = argument;
        } else {
            return usage();
        }
    }
    if (templatePath.empty()) {
        return usage();
    }
    const std::optional<std::string> templateText = readFile(templatePath);
    if (!templateText) {
        std::cerr << "mero-check: cannot read " << templatePath << '\n';
        return 2;
    }
    std::optional<std::string> data;
    if (dataPath) {
        data = readFile(*dataPath);
        if (!data) {
            std::cerr << "mero-check: cannot read " << *dataPath << '\n';
            return 2;
        }
    }
    const Mero::Check::CheckResult result = Mero::Check::checkTemplate(*templateText, data);
    if (json) {
        printJson(templatePath, result);
    } else {
        for (const Mero::Check::Finding& finding : result.findings) {
            std::cout << templatePath << ':' << finding.at.line << ':' << finding.at.column << ": "
                      << severityName(finding.severity) << ": " << finding.message << '\n';
        }
    }
    return result.hasErrors() ? 1 : 0;
}
