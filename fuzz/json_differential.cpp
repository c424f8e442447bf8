// The differential check of the JSON reader and writer on fuzzer input: the
// input, read as the value of a one-member object, must be read by Mero as
// RapidJSON reads it whenever RapidJSON accepts it, and what Mero writes of it
// must be read back alike (the rules are in tests/support/JsonOracle.h). Any
// difference aborts with the text and where the values part.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "support/JsonOracle.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const MeroTest::OracleVerdict verdict = MeroTest::checkAgainstOracle(MeroTest::wrapped(input));
    if (!verdict.difference.empty()) {
        std::fprintf(stderr, "json_differential: %s\n  text: {\"v\":%.*s}\n", verdict.difference.c_str(),
                     static_cast<int>(size), reinterpret_cast<const char*>(data));
        std::abort();
    }
    return 0;
}
