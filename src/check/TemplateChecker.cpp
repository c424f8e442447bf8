#include "check/TemplateChecker.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <set>
#include <string>

#include "check/PositionedJson.h"
#include "render/NodeKinds.h"
#include "render/PropertyTable.h"
#include "runtime/ScriptNodes.h"
#include "runtime/functions/BuiltinFunctions.h"

namespace Mero::Check {

bool CheckResult::hasErrors() const
{
    return std::any_of(findings.begin(), findings.end(),
                       [](const Finding& finding) { return finding.severity == Severity::Error; });
}

namespace {

using Kind = JsonNode::Kind;

// The built-ins whose first argument names an event.
constexpr std::string_view kSendEventKey = "z";
constexpr std::string_view kOnEventKey = "A";

std::string quoted(std::string_view text)
{
    return "\"" + std::string(text) + "\"";
}

std::size_t editDistance(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) {
        row[j] = j;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t above = row[j];
            const bool same = std::tolower(static_cast<unsigned char>(a[i - 1])) ==
                              std::tolower(static_cast<unsigned char>(b[j - 1]));
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, diagonal + (same ? 0 : 1)});
            diagonal = above;
        }
    }
    return row[b.size()];
}

// The closest of `names` to `name`, when it is close enough to be a typo.
std::string didYouMean(std::string_view name, const std::vector<std::string_view>& names)
{
    std::string_view best;
    // Within a third of the name (two edits for short ones), and never a
    // whole rewrite of it.
    std::size_t bestDistance = std::min(std::max<std::size_t>(2, name.size() / 3) + 1, name.size());
    for (std::string_view candidate : names) {
        const std::size_t distance = editDistance(name, candidate);
        if (distance < bestDistance) {
            best = candidate;
            bestDistance = distance;
        }
    }
    return best.empty() ? "" : "; did you mean " + quoted(best) + "?";
}

bool isScriptNode(const JsonNode& node)
{
    return node.is(Kind::Object) && node.member("$") != nullptr;
}

// A number's integer part when it has one of a sensible size (codes, size
// types); anything else, 10^70 included, is no valid code: -2.
int integerOf(const JsonNode& node)
{
    if (!node.is(Kind::Number) || !(std::fabs(node.number) < 1e9)) {
        return -2;
    }
    return static_cast<int>(std::trunc(node.number));
}

int codeOf(const JsonNode& node)
{
    const JsonNode* code = node.member("$");
    return code != nullptr ? integerOf(*code) : -2;
}

struct Read {
    Position at;
    bool watched;  // reached through nothing but calls from a bound property
};

class Checker {
public:
    Checker(const JsonNode& root, const JsonNode* data) : root_(root), data_(data) {}

    std::vector<Finding> run()
    {
        if (!root_.is(Kind::Object)) {
            add(error(root_.at, "a template must be a JSON object"));
            return std::move(findings_);
        }
        readVariables();
        readFunctions();
        readEvents();
        const JsonNode* elements = root_.member("elements");
        if (elements == nullptr) {
            add(warning(root_.at, "no \"elements\": the card shows nothing"));
        } else if (!elements->is(Kind::Object)) {
            add(error(elements->at, "\"elements\" must be an object (the root element); the card shows nothing"));
        } else {
            element(*elements, false);
        }
        crossCheck();
        return std::move(findings_);
    }

private:
    void add(Finding finding) { findings_.push_back(std::move(finding)); }

    void readVariables()
    {
        const JsonNode* variables = root_.member("variables");
        if (variables == nullptr) {
            return;
        }
        if (!variables->is(Kind::Object)) {
            add(error(variables->at, "\"variables\" must be an object of UI variables"));
            return;
        }
        for (std::size_t i = 0; i < variables->members.size(); ++i) {
            declared_.emplace(variables->members[i].first, variables->keyPositions[i]);
        }
    }

    // Functions and events share a shape: [{"n": name, "a": [...], "b": [...]}].
    template <typename OnEntry>
    void readEntries(const char* key, OnEntry onEntry)
    {
        const JsonNode* entries = root_.member(key);
        if (entries == nullptr) {
            return;
        }
        if (!entries->is(Kind::Array)) {
            add(error(entries->at, quoted(key) + " must be an array"));
            return;
        }
        for (const JsonNode& entry : entries->items) {
            const JsonNode* name = entry.member("n");
            if (!entry.is(Kind::Object) || name == nullptr || !name->is(Kind::String)) {
                add(error(entry.at, std::string("an entry of \"") + key + "\" needs a name (\"n\", a string)"));
                continue;
            }
            onEntry(*name);
        }
    }

