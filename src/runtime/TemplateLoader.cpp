// RuntimeEngine::loadTemplate: from template text to the engine's tables.
#include "runtime/RuntimeEngine.h"
#include "runtime/ParsedTemplate.h"
#include "runtime/ScriptRun.h"
#include "runtime/functions/BuiltinFunctions.h"
#include "runtime/functions/CustomFunction.h"
#include "value/JsonParser.h"

namespace Mero {

namespace {

// The card's own table of UI variables, a deep copy of the template's
// "variables": cards of one template share its reading, and script changes
// arrays and objects in place (ArrayPush, JsonSet), so a card's variables
// share nothing with it. When "variables" is missing or not an object the
// table starts empty. (Such cards once shared one process-wide object, the
// default that a mismatched Value handed out, so a variable one card set was
// seen by every other: no longer.)
ObjectPtr uiVariablesOf(const Value& variables)
{
    return variables.is(Kind::Object) ? deepCopy(variables).objectPtr() : std::make_shared<ValueObject>();
}

std::unique_ptr<CustomFunction> cardFunction(const TemplateScript::Function& function)
{
    // The defaults are the card's own: a body may change a default it was
    // handed in place, and that change stays with the card.
    return std::make_unique<CustomFunction>(function.name, function.parameters,
                                            deepCopy(function.defaultArgs).arrayPtr(), function.body);
}

EventHandlerPtr cardEvent(const TemplateScript::Event& event)
{
    return std::make_shared<EventHandler>(event.name, event.parameterName, event.body);
}

}  // namespace

void RuntimeEngine::loadTemplate(const char* text, std::size_t length)
{
    // Not script, but it builds script nodes: within one entry a template
    // whose nodes nest too deep is reported once.
    ScriptRun building;
    readWholeDataAgain();
    template_ = ParsedTemplate::read(std::string_view(text, length));
    templateText_ = template_->text();
    elementsRebuilt_ = false;
    const Value& root = template_->root();

    uiVariables = uiVariablesOf(template_->variables());
    globalVariables = std::make_shared<ValueObject>();

    // Functions and handlers already in the tables (an earlier load) win:
    // the first definition of a name is kept.
    if (const std::shared_ptr<const TemplateScript> shared = template_->script()) {
        for (const TemplateScript::Function& function : shared->functions) {
            registerFunction(function.name, cardFunction(function));
        }
        registerBuiltinFunctions(*this);
        for (const TemplateScript::Event& event : shared->events) {
            registerEvent(event.name, cardEvent(event));
        }
    } else {
        for (const Value& entry : memberOf(root, "functions").array()) {
            const TemplateScript::Function function = functionOf(entry);
            registerFunction(function.name, cardFunction(function));
        }
        registerBuiltinFunctions(*this);
        for (const Value& entry : memberOf(root, "events").array()) {
            const TemplateScript::Event event = eventOf(entry);
            registerEvent(event.name, cardEvent(event));
        }
    }
    ++templatesLoaded_;
}

const Value& RuntimeEngine::elementsForBuild()
{
    if (!template_ && templateText_) {
        // Built more than once: the tree is read again, or found shared, and
        // kept from now on.
        template_ = ParsedTemplate::read(*templateText_, ParsedTemplate::Reports::Quiet);
        elementsRebuilt_ = true;
    }
    static const Value noElements;
    return template_ ? template_->elements() : noElements;
}

void RuntimeEngine::releaseElements()
{
    if (!elementsRebuilt_) {
        template_.reset();
    }
}

}  // namespace Mero
