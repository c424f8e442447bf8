// mero_card_dump REPOSITORY [OUTPUT]: renders the example cards
// (examples/cards/*, with their data, scenario and bridge replies) and the
// benchmark cards (bench/data) in process, with a recording host, and prints
// everything a host would see: each createComponent's slots, every child
// change, property update and animation, every host service call with its
// JSON text, the frames of every node after each step, the UI variables as
// JSON, and each JSON file of the corpus read and written again. Writes to
// OUTPUT, else to standard output; exits with 1 when an exception escaped a
// step (it is printed in place).
//
// The output depends only on the engine, so it must be the same on every
// processor: `make test-arm` makes it on the desktop and under ARM emulation
// and fails on any difference. Text is measured by a fixed stand-in rule,
// time is virtual and job ids come from rand() seeded per card.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "engine/Host.h"
#include "engine/MeroInstance.h"
#include "render/ContainerRenderNode.h"
#include "render/RenderTree.h"
#include "render/ViewRenderNode.h"
#include "render/ViewSlots.h"
#include "runtime/NumberConversion.h"
#include "runtime/RuntimeEngine.h"
#include "value/ErrorReporting.h"
#include "value/JsonParser.h"
#include "value/JsonWriter.h"
#include "value/Value.h"

namespace fs = std::filesystem;
using Mero::Kind;
using Mero::Value;

namespace {

std::ostream& out = std::cout;

// The shortest text that reads back as the same number: two targets print
// the same text exactly when they computed the same bits.
template <typename Number>
std::string exact(Number number)
{
    char text[64];
    auto [end, error] = std::to_chars(text, text + sizeof text, number);
    (void)error;
    return std::string(text, end);
}

// A value as the host would receive it, but numbers exact.
std::string describe(const Value& value)
{
    switch (value.kind()) {
    case Kind::Number: return exact(value.number());
    case Kind::String: return '"' + value.string() + '"';
    case Kind::Boolean: return value.boolean() ? "true" : "false";
    case Kind::Array:
    case Kind::Object: return Mero::toJsonString(value);
    default: return "null";
    }
}

std::string readFile(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// The stand-in for the host's text measurement: every character (UTF-8
// sequence) is 0.55 font sizes wide plus the letter spacing, lines break
// where the width runs out, and a line is 1.25 font sizes tall unless the
// text sets its own line height.
std::pair<double, double> measureStandIn(const Mero::TextContent& content)
{
    const std::string_view text = content.text != nullptr ? std::string_view(*content.text) : std::string_view();
    double lines = 1.0;
    double widest = 0.0;
    double lineGlyphs = 0.0;
    const double glyphWidth = content.fontSize * 0.55 + content.textInterval;
    const bool bounded = content.widthMode != 0 && content.width > 0.0;
    for (const char c : text) {
        if (c == '\n') {
            widest = std::max(widest, lineGlyphs * glyphWidth);
            lineGlyphs = 0.0;
            lines += 1.0;
        } else if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U) {
            lineGlyphs += 1.0;
            if (bounded && lineGlyphs * glyphWidth > content.width) {
                widest = content.width;
                lineGlyphs = 1.0;
                lines += 1.0;
            }
        }
    }
    widest = std::max(widest, lineGlyphs * glyphWidth);
    if (content.maxLines > 0) {
        lines = std::min(lines, static_cast<double>(content.maxLines));
    }
    const double lineHeight = content.lineHeight > 0.0 ? content.lineHeight : content.fontSize * 1.25;
    double width = content.widthMode == 1 ? content.width : widest;
    double height = lines * lineHeight;
    if (content.heightMode == 1) {
        height = content.height;
    } else if (content.heightMode == 2) {
        height = std::min(height, content.height);
    }
    return {width, height};
}

// Virtual time: jobs run in the order of their due time, then of scheduling.
class VirtualClock {
public:
    void schedule(double delay, std::function<void()> job)
    {
        jobs_.emplace(std::make_pair(now_ + std::max(delay, 0.0), next_++), std::move(job));
    }