    void readFunctions()
    {
        readEntries("functions", [this](const JsonNode& name) {
            functions_.emplace(name.text, name.at);
            if (const BuiltinInfo* builtin = builtinOfKey(name.text)) {
                add(warning(name.at, "function " + quoted(name.text) + " has the key of the built-in " +
                                         std::string(builtin->name) + ": calls of " + quoted(name.text) +
                                         " reach this function, not the built-in"));
            }
        });
    }

    void readEvents()
    {
        readEntries("events", [this](const JsonNode& name) { handlers_.emplace(name.text, name.at); });
    }

    // Bodies are checked once every name is known.
    void checkBodies()
    {
        for (const char* key : {"functions", "events"}) {
            const JsonNode* entries = root_.member(key);
            if (entries == nullptr || !entries->is(Kind::Array)) {
                continue;
            }
            for (const JsonNode& entry : entries->items) {
                if (const JsonNode* body = entry.member("b")) {
                    statements(*body);
                }
            }
        }
    }

    // --- elements -----------------------------------------------------------

    void element(const JsonNode& node, bool inList)
    {
        if (!node.is(Kind::Object)) {
            add(error(node.at, "an element must be an object"));
            return;
        }
        const NodeKind* kind = kindOfCode(0);
        if (const JsonNode* code = node.member("$")) {
            const int number = integerOf(*code);
            const NodeKind* found = number >= 0 ? kindOfCode(static_cast<uint32_t>(number)) : nullptr;
            if (found == nullptr) {
                add(error(code->at, "unknown node kind " + spell(*code) + " (it renders as a plain view)"));
            } else {
                kind = found;
            }
        }
        for (std::size_t i = 0; i < node.members.size(); ++i) {
            property(*kind, node.members[i].first, node.keyPositions[i], node.members[i].second);
        }
        const bool repeats = kind->nodeClass == NodeClass::For || kind->nodeClass == NodeClass::Swiper;
        if (repeats && node.member("index") == nullptr) {
            add(warning(node.at, "a " + std::string(kind->name) +
                                     " without \"index\": the ids of its items get no \"#\" suffix"));
        }
        if (const JsonNode* id = node.member("nodeId"); id != nullptr && id->is(Kind::String) && !inList) {
            auto [first, fresh] = nodeIds_.emplace(id->text, id->at);
            if (!fresh) {
                add(warning(id->at, "duplicate nodeId " + quoted(id->text) + " (first at line " +
                                        std::to_string(first->second.line) + "): the host finds only one of them"));
            }
        }
        if (const JsonNode* children = node.member("children"); children != nullptr && children->is(Kind::Array)) {
            for (const JsonNode& child : children->items) {
                element(child, inList || repeats);
            }
        }
    }

    static std::vector<std::string_view> keysOf(const NodeKind& kind)
    {
        std::vector<std::string_view> keys;
        for (Property property : commonProperties()) {
            keys.push_back(keyOf(property));
        }
        for (Property property : kind.properties) {
            keys.push_back(keyOf(property));
        }
        return keys;
    }

    static bool hasProperty(const NodeKind& kind, Property property)
    {
        const auto common = commonProperties();
        return std::find(common.begin(), common.end(), property) != common.end() ||
               std::find(kind.properties.begin(), kind.properties.end(), property) != kind.properties.end();
    }

    void property(const NodeKind& kind, const std::string& key, Position keyAt, const JsonNode& value)
    {
        const std::optional<Property> property = propertyOfKey(key);
        if (!property || !hasProperty(kind, *property) || info(*property).input == PropertyInput::LayoutResult) {
            add(error(keyAt, "unknown property " + quoted(key) + " of a " + std::string(kind.name) + " node" +
                                 didYouMean(key, keysOf(kind))));
            return;
        }
        const PropertyInfo& row = info(*property);
        switch (row.input) {
        case PropertyInput::YogaSize:
        case PropertyInput::YogaLength:
        case PropertyInput::YogaPoints:
        case PropertyInput::Size: size(key, value); break;
        case PropertyInput::YogaNumber:
        case PropertyInput::YogaEnum:
        case PropertyInput::Number: expect(key, value, {Kind::Number}, "a number"); break;
        case PropertyInput::Text: expect(key, value, {Kind::String, Kind::Number}, "a string"); break;
        case PropertyInput::Bool:
        case PropertyInput::Visibility: expect(key, value, {Kind::Boolean}, "true or false"); break;
        case PropertyInput::Flag:
            if (!value.is(Kind::Boolean)) {
                add(error(value.at, quoted(key) + " must be true or false"));
            }
            break;
        case PropertyInput::Name: name(key, value); break;
        case PropertyInput::Transitions: transitions(kind, value); break;
        case PropertyInput::EvaluatedOnce:
            // Read once: nothing is watched, so nothing can fail to be.
            expression(value, true);
            propertyReads_.clear();
            break;
        case PropertyInput::Literal:
            if (*property == Property::OnSwiperChange && value.is(Kind::String)) {
                named_.emplace(value.text, value.at);
            }
            break;
        case PropertyInput::Children:
            if (!value.is(Kind::Array)) {
                add(error(value.at, "\"children\" must be an array of elements"));
            }
            break;
        default: break;
        }
    }

