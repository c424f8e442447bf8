// Feeds arbitrary bytes to the JSON reader, then through both writers and the
// teardown. Errors the reader reports are expected; anything that crashes,
// reads out of bounds or trips a sanitizer is a bug. Reading the same bytes
// keeping only the root member "a" must report the same and read "a" alike,
// and what it left out must make the root whole again. Reading them sharing
// objects written alike, as templates are read, must read the same.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>

#include "value/ErrorReporting.h"
#include "value/JsonParser.h"
#include "value/JsonWriter.h"

namespace {

struct Reading {
    std::string printed;
    std::string thrown;
    std::string keptMembers;
    std::string root;  // read whole, or made whole again
};

Reading read(const char* text, size_t size, const Mero::JsonParser::KeySet* keep, std::ostringstream& sink,
             bool shareRepeated = false)
{
    Reading reading;
    sink.str("");
    try {
        Mero::JsonParser parser;
        parser.keepRootMembers(keep);
        if (shareRepeated) {
            parser.shareRepeatedObjects();
        }
        parser.parse(text, text + size);
        for (const auto& [key, value] : parser.root().object()) {
            if (key == "a") {
                reading.keptMembers += Mero::toJsonString(value) + ";";
            }
        }
        Mero::Value whole(Mero::Kind::Object);
        Mero::JsonParser::restoreRoot(parser.root().object(), parser.leftOut(), whole.object());
        reading.root = Mero::toJsonString(keep == nullptr ? parser.root() : whole);
        if (keep == nullptr) {
            std::string json = Mero::toJsonString(parser.root());
            std::ostringstream streamed;
            streamed << parser.root();
            // Read the writer's output again: it must never crash.
            Mero::JsonParser again;
            again.parse(json);
        }
    } catch (const std::invalid_argument& error) {
        reading.thrown = error.what();  // a lone "-": the number conversion's own error
    } catch (const std::out_of_range& error) {
        reading.thrown = error.what();  // a number beyond a double's range
    }
    reading.printed = sink.str();
    return reading;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // Quiet reports; keep what was read, as a release build does.
    Mero::debugMode = false;
    static std::ostringstream sink;
    static const Mero::JsonParser::KeySet keep{"a"};
    std::streambuf* saved = std::cout.rdbuf(sink.rdbuf());

    const char* text = reinterpret_cast<const char*>(data);
    const Reading whole = read(text, size, nullptr, sink);
    const Reading kept = read(text, size, &keep, sink);
    const Reading shared = read(text, size, nullptr, sink, true);
    std::cout.rdbuf(saved);
    if (shared.printed != whole.printed || shared.thrown != whole.thrown || shared.root != whole.root) {
        std::cerr << "sharing repeated objects read differently: printed \"" << shared.printed << "\" for \""
                  << whole.printed << "\", thrown \"" << shared.thrown << "\" for \"" << whole.thrown << "\", "
                  << shared.root << " for " << whole.root << "\n";
        std::abort();
    }
    if (whole.printed != kept.printed || whole.thrown != kept.thrown || whole.keptMembers != kept.keptMembers ||
        whole.root != kept.root) {
        std::cerr << "keeping only \"a\" read differently: printed \"" << kept.printed << "\" for \"" << whole.printed
                  << "\", thrown \"" << kept.thrown << "\" for \"" << whole.thrown << "\", \"a\" " << kept.keptMembers
                  << " for " << whole.keptMembers << ", made whole " << kept.root << " for " << whole.root << "\n";
        std::abort();
    }
    return 0;
}
