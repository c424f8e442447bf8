// How a render node binds one template property (the binder templates of
// ViewRenderNode). Only render sources include this.
//
// Dynamic expressions go through the engine's binding helpers, which keep
// them and re-run evaluate-convert-set on every change. Constants, by far
// the common case, are evaluated in place: the conversions below are the
// helpers' own, and nothing is allocated for a property that never changes.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "render/ViewRenderNode.h"
#include "runtime/NumberConversion.h"
#include "runtime/RuntimeEngine.h"
#include "runtime/ScriptFactory.h"

namespace Mero {

namespace NodeBinding {

// The element's member `key`, or null when it is absent or null.
inline const Value* propertyOf(const Value& element, std::string_view key)
{
    if (!element.is(Kind::Object)) {
        return nullptr;
    }
    const ValueObject& members = element.object();
    auto found = members.find(key);
    if (found == members.end() || found->second.isNull()) {
        return nullptr;
    }
    return &found->second;
}

// The member itself, or null when there is none or it is null.
inline const Value* present(const Value* member)
{
    return member != nullptr && !member->isNull() ? member : nullptr;
}

// Numbers, strings and booleans are constant expressions of themselves.
inline bool isScalar(const Value& node)
{
    return !node.is(Kind::Object) && !node.is(Kind::Array);
}

// Calls onConstant(value) for a constant expression, else hands the
// expression to onDynamic.
template <typename OnConstant, typename OnDynamic>
void evaluateOrBind(const Value& node, const LocalScope& scope, const EngineRef& engine, OnConstant onConstant,
                    OnDynamic onDynamic)
{
    if (isScalar(node)) {
        onConstant(node);
        return;
    }
    RuntimeObjectPtr expression = createRuntimeObject(node);
    if (!expression->isDynamic()) {
        onConstant(expression->value(scope, engine));
        return;
    }
    onDynamic(std::move(expression));
}

// A size property whose value is a plain constant (the usual
// {"sizeType": 4, "value": 24}): its size type and number.
struct ConstantSize {
    int32_t sizeType = 0;
    double number = 0.0;
};

inline std::optional<ConstantSize> constantSize(const Value& property)
{
    if (!property.is(Kind::Object)) {
        return ConstantSize{};  // no size type: the fallback
    }
    // One pass for both members (keys are unique).
    const Value* type = nullptr;
    const Value* value = nullptr;
    for (const auto& [key, member] : property.object()) {
        const std::string_view name = key;
        if (name == "sizeType") {
            type = &member;
        } else if (name == "value") {
            value = &member;
        }
    }
    const int32_t sizeType = type == nullptr ? 0 : truncateToInt32(type->number());
    if (sizeType == -1) {
        return std::nullopt;  // the whole object is one expression
    }
    if (value == nullptr) {
        return ConstantSize{sizeType, 0.0};
    }
    if (!isScalar(*value)) {
        return std::nullopt;
    }
    return ConstantSize{sizeType, value->number()};
}

}  // namespace NodeBinding

template <typename Arg, typename Apply>
std::shared_ptr<std::function<void(Arg)>> ViewRenderNode::firstTimeSetter(Apply apply)
{
    return std::make_shared<std::function<void(Arg)>>(
        [apply = std::move(apply), initial = true](Arg value) mutable {
            const bool first = std::exchange(initial, false);
            apply(std::move(value), first);
        });
}

inline void ViewRenderNode::keepBinding(ObserverPtr observer)
{
    if (observer) {
        mutableAdditions().bindings.push_back(std::move(observer));
    }
}

template <typename Apply>
void ViewRenderNode::bindBool(const Value* member, bool fallback, Apply apply)
{
    const Value* property = NodeBinding::present(member);
    if (property == nullptr || engine().expired()) {
        apply(fallback, true);
        return;
    }
    NodeBinding::evaluateOrBind(
        *property, scope(), engine(),
        [&](const Value& value) { apply(value.is(Kind::Boolean) ? value.boolean() : fallback, true); },
        [&](RuntimeObjectPtr expression) {
            keepBinding(RuntimeEngine::getTypeData(scope(), std::move(expression), engine(), firstTimeSetter<bool>(std::move(apply)),
                                       fallback));
        });
}

template <typename Apply>
void ViewRenderNode::bindNumber(const Value* member, double fallback, Apply apply)
{
    const Value* property = NodeBinding::present(member);
    if (property == nullptr || engine().expired()) {
        apply(fallback, true);
        return;
    }
    NodeBinding::evaluateOrBind(
        *property, scope(), engine(),
        [&](const Value& value) { apply(value.is(Kind::Number) ? value.number() : fallback, true); },
        [&](RuntimeObjectPtr expression) {
            keepBinding(RuntimeEngine::getTypeData(scope(), std::move(expression), engine(), firstTimeSetter<double>(std::move(apply)),
                                       fallback));
        });
}

template <typename Apply>
void ViewRenderNode::bindValue(const Value* member, const Value& fallback, Apply apply)
{
    const Value* property = NodeBinding::present(member);
    if (property == nullptr || engine().expired()) {
        apply(fallback, true);
        return;
    }
    NodeBinding::evaluateOrBind(
        *property, scope(), engine(),
        [&](const Value& value) { apply(value.kind() == fallback.kind() ? value : fallback, true); },
        [&](RuntimeObjectPtr expression) {
            keepBinding(RuntimeEngine::getValueData(scope(), std::move(expression), engine(), firstTimeSetter<Value>(std::move(apply)),
                                        fallback));
        });
}

template <typename Apply>
void ViewRenderNode::bindSize(const Value* member, Apply apply)
{
    constexpr double base = 0.0;
    constexpr double fallback = 0.0;
    const Value* property = NodeBinding::present(member);
    if (property == nullptr) {
        apply(fallback, true);
        return;
    }
    // Taken only for a named property: most are not.
    const EngineInUse runtime = engineInUse();
    if (!runtime) {
        apply(fallback, true);
        return;
    }
    if (std::optional<NodeBinding::ConstantSize> size = NodeBinding::constantSize(*property)) {
        apply(runtime->convertSizeToNumber(size->sizeType, size->number, base, fallback), true);
        return;
    }
    SizeProperty size = parseSizeProperty(*property);
    if (!size.expression->isDynamic()) {
        const double number = size.expression->value(scope(), engine()).number();
        apply(runtime->convertSizeToNumber(size.sizeType, number, base, fallback), true);
        return;
    }
    keepBinding(RuntimeEngine::getSizeData(scope(), std::move(size), engine(), firstTimeSetter<double>(std::move(apply)), base, fallback));
}

template <typename Apply>
void ViewRenderNode::bindYogaSize(const Value* member, Apply apply)
{
    // Undefined calls no Yoga setter, so a missing size is simply skipped.
    constexpr YGValue fallback{YGUndefined, YGUnitUndefined};
    const Value* property = NodeBinding::present(member);
    if (property == nullptr) {
        return;
    }
    const EngineInUse runtime = engineInUse();
    if (!runtime) {
        return;
    }
    if (std::optional<NodeBinding::ConstantSize> size = NodeBinding::constantSize(*property)) {
        apply(runtime->convertSize(size->sizeType, size->number, fallback), true);
        return;
    }
    SizeProperty size = parseSizeProperty(*property);
    if (!size.expression->isDynamic()) {
        const double number = size.expression->value(scope(), engine()).number();
        apply(runtime->convertSize(size.sizeType, number, fallback), true);
        return;
    }
    keepBinding(RuntimeEngine::getYGValueData(scope(), std::move(size), engine(), firstTimeSetter<YGValue>(std::move(apply)), fallback));
}

}  // namespace Mero
