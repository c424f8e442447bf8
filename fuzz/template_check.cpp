// Feeds arbitrary bytes to the template checker, as a template and again as
// its data: whatever an author or a server writes, mero-check must report it,
// never crash, hang or read out of bounds.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "check/TemplateChecker.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const Mero::Check::CheckResult result = Mero::Check::checkTemplate(text, text);
    for (const Mero::Check::Finding& finding : result.findings) {
        if (finding.at.line == 0 || finding.at.column == 0 || finding.message.empty()) {
            __builtin_trap();
        }
    }
    return 0;
}
