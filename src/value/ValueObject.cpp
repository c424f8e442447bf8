#include "value/ValueObject.h"

#include <bit>
#include <functional>
#include <stdexcept>

namespace Mero {

namespace {

size_t hashOf(std::string_view key)
{
    return std::hash<std::string_view>{}(key);
}

}  // namespace

ValueObject::ValueObject(std::initializer_list<value_type> members)
{
    members_.reserve(members.size());
    for (const value_type& member : members) {
        insert(member);
    }
}

void ValueObject::clear() noexcept
{
    members_.clear();
    index_.clear();
}

Value& ValueObject::at(std::string_view key)
{
    const size_type found = position(key);
    if (found == size()) {
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
    erase(begin() + static_cast<std::ptrdiff_t>(found));
    return 1;
}

ValueObject::iterator ValueObject::erase(const_iterator member)
{
    const auto offset = member - cbegin();
    members_.erase(member);
    // Every later member moved down one place: the index is rebuilt (erasing
    // is rare; small objects have no index at all).
    rebuildIndex();
    return begin() + offset;
}

ValueObject::size_type ValueObject::position(std::string_view key) const
{
    if (index_.empty()) {
        return scan(key);
    }
    const size_t mask = index_.size() - 1;
    for (size_t slot = hashOf(key) & mask;; slot = (slot + 1) & mask) {
        const uint32_t entry = index_[slot];
        if (entry == 0) {
            return size();
        }
        if (members_[entry - 1].first == key) {
            return entry - 1;
        }
    }
}

ValueObject::size_type ValueObject::scan(std::string_view key) const
{
    const size_type count = members_.size();
    for (size_type i = 0; i < count; ++i) {
        // Keys of one object rarely share a length and a first byte.
        const std::string& candidate = members_[i].first;
        if (candidate.size() == key.size() && (key.empty() || candidate[0] == key[0]) && candidate == key) {
            return i;
        }
    }
    return count;
}

void ValueObject::indexLast()
{
    const size_type count = members_.size();
    if (count <= kIndexedSize) {
        return;
    }
    if (index_.size() < 2 * count) {
        rebuildIndex();
    } else {
        placeInIndex(count - 1);
    }
}

void ValueObject::rebuildIndex()
{
    const size_type count = members_.size();
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
