// TemplateScript: a template's "functions" and "events", read and built into
// statements once and shared by the cards of the template. Each card makes
// its own CustomFunction and EventHandler around them: the scopes and the
// default arguments a call may change are the card's.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "runtime/RuntimeExecute.h"
#include "value/Value.h"

namespace Mero {

struct TemplateScript {
    struct Function {
        std::string name;
        std::vector<std::string> parameters;
        Value defaultArgs;  // the template's own: a card copies it deep
        SharedStatements body;
    };
    struct Event {
        std::string name;
        std::string parameterName;  // names the payload; may be empty
        SharedStatements body;
    };

    std::vector<Function> functions;
    std::vector<Event> events;
};

// One entry of "functions" or "events", built (building reports what it meets).
TemplateScript::Function functionOf(const Value& entry);
TemplateScript::Event eventOf(const Value& entry);

// The whole script of a template's root, built without a report, or null
// when building it would report anything: such script is built for each card
// instead, and each reports alike.
std::shared_ptr<const TemplateScript> buildSharedScript(const Value& root);

}  // namespace Mero
