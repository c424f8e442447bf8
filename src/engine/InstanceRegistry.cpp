#include "engine/InstanceRegistry.h"

#include <map>
#include <utility>

namespace Mero {

namespace {

std::map<int32_t, std::unique_ptr<MeroInstance>>& registry()
{
    // Never destroyed: the host may still hold handles when the process ends.
    static auto* instances = new std::map<int32_t, std::unique_ptr<MeroInstance>>();
    return *instances;
}

}  // namespace

bool registerInstance(int32_t handle, std::unique_ptr<MeroInstance>&& instance)
{
    return registry().try_emplace(handle, std::move(instance)).second;
}

MeroInstance* findInstance(int32_t handle)
{
    auto found = registry().find(handle);
    return found != registry().end() ? found->second.get() : nullptr;
}

std::unique_ptr<MeroInstance> unregisterInstance(int32_t handle)
{
    auto found = registry().find(handle);
    if (found == registry().end()) {
        return nullptr;
    }
    std::unique_ptr<MeroInstance> instance = std::move(found->second);
    registry().erase(found);
    return instance;
}

std::size_t instanceCount()
{
    return registry().size();
}

}  // namespace Mero