    void advance(double milliseconds)
    {
        const double until = now_ + milliseconds;
        while (!jobs_.empty() && jobs_.begin()->first.first <= until) {
            auto job = jobs_.extract(jobs_.begin());
            now_ = job.key().first;
            job.mapped()();
        }
        now_ = until;
    }

private:
    double now_ = 0.0;
    uint64_t next_ = 0;
    std::map<std::pair<double, uint64_t>, std::function<void()>> jobs_;
};

void printSlots(const Mero::ViewSlots& slots)
{
    out << "create " << slots.strings[Mero::ViewSlots::kNodeIdSlot] << " type " << slots.type << '\n';
    auto list = [](const char* name, const auto& values, auto isSet, auto text) {
        out << "  " << name;
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (isSet(values[i])) {
                out << ' ' << i << '=' << text(values[i]);
            }
        }
        out << '\n';
    };
    list("ints", slots.ints, [](int32_t v) { return v != 0; }, [](int32_t v) { return std::to_string(v); });
    list("floats", slots.floats, [](float v) { return v != 0.0F; }, [](float v) { return exact(v); });
    list("strings", slots.strings, [](std::string_view v) { return !v.empty(); },
         [](std::string_view v) { return '"' + std::string(v) + '"'; });
    list("booleans", slots.booleans, [](bool v) { return v; }, [](bool) { return std::string("1"); });
    if (slots.gradient) {
        out << "  gradient " << slots.gradient->type;
        for (std::size_t stop = 0; stop < Mero::GradientSlots::kStops; ++stop) {
            out << ' ' << (slots.gradient->used[stop] ? slots.gradient->colors[stop] : "-") << '@'
                << exact(slots.gradient->positions[stop]);
        }
        out << '\n';
    }
}

void printViews(const Mero::ViewTree& view)
{
    printSlots(view.slots);
    for (const Mero::ViewTree& child : view.children) {
        printViews(child);
    }
}

// A host that prints each change it is sent instead of applying it.
class DumpHost final : public Mero::Host {
public:
    bool attached() const override { return true; }
    void logLine(const std::string& text) override { out << "log " << text << '\n'; }

    std::vector<const Mero::ViewRenderNode*> apply(const Mero::ChangeList& changes) override
    {
        for (const Mero::Change& change : changes) {
            std::visit([](const auto& record) { print(record); }, change);
        }
        return {};
    }

    Mero::ContentSize contentSize(const std::string& viewId) override
    {
        out << viewId << " contentSize\n";
        return {};
    }

private:
    static void print(const Mero::InsertView& insert)
    {
        out << insert.parentId << " insert " << insert.index << ' '
            << insert.view.slots.strings[Mero::ViewSlots::kNodeIdSlot] << '\n';
        printViews(insert.view);
    }

    static void print(const Mero::RemoveView& remove)
    {
        out << remove.parentId << " remove " << remove.index << '\n';
    }

    static void print(const Mero::SetProperties& set)
    {
        for (const Mero::PropertyUpdate& update : set.updates) {
            out << set.viewId << " set " << update.propertyId << '=' << describe(update.value) << '\n';
        }
    }

    static void print(const Mero::PlayAnimations& play)
    {
        for (const Mero::AnimatedUpdate& update : play.animations) {
            out << play.viewId << " animate " << update.propertyId << '=' << describe(update.value) << " timing "
                << update.transition.timing << " duration " << Mero::truncateToInt32(update.transition.duration)
                << " delay " << Mero::truncateToInt32(update.transition.delay) << '\n';
        }
    }
};

void printFrames(const Mero::ViewRenderNode& node, int depth)
{
    const Mero::LayoutCache& frame = node.layout();
    out << std::string(static_cast<std::size_t>(depth) * 2, ' ') << node.nodeId << ' ' << exact(frame.x) << ' '
        << exact(frame.y) << ' ' << exact(frame.width) << ' ' << exact(frame.height) << (node.visible() ? "" : " hidden")
        << '\n';
    if (node.isContainer()) {
        for (const Mero::RenderNodePtr& child : static_cast<const Mero::ContainerRenderNode&>(node).children) {
            printFrames(*child, depth + 1);
        }
    }
}

