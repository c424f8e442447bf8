#include "runtime/functions/MRFunction.h"


namespace Mero {

const ValueCallback& callableOf(const Value& callback)
{
    static const ValueCallback empty;
    CallbackPtr callable = callback.callbackPtr();
    return callable ? *callable : empty;
}

}  // namespace Mero
