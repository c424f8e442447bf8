// A fresh engine with a template loaded and recording host hooks, so a test
// reads like the script it checks:
//
//     TemplateHarness card(R"({"variables": {"count": 0}, "events": [...]})");
//     card.send("tap");
//     EXPECT_EQ(card.ui("count").number(), 1);
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "runtime/RuntimeEngine.h"
#include "runtime/ScriptFactory.h"
#include "support/JsonValue.h"
#include "value/JsonParser.h"
#include "value/Value.h"

namespace MeroTest {

struct RecordedBridgeCall {
    std::string name;
    Mero::Value params;
    Mero::Value keyPath;  // null for the plain bridge
    Mero::BridgeReply reply;
};

struct RecordedTimeout {
    double delay;
    Mero::PendingJob job;
};

struct RecordedVideoTimer {
    double first;
    double second;
    Mero::VideoTimerList entries;
};

class TemplateHarness {
public:
    explicit TemplateHarness(std::string_view templateText = "{}") : engine(std::make_shared<Mero::RuntimeEngine>())
    {
        installHooks();
        engine->loadTemplate(templateText);
    }

    ~TemplateHarness()
    {
        // A template without "variables" writes into the process-wide shared
        // empty object; leave it empty for the next test.
        Mero::Value mismatched;
        mismatched.object().clear();
    }

    TemplateHarness(const TemplateHarness&) = delete;
    TemplateHarness& operator=(const TemplateHarness&) = delete;

    // Dispatches an event; the payload defaults to an empty object.
    void send(const std::string& name, Mero::Value payload = Mero::Value(Mero::Kind::Object),
              const Mero::ObjectPtr& extra = nullptr)
    {
        engine->dispatchEvent(name, payload, extra);
    }

    Mero::Value call(const std::string& name, std::vector<Mero::Value> args = {})
    {
        return engine->invokeFunction(name, std::move(args));
    }

    // Evaluates one expression node, written as JSON, in `scope`.
    Mero::Value eval(std::string_view expressionJson)
    {
        return Mero::createRuntimeObject(json(expressionJson))->value(scope, engine);
    }

    // Runs a statement list, written as a JSON array, in `scope`.
    Mero::Value run(std::string_view statementsJson)
    {
        Mero::Value holder = Mero::Value::makeObject({{"b", json(statementsJson)}});
        return Mero::runStatements(Mero::buildStatementList(holder, "b"), scope, engine);
    }

    Mero::Value ui(const std::string& name) const { return lookUp(*engine->uiVariables, name); }
    Mero::Value global(const std::string& name) const { return lookUp(*engine->globalVariables, name); }
    Mero::Value local(const std::string& name) const { return lookUp(*scope, name); }
    bool hasUi(const std::string& name) const { return engine->uiVariables->contains(name); }

    void setData(std::string_view dataJson) { engine->data = Mero::JsonParser::read(dataJson).objectPtr(); }

    // Drops the engine, as releasing the card does; weak holders see it gone.
    void release() { engine.reset(); }
    Mero::EngineRef weak() const { return engine; }

    std::shared_ptr<Mero::RuntimeEngine> engine;
    Mero::LocalScope scope = Mero::makeLocalScope();

    // What the script asked of the host, in order.
    std::vector<std::string> logs;
    std::vector<RecordedBridgeCall> bridgeCalls;
    std::vector<RecordedTimeout> timeouts;
    std::vector<RecordedVideoTimer> videoTimers;
    std::vector<Mero::TextContent> measured;

    // When set, every bridge call is answered with it before the hook returns
    // (a synchronous host); otherwise replies wait in bridgeCalls.
    std::optional<Mero::Value> immediateBridgeReply;
    std::pair<double, double> measureAnswer{0.0, 0.0};

private:
    static Mero::Value lookUp(const Mero::ValueObject& table, const std::string& name)
    {
        auto found = table.find(name);
        return found == table.end() ? Mero::Value() : found->second;
    }

    void installHooks()
    {
        Mero::RuntimeServices& services = engine->services;
        services.log = [this](const std::string& message) { logs.push_back(message); };
        services.setTimeout = [this](double delay, Mero::PendingJob job) { timeouts.push_back({delay, std::move(job)}); };
        services.startVideoTimer = [this](double first, double second, Mero::VideoTimerListPtr entries) {
            videoTimers.push_back({first, second, entries ? std::move(*entries) : Mero::VideoTimerList()});
        };
        services.measureText = [this](const Mero::TextContent& content) {
            measured.push_back(content);
            return measureAnswer;
        };
        services.callBridge = [this](const std::string& name, const Mero::Value& params, Mero::BridgeReply reply) {
            answerOrKeep({name, params, Mero::Value(), std::move(reply)});
        };
        services.callBridgeWithKeyPath = [this](const std::string& name, const Mero::Value& params,
                                             const Mero::Value& keyPath, Mero::BridgeReply reply) {
            answerOrKeep({name, params, keyPath, std::move(reply)});
        };
    }

    void answerOrKeep(RecordedBridgeCall call)
    {
        if (immediateBridgeReply) {
            Mero::Value reply = *immediateBridgeReply;
            call.reply(std::move(reply));
        }
        bridgeCalls.push_back(std::move(call));
    }
};

}  // namespace MeroTest
