#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "value/Value.h"

using namespace Mero;

namespace {

std::string keysOf(const ValueObject& object)
{
    std::string keys;
    for (const auto& [key, value] : object) {
        keys += key + ",";
    }
    return keys;
}

// An object of `count` members "k<count>" down to "k1", each worth its number.
ValueObject countingDown(int count)
{
    ValueObject object;
    for (int i = count; i > 0; --i) {
        object["k" + std::to_string(i)] = i;
    }
    return object;
}

}  // namespace

TEST(ValueObject, MembersKeepTheirFirstInsertionOrder)
{
    ValueObject object{{"b", 1}, {"a", 2}, {"b", 3}};
    object["c"] = 4;
    object["a"] = 5;  // assigning keeps the place
    object.try_emplace("d", 6);
    object.insert({"b", 7});  // an existing key is left alone
    EXPECT_EQ(keysOf(object), "b,a,c,d,");
    EXPECT_EQ(object.at("b").number(), 1.0);
    EXPECT_EQ(object.at("a").number(), 5.0);
}

TEST(ValueObject, ErasingKeepsTheOrderOfTheOthersAndAClearedObjectFillsAgain)
{
    ValueObject object{{"a", 1}, {"b", 2}, {"c", 3}, {"d", 4}};
    EXPECT_EQ(object.erase("b"), 1u);
    EXPECT_EQ(object.erase("x"), 0u);
    auto next = object.erase(object.find("a"));
    EXPECT_EQ(next->first, "c");
    EXPECT_EQ(keysOf(object), "c,d,");
    EXPECT_THROW(object.at("a"), std::out_of_range);

    object = countingDown(30);
    object.clear();
    EXPECT_TRUE(object.empty());
    EXPECT_FALSE(object.contains("k3"));
    object["k3"] = 1;
    EXPECT_EQ(keysOf(object), "k3,");
}

// Sizes around the inline and the indexed limits: every member is found in
// its place, before and after erasing from the middle, in copies and moves.
class ValueObjectSizes : public testing::TestWithParam<int> {};

TEST_P(ValueObjectSizes, EveryMemberIsFoundWhereItWasInserted)
{
    const int count = GetParam();
    ValueObject object = countingDown(count);
    ASSERT_EQ(object.size(), static_cast<size_t>(count));
    for (int i = 1; i <= count; ++i) {
        const auto found = object.find("k" + std::to_string(i));
        ASSERT_NE(found, object.end());
        EXPECT_EQ(found - object.begin(), count - i);
        EXPECT_EQ(found->second.number(), i);
    }
    EXPECT_FALSE(object.contains("k0"));

    object.erase("k" + std::to_string(count / 2 + 1));
    EXPECT_EQ(object.size(), static_cast<size_t>(count - 1));
    for (int i = 1; i <= count; ++i) {
        EXPECT_EQ(object.count("k" + std::to_string(i)), i == count / 2 + 1 ? 0u : 1u);
    }

    ValueObject copy = object;
    ValueObject moved = std::move(object);
    EXPECT_TRUE(object.empty());  // NOLINT: a moved-from object is left empty
    EXPECT_EQ(keysOf(copy), keysOf(moved));
    copy["extra"] = true;
    EXPECT_TRUE(copy.contains("extra"));
    EXPECT_FALSE(moved.contains("extra"));
    EXPECT_EQ(moved.find("k1") - moved.begin(), count - 2);
}

INSTANTIATE_TEST_SUITE_P(AroundTheLimits, ValueObjectSizes, testing::Values(2, 3, 4, 5, 16, 17, 18, 40, 1000));

// Keys are compared a word at a time: a key of any length differs from one
// that differs in any single byte, and from its own prefixes.
TEST(ValueObject, KeysDifferingInAnyOneByteAreDifferentKeys)
{
    for (std::size_t length = 0; length <= 20; ++length) {
        std::string key;
        for (std::size_t i = 0; i < length; ++i) {
            key += static_cast<char>('a' + i);
        }
        ValueObject object{{key, Value(1.0)}};
        EXPECT_TRUE(object.contains(std::string(key))) << length;
        for (std::size_t i = 0; i < length; ++i) {
            std::string other = key;
            other[i] = 'Z';
            EXPECT_FALSE(object.contains(other)) << length << " at " << i;
            EXPECT_FALSE(object.contains(std::string_view(key).substr(0, i))) << length << " prefix " << i;
        }
    }
}
