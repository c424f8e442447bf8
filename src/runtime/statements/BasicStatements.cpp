#include "runtime/statements/BasicStatements.h"

namespace Mero {

Value RuntimeExecuteNull::execute(const LocalScope&, const EngineRef&)
{
    return completed();
}

Value BreakValue::execute(const LocalScope&, const EngineRef&)
{
    return Value(Kind::Break);
}

Value ContinueValue::execute(const LocalScope&, const EngineRef&)
{
    return Value(Kind::Continue);
}

Value ReturnValue::execute(const LocalScope& scope, const EngineRef& engine)
{
    return returnValue_->value(scope, engine);
}

}  // namespace Mero
