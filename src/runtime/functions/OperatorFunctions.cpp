#include "runtime/functions/OperatorFunctions.h"

#include <cmath>

#include "runtime/functions/FunctionSupport.h"
#include "value/ErrorReporting.h"

namespace Mero {

namespace {

enum CompareCode : uint32_t { Equal = 0, NotEqual, Greater, GreaterEqual, Less, LessEqual };

// Strings and booleans have no ordering: code 0 tests equality and every
// other code, the orderings included, tests inequality. Templates rely on it.
bool equalityOnly(uint32_t code, bool same)
{
    return code == Equal ? same : !same;
}

// The chains of NumberOperation and BooleanOperation: two arrays, with one
// more operand than there are codes. Reports and answers false otherwise.
bool chainShapeFits(const Value& codes, const Value& operands)
{
    if (operands.array().size() != codes.array().size() + 1) {
        reportError("array args size not match");
        return false;
    }
    return true;
}

}  // namespace

Value compare(ArgList& args, const EngineRef&)
{
    uint32_t code = unsignedArgument(args[0]);
    const Value& a = args[1];
    const Value& b = args[2];
    // A null on the left is "less" than anything: null < 5 is true on purpose.
    if (a.isNull()) {
        return Value(equalityOnly(code, b.isNull()));
    }
    if (a.is(Kind::String) && b.is(Kind::String)) {
        return Value(equalityOnly(code, a.string() == b.string()));
    }
    if (a.is(Kind::Boolean) && b.is(Kind::Boolean)) {
        return Value(equalityOnly(code, a.boolean() == b.boolean()));
    }
    if (b.isNull()) {
        return Value(code != Equal);
    }
    if (a.is(Kind::Number) && b.is(Kind::Number)) {
        double x = a.number();
        double y = b.number();
        switch (code) {
        case Equal: return Value(x == y);
        case NotEqual: return Value(x != y);
        case Greater: return Value(x > y);
        case GreaterEqual: return Value(x >= y);
        case Less: return Value(x < y);
        case LessEqual: return Value(x <= y);
        default: reportError("compare operator not match"); return Value(false);
        }
    }
    reportError("compare args type not match");
    return Value(false);
}

Value numberOperation(ArgList& args, const EngineRef&)
{
    if (!args[0].is(Kind::Array) || !args[1].is(Kind::Array)) {
        reportError("number operation args type not match");
        return Value(0.0);
    }
    if (!chainShapeFits(args[0], args[1])) {
        return Value(0.0);
    }
    const ValueArray& codes = args[0].array();
    const ValueArray& operands = args[1].array();

    // One string operand turns the whole chain into a concatenation, whatever
    // the codes say: "a" - 1 gives "a1". Kinds other than number and string
    // add nothing.
    bool anyString = false;
    for (const Value& operand : operands) {
        anyString = anyString || operand.is(Kind::String);
    }
    if (anyString) {
        std::string text;
        for (const Value& operand : operands) {
            if (operand.is(Kind::String)) {
                text += operand.string();
            } else if (operand.is(Kind::Number)) {
                text += numberToString(operand.number());
            }
            if (!fitsStringLimit(text.size())) {
                return Value();
            }
        }
        return Value(std::move(text));
    }

    double acc = operands[0].number();
    for (size_t i = 0; i < codes.size(); ++i) {
        double x = operands[i + 1].number();
        switch (unsignedArgument(codes[i])) {
        case 0: acc += x; break;
        case 1: acc -= x; break;
        case 2: acc *= x; break;
        case 3: acc /= x; break;
        case 4: acc = std::fmod(acc, x); break;
        default: reportError("number operator not match"); break;  // the step is skipped
        }
    }
    return Value(acc);
}

Value booleanOperation(ArgList& args, const EngineRef&)
{
    if (!args[0].is(Kind::Array) || !args[1].is(Kind::Array)) {
        return Value(false);  // no message for this one
    }
    if (!chainShapeFits(args[0], args[1])) {
        return Value(false);
    }
    const ValueArray& codes = args[0].array();
    const ValueArray& operands = args[1].array();
    // Every operand is already evaluated: only the selection short-circuits.
    size_t chosen = 0;
    bool truthy = !isFalsy(operands[0]);
    for (size_t i = 0; i < codes.size(); ++i) {
        uint32_t code = unsignedArgument(codes[i]);
        bool keep = (code == 0 && !truthy) || (code == 1 && truthy);
        if (!keep) {
            chosen = i + 1;
            truthy = !isFalsy(operands[chosen]);
        }
    }
    // A copy: the operand array may be a template constant shared with others.
    return operands[chosen];
}

Value conditionalOperator(ArgList& args, const EngineRef&)
{
    return isFalsy(args[0]) ? std::move(args[2]) : std::move(args[1]);
}

Value nullFallback(ArgList& args, const EngineRef&)
{
    // Only null falls back; false, 0 and "" are kept.
    return args[0].isNull() ? std::move(args[1]) : std::move(args[0]);
}

Value prefixUnary(ArgList& args, const EngineRef&)
{
    return Value(isFalsy(args[0]));
}

Value negative(ArgList& args, const EngineRef&)
{
    // The misspelt name in the message is the system's own text.
    return args[0].is(Kind::Number) ? Value(-args[0].number()) : Value(0.0);
}

}  // namespace Mero
