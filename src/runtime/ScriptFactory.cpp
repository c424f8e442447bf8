#include "runtime/ScriptFactory.h"

#include <cmath>

#include "runtime/NumberConversion.h"
#include "runtime/ScriptRun.h"
#include "runtime/expressions/InvokeFunction.h"
#include "runtime/expressions/Literals.h"
#include "runtime/expressions/RuntimeCallback.h"
#include "runtime/expressions/VariableReads.h"
#include "runtime/statements/Assignments.h"
#include "runtime/statements/BasicStatements.h"
#include "runtime/statements/Condition.h"
#include "runtime/statements/Loops.h"
#include "runtime/statements/Switch.h"

namespace Mero {

namespace {

// The nesting of the node being built: the factories call themselves for
// every child node, so a hostile template nested a hundred thousand deep
// would otherwise take the stack down (here, and when the nodes run and are
// freed).
int buildDepth = 0;

class BuildLevel {
public:
    BuildLevel() noexcept { ++buildDepth; }
    ~BuildLevel() { --buildDepth; }
    BuildLevel(const BuildLevel&) = delete;
    BuildLevel& operator=(const BuildLevel&) = delete;

    // False (reported) when the node lies past the limit and must not be built.
    static bool allowed()
    {
        if (buildDepth <= Limits::kMaxScriptNodeDepth) {
            return true;
        }
        reportLimit(Limit::ScriptNodeDepth);
        return false;
    }
};

double typeCode(const Value& node)
{
    return memberOf(node, "$").number();
}

const std::string& nameOf(const Value& node)
{
    return memberOf(node, "n").string();
}

RuntimeObjectPtr expressionOf(const Value& node, const std::string& key)
{
    return createRuntimeObject(memberOf(node, key));
}

std::vector<RuntimeObjectPtr> expressionList(const Value& list)
{
    std::vector<RuntimeObjectPtr> expressions;
    expressions.reserve(list.array().size());
    for (const Value& element : list.array()) {
        expressions.push_back(createRuntimeObject(element));
    }
    return expressions;
}

StatementList statementList(const Value& list)
{
    StatementList statements;
    statements.reserve(list.array().size());
    for (const Value& element : list.array()) {
        statements.push_back(createRuntimeExecute(element));
    }
    return statements;
}

// "bs": an array of statement lists.
std::vector<StatementList> branchLists(const Value& node)
{
    const ValueArray& lists = memberOf(node, "bs").array();
    std::vector<StatementList> branches;
    branches.reserve(lists.size());
    for (const Value& list : lists) {
        branches.push_back(statementList(list));
    }
    return branches;
}

RuntimeObjectPtr createJson(const Value& node)
{
    RuntimeJson::Members members;
    members.reserve(node.object().size());
    for (const auto& [key, value] : node.object()) {
        members.emplace_back(key, createRuntimeObject(value));
    }
    return std::make_unique<RuntimeJson>(std::move(members));
}

std::unique_ptr<InvokeFunction> createInvoke(const Value& node)
{
    return std::make_unique<InvokeFunction>(nameOf(node), expressionList(memberOf(node, "a")));
}

}  // namespace

RuntimeObjectPtr createRuntimeObject(const Value& node)
{
    BuildLevel level;
    if (!level.allowed()) {
        return std::make_unique<RuntimeBasic>(Value());
    }
    if (node.is(Kind::Object)) {
        // The code is compared as a double: 5.7 is not 5 here, so such a node
        // is an object literal (the statement factory truncates instead).
        double code = typeCode(node);
        if (code == 5) {
            return createInvoke(node);
        }
        if (code == 1) {
            return std::make_unique<RuntimeLocalVariable>(nameOf(node));
        }
        if (code == 3) {
            return std::make_unique<RuntimeVariable>(nameOf(node));
        }
        if (code == 17) {
            return std::make_unique<RuntimeGlobalRef>(nameOf(node));
        }
        if (code == 19) {
            return std::make_unique<RuntimeMaterial>(nameOf(node));
        }
        if (code == 14) {
            return std::make_unique<RuntimeCallback>(node);
        }
        if (code == 15) {
            return std::make_unique<RuntimeSpreadObject>(expressionList(memberOf(node, "value")));
        }
        if (code == 16) {
            return std::make_unique<RuntimeSpreadArray>(expressionList(memberOf(node, "value")));
        }
        return createJson(node);
    }
    if (node.is(Kind::Array)) {
        return std::make_unique<RuntimeArray>(expressionList(node));
    }
    return std::make_unique<RuntimeBasic>(node);
}

RuntimeExecutePtr createRuntimeExecute(const Value& node)
{
    BuildLevel level;
    if (!node.is(Kind::Object) || !level.allowed()) {
        return std::make_unique<RuntimeExecuteNull>();
    }
    switch (truncateToInt32(typeCode(node))) {
    case 2: return std::make_unique<SetLocalVar>(nameOf(node), expressionOf(node, "value"));
    case 4: return std::make_unique<SetVariable>(nameOf(node), expressionOf(node, "value"));
    case 5: return createInvoke(node);
    case 6: return std::make_unique<Condition>(expressionList(memberOf(node, "c")), branchLists(node));
    case 7:
        return std::make_unique<ForRange>(expressionOf(node, "startIndex"), expressionOf(node, "endIndex"),
                                          memberOf(node, "index").string(), statementList(memberOf(node, "b")));
    case 8:
        return std::make_unique<While>(memberOf(node, "isDoWhile").boolean(), expressionOf(node, "c"),
                                       statementList(memberOf(node, "b")));
    case 9:
        return std::make_unique<Switch>(expressionOf(node, "t"), expressionList(memberOf(node, "c")), branchLists(node),
                                        statementList(memberOf(node, "default")));
    case 10:
        return std::make_unique<ForOf>(expressionOf(node, "t"), memberOf(node, "index").string(),
                                       memberOf(node, "item").string(), statementList(memberOf(node, "b")));
    case 11: return std::make_unique<ReturnValue>(expressionOf(node, "returnValue"));
    case 12: return std::make_unique<BreakValue>();
    case 13: return std::make_unique<ContinueValue>();
    case 18: return std::make_unique<SetGlobalVar>(nameOf(node), expressionOf(node, "value"));
    default: return std::make_unique<RuntimeExecuteNull>();
    }
}

void buildStatementList(const Value& node, std::string_view key, StatementList& statements)
{
    const ValueArray& list = memberOf(node, key).array();
    statements.reserve(statements.size() + list.size());
    for (const Value& element : list) {
        statements.push_back(createRuntimeExecute(element));
    }
}

StatementList buildStatementList(const Value& node, std::string_view key)
{
    StatementList statements;
    buildStatementList(node, key, statements);
    return statements;
}

SizeProperty parseSizeProperty(const Value& property)
{
    SizeProperty size;
    size.sizeType = truncateToInt32(memberOf(property, "sizeType").number());
    if (size.sizeType == -1) {
        size.expression = createRuntimeObject(property);
    } else {
        size.expression = expressionOf(property, "value");
    }
    return size;
}

}  // namespace Mero
