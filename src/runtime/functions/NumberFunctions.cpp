#include "runtime/functions/NumberFunctions.h"

#include <chrono>
#include <cmath>
#include <limits>
#include <random>
#include <string>

#include "runtime/functions/FunctionSupport.h"
#include "value/ErrorReporting.h"

namespace Mero {

namespace {

// Scans an array from its first element, replacing the best only when
// `better` says so strictly: a NaN never replaces it, and a NaN in first
// place stays. Non-numbers read as 0; an empty array gives 0.
template <typename Better>
Value extremeOf(ArgList& args, std::string_view typeMessage, Better better)
{
    if (!args[0].is(Kind::Array)) {
        reportError(typeMessage);
        return Value(0.0);
    }
    const ValueArray& array = args[0].array();
    if (array.empty()) {
        return Value(0.0);
    }
    double best = array[0].number();
    for (size_t i = 1; i < array.size(); ++i) {
        double candidate = array[i].number();
        if (better(candidate, best)) {
            best = candidate;
        }
    }
    return Value(best);
}

}  // namespace

Value mathMax(ArgList& args, const EngineRef&)
{
    return extremeOf(args, "MathMaxFunction args type not match",
                     [](double candidate, double best) { return candidate > best; });
}

Value mathMin(ArgList& args, const EngineRef&)
{
    return extremeOf(args, "MathMinFunction args type not match",
                     [](double candidate, double best) { return candidate < best; });
}

Value rounding(ArgList& args, const EngineRef&)
{
    if (!args[1].is(Kind::Number)) {
        reportError("rounding args must be number");
        return Value(0.0);
    }
    double x = args[1].number();
    switch (unsignedArgument(args[0])) {
    case 1: return Value(std::ceil(x));
    case 2: return Value(x);  // mode 2 leaves the value alone; it is not a floor
    default: return Value(std::round(x));
    }
}

Value toNumber(ArgList& args, const EngineRef&)
{
    const Value& x = args[0];
    if (x.is(Kind::Number)) {
        return std::move(args[0]);
    }
    if (!x.is(Kind::String)) {
        reportError("toNumber arg must be string");
        return Value(0.0);
    }
    // Text without a point is read as a whole number, so "1e5" gives 1 and
    // "12px" gives 12. Text with no leading number throws from the standard
    // conversion (std::invalid_argument), uncaught, as does an out-of-range
    // integer (std::out_of_range).
    const std::string& text = x.string();
    if (text.find('.') != std::string::npos) {
        return Value(std::stod(text));
    }
    return Value(static_cast<double>(std::stoll(text, nullptr, 10)));
}

Value randomNumber(ArgList& /*args*/, const EngineRef&)
{
    // A fresh generator on every call, seeded from the system's random device.
    std::random_device device("/dev/urandom");
    std::mt19937 generator(device());
    return Value(std::generate_canonical<double, std::numeric_limits<double>::digits>(generator));
}

Value currentTime(ArgList&, const EngineRef&)
{
    // Any argument count is accepted.
    auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return Value(static_cast<double>(std::chrono::duration_cast<std::chrono::milliseconds>(sinceEpoch).count()));
}

Value typeOf(ArgList& args, const EngineRef&)
{
    switch (args[0].kind()) {
    case Kind::Number: return Value("number");
    case Kind::Boolean: return Value("boolean");
    case Kind::String: return Value("string");
    default: return Value("object");  // null, arrays and callbacks included
    }
}

}  // namespace Mero
