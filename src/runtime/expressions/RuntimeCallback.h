// A callback literal ("$" 14): evaluates to a callback Value that runs a body
// with its own parameters.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "runtime/RuntimeExecute.h"
#include "runtime/RuntimeObject.h"

namespace Mero {

class RuntimeCallback final : public RuntimeObject {
public:
    // Reads "a" (parameter names) and "b" (body statements) of the node.
    explicit RuntimeCallback(const Value& node);
    Value evaluate(const LocalScope& scope, const EngineRef& engine) const override;

    // What every callback made from this node runs. Statements keep no state
    // of their own, so the body is built once, when the node is loaded, and
    // shared by every call instead of being rebuilt per call.
    struct Definition {
        std::vector<std::string> parameters;
        StatementList body;
    };

private:
    std::shared_ptr<const Definition> definition_;
};

}  // namespace Mero
