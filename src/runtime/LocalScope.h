// LocalScope: the one carrier of local variables.
//
// A scope is a shared map from name to Value. Scopes are never chained: there
// is no parent and no fallback to another table. An empty pointer is legal and
// means "no locals".
#pragma once

#include <memory>

#include "value/Value.h"

namespace Mero {

using ScopeMap = ValueObject;
using LocalScope = std::shared_ptr<ScopeMap>;

inline LocalScope makeLocalScope()
{
    return std::make_shared<ScopeMap>();
}

}  // namespace Mero
