// A switch with fall-through.
#pragma once

#include <vector>

#include "runtime/RuntimeExecute.h"

namespace Mero {

// A case matches only a number equal to the subject or a string with the
// same bytes; booleans, null and containers never match. The subject is
// evaluated again for every comparison.
class Switch final : public RuntimeExecute {
public:
    Switch(RuntimeObjectPtr subject, std::vector<RuntimeObjectPtr> cases, std::vector<StatementList> bodies,
           StatementList defaultBody)
        : subject_(std::move(subject)),
          cases_(std::move(cases)),
          bodies_(std::move(bodies)),
          defaultBody_(std::move(defaultBody))
    {}
    Value run(const LocalScope& scope, const EngineRef& engine) const override;

private:
    bool matches(std::size_t index, const LocalScope& scope, const EngineRef& engine) const;

    RuntimeObjectPtr subject_;
    std::vector<RuntimeObjectPtr> cases_;
    std::vector<StatementList> bodies_;
    StatementList defaultBody_;
};

}  // namespace Mero
