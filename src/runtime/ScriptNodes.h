// The script nodes a template may hold, by their "$" code: what each is and
// the members it cannot do without. The factory (ScriptFactory.cpp) builds
// them; the template checker reads this table to tell an author which code is
// unknown and which member is missing. A test holds the two together.
#pragma once

#include <array>
#include <span>
#include <string_view>

namespace Mero {

struct ScriptNodeInfo {
    int code;
    std::string_view name;
    // Members without which the node does nothing useful (a missing one
    // reads as null or an empty list).
    std::array<std::string_view, 3> required;
};

// Expressions: values, read where a value is expected. Any other object is an
// object literal whose members are expressions.
std::span<const ScriptNodeInfo> expressionNodes();
// Statements, in the statement lists of functions, events and callbacks. Any
// other code does nothing.
std::span<const ScriptNodeInfo> statementNodes();

const ScriptNodeInfo* expressionNode(int code);
const ScriptNodeInfo* statementNode(int code);

}  // namespace Mero
