#include "value/RepeatedObjects.h"

#include <algorithm>
#include <cstring>

#include "value/TextHash.h"

namespace Mero {

namespace {

// At most this many long objects share their first bytes: every lookup of
// such a start compares them all, and rows that differ only further on (in
// a title, say) would make that a long list.
constexpr std::size_t kMaxSamePrefix = 4;

std::size_t hashOf(std::string_view bytes)
{
    return static_cast<std::size_t>(hashWords(bytes, 0) >> 40);
}

// The text from the '{' at `open` to the first '}' after it, if that is
// close enough; else empty.
std::string_view textToFirstClose(const char* open, const char* end, std::size_t most)
{
    const auto* close = static_cast<const char*>(std::memchr(open, '}', std::min(most, static_cast<std::size_t>(end - open))));
    return close != nullptr ? std::string_view(open, static_cast<std::size_t>(close - open + 1)) : std::string_view();
}

}  // namespace

// The entry of `table` that `text` starts with, probing from `slot`.
const RepeatedObjects::Entry* RepeatedObjects::findIn(const Table& table, std::size_t slot, std::string_view text) const
{
    for (slot &= kSlots - 1; table.slots[slot] != 0; slot = (slot + 1) & (kSlots - 1)) {
        const Entry& entry = entries_[table.slots[slot] - 1U];
        if (entry.text.size() <= text.size() && std::memcmp(entry.text.data(), text.data(), entry.text.size()) == 0) {
            return &entry;
        }
    }
    return nullptr;
}

RepeatedObjects::Found RepeatedObjects::find(const char* open, const char* end) const
{
    if (short_.count != 0) {
        const std::string_view text = textToFirstClose(open, end, kMaxShortText);
        // Equal, not only a start: a short object closes at its first '}'.
        if (const Entry* entry = text.empty() ? nullptr : findIn(short_, hashOf(text), text);
            entry != nullptr && entry->text.size() == text.size()) {
            return {&entry->object, text.size()};
        }
    }
    const auto available = static_cast<std::size_t>(end - open);
    if (long_.count != 0 && available >= kPrefix) {
        if (const Entry* entry = findIn(long_, hashOf({open, kPrefix}), {open, available})) {
            return {&entry->object, entry->text.size()};
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
    std::size_t samePrefix = 0;
    std::size_t slot = hashOf(closesFirst ? text : text.substr(0, kPrefix)) & (kSlots - 1);
    for (; table.slots[slot] != 0; slot = (slot + 1) & (kSlots - 1)) {
        const std::string_view held = entries_[table.slots[slot] - 1U].text;
        if (held == text) {
            return;
        }
        if (!closesFirst && held.substr(0, kPrefix) == text.substr(0, kPrefix) && ++samePrefix == kMaxSamePrefix) {
            return;
        }
    }
    if (entries_.empty()) {
        entries_.reserve(16);
    }
    entries_.push_back({text, object});
    table.slots[slot] = static_cast<uint8_t>(entries_.size());
    ++table.count;
}

void RepeatedObjects::clear()
{
    if (entries_.empty()) {
        return;
    }
    entries_.clear();
    short_ = {};
    long_ = {};
}

}  // namespace Mero
