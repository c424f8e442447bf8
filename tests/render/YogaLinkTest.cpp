// Proves the cached Yoga library links and lays out with its default config.
#include <gtest/gtest.h>
#include <yoga/Yoga.h>

TEST(YogaLink, RowParentPlacesTwoChildrenSideBySide)
{
    YGNodeRef parent = YGNodeNew();
    YGNodeStyleSetFlexDirection(parent, YGFlexDirectionRow);
    YGNodeStyleSetWidth(parent, 300);
    YGNodeStyleSetHeight(parent, 100);
    YGNodeStyleSetPadding(parent, YGEdgeAll, 10);

    YGNodeRef fixed = YGNodeNew();
    YGNodeStyleSetWidth(fixed, 80);
    YGNodeRef growing = YGNodeNew();
    YGNodeStyleSetFlexGrow(growing, 1);
    YGNodeInsertChild(parent, fixed, 0);
    YGNodeInsertChild(parent, growing, 1);

    YGNodeCalculateLayout(parent, YGUndefined, YGUndefined, YGDirectionLTR);

    EXPECT_FLOAT_EQ(YGNodeLayoutGetLeft(fixed), 10);
    EXPECT_FLOAT_EQ(YGNodeLayoutGetTop(fixed), 10);
    EXPECT_FLOAT_EQ(YGNodeLayoutGetWidth(fixed), 80);
    EXPECT_FLOAT_EQ(YGNodeLayoutGetHeight(fixed), 80);  // stretched by default
    EXPECT_FLOAT_EQ(YGNodeLayoutGetLeft(growing), 90);
    EXPECT_FLOAT_EQ(YGNodeLayoutGetWidth(growing), 200);

    YGNodeFreeRecursive(parent);
}
