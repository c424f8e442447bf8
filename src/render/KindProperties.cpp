// Binding a node kind's own host properties (a leaf's, a swiper's): each is
// kept in the node's kindValues_, in the order of the kind's list.
#include <optional>

#include "render/NodeBinding.h"
#include "render/ViewRenderNode.h"

namespace Mero {

namespace {

bool isPoints(YGValue size)
{
    return size.unit == YGUnitPoint;
}

bool isHostValue(PropertyInput input)
{
    return input == PropertyInput::Text || input == PropertyInput::Number || input == PropertyInput::Bool ||
           input == PropertyInput::Size || input == PropertyInput::Literal;
}

}  // namespace

bool ViewRenderNode::contentSizesNode() const
{
    // A node given its width and height in points is never measured: Yoga
    // takes those sizes as they are, so its content cannot move anything.
    return YGNodeHasMeasureFunc(yogaNode) &&
           !(isPoints(YGNodeStyleGetWidth(yogaNode)) && isPoints(YGNodeStyleGetHeight(yogaNode)));
}

void ViewRenderNode::bindKindProperties(const Value& element)
{
    const std::span<const Property> properties = kind().properties;
    kindValues_.resize(properties.size());
    for (std::size_t i = 0; i < properties.size(); ++i) {
        const PropertyInfo& row = info(properties[i]);
        if (!isHostValue(row.input)) {
            continue;  // read by the node's class (lists, children, flex values)
        }
        Value& slot = kindValues_[i];
        if (row.input == PropertyInput::Literal) {
            // Kept as the template gives it (the download button's business data).
            if (const Value* literal = NodeBinding::propertyOf(element, row.key)) {
                slot = *literal;
            }
            continue;
        }
        std::optional<Transition> transition;
        if (row.has(Animatable)) {
            if (const Transition* found = transitionFor(row.transitionKey)) {
                transition = *found;
            }
        }
        auto store = [this, &row, &slot, transition](Value value, bool initial) {
            slot = value;
            if (initial) {
                return;
            }
            if (row.has(Remeasure) && contentSizesNode()) {
                YGNodeMarkDirty(yogaNode);
                requestLayout();
            }
            if (transition) {
                queueAnimatedUpdate(hostIdOf(row.property), std::move(value), *transition);
            } else {
                queuePropertyUpdate(hostIdOf(row.property), std::move(value));
            }
        };
        switch (row.input) {
        case PropertyInput::Text: bindValue(element, row.key, Value(row.textDefault), store); break;
        case PropertyInput::Number:
            bindNumber(element, row.key, row.numberDefault,
                       [store](double number, bool initial) mutable { store(number, initial); });
            break;
        case PropertyInput::Bool:
            bindBool(element, row.key, false, [store](bool flag, bool initial) mutable { store(flag, initial); });
            break;
        default:
            bindSize(element, row.key, [store](double number, bool initial) mutable { store(number, initial); });
            break;
        }
    }
}

}  // namespace Mero
