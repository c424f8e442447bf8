// Loads arbitrary bytes as a template and dispatches every event it names.
// Reported errors are expected (debugMode is clear, so they only print);
// anything that crashes, reads out of bounds, trips a sanitizer or runs
// without end is a bug. Script may try to run forever (a While on true, a
// ForRange to 1e12, a function or a callback calling itself): the engine's
// own limits must stop it.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "runtime/RuntimeEngine.h"
#include "value/ErrorReporting.h"

namespace {

// Host hooks that accept every request; bridge calls are answered at once.
void installQuietHooks(Mero::RuntimeEngine& engine)
{
    engine.services.log = [](const std::string&) {};
    engine.services.setTimeout = [](double, Mero::PendingJob) {};
    engine.services.startVideoTimer = [](double, double, Mero::VideoTimerListPtr) {};
    engine.services.measureText = [](const Mero::TextContent&) { return std::pair<double, double>(0.0, 0.0); };
    engine.services.callBridge = [](const std::string&, const Mero::Value&, Mero::BridgeReply reply) {
        reply(Mero::Value());
    };
    engine.services.callBridgeWithKeyPath = [](const std::string&, const Mero::Value&, const Mero::Value&,
                                            Mero::BridgeReply reply) { reply(Mero::Value()); };
}

void runTemplate(const char* text, size_t size)
{
    auto engine = std::make_shared<Mero::RuntimeEngine>();
    installQuietHooks(*engine);
    engine->loadTemplate(text, size);
    std::vector<std::string> names;
    for (const auto& entry : engine->eventTable()) {
        names.push_back(entry.first);
    }
    for (const std::string& name : names) {
        engine->dispatchEvent(name, Mero::Value(Mero::Kind::Object));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // Quiet reports; go on with the fallbacks, as a release build does.
    Mero::debugMode = false;
    struct Discard : std::streambuf {
        int overflow(int c) override { return c; }
    };
    static Discard discard;
    std::streambuf* saved = std::cout.rdbuf(&discard);

    try {
        runTemplate(reinterpret_cast<const char*>(data), size);
    } catch (const std::invalid_argument&) {
        // the standard number conversions (the JSON reader's "-", ToNumber)
    } catch (const std::out_of_range&) {
        // a number beyond range, a position past a string's end
    } catch (const std::bad_function_call&) {
        // a built-in handed a non-callback where it calls one
    } catch (const std::bad_variant_access&) {
        // a payload of the wrong alternative, as the standard library reports it
    }
    // Templates without "variables" write into the shared empty object;
    // start every input from a clean one.
    Mero::Value mismatched;
    mismatched.object().clear();
    std::cout.clear();
    std::cout.rdbuf(saved);
    return 0;
}
