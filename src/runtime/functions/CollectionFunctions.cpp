#include "runtime/functions/CollectionFunctions.h"

#include "runtime/functions/FunctionSupport.h"
#include "value/ErrorReporting.h"
#include "value/JsonParser.h"

namespace Mero {

namespace {

// The walk shared by ForEach, Map and Filter. The length is re-read on every
// round, so a callback that appends to the array extends the walk. The kinds
// are not tested: a non-array walks the shared empty array, and a
// non-callback throws std::bad_function_call on the first element.
template <typename OnResult>
void walkArray(ArgList& args, OnResult&& onResult)
{
    const ValueArray& array = args[0].array();
    const ValueCallback& callback = callableOf(args[1]);
    for (size_t i = 0; i < array.size(); ++i) {
        ArgList callArgs;
        callArgs.reserve(3);
        callArgs.push_back(array[i]);
        callArgs.emplace_back(static_cast<double>(i));
        callArgs.push_back(args[0]);
        onResult(callback(std::move(callArgs)), array, i);
    }
}

}  // namespace

Value arrayPush(ArgList& args, const EngineRef&)
{
    if (!args[0].is(Kind::Array) || !args[1].is(Kind::Array)) {
        reportError("args must be array");
        return Value();
    }
    // The target shares its vector with the variable it was read from, so the
    // script's array grows in place.
    ValueArray& target = args[0].array();
    const ValueArray& source = args[1].array();
    if (!fitsCollectionLimit(target.size() + source.size())) {
        return Value();
    }
    if (&source == &target) {
        ValueArray twin = source;  // inserting a vector into itself needs a copy first
        target.insert(target.end(), std::make_move_iterator(twin.begin()), std::make_move_iterator(twin.end()));
    } else {
        target.insert(target.end(), source.begin(), source.end());
    }
    return Value(static_cast<double>(target.size()));
}

Value arrayGet(ArgList& args, const EngineRef&)
{
    const Value& container = args[0];
    const Value& index = args[1];
    if (isFalsy(container)) {
        return Value();
    }
    if (container.is(Kind::Array) && index.is(Kind::Number)) {
        const ValueArray& array = container.array();
        uint32_t position = truncateToUint32(index.number());
        if (position >= array.size()) {
            reportError("array index out of range");
            return Value();
        }
        return array[position];
    }
    if (container.is(Kind::Object)) {
        const ValueObject& object = container.object();
        auto member =
            index.is(Kind::Number) ? object.find(numberToString(index.number())) : object.find(index.string());
        return member == object.end() ? Value() : member->second;
    }
    reportError("args must be array or index must be number");
    return Value();
}

Value arrayForEach(ArgList& args, const EngineRef&)
{
    walkArray(args, [](Value&&, const ValueArray&, size_t) {});
    return Value();
}

Value arrayMap(ArgList& args, const EngineRef&)
{
    ValueArray mapped;
    mapped.reserve(args[0].array().size());
    walkArray(args, [&mapped](Value&& result, const ValueArray&, size_t) { mapped.push_back(std::move(result)); });
    return Value::makeArray(std::move(mapped));
}

Value arrayFilter(ArgList& args, const EngineRef&)
{
    ValueArray kept;
    walkArray(args, [&kept](Value&& result, const ValueArray& array, size_t i) {
        // Only a real boolean true keeps the element; 1 or "x" do not.
        if (result.is(Kind::Boolean) && result.boolean() && i < array.size()) {
            kept.push_back(array[i]);
        }
    });
    return Value::makeArray(std::move(kept));
}

Value jsonGet(ArgList& args, const EngineRef&)
{
    if (args[0].is(Kind::Object) && args[1].is(Kind::String)) {
        const ValueObject& object = args[0].object();
        auto member = object.find(args[1].string());
        if (member != object.end()) {
            return member->second;
        }
    }
    return args.size() == 3 ? std::move(args[2]) : Value();
}

Value dictForEach(ArgList& args, const EngineRef&)
{
    const ValueObject& object = args[0].object();
    const ValueCallback& callback = callableOf(args[1]);
    // The keys are taken first: a callback that adds a member could move the
    // members under a live iterator. Values are read as they are at the call.
    std::vector<std::string> keys;
    keys.reserve(object.size());
    for (const auto& member : object) {
        keys.push_back(member.first);
    }
    for (std::string& key : keys) {
        auto member = object.find(key);
        if (member == object.end()) {
            continue;
        }
        std::vector<Value> callArgs;
        callArgs.reserve(2);
        callArgs.emplace_back(std::move(key));
        callArgs.emplace_back(member->second);
        callback(std::move(callArgs));
    }
    return Value();
}

Value jsonSet(ArgList& args, const EngineRef&)
{
    // Wrong kinds change nothing, quietly.
    if (args[0].is(Kind::Object) && args[1].is(Kind::String)) {
        ValueObject& object = args[0].object();
        const std::string& key = args[1].string();
        if (!object.contains(key) && !fitsCollectionLimit(object.size() + 1)) {
            return Value();
        }
        object[key] = std::move(args[2]);
    }
    return Value();
}

Value jsonParse(ArgList& args, const EngineRef&)
{
    if (!args[0].is(Kind::String)) {
        reportError("JsonParse args type not match");
        return Value();
    }
    const std::string& text = args[0].string();
    if (text.empty()) {
        return Value();
    }
    return JsonParser::read(text);
}

}  // namespace Mero