    // A bindable value: a constant of the expected kinds, or an expression.
    void expect(const std::string& key, const JsonNode& value, std::initializer_list<Kind> kinds, const char* what)
    {
        if (isScriptNode(value)) {
            boundValue(value);
            return;
        }
        if (std::find(kinds.begin(), kinds.end(), value.kind) == kinds.end() && !value.is(Kind::Null)) {
            add(error(value.at, quoted(key) + " must be " + what + " or an expression"));
        }
    }

    void name(const std::string& key, const JsonNode& value)
    {
        if (!value.is(Kind::String)) {
            add(error(value.at, quoted(key) + " must be a string"));
            return;
        }
        if (key == "onClick") {
            named_.emplace(value.text, value.at);
        }
    }

    void size(const std::string& key, const JsonNode& value)
    {
        if (!value.is(Kind::Object) || isScriptNode(value)) {
            add(error(value.at, quoted(key) + " must be a size: {\"sizeType\": T, \"value\": V}"));
            return;
        }
        const JsonNode* type = value.member("sizeType");
        const int sizeType = type != nullptr ? integerOf(*type) : 0;
        if (sizeType == -1) {
            boundValue(value);  // the whole object is the expression
            return;
        }
        if (sizeType < 1 || sizeType > 6) {
            add(error(type != nullptr ? type->at : value.at,
                      "unknown size type " + (type != nullptr ? spell(*type) : std::string("(none)")) +
                          " (1 points, 2 percent, 3 auto, 4 scaled, 5 and 6 percent of the container's height "
                          "and width, -1 an expression): the size falls back to its default"));
        }
        if (const JsonNode* number = value.member("value")) {
            boundValue(*number);
        } else {
            add(error(value.at, quoted(key) + " has no \"value\""));
        }
    }

    void transitions(const NodeKind& kind, const JsonNode& value)
    {
        if (!value.is(Kind::Object)) {
            add(error(value.at, "\"transition\" must be an object of transitions by key"));
            return;
        }
        std::vector<std::string_view> animatable{"all"};
        // By property, not by key: the laid-out frame ("x", "y") has no
        // template key, and its moves animate.
        auto addAnimatable = [&animatable](Property property) {
            const PropertyInfo& row = info(property);
            if (row.has(Animatable) &&
                std::find(animatable.begin(), animatable.end(), row.transitionKey) == animatable.end()) {
                animatable.push_back(row.transitionKey);
            }
        };
        std::for_each(commonProperties().begin(), commonProperties().end(), addAnimatable);
        std::for_each(kind.properties.begin(), kind.properties.end(), addAnimatable);
        for (std::size_t i = 0; i < value.members.size(); ++i) {
            const std::string& key = value.members[i].first;
            if (std::find(animatable.begin(), animatable.end(), key) == animatable.end()) {
                add(warning(value.keyPositions[i], "transition " + quoted(key) + " names nothing that can animate on a " +
                                                       std::string(kind.name) + " node" + didYouMean(key, animatable)));
            }
        }
    }

    // --- script -------------------------------------------------------------

    // A property's value: constants, and expressions whose UI variable reads
    // are watched unless an array or object literal stands between.
    void boundValue(const JsonNode& value)
    {
        propertyReads_.clear();
        expression(value, true);
        for (const auto& [variable, reads] : propertyReads_) {
            const bool watched = std::any_of(reads.begin(), reads.end(), [](const Read& read) { return read.watched; });
            if (watched) {
                continue;
            }
            for (const Read& read : reads) {
                add(warning(read.at, "UI variable " + quoted(variable) +
                                         " is read only inside an array or object literal here: the property "
                                         "does not update when it changes"));
            }
        }
        propertyReads_.clear();
    }

