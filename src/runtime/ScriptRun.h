// What one entry from the host may spend on script, and how deep script may
// go, so that no card can freeze or crash its host (see value/Limits.h).
//
// An entry is one piece of work the host starts: an event, a click, a timer
// or video job, a bridge reply, building the render tree. Every expression
// evaluation and every statement is one step of the entry's budget and one
// level of nesting while it runs. The state is one per process, like the
// instance registry: the host serialises every call into the engine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "value/Limits.h"
#include "value/Value.h"

namespace Mero {

// The bounds a card can cross, each with its own message.
enum class Limit : uint8_t {
    ElementDepth,
    RenderNodes,
    ScriptNodeDepth,
    CallDepth,
    ScriptNesting,
    ScriptSteps,
    StringBytes,
    CollectionSize,
    PendingJobs,
};

// The message that names a limit and its value, e.g. "call depth exceeds
// the limit of 64".
const char* limitMessage(Limit limit);

// Reports a crossing through reportError (thrown while debugMode is set).
// Within one entry each limit is reported once: a loop that keeps crossing
// it must not flood the log.
void reportLimit(Limit limit);

// Whether script may build a string of `bytes` bytes, or an array or object
// of `size` elements; reported when it may not, and the work that would have
// built it gives null.
bool fitsStringLimit(std::size_t bytes);
bool fitsCollectionLimit(std::size_t size);

// JSON of what a card hands out (bridge parameters, JSON-valued properties,
// ToString): shared arrays let a small value stand for an enormous text, so a
// text past the string limit is reported and written as "null". Writing it
// costs a step per 64 bytes.
std::string jsonWithinLimit(const Value& value);

// Charges `steps` to the current entry.
void chargeSteps(std::size_t steps);

// What handing over or receiving `value` costs a call, in steps: a step per
// element or member of an array or object and per 64 bytes of a string.
// Calls pay it for their arguments and their result, so that a built-in that
// walks, copies or builds a large collection in one call (a push, a join, a
// search) costs what it does.
std::size_t sizeInSteps(const Value& value);

struct ScriptRunState {
    int entries = 0;                // entries in progress; only the outermost resets the budget
    int64_t stepsUsed = 0;          // by the current entry
    std::size_t copiedAtStart = 0;  // copiedStringBytes when the entry began
    int nesting = 0;                // evaluations in progress
    int callDepth = 0;              // calls in progress
    uint32_t reported = 0;          // limits reported in this entry, one bit each
    // The budget of one entry: the limit, unless a test or fuzzer lowers it
    // to reach a spent budget sooner.
    int64_t stepBudget = Limits::kMaxScriptSteps;

    // Steps, plus a step for every 64 bytes of long strings copied.
    int64_t cost() const
    {
        return stepsUsed + static_cast<int64_t>((copiedStringBytes - copiedAtStart) >> 6);
    }
};

extern ScriptRunState scriptRunState;

// One entry from the host, for as long as it lives. Nested entries (an event
// sent by script, a bridge reply given inside the call that asked for it)
// share the outer budget. Without any entry (tools and tests that evaluate
// script directly) steps are not counted; depths always are.
class ScriptRun {
public:
    ScriptRun() noexcept;
    ~ScriptRun();
    ScriptRun(const ScriptRun&) = delete;
    ScriptRun& operator=(const ScriptRun&) = delete;

    // True once the current entry has spent its budget.
    static bool budgetSpent() noexcept;
};

// One evaluation (an expression or a statement) for as long as it lives:
// it spends a step and takes a level of nesting. Check allowed() before
// evaluating; the level is given back however the evaluation ends.
class ScriptStep {
public:
    ScriptStep() noexcept { ++scriptRunState.nesting; }
    ~ScriptStep() { --scriptRunState.nesting; }
    ScriptStep(const ScriptStep&) = delete;
    ScriptStep& operator=(const ScriptStep&) = delete;

    bool allowed()
    {
        ScriptRunState& state = scriptRunState;
        ++state.stepsUsed;
        if (state.nesting <= Limits::kMaxScriptNesting &&
            (state.entries == 0 || state.cost() <= state.stepBudget)) {
            return true;
        }
        return refuse();
    }

private:
    static bool refuse();
};

// One call (a custom function, a callback, an event handler) in progress.
class CallDepthGuard {
public:
    CallDepthGuard() noexcept { ++scriptRunState.callDepth; }
    ~CallDepthGuard() { --scriptRunState.callDepth; }
    CallDepthGuard(const CallDepthGuard&) = delete;
    CallDepthGuard& operator=(const CallDepthGuard&) = delete;

    // False (reported) when this call goes past the limit: give null.
    bool allowed();
};

}  // namespace Mero