// One card on one engine instance, driven as the host would drive it.
class CardRun {
public:
    explicit CardRun(const Value& bridgeReplies) : bridge_(bridgeReplies)
    {
        instance_.bindHost(std::make_unique<DumpHost>());
        installHooks();
    }

    void start(const std::string& templateText, const std::string& data, float width)
    {
        instance_.setScreenWidth(width);
        instance_.loadTemplate(templateText);
        instance_.setData(data, "{}");
        instance_.initContainerSize(width, NAN, 1, 0);
        instance_.initNode();
        instance_.triggerInitEvent();
        instance_.applyLayout();
        if (std::optional<Mero::ViewTree> views = instance_.createComponentTree()) {
            printViews(*views);
        }
    }

    void step(const Value& action)
    {
        if (action.object().count("click") != 0) {
            instance_.sendClickEvent(Mero::memberOf(action, "click").string());
        } else if (action.object().count("event") != 0) {
            const Value& payload = Mero::memberOf(action, "payload");
            instance_.sendEvent(Mero::memberOf(action, "event").string(),
                                payload.isNull() ? "{}" : Mero::toJsonString(payload));
        } else if (action.object().count("advance") != 0) {
            clock_.advance(Mero::memberOf(action, "advance").number());
        } else if (action.object().count("swipe") != 0) {
            instance_.sendSwiperEvent(Mero::memberOf(action, "swipe").string(),
                                      Mero::truncateToInt32(Mero::memberOf(action, "page").number()));
        } else if (action.object().count("resize") != 0) {
            const Value& size = Mero::memberOf(action, "resize");
            const Value& height = Mero::memberOf(size, "height");
            const bool fixedHeight = height.is(Kind::Number);
            instance_.updateLayout(static_cast<float>(Mero::memberOf(size, "width").number()),
                                   fixedHeight ? static_cast<float>(height.number()) : NAN, 1, fixedHeight ? 1 : 0);
        }
    }

    void printState()
    {
        Mero::RuntimeEngine& engine = instance_.runtime();
        out << "frames\n";
        if (const Mero::ViewRenderNode* root = instance_.renderTree().root()) {
            printFrames(*root, 1);
        }
        if (engine.uiVariables) {
            out << "ui " << Mero::toJsonString(Value(engine.uiVariables)) << '\n';
        }
        if (engine.globalVariables) {
            out << "global " << Mero::toJsonString(Value(engine.globalVariables)) << '\n';
        }
    }

    Mero::ViewRenderNode* root() { return instance_.renderTree().root(); }

private:
    void installHooks()
    {
        Mero::RuntimeServices& hooks = instance_.runtime().services;
        hooks.measureText = [](const Mero::TextContent& content) {
            const auto size = measureStandIn(content);
            out << "measure \"" << (content.text != nullptr ? *content.text : "") << "\" font "
                << exact(content.fontSize) << " line " << exact(content.lineHeight) << " spacing "
                << exact(content.textInterval) << " lines " << content.maxLines << " style " << content.textStyle
                << " in " << exact(content.width) << '/' << content.widthMode << ' ' << exact(content.height) << '/'
                << content.heightMode << " -> " << exact(size.first) << ' ' << exact(size.second) << '\n';
            return size;
        };
        hooks.setTimeout = [this](double delay, Mero::PendingJob job) {
            const int32_t milliseconds = Mero::truncateToInt32(delay);
            const std::optional<int32_t> jobId = instance_.addTimeoutJob(std::move(job));
            if (!jobId) {
                return;
            }
            const int32_t id = *jobId;
            out << "setTimeout " << milliseconds << " id " << id << '\n';
            clock_.schedule(milliseconds, [this, id] { instance_.executeTimeoutJob(id); });
        };
        hooks.startVideoTimer = [this](double first, double second, Mero::VideoTimerListPtr entries) {
            if (!entries || entries->empty()) {
                return;
            }
            const std::optional<int32_t> firstJob = instance_.addVideoTimerJobs(*entries);
            if (!firstJob) {
                return;
            }
            const int32_t firstId = *firstJob;
            out << "startVideoTimer " << exact(first) << ' ' << exact(second) << " id " << firstId;
            for (std::size_t entry = 0; entry < entries->size(); ++entry) {
                const int64_t time = int64_t{Mero::truncateToInt32((*entries)[entry].first)} * 1000;
                const int32_t id = firstId + static_cast<int32_t>(entry);
                out << ' ' << time;
                // The video plays from `first` ms now and each entry fires at its time.
                clock_.schedule(static_cast<double>(time) - first, [this, id] { instance_.executeVideoTimerJob(id); });
            }
            out << '\n';
        };
        hooks.log = [](const std::string& message) { out << "log " << message << '\n'; };
        hooks.callBridge = [this](const std::string& name, const Value& params, Mero::BridgeReply reply) {
            out << "callJSB " << name << ' ' << Mero::toJsonString(params) << '\n';
            answer(name, std::move(reply), false);
        };
        hooks.callBridgeWithKeyPath = [this](const std::string& name, const Value& params, const Value& keyPath,
                                             Mero::BridgeReply reply) {
            out << "callJSBWithKeyPath " << name << ' ' << Mero::toJsonString(params) << ' '
                << Mero::toJsonString(keyPath) << '\n';
            answer(name, std::move(reply), true);
        };
    }

