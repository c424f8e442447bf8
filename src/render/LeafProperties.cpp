// Binding a node kind's own property table: constants are stored once (the
// host view is created from them); a dynamic value stores each change and
// queues it under the row's id, animated where the row allows it and the
// element's "transition" names it.
#include <optional>

#include "render/LeafProperty.h"
#include "render/NodeBinding.h"
#include "render/ViewRenderNode.h"

namespace Mero {

void ViewRenderNode::bindLeafProperties(const Value& element, std::span<const LeafProperty> table,
                                        std::span<Value> values)
{
    for (std::size_t i = 0; i < table.size(); ++i) {
        const LeafProperty& row = table[i];
        Value& slot = values[i];
        std::optional<Transition> transition;
        if ((row.flags & Animatable) != 0) {
            if (const Transition* found = transitionFor(row.key)) {
                transition = *found;
            }
        }
        auto store = [this, &row, &slot, transition](Value value, bool initial) {
            slot = value;
            if (initial) {
                return;
            }
            if ((row.flags & Remeasure) != 0 && YGNodeHasMeasureFunc(yogaNode)) {
                YGNodeMarkDirty(yogaNode);
                requestLayout();
            }
            if (transition) {
                queueAnimatedUpdate(row.propertyId, std::move(value), *transition);
            } else {
                queuePropertyUpdate(row.propertyId, std::move(value));
            }
        };
        switch (row.kind) {
        case LeafKind::String: bindValue(element, row.key, Value(row.textDefault), store); break;
        case LeafKind::Number:
            bindNumber(element, row.key, row.numberDefault,
                       [store](double number, bool initial) mutable { store(number, initial); });
            break;
        case LeafKind::Bool:
            bindBool(element, row.key, false, [store](bool flag, bool initial) mutable { store(flag, initial); });
            break;
        case LeafKind::Size:
            bindSize(element, row.key, [store](double number, bool initial) mutable { store(number, initial); });
            break;
        }
    }
}

}  // namespace Mero
