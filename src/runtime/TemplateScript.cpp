#include "runtime/TemplateScript.h"

#include "runtime/ScriptFactory.h"
#include "runtime/ScriptRun.h"
#include "value/ErrorReporting.h"

namespace Mero {

TemplateScript::Function functionOf(const Value& entry)
{
    TemplateScript::Function function;
    for (const Value& parameter : memberOf(entry, "a").array()) {
        function.parameters.push_back(parameter.string());
    }
    function.name = memberOf(entry, "n").string();
    function.defaultArgs = memberOf(entry, "defaultArgs");
    function.body = std::make_shared<const StatementList>(buildStatementList(entry, "b"));
    return function;
}

TemplateScript::Event eventOf(const Value& entry)
{
    TemplateScript::Event event;
    // Only a list of exactly one parameter names the payload.
    const ValueArray& parameters = memberOf(entry, "a").array();
    if (parameters.size() == 1) {
        event.parameterName = parameters.front().string();
    }
    event.name = memberOf(entry, "n").string();
    event.body = std::make_shared<const StatementList>(buildStatementList(entry, "b"));
    return event;
}

std::shared_ptr<const TemplateScript> buildSharedScript(const Value& root)
{
    // A limit met while building is reported once per entry: the quiet try
    // must leave the entry as it found it for the build that reports.
    const uint32_t limitsReported = scriptRunState.reported;
    QuietReports quiet;
    auto script = std::make_shared<TemplateScript>();
    for (const Value& entry : memberOf(root, "functions").array()) {
        script->functions.push_back(functionOf(entry));
    }
    for (const Value& entry : memberOf(root, "events").array()) {
        script->events.push_back(eventOf(entry));
    }
    if (quiet.count() != 0) {
        scriptRunState.reported = limitsReported;
        return nullptr;
    }
    return script;
}

}  // namespace Mero
