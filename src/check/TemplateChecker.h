// The template checker: finds the mistakes in a card's template (and, given
// its data, the data it reads but lacks) that the engine would pass over
// quietly, each at the line and column of the JSON value concerned. It reads
// the engine's own tables (node kinds and their properties, transition keys,
// script node codes, built-ins, size types), so it cannot drift from what the
// engine does.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "check/Finding.h"

namespace Mero::Check {

struct CheckResult {
    std::vector<Finding> findings;  // sorted by position

    bool hasErrors() const;
};

// `data` is the card's business data when the caller has it.
CheckResult checkTemplate(std::string_view templateText, std::optional<std::string_view> data = std::nullopt);

}  // namespace Mero::Check
