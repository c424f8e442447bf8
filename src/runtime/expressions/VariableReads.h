// Reads of the four places a name can live: locals ("$" 1), UI variables (3),
// global variables (17) and the data object (19). Which table is read is fixed
// by the node; there is no fallback from one table to another.
#pragma once

#include <string>

#include "runtime/RuntimeObject.h"

namespace Mero {

class RuntimeLocalVariable final : public RuntimeObject {
public:
    explicit RuntimeLocalVariable(std::string name) : name_(std::move(name)) {}
    Value evaluate(const LocalScope& scope, const EngineRef& engine) const override;

private:
    std::string name_;
};

// The only expression that registers observers: a change of its UI variable
// re-evaluates whatever was bound through it.
class RuntimeVariable final : public RuntimeObject {
public:
    explicit RuntimeVariable(std::string name) : name_(std::move(name)) {}
    Value evaluate(const LocalScope& scope, const EngineRef& engine) const override;
    bool isDynamic() const override { return true; }
    void observe(const EngineRef& engine, const ObserverPtr& callback) const override;

private:
    std::string name_;
};

class RuntimeGlobalRef final : public RuntimeObject {
public:
    explicit RuntimeGlobalRef(std::string name) : name_(std::move(name)) {}
    Value evaluate(const LocalScope& scope, const EngineRef& engine) const override;

private:
    std::string name_;
};

// A member of the data object; the name "$root" reads the live data object
// itself, shared, so changing its members changes the engine's data.
class RuntimeMaterial final : public RuntimeObject {
public:
    explicit RuntimeMaterial(std::string name) : name_(std::move(name)) {}
    Value evaluate(const LocalScope& scope, const EngineRef& engine) const override;

private:
    std::string name_;
};

}  // namespace Mero