    // The reply for `method` from the card's bridge file ("reply", or
    // "replies" in turn with the last repeating; "{}" when unknown), through
    // the callback id the host would hold, after "delayMs" on the clock.
    void answer(const std::string& method, Mero::BridgeReply reply, bool keyPath)
    {
        const Value& entry = Mero::memberOf(bridge_, method);
        Value answerValue(Kind::Object);
        if (entry.is(Kind::Object)) {
            const Value& replies = Mero::memberOf(entry, "replies");
            if (replies.is(Kind::Array) && !replies.array().empty()) {
                const std::size_t turn = std::min(turns_[method]++, replies.array().size() - 1);
                answerValue = replies.array()[turn];
            } else {
                answerValue = Mero::memberOf(entry, "reply");
            }
        }
        const std::string text = Mero::toJsonString(answerValue);
        const Mero::BridgeCallbackId callbackId = Mero::MeroInstance::holdReply(std::move(reply));
        auto send = [text, callbackId, keyPath] {
            out << "reply " << text << '\n';
            keyPath ? Mero::MeroInstance::handleKeyPathResult(text, callbackId)
                    : Mero::MeroInstance::handleResult(text, callbackId);
        };
        const Value& delay = Mero::memberOf(entry, "delayMs");
        if (delay.is(Kind::Number) && delay.number() > 0.0) {
            clock_.schedule(delay.number(), send);
        } else {
            send();
        }
    }

    Mero::MeroInstance instance_;
    Value bridge_;
    VirtualClock clock_;
    std::map<std::string, std::size_t> turns_;
};

int escapedExceptions = 0;

// Runs `body`, printing an exception that escapes it as a native would log it.
void guarded(const std::function<void()>& body)
{
    try {
        body();
    } catch (const std::exception& error) {
        out << "exception: " << error.what() << '\n';
        ++escapedExceptions;
    }
}

Value readJson(const fs::path& path, const char* fallback)
{
    return Mero::JsonParser::read(fs::exists(path) ? readFile(path) : std::string(fallback));
}

// A scenario file is a list; the reader's root is an object, so wrap it.
std::vector<Value> readScenario(const fs::path& path)
{
    if (!fs::exists(path)) {
        return {};
    }
    const Value root = Mero::JsonParser::read("{\"steps\":" + readFile(path) + "}");
    const Value& steps = Mero::memberOf(root, "steps");
    return steps.is(Kind::Array) ? steps.array() : std::vector<Value>();
}

void collectClickable(Mero::ViewRenderNode& node, std::vector<std::string>& ids)
{
    if (!node.onClick().empty()) {
        ids.push_back(node.nodeId);
    }
    if (node.isContainer()) {
        for (const Mero::RenderNodePtr& child : static_cast<Mero::ContainerRenderNode&>(node).children) {
            collectClickable(*child, ids);
        }
    }
}

struct Card {
    std::string name;
    std::string templateText;
    std::string data;
    std::vector<Value> scenario;  // none: click every clickable node once
    Value bridge;
};

