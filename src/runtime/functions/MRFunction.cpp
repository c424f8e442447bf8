#include "runtime/functions/MRFunction.h"

#include "value/ErrorReporting.h"

namespace Mero {

bool checkArgCount(const ArgList& args, std::size_t expected, std::string_view message)
{
    if (args.size() == expected) {
        return true;
    }
    reportError(message);
    return false;
}

bool checkArgCountBetween(const ArgList& args, std::size_t least, std::size_t most, std::string_view message)
{
    if (args.size() >= least && args.size() <= most) {
        return true;
    }
    reportError(message);
    return false;
}

const ValueCallback& callableOf(const Value& callback)
{
    static const ValueCallback empty;
    CallbackPtr callable = callback.callbackPtr();
    return callable ? *callable : empty;
}

}  // namespace Mero
