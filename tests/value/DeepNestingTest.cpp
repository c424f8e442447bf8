// A hostile text nested a million levels deep must be read, written by both
// writers and destroyed without exhausting the stack.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "value/JsonParser.h"
#include "value/JsonWriter.h"

using namespace Mero;

namespace {

constexpr size_t kDepth = 1000000;

std::string nestedArrays(size_t depth)
{
    return "{\"a\":" + std::string(depth, '[') + "1" + std::string(depth, ']') + "}";
}

size_t depthOf(const Value& root)
{
    size_t depth = 0;
    const Value* value = &root.object().at("a");
    while (value->is(Kind::Array)) {
        ++depth;
        value = &value->array().front();
    }
    return depth;
}

}  // namespace

TEST(DeepNesting, AMillionNestedArraysAreReadCopiedWrittenAndFreed)
{
    const std::string text = nestedArrays(kDepth);
    Value root = JsonParser::read(text);
    EXPECT_EQ(depthOf(root), kDepth);
    {
        Value copy = deepCopy(root);
        EXPECT_EQ(depthOf(copy), kDepth);
        EXPECT_NE(&copy.object().at("a").array(), &root.object().at("a").array());
    }

    EXPECT_EQ(toJsonString(root), text);

    std::ostringstream streamed;
    streamed << root;
    EXPECT_EQ(streamed.str().size(), text.size() + kDepth - 1);  // a comma after each entry, no quotes
}

TEST(DeepNesting, AMillionNestedObjectsAreFreed)
{
    std::string text;
    for (size_t i = 0; i < kDepth; ++i) {
        text += "{\"k\":";
    }
    text += "{}";
    text += std::string(kDepth, '}');
    Value root = JsonParser::read(text);
    EXPECT_EQ(root.object().size(), 1u);
    root = Value();  // assignment tears the old tree down too
    EXPECT_TRUE(root.isNull());
}

TEST(DeepNesting, SharedSubtreesSurviveTheTeardownOfOneHolder)
{
    Value inner = JsonParser::read(nestedArrays(5000));
    Value shared = inner.object().at("a");
    {
        Value holder = Value::makeArray({shared});
    }
    inner = Value();
    EXPECT_EQ(toJsonString(shared).size(), 5000u * 2 + 1);
}
