#include <algorithm>
#include <array>

#include "runtime/RuntimeEngine.h"
#include "runtime/functions/BridgeFunctions.h"
#include "runtime/functions/BuiltinFunctions.h"
#include "runtime/functions/CollectionFunctions.h"
#include "runtime/functions/EventFunctions.h"
#include "runtime/functions/NumberFunctions.h"
#include "runtime/functions/OperatorFunctions.h"
#include "runtime/functions/StringFunctions.h"
#include "runtime/functions/TimerFunctions.h"
#include "value/ErrorReporting.h"

namespace Mero {

namespace {

// key, name, arguments (least, most; -1 any), count message and fallback,
// body; in registration order. Two count messages are odd but are the
// system's own: Slice reports "Log args size not match", and IndexOf falls
// back to an empty string.
constexpr std::array kBuiltins{
    BuiltinInfo{"k", "CallBridge", 3, 3, "call bridge args size not match", Fallback::Null, callBridge},
    BuiltinInfo{"p", "SetTimeout", 2, 2, "set timeout args size not match", Fallback::Null, setTimeout},
    BuiltinInfo{"i", "Log", 1, 1, "Log args size not match", Fallback::Null, logToHost},
    BuiltinInfo{"s", "TypeOf", 1, 1, "TypeOf args size not match", Fallback::Null, typeOf},
    BuiltinInfo{"t", "CurrentTime", 0, -1, "", Fallback::Null, currentTime},
    BuiltinInfo{"l", "CallBridgeSync", 2, 2, "call bridge sync args size not match", Fallback::Null, callBridgeSync},
    BuiltinInfo{"G", "CallBridgeSyncWithKeyPath", 3, 3, "call bridge sync args size not match", Fallback::Null, callBridgeSyncWithKeyPath},
    BuiltinInfo{"x", "VideoTimeOnce", 2, 2, "VideoTimeOnce args size not match", Fallback::Null, videoTimeOnce},
    BuiltinInfo{"y", "VideoTimeStart", 2, 2, "VideoTimeStart args size not match", Fallback::Null, videoTimeStart},
    BuiltinInfo{"z", "SendEvent", 2, 2, "SendEvent args size not match", Fallback::Null, sendEvent},
    BuiltinInfo{"A", "OnEvent", 2, 2, "OnEvent args size not match", Fallback::Null, onEvent},
    BuiltinInfo{"B", "RemoveEvent", 1, 1, "RemoveEvent args size not match", Fallback::Null, removeEvent},
    BuiltinInfo{"0", "Compare", 3, 3, "compare args size not match", Fallback::False, compare},
    BuiltinInfo{"1", "NumberOperation", 2, 2, "number operation args size not match", Fallback::Zero, numberOperation},
    BuiltinInfo{"2", "BooleanOperation", 2, 2, "bool operation args size not match", Fallback::False, booleanOperation},
    BuiltinInfo{"4", "ConditionalOperator", 3, 3, "conditional args size not match", Fallback::Null, conditionalOperator},
    BuiltinInfo{"8", "NullFallback", 2, 2, "NullFallback args size not match", Fallback::Null, nullFallback},
    BuiltinInfo{"u", "PrefixUnary", 1, 1, "PrefixUnaryFunction args size not match", Fallback::False, prefixUnary},
    BuiltinInfo{"v", "Negative", 1, 1, "NagativeFunction args size not match", Fallback::Zero, negative},
    BuiltinInfo{"C", "MathMax", 1, 1, "MathMaxFunction args size not match", Fallback::Zero, mathMax},
    BuiltinInfo{"D", "MathMin", 1, 1, "MathMinFunction args size not match", Fallback::Zero, mathMin},
    BuiltinInfo{"g", "Rounding", 2, 2, "rounding args size not match", Fallback::Null, rounding},
    BuiltinInfo{"F", "ToNumber", 1, 1, "to number args size not match", Fallback::Zero, toNumber},
    BuiltinInfo{"h", "Random", 0, 0, "random args size not match", Fallback::Zero, randomNumber},
    BuiltinInfo{"o", "StringReplace", 3, 3, "string replace args size not match", Fallback::Null, stringReplace},
    BuiltinInfo{"n", "SubString", 3, 3, "sub_string args size not match", Fallback::Null, subString},
    BuiltinInfo{"7", "GetLength", 1, 1, "get length args size not match", Fallback::Zero, getLength},
    BuiltinInfo{"m", "ToString", 1, 1, "to string args size not match", Fallback::EmptyString, toString},
    BuiltinInfo{"6", "Slice", 2, 3, "Log args size not match", Fallback::Null, slice},
    BuiltinInfo{"f", "IndexOf", 2, 2, "IndexOf args size not match", Fallback::EmptyString, indexOf},
    BuiltinInfo{"e", "Split", 2, 2, "Split args size not match", Fallback::EmptyArray, split},
    BuiltinInfo{"d", "CharAt", 2, 2, "CharAt args size not match", Fallback::EmptyString, charAt},
    BuiltinInfo{"9", "Concat", 2, 2, "Concat args size not match", Fallback::Null, concat},
    BuiltinInfo{"r", "Include", 2, 2, "Include args size not match", Fallback::Null, include},
    BuiltinInfo{"E", "JsonParse", 1, 1, "JsonParse args size not match", Fallback::Null, jsonParse},
    BuiltinInfo{"j", "ArrayPush", 2, 2, "array add args size not match", Fallback::EmptyArray, arrayPush},
    BuiltinInfo{"5", "ArrayGet", 2, 2, "array get args size not match", Fallback::Null, arrayGet},
    BuiltinInfo{"c", "ArrayForEach", 2, 2, "ArrayForEach args size not match", Fallback::Null, arrayForEach},
    BuiltinInfo{"b", "ArrayMap", 2, 2, "ArrayMap args size not match", Fallback::Null, arrayMap},
    BuiltinInfo{"a", "ArrayFilter", 2, 2, "ArrayFilter args size not match", Fallback::Null, arrayFilter},
    BuiltinInfo{"3", "JSONGet", 2, 3, "json get args size not match", Fallback::Null, jsonGet},
    BuiltinInfo{"q", "DictForEach", 2, 2, "DictForEach args size not match", Fallback::Null, dictForEach},
    BuiltinInfo{"w", "JsonSet", 3, 3, "JsonSet args size not match", Fallback::Null, jsonSet},
};

Value fallbackValue(Fallback fallback)
{
    switch (fallback) {
    case Fallback::Zero: return Value(0.0);
    case Fallback::False: return Value(false);
    case Fallback::EmptyString: return Value("");
    case Fallback::EmptyArray: return Value(Kind::Array);
    case Fallback::Null: break;
    }
    return Value();
}

// One entry of the function table: checks the argument count (reporting the
// built-in's own message), then runs the body.
class BuiltinFunction final : public MRFunction {
public:
    explicit BuiltinFunction(const BuiltinInfo& info) : info_(info) {}

