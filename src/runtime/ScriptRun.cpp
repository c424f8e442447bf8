#include "runtime/ScriptRun.h"

#include <string>

#include "value/ErrorReporting.h"
#include "value/JsonWriter.h"

namespace Mero {

ScriptRunState scriptRunState;

namespace {

std::string describe(const char* what, long long limit, const char* unit = "")
{
    return std::string(what) + " exceeds the limit of " + std::to_string(limit) + unit;
}

}  // namespace

const char* limitMessage(Limit limit)
{
    static const std::string messages[] = {
        describe("element nesting", Limits::kMaxElementDepth, " levels"),
        describe("render node count", static_cast<long long>(Limits::kMaxRenderNodes)),
        describe("script node nesting", Limits::kMaxScriptNodeDepth, " levels"),
        describe("call depth", Limits::kMaxCallDepth),
        describe("script nesting", Limits::kMaxScriptNesting, " levels"),
        describe("script step count", Limits::kMaxScriptSteps, " for one entry"),
        describe("string length", static_cast<long long>(Limits::kMaxStringBytes), " bytes"),
        describe("collection size", static_cast<long long>(Limits::kMaxCollectionSize), " elements"),
        describe("pending job count", static_cast<long long>(Limits::kMaxPendingJobs)),
    };
    return messages[static_cast<int>(limit)].c_str();
}

void reportLimit(Limit limit)
{
    ScriptRunState& state = scriptRunState;
    const uint32_t bit = 1U << static_cast<uint32_t>(limit);
    if (state.entries > 0 && (state.reported & bit) != 0) {
        return;
    }
    state.reported |= bit;
    reportError(limitMessage(limit));
}

bool fitsStringLimit(std::size_t bytes)
{
    if (bytes <= Limits::kMaxStringBytes) {
        return true;
    }
    reportLimit(Limit::StringBytes);
    return false;
}

bool fitsCollectionLimit(std::size_t size)
{
    if (size <= Limits::kMaxCollectionSize) {
        return true;
    }
    reportLimit(Limit::CollectionSize);
    return false;
}

ScriptRun::ScriptRun() noexcept
{
    ScriptRunState& state = scriptRunState;
    if (state.entries++ == 0) {
        state.stepsUsed = 0;
        state.copiedAtStart = copiedStringBytes;
        state.reported = 0;
    }
}

ScriptRun::~ScriptRun()
{
    --scriptRunState.entries;
}

bool ScriptRun::budgetSpent() noexcept
{
    const ScriptRunState& state = scriptRunState;
    return state.entries > 0 && state.cost() > state.stepBudget;
}

std::size_t sizeInSteps(const Value& value)
{
    switch (value.kind()) {
    case Kind::String: return value.string().size() >> 6;
    case Kind::Array: return value.array().size();
    case Kind::Object: return value.object().size();
    default: return 0;
    }
}

std::string jsonWithinLimit(const Value& value)
{
    std::optional<std::string> text = toJsonString(value, Limits::kMaxStringBytes);
    if (!text) {
        reportLimit(Limit::StringBytes);
        chargeSteps(Limits::kMaxStringBytes / 64);
        return "null";
    }
    chargeSteps(text->size() / 64);
    return std::move(*text);
}

void chargeSteps(std::size_t steps)
{
    scriptRunState.stepsUsed += static_cast<int64_t>(steps);
}

bool ScriptStep::refuse()
{
    reportLimit(scriptRunState.nesting > Limits::kMaxScriptNesting ? Limit::ScriptNesting : Limit::ScriptSteps);
    return false;
}

bool CallDepthGuard::allowed()
{
    if (scriptRunState.callDepth <= Limits::kMaxCallDepth) {
        return true;
    }
    reportLimit(Limit::CallDepth);
    return false;
}

}  // namespace Mero
