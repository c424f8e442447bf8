// The three loops: While (and do-while), ForRange and ForOf.
#pragma once

#include <string>

#include "runtime/RuntimeExecute.h"

namespace Mero {

// Goes on only while the condition is a real boolean true (stricter than
// Condition on purpose). Ending by a false test or a break completes with
// null, not Completed, so the statements after it in the same list never run
// and the enclosing function returns null: templates depend on this.
class While final : public RuntimeExecute {
public:
    While(bool isDoWhile, RuntimeObjectPtr condition, StatementList body)
        : isDoWhile_(isDoWhile), condition_(std::move(condition)), body_(std::move(body))
    {}
    Value run(const LocalScope& scope, const EngineRef& engine) const override;

private:
    bool test(const LocalScope& scope, const EngineRef& engine) const;

    bool isDoWhile_;
    RuntimeObjectPtr condition_;
    StatementList body_;
};

// Counts the local `index` over [start, end) by one; the end is read again
// on every round. The index is erased from the scope afterwards.
class ForRange final : public RuntimeExecute {
public:
    ForRange(RuntimeObjectPtr startIndex, RuntimeObjectPtr endIndex, std::string index, StatementList body)
        : startIndex_(std::move(startIndex)),
          endIndex_(std::move(endIndex)),
          index_(std::move(index)),
          body_(std::move(body))
    {}
    Value run(const LocalScope& scope, const EngineRef& engine) const override;

private:
    RuntimeObjectPtr startIndex_;
    RuntimeObjectPtr endIndex_;
    std::string index_;
    StatementList body_;
};

// Walks an array's elements, or a string's bytes (the item is the byte's
// number, 0 to 255). Both names are erased from the scope afterwards.
class ForOf final : public RuntimeExecute {
public:
    ForOf(RuntimeObjectPtr target, std::string index, std::string item, StatementList body)
        : target_(std::move(target)), index_(std::move(index)), item_(std::move(item)), body_(std::move(body))
    {}
    Value run(const LocalScope& scope, const EngineRef& engine) const override;

private:
    // Runs the body once with index and item set; answers false when the
    // loop must end, with `result` set to what the loop hands up.
    bool runRound(const LocalScope& scope, const EngineRef& engine, double index, Value item, Value& result) const;

    RuntimeObjectPtr target_;
    std::string index_;
    std::string item_;
    StatementList body_;
};

}  // namespace Mero
