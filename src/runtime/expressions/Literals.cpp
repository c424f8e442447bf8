#include "runtime/expressions/Literals.h"

#include <algorithm>

#include "value/ErrorReporting.h"

namespace Mero {

namespace {

bool anyDynamic(const std::vector<RuntimeObjectPtr>& children)
{
    return std::any_of(children.begin(), children.end(),
                       [](const RuntimeObjectPtr& child) { return child->isDynamic(); });
}

}  // namespace

Value RuntimeBasic::evaluate(const LocalScope&, const EngineRef&) const
{
    return constant_;
}

Value RuntimeJson::evaluate(const LocalScope& scope, const EngineRef& engine) const
{
    Value result = Value::makeObject();
    ValueObject& object = result.object();
    for (const auto& [key, member] : members_) {
        object[key] = member->value(scope, engine);
    }
    return result;
}

bool RuntimeJson::isDynamic() const
{
    return std::any_of(members_.begin(), members_.end(), [](const auto& member) { return member.second->isDynamic(); });
}

Value RuntimeArray::evaluate(const LocalScope& scope, const EngineRef& engine) const
{
    ValueArray elements;
    elements.reserve(elements_.size());
    for (const RuntimeObjectPtr& element : elements_) {
        elements.push_back(element->value(scope, engine));
    }
    return Value::makeArray(std::move(elements));
}

bool RuntimeArray::isDynamic() const
{
    return anyDynamic(elements_);
}

Value RuntimeSpreadArray::evaluate(const LocalScope& scope, const EngineRef& engine) const
{
    ValueArray elements;
    for (const RuntimeObjectPtr& part : parts_) {
        Value spread = part->value(scope, engine);
        if (spread.isNull()) {
            continue;
        }
        if (!spread.is(Kind::Array)) {
            reportError("RuntimeSpreadArray value is not array");
            continue;
        }
        const ValueArray& source = spread.array();
        chargeSteps(source.size());
        if (!fitsCollectionLimit(elements.size() + source.size())) {
            return Value();
        }
        elements.insert(elements.end(), source.begin(), source.end());
    }
    return Value::makeArray(std::move(elements));
}

bool RuntimeSpreadArray::isDynamic() const
{
    return anyDynamic(parts_);
}

Value RuntimeSpreadObject::evaluate(const LocalScope& scope, const EngineRef& engine) const
{
    Value result = Value::makeObject();
    ValueObject& object = result.object();
    for (const RuntimeObjectPtr& part : parts_) {
        Value spread = part->value(scope, engine);
        if (spread.isNull()) {
            continue;
        }
        if (!spread.is(Kind::Object)) {
            reportError("RuntimeSpreadObject value is not object");
            continue;
        }
        chargeSteps(spread.object().size());
        for (const auto& [key, member] : spread.object()) {
            object[key] = member;
        }
        if (!fitsCollectionLimit(object.size())) {
            return Value();
        }
    }
    return result;
}

bool RuntimeSpreadObject::isDynamic() const
{
    return anyDynamic(parts_);
}

}  // namespace Mero
