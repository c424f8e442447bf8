// The operators of template script. Templates have no operator syntax: the
// loader writes every comparison, arithmetic or logical chain, choice, null
// fallback and negation as a call of one of these, with operator codes passed
// as numbers. Chains fold strictly left to right, with no precedence.
#pragma once

#include "runtime/functions/MRFunction.h"

namespace Mero {

// Code 0 ==, 1 !=, 2 >, 3 >=, 4 <, 5 <= on (a, b); always a boolean.
class CompareFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

// Codes 0 +, 1 -, 2 *, 3 /, 4 fmod over an operand chain; any string operand
// makes the result the concatenation of the operands' texts.
class NumberOperationFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

// Codes 0 and, 1 or over an operand chain; the result is one of the operands.
class BooleanOperationFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

// condition ? a : b
class ConditionalOperatorFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

// a ?? b: only null falls back.
class NullFallbackFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

// Logical not.
class PrefixUnaryFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

// Arithmetic negation of a number.
class NegativeFunction final : public MRFunction {
public:
    Value invoke(ArgList&& args, const EngineRef& engine) override;
};

}  // namespace Mero
