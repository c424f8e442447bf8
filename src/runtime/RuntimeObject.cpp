#include "runtime/RuntimeObject.h"

namespace Mero {

void RuntimeObject::observe(const EngineRef&, const ObserverPtr&) const
{
    // Most expressions read no UI variable: nothing to register.
}

}  // namespace Mero
