#include "runtime/statements/Loops.h"

#include <limits>

#include "runtime/NumberConversion.h"

namespace Mero {

namespace {

// What a loop does with one round's completion.
enum class Round { Next, Stop, Hand };

Round classify(const Value& completion)
{
    switch (completion.kind()) {
    case Kind::Completed:
    case Kind::Continue: return Round::Next;
    case Kind::Break: return Round::Stop;
    default: return Round::Hand;
    }
}

}  // namespace

bool While::test(const LocalScope& scope, const EngineRef& engine) const
{
    Value condition = condition_->value(scope, engine);
    return condition.boolean();
}

Value While::run(const LocalScope& scope, const EngineRef& engine) const
{
    if (!isDoWhile_ && !test(scope, engine)) {
        return Value();
    }
    do {
        Value completion = runStatements(body_, scope, engine);
        Round round = classify(completion);
        if (round == Round::Stop) {
            break;
        }
        if (round == Round::Hand) {
            return completion;
        }
    } while (test(scope, engine));
    return Value();
}

Value ForRange::run(const LocalScope& scope, const EngineRef& engine) const
{
    if (body_.empty()) {
        return completed();
    }
    // A loop runs in a function, handler or callback scope; without one
    // there is nowhere to keep the index.
    if (!scope) {
        return completed();
    }
    Value result = completed();
    int32_t index = truncateToInt32(startIndex_->value(scope, engine).number());
    for (;;) {
        // Only an end at or below the index ends the loop: a NaN end does
        // not (the loop then runs to the counter's limit).
        if (endIndex_->value(scope, engine).number() <= static_cast<double>(index)) {
            break;
        }
        (*scope)[index_] = Value(index);
        Value completion = runStatements(body_, scope, engine);
        Round round = classify(completion);
        if (round == Round::Stop) {
            break;
        }
        if (round == Round::Hand) {
            result = std::move(completion);
            break;
        }
        if (index == std::numeric_limits<int32_t>::max()) {
            break;  // the counter cannot go further
        }
        ++index;
    }
    scope->erase(index_);
    return result;
}

bool ForOf::runRound(const LocalScope& scope, const EngineRef& engine, double index, Value item, Value& result) const
{
    (*scope)[index_] = Value(index);
    (*scope)[item_] = std::move(item);
    Value completion = runStatements(body_, scope, engine);
    switch (classify(completion)) {
    case Round::Next: return true;
    case Round::Stop: return false;
    case Round::Hand: result = std::move(completion); return false;
    }
    return false;
}

Value ForOf::run(const LocalScope& scope, const EngineRef& engine) const
{
    if (body_.empty() || !scope) {
        return completed();
    }
    Value result = completed();
    // The target is evaluated twice, once for its kind and once to walk:
    // its side effects happen twice, as templates have always seen.
    bool isString = target_->value(scope, engine).is(Kind::String);
    Value target = target_->value(scope, engine);
    if (isString) {
        const std::string& text = target.string();
        for (std::size_t i = 0; i < text.size(); ++i) {
            double byte = static_cast<unsigned char>(text[i]);
            if (!runRound(scope, engine, static_cast<double>(i), Value(byte), result)) {
                break;
            }
        }
    } else {
        // The array is shared, so a body that appends to it extends the walk.
        const ValueArray& items = target.array();
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (!runRound(scope, engine, static_cast<double>(i), items[i], result)) {
                break;
            }
        }
    }
    scope->erase(index_);
    scope->erase(item_);
    return result;
}

}  // namespace Mero
