// RuntimeEngine::loadTemplate: from template text to the engine's tables.
#include "runtime/RuntimeEngine.h"
#include "runtime/ScriptRun.h"
#include "runtime/functions/BuiltinFunctions.h"
#include "runtime/functions/CustomFunction.h"
#include "value/JsonParser.h"

namespace Mero {

namespace {

// The table of UI variables. When "variables" is missing or not an object the
// card gets an empty table of its own. (Such cards once shared one
// process-wide object, the default that a mismatched Value handed out, so a
// variable one card set was seen by every other: no longer.)
ObjectPtr uiVariablesOf(const Value& variables)
{
    ObjectPtr table = variables.objectPtr();
    return table ? table : std::make_shared<ValueObject>();
}

std::unique_ptr<CustomFunction> loadFunction(const Value& entry)
{
    std::vector<std::string> parameters;
    for (const Value& parameter : memberOf(entry, "a").array()) {
        parameters.push_back(parameter.string());
    }
    return std::make_unique<CustomFunction>(memberOf(entry, "n").string(), std::move(parameters),
                                            memberOf(entry, "defaultArgs").arrayPtr(), buildStatementList(entry, "b"));
}

EventHandlerPtr loadEvent(const Value& entry)
{
    // Only a list of exactly one parameter names the payload.
    const ValueArray& parameters = memberOf(entry, "a").array();
    std::string parameterName = parameters.size() == 1 ? parameters.front().string() : std::string();
    return std::make_shared<EventHandler>(memberOf(entry, "n").string(), std::move(parameterName),
                                          buildStatementList(entry, "b"));
}

}  // namespace

void RuntimeEngine::loadTemplate(const char* text, std::size_t length)
{
    // Not script, but it builds script nodes: within one entry a template
    // whose nodes nest too deep is reported once.
    ScriptRun building;
    templateText_.clear();
    elementsReleased_ = false;
    readWholeDataAgain();
    JsonParser parser;
    parser.parse(text, text + length);
    const Value& root = parser.root();

    elements = memberOf(root, "elements");
    for (const auto& [key, value] : root.object()) {
        if (key != "elements") {
            dataNamesOutsideElements_.addReadsIn(value);
        }
    }
    uiVariables = uiVariablesOf(memberOf(root, "variables"));
    globalVariables = std::make_shared<ValueObject>();

    // Functions and handlers already in the tables (an earlier load) win:
    // the first definition of a name is kept.
    for (const Value& entry : memberOf(root, "functions").array()) {
        std::unique_ptr<CustomFunction> function = loadFunction(entry);
        std::string name = function->name();
        registerFunction(std::move(name), std::move(function));
    }
    registerBuiltinFunctions(*this);
    for (const Value& entry : memberOf(root, "events").array()) {
        EventHandlerPtr handler = loadEvent(entry);
        std::string name = handler->name;
        registerEvent(std::move(name), std::move(handler));
    }
    templateText_.assign(text, length);
    ++templatesLoaded_;
}

const Value& RuntimeEngine::elementsForBuild()
{
    if (elementsReleased_) {
        JsonParser parser;
        parser.setQuiet();
        parser.parse(templateText_);
        elements = memberOf(parser.root(), "elements");
        elementsReleased_ = false;
        // Built more than once: the tree is kept from now on.
        templateText_ = std::string();
    }
    return elements;
}

void RuntimeEngine::releaseElements()
{
    if (!templateText_.empty()) {
        elements = Value();
        elementsReleased_ = true;
    }
}

}  // namespace Mero
