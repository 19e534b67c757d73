#include <gtest/gtest.h>

#include "TeskWin.h"

#include <windows.h>

#include <cmath>

namespace {

TEST(PTPoint, LongDistanceSumsSquaresIn32BitsAndTruncates)
{
    EXPECT_EQ(PTPoint<long>(3, 4).distance(PTPoint<long>(0, 0)), 5);
    EXPECT_EQ(PTPoint<long>(1, 1).distance(PTPoint<long>(0, 0)), 1);
    EXPECT_EQ(PTPoint<long>(-2, 7).distance(PTPoint<long>(1, 3)), 5);
    // 65536 squared is 2^32, which the 32-bit sum loses entirely.
    EXPECT_EQ(PTPoint<long>(65536, 0).distance(PTPoint<long>(0, 0)), 0);
    EXPECT_FLOAT_EQ(PTPoint<float>(1, 1).distance(PTPoint<float>(0, 0)), std::sqrt(2.0f));
}

TEST(PTPoint, ComparisonsAreAProductOrder)
{
    const PTPoint<float> a(1, 5), b(2, 3);
    EXPECT_FALSE(a < b);
    EXPECT_FALSE(a > b);
    EXPECT_FALSE(a <= b);
    EXPECT_FALSE(a >= b);
    EXPECT_TRUE(a != b);

    const PTPoint<long> low(1, 2), high(3, 4), edge(1, 4);
    EXPECT_TRUE(low < high);
    EXPECT_TRUE(high > low);
    EXPECT_FALSE(edge < high); // x is equal, not less
    EXPECT_TRUE(edge <= high);
    EXPECT_TRUE(edge >= low);
    EXPECT_FALSE(edge > low);
    EXPECT_TRUE(PTPoint<long>(1, 2) == low);
    EXPECT_TRUE(PTPoint<long>(0, 2) != low);
}

// Called through the library's exports (this file is built unoptimised), so a missing or
// misdeclared member of either instantiation fails to link.
TEST(PTPoint, AccessAndArithmeticAreComponentWise)
{
    EXPECT_EQ(PTPoint<long>(7), PTPoint<long>(7, 7));
    PTPoint<float> p(1.5f, -2.5f);
    p.xVal() = 4;
    p.setY(9);
    PTPoint<float> q;
    q = p;
    q.setX(q.xVal() + 1);
    EXPECT_EQ(q, PTPoint<float>(5, 9));

    const PTPoint<long> a(12, -8), b(3, 4);
    EXPECT_EQ(a + b, PTPoint<long>(15, -4));
    EXPECT_EQ(a - b, PTPoint<long>(9, -12));
    EXPECT_EQ(a * b, PTPoint<long>(36, -32));
    EXPECT_EQ(a / b, PTPoint<long>(4, -2));
    EXPECT_EQ(a * 2L, PTPoint<long>(24, -16));
    EXPECT_EQ(a / 4L, PTPoint<long>(3, -2));
    EXPECT_EQ(-a, PTPoint<long>(-12, 8));

    PTPoint<long> c = a;
    c += b;
    EXPECT_EQ(c, PTPoint<long>(15, -4));
    c -= PTPoint<long>(5, 5);
    EXPECT_EQ(c, PTPoint<long>(10, -9));

    const PTPoint<float> f(1.0f, -3.0f);
    EXPECT_EQ(f / 2.0f, PTPoint<float>(0.5f, -1.5f));
    // Division by zero is not checked: floats give infinities.
    const PTPoint<float> infinite = f / PTPoint<float>(0.0f, 0.0f);
    EXPECT_TRUE(std::isinf(infinite.xVal()) && infinite.xVal() > 0);
    EXPECT_TRUE(std::isinf(infinite.yVal()) && infinite.yVal() < 0);
}

TEST(PFFloat, HoldsADoubleExactly)
{
    for (double value : {0.1, -1e300, 4.9e-324, 123456789.123456789}) {
        const PFFloat f(value);
        EXPECT_EQ(static_cast<double>(f), value);
    }
    PFFloat f(1.25);
    f += PFFloat(0.5);
    EXPECT_EQ(static_cast<double>(f), 1.75);
    f -= 2.0;
    EXPECT_EQ(static_cast<double>(f), -0.25);
}

TEST(GPoint, ValueAndArithmetic)
{
    EXPECT_TRUE(GPoint::Zero == GPoint());

    GPoint p(1.5, -2.0);
    const GPoint q(0.5, 4.0);
    EXPECT_TRUE(p + q == GPoint(2.0, 2.0));
    EXPECT_TRUE(p - q == GPoint(1.0, -6.0));
    EXPECT_TRUE(p * q == GPoint(0.75, -8.0));
    EXPECT_TRUE(p / q == GPoint(3.0, -0.5));
    EXPECT_TRUE(p * PFFloat(2.0) == GPoint(3.0, -4.0));
    EXPECT_FALSE(p == q);
}

TEST(GPoint, ConvertsToNearestDevicePoint)
{
    const POINT a = GPoint(1.4, -1.6);
    EXPECT_EQ(a.x, 1);
    EXPECT_EQ(a.y, -2);
    const POINT b = GPoint(2.5, -2.5);
    EXPECT_EQ(b.x, 3);
    EXPECT_EQ(b.y, -3);
    const POINT c = GPoint(-0.4, 99.99);
    EXPECT_EQ(c.x, 0);
    EXPECT_EQ(c.y, 100);
}

} // namespace
