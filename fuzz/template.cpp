// Loads arbitrary bytes as a template and dispatches every event it names.
// Reported errors are expected (debugMode is clear, so they only print);
// anything that crashes, reads out of bounds or trips a sanitizer is a bug.
//
// Script may run as long as it likes (a While on true, a ForRange to 1e12,
// a function calling itself), and the engine does not bound it. So that every
// input finishes, the target only dispatches events of templates whose loops
// have small constant bounds, and gives each input a budget of function calls.
// A callback that calls itself through a local stays unbounded: a stack
// overflow on such an input is the template's, not a fault.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iostream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "runtime/RuntimeEngine.h"
#include "value/ErrorReporting.h"
#include "value/JsonParser.h"

namespace {

constexpr int callBudget = 20000;
constexpr double largestLoopBound = 16;

struct BudgetExceeded {};

// Counts every call through the function table and stops the input when the
// budget is spent.
class BudgetedFunction final : public Mero::MRFunction {
public:
    BudgetedFunction(Mero::MRFunctionPtr inner, int& calls) : inner_(std::move(inner)), calls_(calls) {}
    Mero::Value invoke(Mero::ArgList&& args, const Mero::EngineRef& engine) override
    {
        if (++calls_ > callBudget) {
            throw BudgetExceeded();
        }
        return inner_->invoke(std::move(args), engine);
    }

private:
    Mero::MRFunctionPtr inner_;
    int& calls_;
};

bool smallConstant(const Mero::ValueObject& node, const char* key)
{
    auto found = node.find(key);
    return found != node.end() && found->second.is(Mero::Kind::Number) &&
           std::fabs(found->second.number()) <= largestLoopBound;
}

// True when every loop node of the template is a ForRange with small
// constant bounds. Walks with an explicit stack: nesting may be deep.
bool loopsAreBounded(const Mero::Value& root)
{
    std::vector<const Mero::Value*> pending{&root};
    while (!pending.empty()) {
        const Mero::Value* value = pending.back();
        pending.pop_back();
        if (value->is(Mero::Kind::Array)) {
            for (const Mero::Value& element : value->array()) {
                pending.push_back(&element);
            }
            continue;
        }
        if (!value->is(Mero::Kind::Object)) {
            continue;
        }
        const Mero::ValueObject& node = value->object();
        auto code = node.find("$");
        if (code != node.end() && code->second.is(Mero::Kind::Number)) {
            double kind = std::trunc(code->second.number());
            if (kind == 8 || kind == 10) {
                return false;
            }
            if (kind == 7 && !(smallConstant(node, "startIndex") && smallConstant(node, "endIndex"))) {
                return false;
            }
        }
        for (const auto& member : node) {
            pending.push_back(&member.second);
        }
    }
    return true;
}

// Host hooks that accept every request; bridge calls are answered at once.
void installQuietHooks(Mero::RuntimeEngine& engine)
{
    engine.hooks.log = [](const std::string&) {};
    engine.hooks.setTimeout = [](double, Mero::HostJob) {};
    engine.hooks.startVideoTimer = [](double, double, Mero::VideoTimerListPtr) {};
    engine.hooks.measureText = [](const Mero::TextContent&) { return std::pair<double, double>(0.0, 0.0); };
    engine.hooks.callBridge = [](const std::string&, const Mero::Value&, Mero::BridgeReply reply) {
        reply(Mero::Value());
    };
    engine.hooks.callBridgeWithKeyPath = [](const std::string&, const Mero::Value&, const Mero::Value&,
                                            Mero::BridgeReply reply) { reply(Mero::Value()); };
}

void runTemplate(const char* text, size_t size)
{
    auto engine = std::make_shared<Mero::RuntimeEngine>();
    installQuietHooks(*engine);
    engine->loadTemplate(text, size);

    Mero::JsonParser parser;
    parser.parse(text, text + size);
    if (!loopsAreBounded(parser.root())) {
        return;
    }
    int calls = 0;
    for (auto& entry : engine->functionTable) {
        entry.second = std::make_unique<BudgetedFunction>(std::move(entry.second), calls);
    }
    std::vector<std::string> names;
    for (const auto& entry : engine->eventTable) {
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
    static std::ostringstream sink;
    std::streambuf* saved = std::cout.rdbuf(sink.rdbuf());

    try {
        runTemplate(reinterpret_cast<const char*>(data), size);
    } catch (const BudgetExceeded&) {
        // ran out of calls: not a fault
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
    sink.str("");
    std::cout.rdbuf(saved);
    return 0;
}
