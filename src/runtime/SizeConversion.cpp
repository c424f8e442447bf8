// Template sizes (design units on a 750-wide screen, typed by "sizeType") to
// Yoga values and plain numbers.
#include <cmath>

#include "runtime/RuntimeEngine.h"

namespace Mero {

namespace {

enum SizeType : int32_t {
    Point = 1,
    Percent = 2,
    Auto = 3,
    Scaled = 4,
    ContainerHeightPercent = 5,
    ContainerWidthPercent = 6,
};

constexpr int32_t exactly = 1;

YGValue point(double number)
{
    return YGValue{static_cast<float>(number), YGUnitPoint};
}

YGValue autoSize()
{
    return YGValue{YGUndefined, YGUnitAuto};
}

}  // namespace

YGValue RuntimeEngine::convertSize(int32_t sizeType, double number, YGValue fallback) const
{
    switch (sizeType) {
    case Point: return point(number);
    case Percent: return YGValue{static_cast<float>(number), YGUnitPercent};
    case Auto: return autoSize();
    case Scaled: return point(number * screenScale);
    // Container percentages are resolved to points here, not left to Yoga.
    case ContainerHeightPercent: return heightMode == exactly ? point(number * 0.01 * containerHeight) : autoSize();
    case ContainerWidthPercent: return widthMode == exactly ? point(number * 0.01 * containerWidth) : autoSize();
    default: return fallback;
    }
}

double RuntimeEngine::convertSizeToNumber(int32_t sizeType, double number, double base, double fallback) const
{
    switch (sizeType) {
    case Point: return number;
    // The single-precision 0.01 widened to double, unlike the double 0.01 of
    // the container percentages below: the two differ on purpose.
    case Percent: return (base * number) * static_cast<double>(0.01f);
    case Auto: return -1.0;  // auto, told to the caller as -1
    case Scaled: return screenScale * number;
    case ContainerHeightPercent: return heightMode == exactly ? (number * 0.01) * containerHeight : 0.0;
    case ContainerWidthPercent: return widthMode == exactly ? (number * 0.01) * containerWidth : 0.0;
    default: return fallback;
    }
}

}  // namespace Mero
