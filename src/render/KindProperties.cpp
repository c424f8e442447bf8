// Binding a node kind's own host properties (a leaf's, a swiper's): those
// the element names are kept in the node's kindValues_, in the order of the
// kind's list; the others read as their defaults.
#include <array>
#include <memory>
#include <optional>

#include "render/NodeBinding.h"
#include "render/ViewRenderNode.h"
#include "value/BitCount.h"

namespace Mero {

namespace {

bool isPoints(YGValue size)
{
    return size.unit == YGUnitPoint;
}

}  // namespace

const Value& defaultKindValue(Property property)
{
    static const std::array<Value, kProperties.size()> defaults = [] {
        std::array<Value, kProperties.size()> values;
        for (const PropertyInfo& row : kProperties) {
            Value& value = values[static_cast<std::size_t>(row.property)];
            switch (row.input) {
            case PropertyInput::Text: value = Value(row.textDefault); break;
            case PropertyInput::Number: value = row.numberDefault; break;
            case PropertyInput::Size: value = 0.0; break;
            case PropertyInput::Bool: value = false; break;
            default: break;  // a literal, or read by the node's class: null
            }
        }
        return values;
    }();
    return defaults[static_cast<std::size_t>(property)];
}

// Made and freed with their node: recycled as its block is.
void KindValues::make(std::size_t count)
{
    values_ = static_cast<Value*>(SizedBlocks::allocate(count * sizeof(Value)));
    std::uninitialized_value_construct_n(values_, count);
}

void KindValues::release(std::size_t count) noexcept
{
    if (values_ != nullptr) {
        std::destroy_n(values_, count);
        SizedBlocks::deallocate(values_, count * sizeof(Value));
        values_ = nullptr;
    }
}

const Value& ViewRenderNode::kindValue(Property property) const
{
    static const Value none;
    const int slot = kindSlotOf(kind(), property);
    return slot >= 0 ? kindValueAt(static_cast<std::size_t>(slot)) : none;
}

bool ViewRenderNode::contentSizesNode() const
{
    // A node given its width and height in points is never measured: Yoga
    // takes those sizes as they are, so its content cannot move anything.
    return YGNodeHasMeasureFunc(yogaNode) &&
           !(isPoints(YGNodeStyleGetWidth(yogaNode)) && isPoints(YGNodeStyleGetHeight(yogaNode)));
}

void ViewRenderNode::bindKindProperties(const NamedProperties& element)
{
    const std::span<const Property> properties = kind().properties;
    // kindNamed_ and the members were found in the one pass over the
    // element's members. The values are made first: the bindings keep
    // references into kindValues_, which must not move once they are made.
    if (kindNamed_ != 0) {
        kindValues_.make(countBits(kindNamed_));
    }
    std::size_t stored = 0;
    for (std::size_t i = 0; i < properties.size(); ++i) {
        if ((kindNamed_ & (uint32_t{1} << i)) == 0) {
            continue;
        }
        const PropertyInfo& row = info(properties[i]);
        Value& slot = kindValues_[stored++];
        const Value* member = element.ownMembers[i];
        if (row.input == PropertyInput::Literal) {
            slot = *member;  // kept as the template gives it
            continue;
        }
        auto store = [this, &row, &slot](Value value, bool initial) {
            if (initial) {
                slot = std::move(value);
                return;
            }
            slot = value;
            if (row.has(Remeasure) && contentSizesNode()) {
                YGNodeMarkDirty(yogaNode);
                requestLayout();
            }
            queueBoundUpdate(row, std::move(value));
        };
        switch (row.input) {
        case PropertyInput::Text: bindValue(member, defaultKindValue(row.property), store); break;
        case PropertyInput::Number:
            bindNumber(member, row.numberDefault,
                       [store](double number, bool initial) mutable { store(number, initial); });
            break;
        case PropertyInput::Bool:
            bindBool(member, false, [store](bool flag, bool initial) mutable { store(flag, initial); });
            break;
        default:
            bindSize(member, [store](double number, bool initial) mutable { store(number, initial); });
            break;
        }
    }
}

}  // namespace Mero
