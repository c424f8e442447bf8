// Cards that try to take their host down, built as text: nesting, recursion,
// endless loops and growth that only the engine's limits stop.
#pragma once

#include <pthread.h>

#include <functional>
#include <string>

namespace MeroTest {

// Elements nested `depth` deep, the root counting 1; each is a flex
// container "n<level>" and the innermost a plain view.
inline std::string nestedElements(int depth)
{
    std::string opening;
    std::string closing;
    for (int level = 0; level + 1 < depth; ++level) {
        opening += R"({"$":3,"nodeId":"n)" + std::to_string(level) + R"(","children":[)";
        closing += "]}";
    }
    return opening + R"({"$":0,"nodeId":"n)" + std::to_string(depth - 1) + R"("})" + closing;
}

// A conditional in a conditional ... `depth` deep, around `innermost`.
inline std::string nestedConditional(int depth, const std::string& innermost = "1")
{
    std::string opening;
    std::string closing;
    for (int level = 0; level < depth; ++level) {
        opening += R"({"$":5,"n":"4","a":[true,)";
        closing += ",0]}";
    }
    return opening + innermost + closing;
}

// A template whose event "go" runs `goBody` (a statement list) and whose event
// "ping" sets the UI variable "pinged": the next event after a hostile one.
inline std::string hostileTemplate(const std::string& goBody, const std::string& extra = "",
                                   const std::string& elements = R"({"$":0,"nodeId":"root"})")
{
    return R"({"variables":{"pinged":false},"elements":)" + elements + R"(,"events":[{"n":"go","a":[],"b":)" +
           goBody + R"(},{"n":"ping","a":[],"b":[{"$":4,"n":"pinged","value":true}]}])" + extra + "}";
}

// Runs `work` on a thread whose stack is `bytes` long, as a host thread's is
// (a JVM thread's default stack is 1 MiB), and waits for it.
inline void runOnStack(std::size_t bytes, const std::function<void()>& work)
{
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, bytes);
    pthread_t thread;
    auto trampoline = [](void* argument) -> void* {
        (*static_cast<const std::function<void()>*>(argument))();
        return nullptr;
    };
    pthread_create(&thread, &attributes, trampoline, const_cast<std::function<void()>*>(&work));
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

}  // namespace MeroTest