    void expression(const JsonNode& node, bool watched)
    {
        if (node.is(Kind::Array)) {
            for (const JsonNode& item : node.items) {
                expression(item, false);
            }
            return;
        }
        if (!node.is(Kind::Object)) {
            return;
        }
        if (!isScriptNode(node)) {
            for (const auto& member : node.members) {
                expression(member.second, false);
            }
            return;
        }
        const JsonNode& code = *node.member("$");
        // The factory compares the code as a number: 5.5 is no call.
        const ScriptNodeInfo* info =
            code.is(Kind::Number) && code.number == std::trunc(code.number) ? expressionNode(integerOf(code)) : nullptr;
        if (info == nullptr) {
            add(error(code.at, "unknown expression code " + spell(code) +
                                   " (the object is read as an object literal)"));
            return;
        }
        requireMembers(node, *info);
        scriptNode(node, info->code, watched);
    }

    void statements(const JsonNode& list)
    {
        // A body runs later, when called: its reads are not a property's.
        ++bodyDepth_;
        statementList(list);
        --bodyDepth_;
    }

    void statementList(const JsonNode& list)
    {
        if (!list.is(Kind::Array)) {
            add(error(list.at, "a statement list must be an array"));
            return;
        }
        for (const JsonNode& statement : list.items) {
            if (!statement.is(Kind::Object)) {
                add(error(statement.at, "a statement must be an object with a \"$\" code"));
                continue;
            }
            const ScriptNodeInfo* info = statementNode(codeOf(statement));
            if (info == nullptr) {
                const JsonNode* code = statement.member("$");
                add(error(code != nullptr ? code->at : statement.at,
                          "unknown statement code " + (code != nullptr ? spell(*code) : std::string("(none)")) +
                              " (the statement does nothing)"));
                continue;
            }
            requireMembers(statement, *info);
            scriptNode(statement, info->code, false);
        }
    }

    void requireMembers(const JsonNode& node, const ScriptNodeInfo& info)
    {
        for (std::string_view member : info.required) {
            if (!member.empty() && node.member(member) == nullptr) {
                add(error(node.at, "a " + std::string(info.name) + " (\"$\": " + std::to_string(info.code) +
                                       ") needs " + quoted(member)));
            }
        }
    }

    // The parts of a script node by code, expressions and statements alike.
    void scriptNode(const JsonNode& node, int code, bool watched)
    {
        const JsonNode* name = node.member("n");
        const bool named = name != nullptr && name->is(Kind::String);
        switch (code) {
        case 3:
            if (named) {
                reads_[name->text].push_back(name->at);
                if (bodyDepth_ == 0) {
                    propertyReads_[name->text].push_back({name->at, watched});
                }
            }
            return;
        case 4:
            if (named) {
                writes_.emplace(name->text, name->at);
            }
            break;
        case 5:
            call(node, watched);
            return;
        case 14:
            break;  // the body below
        case 19:
            if (named) {
                dataReads_.emplace_back(name->text, name->at);
            }
            return;
        default: break;
        }
        for (const char* key : {"value", "c", "t", "startIndex", "endIndex", "returnValue"}) {
            if (const JsonNode* part = node.member(key)) {
                if (code == 6 && std::string_view(key) == "c" && part->is(Kind::Array)) {
                    for (const JsonNode& condition : part->items) {
                        expression(condition, false);
                    }
                } else if ((code == 15 || code == 16) && std::string_view(key) == "value" && part->is(Kind::Array)) {
                    for (const JsonNode& item : part->items) {
                        expression(item, false);
                    }
                } else {
                    expression(*part, false);
                }
            }
        }
        for (const char* key : {"b", "default"}) {
            if (const JsonNode* body = node.member(key)) {
                statements(*body);
            }
        }
        if (const JsonNode* branches = node.member("bs"); branches != nullptr && branches->is(Kind::Array)) {
            for (const JsonNode& branch : branches->items) {
                statements(branch);
            }
        }
    }

    void call(const JsonNode& node, bool watched)
    {
        const JsonNode* name = node.member("n");
        const JsonNode* args = node.member("a");
        const std::size_t count = args != nullptr && args->is(Kind::Array) ? args->items.size() : 0;
        if (args != nullptr) {
            if (args->is(Kind::Array)) {
                for (const JsonNode& arg : args->items) {
                    expression(arg, watched);
                }
            } else {
                add(error(args->at, "the arguments of a call (\"a\") must be an array"));
            }
        }
        if (name == nullptr || !name->is(Kind::String)) {
            return;
        }
        calls_.push_back({name->text, name->at, count});
        if (count > 0 && args->items[0].is(Kind::String)) {
            // SendEvent names an event; OnEvent adds a handler for one.
            if (name->text == kSendEventKey) {
                named_.emplace(args->items[0].text, args->items[0].at);
            } else if (name->text == kOnEventKey) {
                handlers_.emplace(args->items[0].text, args->items[0].at);
            }
        }
    }

