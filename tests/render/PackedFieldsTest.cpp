// A node's packed style values and insets: fields set in any order keep their
// values as others are added and moved to a larger block.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "render/PackedFields.h"

using Mero::PackedFields;

TEST(PackedFields, FieldsAddedInAnyOrderKeepTheirValues)
{
    PackedFields fields;
    EXPECT_EQ(fields.text(0), nullptr);
    EXPECT_EQ(fields.number(31), nullptr);

    // Texts long enough to live outside the string, so that a bad move shows
    // under the sanitizers; numbers added below and above the others.
    const std::string longText(40, 'b');
    fields.setNumber(17, 4.5F);
    fields.setText(1, longText);
    fields.setNumber(3, -0.0F);
    fields.setText(0, "#FF0000FF");
    fields.setNumber(31, 7.0F);
    fields.setNumber(0, 1.0F);

    ASSERT_NE(fields.text(0), nullptr);
    ASSERT_NE(fields.text(1), nullptr);
    EXPECT_EQ(*fields.text(0), "#FF0000FF");
    EXPECT_EQ(*fields.text(1), longText);
    EXPECT_EQ(fields.text(2), nullptr);
    EXPECT_EQ(*fields.number(0), 1.0F);
    EXPECT_TRUE(std::signbit(*fields.number(3)));
    EXPECT_EQ(*fields.number(17), 4.5F);
    EXPECT_EQ(*fields.number(31), 7.0F);
    EXPECT_EQ(fields.number(1), nullptr);
    EXPECT_EQ(fields.number(16), nullptr);

    // Setting a field again changes it in place.
    fields.setText(1, "short");
    fields.setNumber(17, 2.0F);
    EXPECT_EQ(*fields.text(1), "short");
    EXPECT_EQ(*fields.text(0), "#FF0000FF");
    EXPECT_EQ(*fields.number(17), 2.0F);
    EXPECT_EQ(*fields.number(31), 7.0F);

    // Several numbers made room for at once, among those set: the new read
    // 0, the others keep their values.
    fields.addNumbers((1U << 5) | (1U << 17) | (1U << 20));
    EXPECT_EQ(*fields.number(5), 0.0F);
    EXPECT_EQ(*fields.number(20), 0.0F);
    EXPECT_EQ(*fields.number(17), 2.0F);
    EXPECT_EQ(*fields.number(0), 1.0F);
    EXPECT_EQ(*fields.number(31), 7.0F);
    EXPECT_EQ(*fields.text(1), "short");
}
