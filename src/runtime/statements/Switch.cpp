#include "runtime/statements/Switch.h"

namespace Mero {

bool Switch::matches(std::size_t index, const LocalScope& scope, const EngineRef& engine) const
{
    Value label = cases_[index]->value(scope, engine);
    Value subject = subject_->value(scope, engine);
    if (label.is(Kind::Number) && subject.is(Kind::Number)) {
        return label.number() == subject.number();
    }
    if (label.is(Kind::String) && subject.is(Kind::String)) {
        return label.string() == subject.string();
    }
    return false;
}

Value Switch::run(const LocalScope& scope, const EngineRef& engine) const
{
    bool matched = false;
    for (std::size_t i = 0; i < cases_.size(); ++i) {
        // A case without a body ends the switch; the default is not run then.
        if (i >= bodies_.size()) {
            return completed();
        }
        if (!matched) {
            matched = matches(i, scope, engine);
        }
        if (!matched) {
            continue;
        }
        Value completion = runStatements(bodies_[i], scope, engine);
        if (completion.is(Kind::Break)) {
            return completed();
        }
        if (!isCompleted(completion)) {
            return completion;
        }
        // Ran to its end: fall through into the next case's body.
    }
    // A break in the default is handed up, so it reaches the enclosing loop.
    return runStatements(defaultBody_, scope, engine);
}

}  // namespace Mero
