#include "runtime/functions/StringFunctions.h"

#include <algorithm>
#include <string>

#include "runtime/RuntimeEngine.h"
#include "runtime/ScriptRun.h"
#include "runtime/functions/FunctionSupport.h"
#include "value/ErrorReporting.h"
#include "value/JsonWriter.h"

namespace Mero {

Value stringReplace(ArgList& args, const EngineRef&)
{
    std::string text = takeString(args[0]);
    const std::string& pattern = args[1].string();
    // Only the first occurrence changes; an empty pattern matches at the front.
    size_t at = text.find(pattern);
    if (at != std::string::npos) {
        if (!fitsStringLimit(text.size() - pattern.size() + args[2].string().size())) {
            return Value();
        }
        text.replace(at, pattern.size(), args[2].string());
    }
    return Value(std::move(text));
}

Value subString(ArgList& args, const EngineRef&)
{
    const std::string& text = args[0].string();
    uint32_t start = unsignedArgument(args[1]);
    uint32_t end = unsignedArgument(args[2]);
    // The length is end - start in 32-bit unsigned arithmetic: an end below
    // the start wraps around and the result runs to the end of the text. A
    // start past the text throws std::out_of_range, uncaught.
    uint32_t length = end - start;
    return Value(text.substr(start, length));
}

Value getLength(ArgList& args, const EngineRef&)
{
    const Value& x = args[0];
    if (x.is(Kind::String)) {
        return Value(static_cast<double>(x.string().size()));
    }
    if (x.is(Kind::Array)) {
        return Value(static_cast<double>(x.array().size()));
    }
    return Value(0.0);
}

Value toString(ArgList& args, const EngineRef&)
{
    const Value& x = args[0];
    switch (x.kind()) {
    case Kind::Null: return Value("null");
    case Kind::Number: return Value(numberToString(x.number()));
    // Booleans give the digit of the flag, not "true"/"false": on purpose.
    case Kind::Boolean: return Value(x.boolean() ? "1" : "0");
    case Kind::Array:
    case Kind::Object: {
        // Unlike what goes to the host, an overlong text is null, not "null".
        std::optional<std::string> text = toJsonString(x, Limits::kMaxStringBytes);
        chargeSteps((text ? text->size() : Limits::kMaxStringBytes) / 64);
        if (!text) {
            reportLimit(Limit::StringBytes);
            return Value();
        }
        return Value(std::move(*text));
    }
    // A string gives the empty string, not itself: templates depend on it.
    default: return Value("");
    }
}

Value slice(ArgList& args, const EngineRef&)
{
    // The log function's text is this function's own count message, on purpose.
    uint32_t start = unsignedArgument(args[1]);
    bool bounded = args.size() == 3;
    if (args[0].is(Kind::String)) {
        const std::string& text = args[0].string();
        if (text.empty()) {
            return std::move(args[0]);
        }
        // For text the third argument is a length, not an end: on purpose.
        // A start past the text throws std::out_of_range, uncaught.
        size_t length = bounded ? unsignedArgument(args[2]) : std::string::npos;
        return Value(text.substr(start, length));
    }
    if (args[0].is(Kind::Array)) {
        const ValueArray& array = args[0].array();
        if (array.empty()) {
            return std::move(args[0]);
        }
        // For arrays the third argument is an end index.
        size_t end = bounded ? std::min<size_t>(unsignedArgument(args[2]), array.size()) : array.size();
        if (start >= end) {
            return Value(Kind::Array);
        }
        return Value::makeArray(ValueArray(array.begin() + start, array.begin() + static_cast<ptrdiff_t>(end)));
    }
    return Value();
}

Value indexOf(ArgList& args, const EngineRef&)
{
    const Value& haystack = args[0];
    const Value& needle = args[1];
    if (haystack.is(Kind::String) && needle.is(Kind::String)) {
        size_t at = haystack.string().find(needle.string());
        return Value(at == std::string::npos ? -1.0 : static_cast<double>(at));
    }
    if (haystack.is(Kind::Array)) {
        const ValueArray& array = haystack.array();
        auto found =
            std::find_if(array.begin(), array.end(), [&](const Value& element) { return equals(element, needle); });
        return Value(found == array.end() ? -1.0 : static_cast<double>(found - array.begin()));
    }
    return Value(-1.0);
}

Value split(ArgList& args, const EngineRef&)
{
    const std::string& separator = args[1].string();
    if (separator.size() != 1) {
        reportError("Splitter must be one character");
        return Value(Kind::Array);
    }
    // Cut like repeated line reads with the separator as the delimiter: empty
    // tokens between separators stay, a trailing empty token is not made.
    const std::string& text = args[0].string();
    ValueArray tokens;
    size_t from = 0;
    while (from < text.size()) {
        size_t at = text.find(separator[0], from);
        if (at == std::string::npos) {
            tokens.emplace_back(text.substr(from));
            break;
        }
        tokens.emplace_back(text.substr(from, at - from));
        from = at + 1;
        if (!fitsCollectionLimit(tokens.size())) {
            return Value(Kind::Array);
        }
    }
    return Value::makeArray(std::move(tokens));
}

Value charAt(ArgList& args, const EngineRef&)
{
    // The byte's number in decimal, not the character: "A" at 0 gives "65".
    // An index past the text throws std::out_of_range, uncaught.
    unsigned char byte = static_cast<unsigned char>(args[0].string().at(unsignedArgument(args[1])));
    return Value(std::to_string(byte));
}

Value concat(ArgList& args, const EngineRef&)
{
    if (args[0].is(Kind::Array) && args[1].is(Kind::Array)) {
        const ValueArray& first = args[0].array();
        const ValueArray& second = args[1].array();
        if (!fitsCollectionLimit(first.size() + second.size())) {
            return Value();
        }
        ValueArray joined;
        joined.reserve(first.size() + second.size());
        joined.insert(joined.end(), first.begin(), first.end());
        joined.insert(joined.end(), second.begin(), second.end());
        return Value::makeArray(std::move(joined));
    }
    if (args[0].is(Kind::String) && args[1].is(Kind::String)) {
        if (!fitsStringLimit(args[0].string().size() + args[1].string().size())) {
            return Value();
        }
        std::string text = takeString(args[0]);
        text += args[1].string();
        return Value(std::move(text));
    }
    return Value();
}

Value include(ArgList& args, const EngineRef&)
{
    const Value& haystack = args[0];
    const Value& needle = args[1];
    if (haystack.is(Kind::Array)) {
        const ValueArray& array = haystack.array();
        return Value(
            std::any_of(array.begin(), array.end(), [&](const Value& element) { return equals(element, needle); }));
    }
    if (haystack.is(Kind::String) && needle.is(Kind::String)) {
        return Value(haystack.string().find(needle.string()) != std::string::npos);
    }
    return Value(false);
}

Value logToHost(ArgList& args, const EngineRef& engine)
{
    // A gone engine, or one without a host log sink, logs nothing.
    std::shared_ptr<RuntimeEngine> runtime = engine.lock();
    if (runtime && runtime->services.log) {
        runtime->services.log(args[0].string());
    }
    return Value();
}

}  // namespace Mero
