#include "value/ValueObject.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <memory>
#include <stdexcept>

#include "value/RecyclingAllocator.h"

namespace Mero {

namespace {

size_t hashOf(std::string_view key)
{
    return std::hash<std::string_view>{}(key);
}

}  // namespace

ValueObject::ValueObject(std::initializer_list<value_type> members) : ValueObject()
{
    reserve(members.size());
    for (const value_type& member : members) {
        insert(member);
    }
}

ValueObject::ValueObject(const ValueObject& other) : ValueObject()
{
    reserve(other.size_);
    for (const value_type& member : other) {
        new (members_ + size_) value_type(member);
        ++size_;
    }
    index_ = other.index_;
}

ValueObject::ValueObject(ValueObject&& other) noexcept : ValueObject()
{
    takeMembersOf(other);
}

ValueObject& ValueObject::operator=(const ValueObject& other)
{
    if (this != &other) {
        ValueObject copy(other);
        *this = std::move(copy);
    }
    return *this;
}

ValueObject& ValueObject::operator=(ValueObject&& other) noexcept
{
    if (this != &other) {
        release();
        takeMembersOf(other);
    }
    return *this;
}

ValueObject::~ValueObject()
{
    release();
}

// Leaves this object empty and inline, its heap members freed.
void ValueObject::release() noexcept
{
    std::destroy_n(members_, size_);
    if (!isInline()) {
        SizedBlocks::deallocate(members_, capacity_ * sizeof(value_type));
    }
    members_ = inlineMembers();
    size_ = 0;
    capacity_ = kInlineSize;
    index_.clear();
}

// This object must be empty and inline; `other` is left so.
void ValueObject::takeMembersOf(ValueObject& other) noexcept
{
    if (other.isInline()) {
        std::uninitialized_move_n(other.members_, other.size_, members_);
        size_ = other.size_;
        index_ = std::move(other.index_);
        other.release();
        return;
    }
    members_ = other.members_;
    size_ = other.size_;
    capacity_ = other.capacity_;
    index_ = std::move(other.index_);
    other.members_ = other.inlineMembers();
    other.size_ = 0;
    other.capacity_ = kInlineSize;
    other.index_.clear();
}

void ValueObject::reserve(size_type count)
{
    if (count > capacity_) {
        grow(count);
    }
}

// Moves the members to the heap, with room for `capacity` of them.
void ValueObject::grow(size_type capacity)
{
    auto* moved = static_cast<value_type*>(SizedBlocks::allocate(capacity * sizeof(value_type)));
    std::uninitialized_move_n(members_, size_, moved);
    std::destroy_n(members_, size_);
    if (!isInline()) {
        SizedBlocks::deallocate(members_, capacity_ * sizeof(value_type));
    }
    members_ = moved;
    capacity_ = static_cast<uint32_t>(capacity);
}

void ValueObject::clear() noexcept
{
    std::destroy_n(members_, size_);
    size_ = 0;
    index_.clear();
}

Value& ValueObject::at(std::string_view key)
{
    const size_type found = position(key);
    if (found == size_) {
        throw std::out_of_range("ValueObject::at: no member " + std::string(key));
    }
    return members_[found].second;
}

const Value& ValueObject::at(std::string_view key) const
{
    return const_cast<ValueObject*>(this)->at(key);
}

ValueObject::size_type ValueObject::erase(std::string_view key)
{
    const size_type found = position(key);
    if (found == size()) {
        return 0;
    }
    erase(members_ + found);
    return 1;
}

ValueObject::iterator ValueObject::erase(const_iterator member)
{
    iterator erased = members_ + (member - members_);
    std::move(erased + 1, end(), erased);
    std::destroy_at(end() - 1);
    --size_;
    // Every later member moved down one place: the index is rebuilt (erasing
    // is rare; small objects have no index at all).
    rebuildIndex();
    return erased;
}

ValueObject::size_type ValueObject::lookUp(std::string_view key) const
{
    const size_t mask = index_.size() - 1;
    for (size_t slot = hashOf(key) & mask;; slot = (slot + 1) & mask) {
        const uint32_t entry = index_[slot];
        if (entry == 0) {
            return size();
        }
        if (sameKey(members_[entry - 1].first, key)) {
            return entry - 1;
        }
    }
}

ValueObject::size_type ValueObject::scan(std::string_view key) const
{
    const size_type count = size_;
    for (size_type i = 0; i < count; ++i) {
        // Keys of one object rarely share a length and a first byte.
        if (sameKey(members_[i].first, key)) {
            return i;
        }
    }
    return count;
}

void ValueObject::indexLast()
{
    const size_type count = size_;
    if (index_.size() < 2 * count) {
        rebuildIndex();
    } else {
        placeInIndex(count - 1);
    }
}

void ValueObject::rebuildIndex()
{
    const size_type count = size_;
    index_.clear();
    if (count <= kIndexedSize) {
        return;
    }
    // At most half full after this member and as many again.
    index_.assign(std::bit_ceil(4 * count), 0);
    for (size_type i = 0; i < count; ++i) {
        placeInIndex(i);
    }
}

void ValueObject::placeInIndex(size_type member)
{
    const size_t mask = index_.size() - 1;
    size_t slot = hashOf(members_[member].first) & mask;
    while (index_[slot] != 0) {
        slot = (slot + 1) & mask;
    }
    index_[slot] = static_cast<uint32_t>(member + 1);
}

}  // namespace Mero
