// CustomFunction: a function defined by the template's "functions".
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "runtime/LocalScope.h"
#include "runtime/RuntimeExecute.h"
#include "runtime/functions/MRFunction.h"

namespace Mero {

class CustomFunction final : public MRFunction {
public:
    // `defaultArgs` is the card's own copy of the template's array; it may be empty or
    // null (no defaults).
    // The body may be shared with the functions of other cards.
    CustomFunction(std::string name, std::vector<std::string> parameters, ArrayPtr defaultArgs, SharedStatements body);
    CustomFunction(std::string name, std::vector<std::string> parameters, ArrayPtr defaultArgs, StatementList body)
        : CustomFunction(std::move(name), std::move(parameters), std::move(defaultArgs),
                         std::make_shared<const StatementList>(std::move(body)))
    {}

    ~CustomFunction() override;
    CustomFunction(const CustomFunction&) = delete;
    CustomFunction& operator=(const CustomFunction&) = delete;

    Value invoke(ArgList&& args, const EngineRef& engine) override;

    const std::string& name() const { return name_; }
    const std::vector<std::string>& parameters() const { return parameters_; }

private:
    bool hasDefaults() const { return defaultArgs_ && !defaultArgs_->empty(); }

    std::string name_;
    std::vector<std::string> parameters_;
    ArrayPtr defaultArgs_;
    SharedStatements body_;
    // One map, made at the first call and reused (cleared) by every call.
    LocalScope scope_;
};

}  // namespace Mero
