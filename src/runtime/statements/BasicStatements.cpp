#include "runtime/statements/BasicStatements.h"

namespace Mero {

Value RuntimeExecuteNull::run(const LocalScope&, const EngineRef&) const
{
    return completed();
}

Value BreakValue::run(const LocalScope&, const EngineRef&) const
{
    return Value(Kind::Break);
}

Value ContinueValue::run(const LocalScope&, const EngineRef&) const
{
    return Value(Kind::Continue);
}

Value ReturnValue::run(const LocalScope& scope, const EngineRef& engine) const
{
    return returnValue_->value(scope, engine);
}

}  // namespace Mero
