#include "runtime/statements/Condition.h"

namespace Mero {

Value Condition::run(const LocalScope& scope, const EngineRef& engine) const
{
    std::size_t i = 0;
    for (; i < conditions_.size(); ++i) {
        if (i >= branches_.size()) {
            return completed();
        }
        if (!isFalsy(conditions_[i]->value(scope, engine))) {
            return runStatements(branches_[i], scope, engine);
        }
    }
    if (i < branches_.size()) {
        return runStatements(branches_[i], scope, engine);
    }
    return completed();
}

}  // namespace Mero
