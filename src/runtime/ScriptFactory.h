// The two factories that turn template script (plain JSON) into nodes.
//
// Every script node is a JSON object whose member "$" is its type code. The
// factories never fail: unknown shapes become object literals, constants or
// statements that do nothing.
#pragma once

#include <cstdint>
#include <string_view>

#include "runtime/RuntimeExecute.h"
#include "runtime/RuntimeObject.h"
#include "value/Value.h"

namespace Mero {

RuntimeObjectPtr createRuntimeObject(const Value& node);
RuntimeExecutePtr createRuntimeExecute(const Value& node);

// Appends one statement per element of node's member `key` (an array; any
// other kind is an empty list).
void buildStatementList(const Value& node, std::string_view key, StatementList& statements);
StatementList buildStatementList(const Value& node, std::string_view key);

// A size-bearing property: its size type and its expression.
struct SizeProperty {
    int32_t sizeType = 0;
    RuntimeObjectPtr expression;
};

// Reads {"sizeType": t, "value": expression}; with t == -1 the whole property
// object is the expression.
SizeProperty parseSizeProperty(const Value& property);

}  // namespace Mero
