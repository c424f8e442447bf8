// The built-in function library, by the keys that templates call it with.
#pragma once

namespace Mero {

class RuntimeEngine;

// Inserts one object of each of the 43 built-ins into the engine's function
// table, in their fixed registration order, skipping every key that is
// already taken (a template function of the same key shadows the built-in).
void registerBuiltinFunctions(RuntimeEngine& engine);

}  // namespace Mero
