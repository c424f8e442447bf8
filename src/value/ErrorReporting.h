// The engine's one way of reporting script-level misuse.
#pragma once

#include <cstddef>
#include <string_view>

namespace Mero {

// Process-wide. Set at library load; every initMREngine overwrites it. While
// set, reportError throws and the runtime writes its trace lines.
extern bool debugMode;

// Writes the message and a newline to standard output and flushes; then, while
// debugMode is set, throws std::runtime_error carrying the message. Callers go
// on with their fallback when it returns.
void reportError(std::string_view message);

// While one lives, the reports made on its thread are counted instead of
// printed or thrown: for work tried once on behalf of many cards, which is
// done again, reporting, when it met an error.
class QuietReports {
public:
    QuietReports() noexcept;
    ~QuietReports();
    QuietReports(const QuietReports&) = delete;
    QuietReports& operator=(const QuietReports&) = delete;

    std::size_t count() const noexcept { return count_; }

private:
    std::size_t count_ = 0;
    std::size_t* outer_;
};

}  // namespace Mero
