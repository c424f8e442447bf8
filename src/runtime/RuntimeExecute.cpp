#include "runtime/RuntimeExecute.h"

namespace Mero {

Value runStatements(const StatementList& statements, const LocalScope& scope, const EngineRef& engine)
{
    for (const RuntimeExecutePtr& statement : statements) {
        Value completion = statement->execute(scope, engine);
        if (!isCompleted(completion)) {
            return completion;
        }
    }
    return completed();
}

}  // namespace Mero