// The card at the reference width and its scenario, then only the first
// layout at a width whose scale is not a whole number.
void runCard(const Card& card)
{
    out << "== card " << card.name << '\n';
    std::srand(1);
    {
        CardRun run(card.bridge);
        guarded([&] { run.start(card.templateText, card.data, 750.0F); });
        run.printState();
        std::vector<Value> steps = card.scenario;
        if (steps.empty() && run.root() != nullptr) {
            std::vector<std::string> clickable;
            collectClickable(*run.root(), clickable);
            for (const std::string& id : clickable) {
                steps.push_back(Value::makeObject({{"click", Value(id)}}));
            }
            steps.push_back(Value::makeObject({{"advance", Value(5000.0)}}));
        }
        for (std::size_t index = 0; index < steps.size(); ++index) {
            out << "-- step " << index + 1 << ' ' << Mero::toJsonString(steps[index]) << '\n';
            guarded([&] { run.step(steps[index]); });
            run.printState();
        }
    }
    out << "== card " << card.name << " at 1080\n";
    CardRun wide(card.bridge);
    guarded([&] { wide.start(card.templateText, card.data, 1080.0F); });
    wide.printState();
}

std::vector<fs::path> sortedFiles(const fs::path& folder, const std::string& extension)
{
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file() && entry.path().extension() == extension) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2 && argc != 3) {
        std::cerr << "usage: mero_card_dump REPOSITORY [OUTPUT]\n";
        return 2;
    }
    const fs::path root = argv[1];
    if (!fs::is_directory(root / "examples/cards") || !fs::is_directory(root / "bench/data")) {
        std::cerr << "mero_card_dump: " << root << " has no examples/cards and bench/data\n";
        return 2;
    }
    // Reported errors go to standard output too, so it is the file that is redirected.
    std::ofstream output;
    std::streambuf* const console = std::cout.rdbuf();
    if (argc == 3) {
        output.open(argv[2], std::ios::binary | std::ios::trunc);
        if (!output) {
            std::cerr << "mero_card_dump: cannot write " << argv[2] << '\n';
            return 2;
        }
        std::cout.rdbuf(output.rdbuf());
    }
    // As in an app: a reported error is printed and the card goes on.
    Mero::debugMode = false;

    std::vector<Card> cards;
    std::vector<fs::path> folders;
    for (const auto& entry : fs::directory_iterator(root / "examples/cards")) {
        if (fs::exists(entry.path() / "template.json")) {
            folders.push_back(entry.path());
        }
    }
    std::sort(folders.begin(), folders.end());
    for (const fs::path& folder : folders) {
        cards.push_back({"examples/cards/" + folder.filename().string(), readFile(folder / "template.json"),
                         fs::exists(folder / "data.json") ? readFile(folder / "data.json") : "{}",
                         readScenario(folder / "scenario.json"), readJson(folder / "bridge.json", "{}")});
    }
    // The benchmark's cards, with the data they are timed with.
    const fs::path bench = root / "bench/data";
    const std::string feed = readFile(bench / "feed_data.json");
    for (const char* name : {"app_install_template.json", "carousel_template.json"}) {
        cards.push_back({std::string("bench/data/") + name, readFile(bench / name), feed, {}, Value(Kind::Object)});
    }
    cards.push_back({"bench/data/bridge_card.json", readFile(bench / "bridge_card.json"), "{}", {}, Value(Kind::Object)});

    for (const Card& card : cards) {
        runCard(card);
    }

    // Every JSON file of the corpus, read and written again.
    for (const fs::path& folder : {root / "bench/data", root / "examples/cards"}) {
        for (const fs::path& corpusFile : sortedFiles(folder, ".json")) {
            out << "== json " << fs::relative(corpusFile, root).string() << '\n';
            guarded([&] { out << Mero::toJsonString(Mero::JsonParser::read(readFile(corpusFile))) << '\n'; });
        }
    }
    out.flush();
    const bool written = out.good();
    std::cout.rdbuf(console);
    if (!written) {
        std::cerr << "mero_card_dump: writing failed\n";
        return 2;
    }
    return escapedExceptions == 0 ? 0 : 1;
}
