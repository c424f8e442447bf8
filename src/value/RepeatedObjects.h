// RepeatedObjects: the objects a reader has read, by their text, so that an
// object written again byte for byte is shared instead of read again.
//
// A template repeats itself: every size is an object such as
// {"sizeType": 4, "value": 24}, a few of them hundreds of times, and a feed
// card repeats whole elements (an icon, a subtitle) in every row. Reading an
// object is a function of its bytes alone, read from the left to its closing
// '}': the same bytes read to the same object, ending at the same place,
// whatever comes before or after them. Only a reader whose Values nothing
// changes in place may share them (a template's, which every card of it
// shares already).
//
// Objects are found two ways:
// - short ones by their whole text, up to the first '}' after the '{' (an
//   object remembered this way closed at its first '}');
// - long ones by their first kPrefix bytes, then compared whole.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "value/Value.h"

namespace Mero {

class RepeatedObjects {
public:
    // What a lookup found out about the text at a '{': kept by the reader
    // while it reads that object, so that remembering it does not hash its
    // text again.
    struct Probe {
        uint32_t shortLength = 0;  // to the first '}', inclusive; 0: too far
        uint32_t shortHash = 0;
        uint32_t prefixHash = 0;  // of the first kPrefix bytes, when there are that many
    };
    struct Found {
        const ObjectPtr* object = nullptr;  // null when none was read before
        std::size_t length = 0;  // of its text, '{' to '}'
        Probe probe;
    };

    // The object read before whose text starts at `open` (a '{'), if any.
    Found find(const char* open, const char* end) const;
    // Remembers `object`, read from `text` (its '{' to its closing '}'),
    // where find answered `probe`.
    void remember(std::string_view text, const Probe& probe, const ObjectPtr& object);
    void clear();

private:
    struct Entry {
        std::string_view text;
        ObjectPtr object;
    };
    // Each table keeps at most kMaxEntries objects, in twice as many slots
    // (open addressing) that hold an entry's place plus one (0: free). The
    // slots sit in the reader itself: a small template must not pay for a
    // table on the heap.
    static constexpr std::size_t kMaxEntries = 64;
    static constexpr std::size_t kSlots = 2 * kMaxEntries;
    using Slots = std::array<uint8_t, kSlots>;
    struct Table {
        Slots slots{};
        std::size_t count = 0;
    };

    static constexpr std::size_t kMaxShortText = 96;
    static constexpr std::size_t kPrefix = 48;

    const Entry* findIn(const Table& table, std::size_t slot, std::string_view text) const;

    std::vector<Entry> entries_;
    Table short_;
    Table long_;
};

}  // namespace Mero
