// Constants, object and array literals, and the two spreads.
//
// Literals and spreads are dynamic when a child is, but they do not pass
// observe on: a UI variable read only inside a literal registers no callback,
// so changing it does not re-evaluate the property. This is deliberate.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "runtime/RuntimeObject.h"

namespace Mero {

// A constant: null, number, string or boolean.
class RuntimeBasic final : public RuntimeObject {
public:
    explicit RuntimeBasic(Value constant) : constant_(std::move(constant)) {}
    Value evaluate(const LocalScope& scope, const EngineRef& engine) const override;

private:
    Value constant_;
};

// An object literal: every member is an expression. Members are kept in the
// template's order, so the object it makes has that order too.
class RuntimeJson final : public RuntimeObject {
public:
    using Members = std::vector<std::pair<std::string, RuntimeObjectPtr>>;
    explicit RuntimeJson(Members members) : members_(std::move(members)) {}
    Value evaluate(const LocalScope& scope, const EngineRef& engine) const override;
    bool isDynamic() const override;

private:
    Members members_;
};

// An array literal.
class RuntimeArray final : public RuntimeObject {
public:
    explicit RuntimeArray(std::vector<RuntimeObjectPtr> elements) : elements_(std::move(elements)) {}
    Value evaluate(const LocalScope& scope, const EngineRef& engine) const override;
    bool isDynamic() const override;

private:
    std::vector<RuntimeObjectPtr> elements_;
};

// Array concatenation ("$" 16): nulls are skipped, other non-arrays reported.
class RuntimeSpreadArray final : public RuntimeObject {
public:
    explicit RuntimeSpreadArray(std::vector<RuntimeObjectPtr> parts) : parts_(std::move(parts)) {}
    Value evaluate(const LocalScope& scope, const EngineRef& engine) const override;
    bool isDynamic() const override;

private:
    std::vector<RuntimeObjectPtr> parts_;
};

// Object merge ("$" 15): later parts overwrite earlier members.
class RuntimeSpreadObject final : public RuntimeObject {
public:
    explicit RuntimeSpreadObject(std::vector<RuntimeObjectPtr> parts) : parts_(std::move(parts)) {}
    Value evaluate(const LocalScope& scope, const EngineRef& engine) const override;
    bool isDynamic() const override;

private:
    std::vector<RuntimeObjectPtr> parts_;
};

}  // namespace Mero
