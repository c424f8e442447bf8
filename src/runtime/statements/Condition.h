// An if / else-if / else chain.
#pragma once

#include <vector>

#include "runtime/RuntimeExecute.h"

namespace Mero {

// Branch i runs for the first truthy condition i; a branch beyond the last
// condition is the else branch.
class Condition final : public RuntimeExecute {
public:
    Condition(std::vector<RuntimeObjectPtr> conditions, std::vector<StatementList> branches)
        : conditions_(std::move(conditions)), branches_(std::move(branches))
    {}
    Value run(const LocalScope& scope, const EngineRef& engine) const override;

private:
    std::vector<RuntimeObjectPtr> conditions_;
    std::vector<StatementList> branches_;
};

}  // namespace Mero
