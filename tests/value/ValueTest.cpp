#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/ReportedErrors.h"
#include "value/JsonParser.h"
#include "value/JsonWriter.h"
#include "value/Value.h"

using namespace Mero;
using MeroTest::printedOutput;
using MeroTest::thrownMessage;

// A kind outside the enumeration is kept with a number payload, like null.
TEST(ValueConstruction, EachKindGetsAFreshDefaultPayload)
{
    EXPECT_EQ(Value().kind(), Kind::Null);
    const std::pair<Kind, std::size_t> payloads[] = {
        {Kind::Null, 0},   {Kind::Number, 0},    {Kind::Boolean, 1}, {Kind::String, 2},   {Kind::Array, 3},
        {Kind::Object, 4}, {Kind::Completed, 0}, {Kind::Break, 0},   {Kind::Continue, 0}, {static_cast<Kind>(42), 0},
    };
    for (const auto& [kind, index] : payloads) {
        const Value value(kind);
        EXPECT_EQ(value.kindNumber(), static_cast<int>(kind));
        ASSERT_EQ(value.payload().index(), index) << static_cast<int>(kind);
        EXPECT_TRUE(index != 0 || std::get<double>(value.payload()) == 0.0) << static_cast<int>(kind);
    }
    EXPECT_FALSE(isFalsy(Value(static_cast<Kind>(42))));
    Value first(Kind::Array);
    first.array().push_back(1);
    EXPECT_TRUE(Value(Kind::Array).array().empty());
    EXPECT_NE(Value(Kind::Object).objectPtr(), Value(Kind::Object).objectPtr());
}

TEST(ValueConstruction, CallbackKindIsReportedAsUnsupported)
{
    EXPECT_EQ(thrownMessage([] { Value(Kind::Callback); }), "callbackValue not support");
    Value callback;
    EXPECT_EQ(printedOutput([&] { callback = Value(Kind::Callback); }), "callbackValue not support\n");
    EXPECT_EQ(callback.kind(), Kind::Callback);
    ASSERT_NE(callback.callbackPtr(), nullptr);
    EXPECT_FALSE(static_cast<bool>(*callback.callbackPtr()));
}

TEST(ValueCopying, ContainersAreSharedAndStringsDuplicated)
{
    Value array = Value::makeArray({1});
    Value arrayCopy = array;
    arrayCopy.array().push_back(2);
    EXPECT_EQ(array.array().size(), 2u);

    Value object = Value::makeObject();
    Value objectCopy = object;
    objectCopy.object()["k"] = 1;
    EXPECT_EQ(object.object().count("k"), 1u);

    Value text("abc");
    Value textCopy = text;
    textCopy.string() += "d";
    EXPECT_EQ(text.string(), "abc");
}

TEST(ValueCopying, ADeepCopySharesNoContainerAndKeepsTheOrder)
{
    const Value source = JsonParser::read(R"({"z": [1, {"b": "s", "a": [true]}], "c": {}})");
    Value copy = deepCopy(source);
    EXPECT_EQ(toJsonString(copy), toJsonString(source));
    copy.object().at("z").array().push_back(2);
    copy.object().at("z").array()[1].object()["b"] = 3;
    copy.object().at("z").array()[1].object().at("a").array().clear();
    copy.object().at("c").object()["k"] = 1;
    EXPECT_EQ(toJsonString(source), R"({"z":[1,{"b":"s","a":[true]}],"c":{}})");
    EXPECT_EQ(toJsonString(copy), R"({"z":[1,{"b":3,"a":[]},2],"c":{"k":1}})");
    EXPECT_EQ(deepCopy(Value("text")).string(), "text");
}

TEST(ValueCopying, MovedFromValueReadsAsNull)
{
    Value text("abc");
    Value taken = std::move(text);
    EXPECT_EQ(taken.string(), "abc");
    EXPECT_EQ(text.kind(), Kind::Null);  // NOLINT(bugprone-use-after-move): that is the point

    Value array = Value::makeArray({1, 2});
    Value target("old");
    target = std::move(array);
    EXPECT_EQ(target.array().size(), 2u);
    EXPECT_TRUE(array.isNull());  // NOLINT(bugprone-use-after-move)
}

