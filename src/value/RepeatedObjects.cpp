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

// A hash of three of the text's words (its first, its middle and its last
// eight bytes) and of its length: what tells apart the objects a template
// repeats (sizes differ in their middle and last bytes; elements in their
// node id, near the start). A lookup is for every object read, and a slot
// found is compared whole anyway. Texts shorter than a word are hashed whole.
uint32_t hashOf(std::string_view bytes)
{
    const std::size_t size = bytes.size();
    if (size < 8) {
        return static_cast<uint32_t>(hashWords(bytes, 0) >> 40);
    }
    auto word = [&bytes](std::size_t at) {
        uint64_t w = 0;
        std::memcpy(&w, bytes.data() + at, sizeof w);
        return w;
    };
    uint64_t hash = (word(0) ^ size) * 0x9E3779B97F4A7C15ULL;
    hash = (hash ^ (hash >> 29) ^ word(size / 2 - 4)) * 0xBF58476D1CE4E5B9ULL;
    hash = (hash ^ (hash >> 32) ^ word(size - 8)) * 0x94D049BB133111EBULL;
    return static_cast<uint32_t>(hash >> 40);
}

// The length of the text from the '{' at `open` to the first '}' after it,
// if that is close enough; else 0.
std::size_t lengthToFirstClose(const char* open, const char* end, std::size_t most)
{
    const auto* close = static_cast<const char*>(std::memchr(open, '}', std::min(most, static_cast<std::size_t>(end - open))));
    return close != nullptr ? static_cast<std::size_t>(close - open + 1) : 0;
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
    Found found;
    Probe& probe = found.probe;
    probe.shortLength = static_cast<uint32_t>(lengthToFirstClose(open, end, kMaxShortText));
    const std::string_view text(open, probe.shortLength);
    if (!text.empty()) {
        probe.shortHash = hashOf(text);
        // Equal, not only a start: a short object closes at its first '}'.
        if (const Entry* entry = short_.count == 0 ? nullptr : findIn(short_, probe.shortHash, text);
            entry != nullptr && entry->text.size() == text.size()) {
            found.object = &entry->object;
            found.length = text.size();
            return found;
        }
    }
    const auto available = static_cast<std::size_t>(end - open);
    if (available >= kPrefix) {
        probe.prefixHash = hashOf({open, kPrefix});
        if (const Entry* entry = long_.count == 0 ? nullptr : findIn(long_, probe.prefixHash, {open, available})) {
            found.object = &entry->object;
            found.length = entry->text.size();
        }
    }
    return found;
}

void RepeatedObjects::remember(std::string_view text, const Probe& probe, const ObjectPtr& object)
{
    const bool closesFirst = probe.shortLength == text.size();
    Table& table = closesFirst ? short_ : long_;
    if ((!closesFirst && text.size() < kPrefix) || table.count == kMaxEntries) {
        return;
    }
    std::size_t samePrefix = 0;
    std::size_t slot = (closesFirst ? probe.shortHash : probe.prefixHash) & (kSlots - 1);
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