    void checkCalls()
    {
        for (const CallSite& site : calls_) {
            if (functions_.count(site.name) != 0) {
                continue;
            }
            const BuiltinInfo* builtin = builtinOfKey(site.name);
            if (builtin == nullptr) {
                add(error(site.at, "call of unknown function " + quoted(site.name) + " (it gives null)"));
                continue;
            }
            const auto count = static_cast<int>(site.count);
            if (count < builtin->leastArguments || (builtin->mostArguments >= 0 && count > builtin->mostArguments)) {
                add(error(site.at, std::string(builtin->name) + " (" + quoted(site.name) + ") takes " +
                                       arguments(*builtin) + ", given " + std::to_string(count)));
            }
        }
    }

    static std::string arguments(const BuiltinInfo& builtin)
    {
        const auto plural = [](int n) { return std::to_string(n) + (n == 1 ? " argument" : " arguments"); };
        if (builtin.mostArguments < 0) {
            return "at least " + plural(builtin.leastArguments);
        }
        if (builtin.mostArguments == builtin.leastArguments) {
            return plural(builtin.leastArguments);
        }
        return std::to_string(builtin.leastArguments) + " to " + plural(builtin.mostArguments);
    }

    // --- across the template -----------------------------------------------

    void crossCheck()
    {
        checkBodies();
        checkCalls();
        for (const auto& [variable, positions] : reads_) {
            if (declared_.count(variable) != 0) {
                continue;
            }
            const bool set = writes_.count(variable) != 0;
            for (const Position& at : positions) {
                add(set ? warning(at, "UI variable " + quoted(variable) +
                                          " is not declared in \"variables\": it reads as null until set")
                        : error(at, "UI variable " + quoted(variable) +
                                        " is read but declared nowhere (it reads as null)"));
            }
        }
        for (const auto& [variable, at] : writes_) {
            if (reads_.count(variable) == 0) {
                add(warning(at, "UI variable " + quoted(variable) + " is set but never read"));
            }
        }
        // A handler that nothing in the template names may still be sent by
        // the host (sendEvent), so it is no mistake on its own; a name with
        // no handler is, and a near handler name is offered for it.
        std::vector<std::string_view> handlerNames;
        for (const auto& [handler, at] : handlers_) {
            handlerNames.push_back(handler);
        }
        for (const auto& [event, at] : named_) {
            if (handlers_.count(event) == 0) {
                add(error(at, "no event handler named " + quoted(event) + " (nothing runs)" +
                                  didYouMean(event, handlerNames)));
            }
        }
        if (data_ != nullptr) {
            for (const auto& [path, at] : dataReads_) {
                if (path != "$root" && (!data_->is(Kind::Object) || data_->member(path) == nullptr)) {
                    add(warning(at, "business data " + quoted(path) + " is not in the data given (it reads as null)"));
                }
            }
        }
    }

    static std::string spell(const JsonNode& node)
    {
        if (node.is(Kind::Number)) {
            char text[32];
            std::snprintf(text, sizeof text, "%.15g", node.number);
            return text;
        }
        return node.is(Kind::String) ? quoted(node.text) : "(not a number)";
    }

    struct CallSite {
        std::string name;
        Position at;
        std::size_t count;
    };

    const JsonNode& root_;
    const JsonNode* data_;
    std::vector<Finding> findings_;
    std::map<std::string, Position> declared_;
    std::map<std::string, Position> functions_;
    std::map<std::string, Position> handlers_;
    std::multimap<std::string, Position> named_;
    std::map<std::string, Position> nodeIds_;
    std::map<std::string, std::vector<Position>> reads_;
    std::multimap<std::string, Position> writes_;
    std::map<std::string, std::vector<Read>> propertyReads_;
    std::vector<std::pair<std::string, Position>> dataReads_;
    std::vector<CallSite> calls_;
    int bodyDepth_ = 0;
};

}  // namespace

CheckResult checkTemplate(std::string_view templateText, std::optional<std::string_view> data)
{
    CheckResult result;
    ReadResult read = readPositionedJson(templateText);
    result.findings = std::move(read.findings);
    std::optional<ReadResult> readData;
    if (data) {
        readData = readPositionedJson(*data);
    }
    std::vector<Finding> semantic = Checker(read.root, readData ? &readData->root : nullptr).run();
    result.findings.insert(result.findings.end(), semantic.begin(), semantic.end());
    std::stable_sort(result.findings.begin(), result.findings.end());
    return result;
}

}  // namespace Mero::Check
