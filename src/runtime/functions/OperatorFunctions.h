// The operators of template script. Templates have no operator syntax: the
// loader writes every comparison, arithmetic or logical chain, choice, null
// fallback and negation as a call of one of these, with operator codes passed
// as numbers. Chains fold strictly left to right, with no precedence.
#pragma once

#include "runtime/functions/MRFunction.h"

namespace Mero {

// Code 0 ==, 1 !=, 2 >, 3 >=, 4 <, 5 <= on (a, b); always a boolean.
Value compare(ArgList& args, const EngineRef& engine);

// Codes 0 +, 1 -, 2 *, 3 /, 4 fmod over an operand chain; any string operand
// makes the result the concatenation of the operands' texts.
Value numberOperation(ArgList& args, const EngineRef& engine);

// Codes 0 and, 1 or over an operand chain; the result is one of the operands.
Value booleanOperation(ArgList& args, const EngineRef& engine);

// condition ? a : b
Value conditionalOperator(ArgList& args, const EngineRef& engine);

// a ?? b: only null falls back.
Value nullFallback(ArgList& args, const EngineRef& engine);

// Logical not.
Value prefixUnary(ArgList& args, const EngineRef& engine);

// Arithmetic negation of a number.
Value negative(ArgList& args, const EngineRef& engine);

}  // namespace Mero
