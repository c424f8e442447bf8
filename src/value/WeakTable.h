// WeakTable: things that cards share (a template's reading, the data they
// leave out), found again by a hash of their text for as long as some card
// holds them, and no longer. Not locked: cards work from any thread, so its
// owner holds a mutex around every use.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <unordered_map>
#include <vector>

namespace Mero {

template <typename T>
class WeakTable {
public:
    using Held = std::shared_ptr<const T>;

    // The live entry under `hash` that `same` accepts, or null. Every entry
    // looked at goes into `looked`, so that the caller lets go of it after
    // unlocking: the last holder of one may be this lookup.
    template <typename Same>
    Held find(std::size_t hash, const Same& same, std::vector<Held>& looked) const
    {
        auto [first, last] = byHash_.equal_range(hash);
        for (auto it = first; it != last; ++it) {
            Held held = it->second.lock();
            if (held && same(*held)) {
                return held;
            }
            looked.push_back(std::move(held));
        }
        return nullptr;
    }

    void add(std::size_t hash, const Held& entry)
    {
        dropExpired();
        // Entries under the same hash that nothing holds make room for it: a
        // text made, let go and made again keeps one entry.
        auto [first, last] = byHash_.equal_range(hash);
        while (first != last) {
            first = first->second.expired() ? byHash_.erase(first) : std::next(first);
        }
        byHash_.emplace(hash, entry);
    }

    // Entries of what nothing holds any more go, once they are as many as
    // the rest.
    void dropExpired()
    {
        if (byHash_.size() < compactAt_) {
            return;
        }
        std::erase_if(byHash_, [](const auto& entry) { return entry.second.expired(); });
        compactAt_ = std::max<std::size_t>(16, 2 * byHash_.size());
    }

    // Entries, those of what nothing holds any more included.
    std::size_t size() const { return byHash_.size(); }

    std::size_t liveCount() const
    {
        return static_cast<std::size_t>(
            std::count_if(byHash_.begin(), byHash_.end(), [](const auto& entry) { return !entry.second.expired(); }));
    }

private:
    std::unordered_multimap<std::size_t, std::weak_ptr<const T>> byHash_;
    std::size_t compactAt_ = 16;
};

}  // namespace Mero
