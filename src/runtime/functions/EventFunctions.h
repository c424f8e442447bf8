// Named events from script: send one, subscribe to one, unsubscribe.
#pragma once

#include "runtime/functions/MRFunction.h"

namespace Mero {

// (name, payload): dispatches the event now.
class SendEventFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

// (name, callback): registers the callback unless the name is already handled.
class OnEventFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

// (name): removes whatever handles the name, a template handler too.
class RemoveEventFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

}  // namespace Mero
