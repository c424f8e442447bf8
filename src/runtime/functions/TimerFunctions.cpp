#include "runtime/functions/TimerFunctions.h"

#include "runtime/functions/DeferredCallback.h"
#include "runtime/functions/FunctionSupport.h"

namespace Mero {

namespace {

// A job that runs the script callback with no arguments, then flushes.
PendingJob deferredJob(const EngineRef& engine, Value&& callback)
{
    return [engine, callback = std::move(callback)] { runDeferredCallback(engine, callback, ArgList()); };
}

}  // namespace

Value setTimeout(ArgList& args, const EngineRef& engine)
{
    std::shared_ptr<RuntimeEngine> runtime = engine.lock();
    if (!runtime) {
        return Value();
    }
    // An engine without a timeout hook throws std::bad_function_call here.
    runtime->services.setTimeout(args[0].number(), deferredJob(engine, std::move(args[1])));
    return Value();
}

Value videoTimeOnce(ArgList& args, const EngineRef& engine)
{
    std::shared_ptr<RuntimeEngine> runtime = engine.lock();
    if (!runtime) {
        return Value();
    }
    // Only collected here: nothing reaches the host before VideoTimeStart.
    if (!runtime->pendingVideoTimers) {
        runtime->pendingVideoTimers = std::make_unique<VideoTimerList>();
    }
    if (runtime->pendingVideoTimers->size() >= Limits::kMaxPendingJobs) {
        reportLimit(Limit::PendingJobs);
        return Value();
    }
    runtime->pendingVideoTimers->emplace_back(args[0].number(), deferredJob(engine, std::move(args[1])));
    return Value();
}

Value videoTimeStart(ArgList& args, const EngineRef& engine)
{
    std::shared_ptr<RuntimeEngine> runtime = engine.lock();
    if (!runtime) {
        return Value();
    }
    // The pending list is emptied in every case; without a host, or with
    // nothing collected, what was pending is dropped.
    VideoTimerListPtr pending = std::move(runtime->pendingVideoTimers);
    if (pending && !pending->empty() && runtime->services.startVideoTimer) {
        runtime->services.startVideoTimer(args[0].number(), args[1].number(), std::move(pending));
    }
    return Value();
}

}  // namespace Mero
