// Feeds arbitrary bytes to the JSON reader, then through both writers and the
// teardown. Errors the reader reports are expected; anything that crashes,
// reads out of bounds or trips a sanitizer is a bug.
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <sstream>
#include <stdexcept>

#include "value/ErrorReporting.h"
#include "value/JsonParser.h"
#include "value/JsonWriter.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // Quiet reports; keep what was read, as a release build does.
    Mero::debugMode = false;
    static std::ostringstream sink;
    std::streambuf* saved = std::cout.rdbuf(sink.rdbuf());

    const char* text = reinterpret_cast<const char*>(data);
    try {
        Mero::JsonParser parser;
        parser.parse(text, text + size);
        std::string json = Mero::toJsonString(parser.root());
        std::ostringstream streamed;
        streamed << parser.root();
        // Read the writer's output again: it must never crash.
        Mero::JsonParser again;
        again.parse(json);
    } catch (const std::invalid_argument&) {
        // a lone "-": the number conversion's own error
    } catch (const std::out_of_range&) {
        // a number beyond a double's range
    }
    sink.str("");
    std::cout.rdbuf(saved);
    return 0;
}
