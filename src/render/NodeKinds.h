// The kinds of element, once: each type code with its name, the node class
// that builds it, how its content is measured, and its own properties in
// the order they are bound (after those every node has). The node factory,
// the slots of a host view, the host's Java constants and the template
// checker all read them here.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "render/PropertyTable.h"
#include "value/Value.h"

namespace Mero {

enum class NodeClass : uint8_t {
    View,    // a plain view; it builds no children
    Flex,    // a flexbox container
    For,     // a repeated list
    Swiper,  // a carousel of pages
    Leaf,    // a view with content of its own
};

// What measures a node's content for Yoga.
enum class Measure : uint8_t {
    None,
    Text,    // the host measures the text
    Image,   // the host's content size, keeping its aspect ratio
    Custom,  // only a fixed width and height
};

struct NodeKind {
    uint32_t code;
    std::string_view name;
    NodeClass nodeClass;
    Measure measure;
    std::span<const Property> properties;  // the kind's own, in binding order
};

// The properties every node has, in the order they are read and bound.
std::span<const Property> commonProperties();

// An element as its node is built from it: its type code and kind, and the
// properties it names, found in one pass over its members. An element names
// a handful of the forty-odd common properties and of its kind's, and the
// others need no lookup each. Bit i of `common` stands for the i-th common
// property (commonBit gives a property's bit, 0 for one that is not common);
// bit i of `own` for the kind's i-th own property, when it is a host value
// (isHostValue) and not null.
struct NamedProperties {
    uint32_t type = 0;
    // Null for a code without a kind (1, 12 and above): a plain view's.
    const NodeKind* kind = nullptr;
    uint64_t common = 0;
    uint32_t own = 0;
    // Bit i: the element names the kind's i-th own property (null or not).
    uint32_t ownNamed = 0;
    // The member of each common property named, by its bit's number, and of
    // each of the kind's own properties named, by its slot (null or not):
    // what building the node reads, without looking the key up again. Only
    // the entries whose bit is set in `common` or `ownNamed` are written (the
    // others are left as they are: zeroing them all took longer than finding
    // the members).
    std::array<const Value*, 64> commonMembers;
    std::array<const Value*, 32> ownMembers;

    // The member of a common property; a null Value when the element has none.
    const Value& commonMember(Property property) const;
    // The member of one of the kind's own properties; null when the element
    // has none or it is null.
    const Value* ownMember(Property property) const;
};
NamedProperties namedProperties(const Value& element);
uint64_t commonBit(Property property);

// The kinds, by type code; codes without a kind (1, 12 and above) build a
// plain view after "render node type error".
std::span<const NodeKind> nodeKinds();

// The kind of a type code, or null.
const NodeKind* kindOfCode(uint32_t code);

// What a host property (a kind's own, or a common colour) reads as when the
// element does not name it: the fallback its binder is handed, and so the
// value it would have stored.
const Value& defaultKindValue(Property property);

// Where `property` stands in `kind`'s own list (`kind` one of nodeKinds()),
// or -1.
int kindSlotOf(const NodeKind& kind, Property property);

}  // namespace Mero
