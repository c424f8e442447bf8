#include "runtime/ScriptNodes.h"

namespace Mero {

namespace {

constexpr std::array kExpressions{
    ScriptNodeInfo{1, "local variable read", {"n"}},
    ScriptNodeInfo{3, "UI variable read", {"n"}},
    ScriptNodeInfo{5, "call", {"n"}},
    ScriptNodeInfo{14, "callback", {"b"}},
    ScriptNodeInfo{15, "object spread", {"value"}},
    ScriptNodeInfo{16, "array spread", {"value"}},
    ScriptNodeInfo{17, "global variable read", {"n"}},
    ScriptNodeInfo{19, "business data read", {"n"}},
};

constexpr std::array kStatements{
    ScriptNodeInfo{2, "local variable assignment", {"n", "value"}},
    ScriptNodeInfo{4, "UI variable assignment", {"n", "value"}},
    ScriptNodeInfo{5, "call", {"n"}},
    ScriptNodeInfo{6, "condition", {"c", "bs"}},
    ScriptNodeInfo{7, "counted loop", {"startIndex", "endIndex", "b"}},
    ScriptNodeInfo{8, "while loop", {"c", "b"}},
    ScriptNodeInfo{9, "switch", {"t", "c", "bs"}},
    ScriptNodeInfo{10, "for-of loop", {"t", "b"}},
    ScriptNodeInfo{11, "return", {}},
    ScriptNodeInfo{12, "break", {}},
    ScriptNodeInfo{13, "continue", {}},
    ScriptNodeInfo{18, "global variable assignment", {"n", "value"}},
};

const ScriptNodeInfo* find(std::span<const ScriptNodeInfo> table, int code)
{
    for (const ScriptNodeInfo& node : table) {
        if (node.code == code) {
            return &node;
        }
    }
    return nullptr;
}

}  // namespace

std::span<const ScriptNodeInfo> expressionNodes()
{
    return kExpressions;
}

std::span<const ScriptNodeInfo> statementNodes()
{
    return kStatements;
}

const ScriptNodeInfo* expressionNode(int code)
{
    return find(kExpressions, code);
}

const ScriptNodeInfo* statementNode(int code)
{
    return find(kStatements, code);
}

}  // namespace Mero
