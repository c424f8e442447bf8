#include "runtime/RuntimeEngine.h"
#include "runtime/functions/BridgeFunctions.h"
#include "runtime/functions/BuiltinFunctions.h"
#include "runtime/functions/CollectionFunctions.h"
#include "runtime/functions/EventFunctions.h"
#include "runtime/functions/NumberFunctions.h"
#include "runtime/functions/OperatorFunctions.h"
#include "runtime/functions/StringFunctions.h"
#include "runtime/functions/TimerFunctions.h"

namespace Mero {

namespace {

template <typename Function>
MRFunctionPtr make()
{
    return std::make_unique<Function>();
}

struct BuiltinEntry {
    const char* key;
    MRFunctionPtr (*create)();
};

// The keys templates call the built-ins by, in their registration order.
constexpr BuiltinEntry kBuiltins[] = {
    {"k", make<CallBridgeFunction>},
    {"p", make<SetTimeoutFunction>},
    {"i", make<LogFunction>},
    {"s", make<TypeOfFunction>},
    {"t", make<CurrentTimeFunction>},
    {"l", make<CallBridgeSyncFunction>},
    {"G", make<CallBridgeSyncWithKeyPathFunction>},
    {"x", make<VideoTimeOnceFunction>},
    {"y", make<VideoTimeStartFunction>},
    {"z", make<SendEventFunction>},
    {"A", make<OnEventFunction>},
    {"B", make<RemoveEventFunction>},
    {"0", make<CompareFunction>},
    {"1", make<NumberOperationFunction>},
    {"2", make<BooleanOperationFunction>},
    {"4", make<ConditionalOperatorFunction>},
    {"8", make<NullFallbackFunction>},
    {"u", make<PrefixUnaryFunction>},
    {"v", make<NegativeFunction>},
    {"C", make<MathMaxFunction>},
    {"D", make<MathMinFunction>},
    {"g", make<RoundingFunction>},
    {"F", make<ToNumberFunction>},
    {"h", make<RandomFunction>},
    {"o", make<StringReplaceFunction>},
    {"n", make<SubStringFunction>},
    {"7", make<GetLengthFunction>},
    {"m", make<ToStringFunction>},
    {"6", make<SliceFunction>},
    {"f", make<IndexOfFunction>},
    {"e", make<SplitFunction>},
    {"d", make<CharAtFunction>},
    {"9", make<ConcatFunction>},
    {"r", make<IncludeFunction>},
    {"E", make<JsonParseFunction>},
    {"j", make<ArrayPushFunction>},
    {"5", make<ArrayGetFunction>},
    {"c", make<ArrayForEachFunction>},
    {"b", make<ArrayMapFunction>},
    {"a", make<ArrayFilterFunction>},
    {"3", make<JSONGetFunction>},
    {"q", make<DictForEachFunction>},
    {"w", make<JsonSetFunction>},
};

}  // namespace

void registerBuiltinFunctions(RuntimeEngine& engine)
{
    // A key that the template's own functions already took stays theirs: the
    // built-in of that key is then unreachable, on purpose.
    for (const BuiltinEntry& entry : kBuiltins) {
        if (!engine.functionTable.contains(entry.key)) {
            engine.registerFunction(entry.key, entry.create());
        }
    }
}

}  // namespace Mero
