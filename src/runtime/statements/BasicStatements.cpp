#include "runtime/statements/BasicStatements.h"

namespace Mero {

Value RuntimeExecuteNull::run(const LocalScope&, const EngineRef&)
{
    return completed();
}

Value BreakValue::run(const LocalScope&, const EngineRef&)
{
    return Value(Kind::Break);
}

Value ContinueValue::run(const LocalScope&, const EngineRef&)
{
    return Value(Kind::Continue);
}

Value ReturnValue::run(const LocalScope& scope, const EngineRef& engine)
{
    return returnValue_->value(scope, engine);
}

}  // namespace Mero