TEST(ValueAccessors, MismatchedKindsReturnDefaultsThatNoWriteReaches)
{
    Value nothing;
    Value number(5.0);
    EXPECT_EQ(nothing.number(), 0.0);
    EXPECT_EQ(number.string(), "");  // not the number's text
    EXPECT_FALSE(number.boolean());
    EXPECT_TRUE(number.array().empty());
    EXPECT_TRUE(number.object().empty());
    // A write through a mismatched accessor reaches no other Value.
    number.object().try_emplace("k", Value(1.0));
    number.string() = "written";
    number.array().push_back(Value(2.0));
    nothing.number() = 3.0;
    EXPECT_EQ(std::get<double>(nothing.payload()), 0.0) << "a null holds a zero of its own, which no write reaches";
    const Value other(true);
    EXPECT_TRUE(other.object().empty());
    EXPECT_EQ(other.string(), "");
    EXPECT_TRUE(other.array().empty());
    EXPECT_EQ(other.number(), 0.0);
    EXPECT_TRUE(Value(2.0).object().empty());
}

TEST(ValueTruthiness, OnlyNullZeroTheEmptyStringAndFalseAreFalsy)
{
    const std::pair<Value, bool> cases[] = {
        {Value(), true}, {Value(0.0), true}, {Value(-0.0), true}, {Value(""), true}, {Value(false), true},
        {Value(std::nan("")), false}, {Value(0.001), false}, {Value("0"), false}, {Value(true), false},
        {Value::makeArray(), false}, {Value::makeObject(), false},
        {Value(std::make_shared<ValueCallback>()), false}, {Value(Kind::Completed), false},
        {Value(Kind::Break), false},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_EQ(isFalsy(cases[i].first), cases[i].second) << "case " << i;
    }
}

// Nulls and containers are never equal, not even to themselves.
TEST(ValueEquality, OnlyNumbersStringsAndBooleansCanBeEqual)
{
    EXPECT_TRUE(equals(Value(1.5), Value(1.5)));
    EXPECT_TRUE(equals(Value("a"), Value("a")));
    EXPECT_TRUE(equals(Value(false), Value(false)));
    EXPECT_FALSE(equals(Value(1.0), Value("1")));
    EXPECT_FALSE(equals(Value(1.0), Value(true)));
    EXPECT_FALSE(equals(Value(std::nan("")), Value(std::nan(""))));
    EXPECT_TRUE(equals(Value(0.0), Value(-0.0)));
    EXPECT_FALSE(equals(Value(), Value()));
    Value array = Value::makeArray();
    EXPECT_FALSE(equals(array, array));
    Value object = Value::makeObject();
    EXPECT_FALSE(equals(object, object));
}

TEST(NumberToString, SixDecimalsWithoutTrailingZeros)
{
    const std::pair<double, const char*> cases[] = {
        {1.5, "1.5"},
        {2, "2"},
        {100, "100"},
        {0, "0"},
        {-3.25, "-3.25"},
        {0.1234567, "0.123457"},
        {1e-7, "0"},
        {-1e-7, "-0"},
        {-0.0000001, "-0"},
        {123456789.987654321, "123456789.987654"},
        {1e20, "100000000000000000000"},
        {0.0000006, "0.000001"},
        {0.0000005, "0"},  // the double just below 5e-7 rounds down
        {std::numeric_limits<double>::infinity(), "inf"},
        {-std::numeric_limits<double>::infinity(), "-inf"},
    };
    for (const auto& [number, text] : cases) {
        EXPECT_EQ(numberToString(number), text) << number;
    }
    EXPECT_EQ(numberToString(std::numeric_limits<double>::max()).size(), 309u);
}
