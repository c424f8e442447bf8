// ValueObject: the members of an object Value, and the map behind every
// local scope.
//
// Members keep the order in which they were first inserted, on every platform
// and standard library, so what is written out and what a loop over the
// members sees never depends on a hash function. Small objects dominate (most
// have two to five members), so members sit in one flat array, and a lookup
// compares keys in turn; an index of hashed positions is built only once an
// object grows past kIndexedSize. Up to kInlineSize members sit inside the
// object itself (object and members are then one allocation): two, the size
// of the commonest object in templates, {"sizeType": 4, "value": 24}. Room
// for more would be carried, unused, by every size and by every larger
// object too, whose members go to the heap anyway.
//
// The interface is the part of std::unordered_map that the engine uses, with
// one difference callers must know: like a vector, inserting may move the
// members, so a reference into an object must not be kept across an
// insertion into that same object. Erasing keeps the order of the others.
#pragma once

#include <concepts>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <new>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "value/Value.h"

namespace Mero {

// Whether two keys are equal. Keys are short: from four to sixteen bytes they
// are compared as two overlapping words, without a call to memcmp.
inline bool sameKey(std::string_view a, std::string_view b) noexcept
{
    const std::size_t size = a.size();
    if (size != b.size()) {
        return false;
    }
    auto word = [](const char* p, auto zero) {
        decltype(zero) w;
        std::memcpy(&w, p, sizeof w);
        return w;
    };
    if (size >= 8 && size <= 16) {
        return word(a.data(), uint64_t{}) == word(b.data(), uint64_t{}) &&
               word(a.data() + size - 8, uint64_t{}) == word(b.data() + size - 8, uint64_t{});
    }
    if (size >= 4 && size < 8) {
        return word(a.data(), uint32_t{}) == word(b.data(), uint32_t{}) &&
               word(a.data() + size - 4, uint32_t{}) == word(b.data() + size - 4, uint32_t{});
    }
    return a == b;
}

// Anything a key can be looked up by: std::string, std::string_view, a C string.
template <typename Key>
concept ObjectKey = std::convertible_to<const Key&, std::string_view>;

class ValueObject {
public:
    using key_type = std::string;
    using mapped_type = Value;
    // The key is not const, so that members can move; never change it in place.
    using value_type = std::pair<std::string, Value>;
    using size_type = std::size_t;
    using iterator = value_type*;
    using const_iterator = const value_type*;

    // Members held inside the object itself.
    static constexpr size_type kInlineSize = 2;
    // Past this many members, lookups go through a hash index.
    static constexpr size_type kIndexedSize = 16;

    ValueObject() noexcept : members_(inlineMembers()) {}
    // A duplicate key in the list keeps its first value.
    ValueObject(std::initializer_list<value_type> members);
    ValueObject(const ValueObject& other);
    ValueObject(ValueObject&& other) noexcept;
    ValueObject& operator=(const ValueObject& other);
    ValueObject& operator=(ValueObject&& other) noexcept;
    ~ValueObject();

    iterator begin() noexcept { return members_; }
    iterator end() noexcept { return members_ + size_; }
    const_iterator begin() const noexcept { return members_; }
    const_iterator end() const noexcept { return members_ + size_; }
    const_iterator cbegin() const noexcept { return members_; }
    const_iterator cend() const noexcept { return members_ + size_; }

    size_type size() const noexcept { return size_; }
    bool empty() const noexcept { return size_ == 0; }
    void reserve(size_type count);
    void clear() noexcept;

    iterator find(std::string_view key) { return members_ + position(key); }
    const_iterator find(std::string_view key) const { return members_ + position(key); }
    bool contains(std::string_view key) const { return position(key) != size_; }
    size_type count(std::string_view key) const { return contains(key) ? 1 : 0; }
    // Throws std::out_of_range when the key is absent.
    Value& at(std::string_view key);
    const Value& at(std::string_view key) const;

    // Inserts a member made from `args` unless the key is there already; the
    // existing member is then left alone. Answers where the member is and
    // whether it was inserted.
    template <ObjectKey Key, typename... Args>
    std::pair<iterator, bool> try_emplace(Key&& key, Args&&... args)
    {
        const size_type found = position(std::string_view(key));
        if (found != size_) {
            return {members_ + found, false};
        }
        return {emplaceAbsent(std::forward<Key>(key), std::forward<Args>(args)...), true};
    }
    // Appends a member under a key the caller knows is not there: a reader
    // that has seen every key of the object can spare the search.
    template <ObjectKey Key, typename... Args>
    iterator emplaceAbsent(Key&& key, Args&&... args)
    {
        if (size_ == capacity_) {
            grow(2 * size_t{capacity_});
        }
        new (members_ + size_) value_type(std::piecewise_construct, std::forward_as_tuple(std::forward<Key>(key)),
                                          std::forward_as_tuple(std::forward<Args>(args)...));
        ++size_;
        if (size_ > kIndexedSize) {
            indexLast();
        }
        return end() - 1;
    }
    template <ObjectKey Key, typename... Args>
    std::pair<iterator, bool> emplace(Key&& key, Args&&... args)
    {
        return try_emplace(std::forward<Key>(key), std::forward<Args>(args)...);
    }
    std::pair<iterator, bool> insert(const value_type& member) { return try_emplace(member.first, member.second); }
    std::pair<iterator, bool> insert(value_type&& member)
    {
        return try_emplace(std::move(member.first), std::move(member.second));
    }

    // The member under `key`, inserted as null when absent.
    template <ObjectKey Key>
    Value& operator[](Key&& key)
    {
        return try_emplace(std::forward<Key>(key)).first->second;
    }

    // Erasing keeps the order of the remaining members.
    size_type erase(std::string_view key);
    iterator erase(const_iterator member);

private:
    value_type* inlineMembers() noexcept { return reinterpret_cast<value_type*>(inline_); }
    bool isInline() const noexcept { return capacity_ == kInlineSize; }
    void grow(size_type capacity);
    void release() noexcept;
    void takeMembersOf(ValueObject& other) noexcept;
    // Where the member `key` is, or size() when there is none.
    size_type position(std::string_view key) const { return index_.empty() ? scan(key) : lookUp(key); }
    size_type scan(std::string_view key) const;
    size_type lookUp(std::string_view key) const;
    void indexLast();
    void rebuildIndex();
    void placeInIndex(size_type member);

    value_type* members_;
    uint32_t size_ = 0;
    uint32_t capacity_ = kInlineSize;
    // Open addressing over member positions plus one (0 marks a free slot);
    // empty until the object grows past kIndexedSize, then kept at most half full.
    std::vector<uint32_t> index_;
    alignas(value_type) unsigned char inline_[kInlineSize * sizeof(value_type)];
};

}  // namespace Mero
