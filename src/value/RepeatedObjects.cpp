#include "value/RepeatedObjects.h"

#include <algorithm>
#include <cstring>

namespace Mero {

namespace {

// Each table keeps at most this many objects, in twice as many slots.
constexpr std::size_t kMaxEntries = 128;
constexpr std::size_t kSlots = 2 * kMaxEntries;
static_assert((kSlots & (kSlots - 1)) == 0);
// At most this many long objects share their first bytes: every lookup of
// such a start compares them all, and rows that differ only further on (in
// a title, say) would make that a long list.
constexpr std::size_t kMaxSamePrefix = 4;

std::size_t slotOf(std::string_view bytes)
{
    constexpr uint64_t kMultiplier = 0x9E3779B97F4A7C15ULL;
    uint64_t hash = bytes.size();
    const char* p = bytes.data();
    std::size_t left = bytes.size();
    for (; left >= 8; p += 8, left -= 8) {
        uint64_t word = 0;
        std::memcpy(&word, p, 8);
        hash = (hash ^ word) * kMultiplier;
    }
    uint64_t tail = 0;
    std::memcpy(&tail, p, left);
    hash = (hash ^ tail) * kMultiplier;
    return static_cast<std::size_t>(hash >> 48) & (kSlots - 1);
}

std::size_t next(std::size_t slot)
{
    return (slot + 1) & (kSlots - 1);
}

// The text from the '{' at `open` to the first '}' after it, if that is
// close enough; else empty.
std::string_view textToFirstClose(const char* open, const char* end, std::size_t most)
{
    const auto* close = static_cast<const char*>(std::memchr(open, '}', std::min(most, static_cast<std::size_t>(end - open))));
    return close != nullptr ? std::string_view(open, static_cast<std::size_t>(close - open + 1)) : std::string_view();
}

}  // namespace

RepeatedObjects::Found RepeatedObjects::find(const char* open, const char* end) const
{
    if (short_.count != 0) {
        const std::string_view text = textToFirstClose(open, end, kMaxShortText);
        if (!text.empty()) {
            for (std::size_t slot = slotOf(text); !short_.slots[slot].text.empty(); slot = next(slot)) {
                if (short_.slots[slot].text == text) {
                    return {&short_.slots[slot].object, text.size()};
                }
            }
        }
    }
    const auto available = static_cast<std::size_t>(end - open);
    if (long_.count != 0 && available >= kPrefix) {
        for (std::size_t slot = slotOf({open, kPrefix}); !long_.slots[slot].text.empty(); slot = next(slot)) {
            const Entry& entry = long_.slots[slot];
            if (entry.text.size() <= available && std::memcmp(entry.text.data(), open, entry.text.size()) == 0) {
                return {&entry.object, entry.text.size()};
            }
        }
    }
    return {};
}

void RepeatedObjects::remember(std::string_view text, const ObjectPtr& object)
{
    const bool closesFirst = textToFirstClose(text.data(), text.data() + text.size(), kMaxShortText).size() == text.size();
    Table& table = closesFirst ? short_ : long_;
    if ((!closesFirst && text.size() < kPrefix) || table.count == kMaxEntries) {
        return;
    }
    if (table.slots.empty()) {
        table.slots.resize(kSlots);
    }
    std::size_t samePrefix = 0;
    std::size_t slot = slotOf(closesFirst ? text : text.substr(0, kPrefix));
    for (; !table.slots[slot].text.empty(); slot = next(slot)) {
        const std::string_view held = table.slots[slot].text;
        if (held == text) {
            return;
        }
        if (!closesFirst && held.substr(0, kPrefix) == text.substr(0, kPrefix) && ++samePrefix == kMaxSamePrefix) {
            return;
        }
    }
    table.slots[slot] = {text, object};
    ++table.count;
}

void RepeatedObjects::clear()
{
    for (Table* table : {&short_, &long_}) {
        table->slots.clear();
        table->count = 0;
    }
}

}  // namespace Mero
