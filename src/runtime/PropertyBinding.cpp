// The binding helpers through which render nodes bind their properties.
//
// Every helper has one shape: ask the expression whether it reads UI
// variables; with the engine gone, hand the default to the setter once;
// otherwise, for a dynamic expression, keep it and register a callback that
// repeats evaluate-convert-set on every change; then evaluate, convert and set
// once now. A static expression is dropped after that first evaluation.
#include "runtime/RuntimeEngine.h"

namespace Mero {

namespace {

// `apply(value, engine)` converts an evaluated Value and calls the setter.
template <typename Apply, typename Fallback>
ObserverPtr bindProperty(const LocalScope& scope, RuntimeObjectPtr expression, const EngineRef& engine, Apply apply,
                         Fallback onGone)
{
    bool dynamic = expression->isDynamic();
    std::shared_ptr<RuntimeEngine> runtime = engine.lock();
    if (!runtime) {
        onGone();
        return nullptr;
    }
    if (!dynamic) {
        apply(expression->value(scope, engine), *runtime);
        return nullptr;
    }
    std::shared_ptr<RuntimeObject> shared = std::move(expression);
    auto update = [scope, shared, engine, apply]() {
        if (std::shared_ptr<RuntimeEngine> alive = engine.lock()) {
            apply(shared->value(scope, engine), *alive);
        }
    };
    ObserverPtr callback = std::make_shared<ObserverCallback>(update);
    shared->observe(engine, callback);
    apply(shared->value(scope, engine), *runtime);
    return callback;
}

}  // namespace

ObserverPtr RuntimeEngine::getValueData(const LocalScope& scope, RuntimeObjectPtr expression, const EngineRef& engine,
                                 std::shared_ptr<ValueSetter> setter, Value defaultValue)
{
    // The default is for a gone engine only; a re-evaluation hands on
    // whatever the expression gives.
    return bindProperty(
        scope, std::move(expression), engine, [setter](Value value, RuntimeEngine&) { (*setter)(std::move(value)); },
        [&]() { (*setter)(std::move(defaultValue)); });
}

ObserverPtr RuntimeEngine::getTypeData(const LocalScope& scope, RuntimeObjectPtr expression, const EngineRef& engine,
                                std::shared_ptr<BoolSetter> setter, bool defaultValue)
{
    return bindProperty(
        scope, std::move(expression), engine,
        [setter, defaultValue](const Value& value, RuntimeEngine&) {
            (*setter)(value.is(Kind::Boolean) ? value.boolean() : defaultValue);
        },
        [&]() { (*setter)(defaultValue); });
}

ObserverPtr RuntimeEngine::getTypeData(const LocalScope& scope, RuntimeObjectPtr expression, const EngineRef& engine,
                                std::shared_ptr<DoubleSetter> setter, double defaultValue)
{
    // A string "1" is not a number: it gives the default.
    return bindProperty(
        scope, std::move(expression), engine,
        [setter, defaultValue](const Value& value, RuntimeEngine&) {
            (*setter)(value.is(Kind::Number) ? value.number() : defaultValue);
        },
        [&]() { (*setter)(defaultValue); });
}

ObserverPtr RuntimeEngine::getSizeData(const LocalScope& scope, SizeProperty property, const EngineRef& engine,
                                std::shared_ptr<DoubleSetter> setter, double base, double fallback)
{
    int32_t sizeType = property.sizeType;
    return bindProperty(
        scope, std::move(property.expression), engine,
        [setter, sizeType, base, fallback](const Value& value, RuntimeEngine& runtime) {
            (*setter)(runtime.convertSizeToNumber(sizeType, value.number(), base, fallback));
        },
        [&]() { (*setter)(fallback); });
}

ObserverPtr RuntimeEngine::getYGValueData(const LocalScope& scope, SizeProperty property, const EngineRef& engine,
                                   std::shared_ptr<YGValueSetter> setter, YGValue defaultValue)
{
    int32_t sizeType = property.sizeType;
    return bindProperty(
        scope, std::move(property.expression), engine,
        [setter, sizeType, defaultValue](const Value& value, RuntimeEngine& runtime) {
            (*setter)(runtime.convertSize(sizeType, value.number(), defaultValue));
        },
        [&]() { (*setter)(defaultValue); });
}

}  // namespace Mero