    Value invoke(ArgList&& args, const EngineRef& engine) override
    {
        return invokeBuiltin(info_, std::move(args), engine);
    }

private:
    const BuiltinInfo& info_;
};

// One function object per built-in for the whole process, made on first use.
const std::array<MRFunctionPtr, kBuiltins.size()>& sharedBuiltins()
{
    static const auto functions = [] {
        std::array<MRFunctionPtr, kBuiltins.size()> made;
        for (std::size_t i = 0; i < kBuiltins.size(); ++i) {
            made[i] = std::make_shared<BuiltinFunction>(kBuiltins[i]);
        }
        return made;
    }();
    return functions;
}

}  // namespace

Value invokeBuiltin(const BuiltinInfo& builtin, ArgList&& args, const EngineRef& engine)
{
    const auto count = static_cast<int>(args.size());
    if (count < builtin.leastArguments || (builtin.mostArguments >= 0 && count > builtin.mostArguments)) {
        reportError(builtin.countMessage);
        return fallbackValue(builtin.countFallback);
    }
    return builtin.body(args, engine);
}

std::span<const BuiltinInfo> builtinFunctions()
{
    return kBuiltins;
}

const BuiltinInfo* builtinOfKey(std::string_view key)
{
    auto found = std::find_if(kBuiltins.begin(), kBuiltins.end(), [key](const BuiltinInfo& info) { return info.key == key; });
    return found != kBuiltins.end() ? &*found : nullptr;
}

MRFunction* builtinFunction(std::string_view key)
{
    // Every key is one character: a table by that character finds it at once.
    static const auto byCharacter = [] {
        std::array<MRFunction*, 128> table{};
        const auto& functions = sharedBuiltins();
        for (std::size_t i = 0; i < kBuiltins.size(); ++i) {
            table[static_cast<unsigned char>(kBuiltins[i].key[0])] = functions[i].get();
        }
        return table;
    }();
    const std::size_t character = key.size() == 1 ? static_cast<unsigned char>(key[0]) : byCharacter.size();
    return character < byCharacter.size() ? byCharacter[character] : nullptr;
}

void registerBuiltinFunctions(RuntimeEngine& engine)
{
    engine.addBuiltins();
}

}  // namespace Mero
