// The library's header comes before <windows.h> and <cmath> here; WindowsHeadersTest.cpp
// checks the other order.
#include <gtest/gtest.h>

#include "TeskWin.h"

#include <windows.h>

#include <climits>
#include <cmath>
#include <limits>

namespace {

TEST(PNumerics, ZeroAndEqualityTests)
{
    EXPECT_TRUE(IS_ZERO(0));
    EXPECT_FALSE(IS_ZERO(-1));
    EXPECT_TRUE(IS_ZERO(5e-10, 1e-9));
    EXPECT_FALSE(IS_ZERO(2e-9, 1e-9));
    EXPECT_FALSE(IS_ZERO(-2e-9, 1e-9));
    EXPECT_FALSE(IS_ZERO(std::nan(""), 1e-9));

    EXPECT_TRUE(IS_EQUAL(4, 4));
    EXPECT_FALSE(IS_EQUAL(4, -4));
    EXPECT_TRUE(IS_EQUAL(1.0, 1.0 + 5e-10, 1e-9));
    EXPECT_FALSE(IS_EQUAL(1.0, 1.0 + 2e-9, 1e-9));
    EXPECT_TRUE(IS_EQUAL(HUGE_VAL, HUGE_VAL, 1e-9));
}

TEST(PNumerics, MinMaxAndRound)
{
    EXPECT_EQ((min)(-3, 2), -3);
    EXPECT_EQ((max)(-3, 2), 2);
    EXPECT_EQ((min)(0.25, -0.5), -0.5);
    EXPECT_EQ((max)(0.25, -0.5), 0.25);
    const unsigned short big = 65535, small = 1;
    EXPECT_EQ((max)(big, small), 65535);
    EXPECT_EQ((max)(small, big), 65535);

    EXPECT_EQ(tesk::round(2.4), 2);
    EXPECT_EQ(tesk::round(2.5), 3);
    EXPECT_EQ(tesk::round(-2.5), -3);
    EXPECT_EQ(tesk::round(-0.4), 0);
    // Adding one half first would give 1 here: the largest double below 0.5.
    EXPECT_EQ(tesk::round(0.49999999999999994), 0);
    EXPECT_EQ(tesk::round(2147483646.5), INT_MAX);
    EXPECT_EQ(tesk::round(-2147483647.5), INT_MIN);
    EXPECT_EQ(tesk::round(1e20), INT_MAX);
    EXPECT_EQ(tesk::round(-1e20), INT_MIN);
    EXPECT_EQ(tesk::round(std::nan("")), 0);
}

TEST(PNumerics, IntersectTakesInfiniteLines)
{
    PCoord<double> at(-1, -1);
    ASSERT_TRUE(intersect(&at, PCoord<double>(0, 0), PCoord<double>(2, 2), PCoord<double>(0, 2),
                          PCoord<double>(2, 0)));
    EXPECT_DOUBLE_EQ(at.xval(), 1.0);
    EXPECT_DOUBLE_EQ(at.yval(), 1.0);

    // The meeting point may lie beyond both pairs of points.
    ASSERT_TRUE(intersect(&at, PCoord<double>(0, 0), PCoord<double>(1, 0), PCoord<double>(5, 3),
                          PCoord<double>(5, 4)));
    EXPECT_DOUBLE_EQ(at.xval(), 5.0);
    EXPECT_DOUBLE_EQ(at.yval(), 0.0);

    // Parallel, identical and degenerate lines do not meet and leave the result alone.
    at = PCoord<double>(7, 7);
    EXPECT_FALSE(intersect(&at, PCoord<double>(0, 0), PCoord<double>(1, 1), PCoord<double>(0, 1),
                           PCoord<double>(1, 2)));
    EXPECT_FALSE(intersect(&at, PCoord<double>(0, 0), PCoord<double>(1, 1), PCoord<double>(2, 2),
                           PCoord<double>(3, 3)));
    EXPECT_FALSE(intersect(&at, PCoord<double>(1, 1), PCoord<double>(1, 1), PCoord<double>(0, 1),
                           PCoord<double>(1, 2)));
    // Parallel but for rounding: the cross product is 2e-8, far below the lengths' scale.
    EXPECT_FALSE(intersect(&at, PCoord<double>(0, 0), PCoord<double>(3e8, 1e8), PCoord<double>(0, 1),
                           PCoord<double>(0.1 * 3, 0.1 + 1)));
    EXPECT_EQ(at.xval(), 7.0);
    EXPECT_EQ(at.yval(), 7.0);
}

TEST(PNumerics, ExitingIsRemembered)
{
    EXPECT_FALSE(isExiting());
    setExiting();
    EXPECT_TRUE(isExiting());
}

TEST(PCoord, StartsAtZeroAndAddsComponentWise)
{
    PCoord<double> p;
    EXPECT_EQ(p.xval(), 0.0);
    EXPECT_EQ(p.yval(), 0.0);
    p += PCoord<double>(1.5, -2.0);
    p += PCoord<double>(0.5, 0.25);
    EXPECT_EQ(p.xval(), 2.0);
    EXPECT_EQ(p.yval(), -1.75);

    PVector<double> v(1.0, 2.0);
    v += PVector<double>(0.5, -4.0);
    EXPECT_EQ(v.xval(), 1.5);
    EXPECT_EQ(v.yval(), -2.0);
}

TEST(PCoord, ShortRotationTurnsCounterClockwiseInDegrees)
{
    struct Case {
        short x, y;
        double degrees;
        short centreX, centreY;
        short expectedX, expectedY;
    };
    // Results are rounded to the nearest: 10 cos 30 = 8.66, 10 sin 30 = 5.
    for (Case const &c : {Case{10, 0, 90, 0, 0, 0, 10}, Case{0, 10, 90, 0, 0, -10, 0}, Case{6, 5, -90, 5, 5, 5, 4},
                          Case{10, 0, 30, 0, 0, 9, 5}, Case{-10, 0, 45, 0, 0, -7, -7},
                          // Far points are held at the limits of short.
                          Case{32767, 0, 180, -32768, 0, SHRT_MIN, 0}}) {
        PCoord<short> p(c.x, c.y);
        p.rotate(c.degrees, PCoord<short>(c.centreX, c.centreY));
        EXPECT_EQ(p.xval(), c.expectedX) << c.x << "," << c.y << " by " << c.degrees;
        EXPECT_EQ(p.yval(), c.expectedY) << c.x << "," << c.y << " by " << c.degrees;
    }

    // The corners of a 4 by 3 picture turned by 90 degrees span 3 by 4.
    PCoord<short> corners[] = {{0, 0}, {3, 0}, {0, 2}, {3, 2}};
    const PCoord<short> centre(2, 1);
    short minX = SHRT_MAX, maxX = SHRT_MIN, minY = SHRT_MAX, maxY = SHRT_MIN;
    for (PCoord<short> &corner : corners) {
        corner.rotate(90.0, centre);
        minX = (std::min)(minX, corner.xval());
        maxX = (std::max)(maxX, corner.xval());
        minY = (std::min)(minY, corner.yval());
        maxY = (std::max)(maxY, corner.yval());
    }
    EXPECT_EQ(maxX - minX + 1, 3);
    EXPECT_EQ(maxY - minY + 1, 4);
}

} // namespace
