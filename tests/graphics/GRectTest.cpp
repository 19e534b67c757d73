#include <gtest/gtest.h>

#include "TeskWin.h"

#include <climits>
#include <cmath>

namespace {

void expectEdges(GRect const &r, double l, double t, double rt, double b)
{
    EXPECT_EQ(double(r.lVal()), l);
    EXPECT_EQ(double(r.tVal()), t);
    EXPECT_EQ(double(r.rVal()), rt);
    EXPECT_EQ(double(r.bVal()), b);
}

TEST(GRect, SizeIsSignedAndSelfAssignmentKeepsTheEdges)
{
    GRect r(1.5, 2.5, -3.5, 10);
    EXPECT_EQ(double(r.width()), -5.0);
    EXPECT_EQ(double(r.height()), 7.5);
    r = r;
    expectEdges(r, 1.5, 2.5, -3.5, 10);
}

TEST(GRect, EqualityIsAnyEdge)
{
    EXPECT_TRUE(GRect(1, 2, 3, 4) == GRect(1, 9, 9, 9));
    EXPECT_FALSE(GRect(1, 2, 3, 4) != GRect(1, 9, 9, 9));
    EXPECT_TRUE(GRect(1, 2, 3, 4) == GRect(9, 9, 9, 4));
    EXPECT_FALSE(GRect(1, 2, 3, 4) == GRect(5, 6, 7, 8));
    // No tolerance.
    EXPECT_FALSE(GRect(1, 2, 3, 4) == GRect(1 + 1e-12, 2 + 1e-12, 3 + 1e-12, 4 + 1e-12));
}

TEST(GRect, EmptyOnlyWhenAllEdgesAreZero)
{
    EXPECT_TRUE(GRect(0, 0, 0, 0).isEmpty());
    EXPECT_TRUE(GRect(-0.0, 0, 0, 0).isEmpty());
    EXPECT_FALSE(GRect(5, 5, 5, 5).isEmpty());
    EXPECT_FALSE(GRect(0, 0, 0, 1e-300).isEmpty());
}

TEST(GRect, ArithmeticIsEdgeByEdge)
{
    GRect a(1, 2, 3, 4);
    const GRect b(10, 20, 30, 40);
    expectEdges(a + b, 11, 22, 33, 44);
    expectEdges(b - a, 9, 18, 27, 36);
    expectEdges(a, 1, 2, 3, 4);
    // A diagonal shift, not a growth.
    a += 2.5f;
    expectEdges(a, 3.5, 4.5, 5.5, 6.5);
    a -= 0.5f;
    expectEdges(a, 3, 4, 5, 6);
    expectEdges(a.offset(1, -2), 4, 2, 6, 4);
    expectEdges(a.inflate(1, 3), 3, -1, 7, 7);
    expectEdges(a, 3, -1, 7, 7);
}

TEST(GRect, IsInTruncatesThePointAndTheEdges)
{
    GRect r(1, 1, 10, 10);
    EXPECT_TRUE(r.isIn(GPoint(1, 1)));
    EXPECT_TRUE(r.isIn(GPoint(9.99, 9.99)));
    EXPECT_FALSE(r.isIn(GPoint(10, 5)));
    EXPECT_FALSE(r.isIn(GPoint(5, 10)));
    EXPECT_FALSE(r.isIn(GPoint(0.9, 0.9)));
    EXPECT_TRUE(GRect(0, 0, 5, 5).isIn(GPoint(-0.9, 0)));
    EXPECT_FALSE(GRect(0, 0, 5, 5).isIn(GPoint(-1, 0)));
    // The edges truncate too: right 10.9 is 10.
    EXPECT_FALSE(GRect(1, 1, 10.9, 10.9).isIn(GPoint(10, 5)));
    // The cache follows later changes of the edges.
    r.rVal() = 20;
    EXPECT_TRUE(r.isIn(GPoint(15, 5)));
    // Never inside a rectangle with swapped edges.
    EXPECT_FALSE(GRect(10, 1, 1, 10).isIn(GPoint(5, 5)));
    // Coordinates beyond int saturate instead of being undefined.
    EXPECT_FALSE(r.isIn(GPoint(1e300, 5)));
    EXPECT_FALSE(r.isIn(GPoint(std::nan(""), 5)));
}

TEST(GRect, IsCloseToBorderIsTrueAwayFromTheBorder)
{
    GRect r(0, 0, 100, 100);
    EXPECT_TRUE(r.isCloseToBorder(GPoint(50, 50)));
    EXPECT_FALSE(r.isCloseToBorder(GPoint(99, 50)));
    EXPECT_FALSE(r.isCloseToBorder(GPoint(50, 1)));
    EXPECT_FALSE(r.isCloseToBorder(GPoint(200, 50)));
    // The margin is exactly 2 integer units: left inclusive, right exclusive.
    EXPECT_TRUE(r.isCloseToBorder(GPoint(2, 2)));
    EXPECT_FALSE(r.isCloseToBorder(GPoint(1.99, 2)));
    EXPECT_TRUE(r.isCloseToBorder(GPoint(97, 97.9)));
    EXPECT_FALSE(r.isCloseToBorder(GPoint(98, 50)));
    // The margin is not scaled with the rectangle.
    EXPECT_TRUE(GRect(0, 0, 5, 5).isCloseToBorder(GPoint(2, 2)));
    EXPECT_FALSE(GRect(0, 0, 4, 4).isCloseToBorder(GPoint(2, 2)));
    // At the ends of int the margin saturates.
    EXPECT_FALSE(GRect(0, 0, INT_MAX, INT_MAX).isCloseToBorder(GPoint(INT_MAX - 1.0, 5)));
}

TEST(GRect, IntersectionAcceptsTouchingAndIsOneSided)
{
    const GRect a(0, 0, 10, 10);
    EXPECT_TRUE(a.isIntersect(GRect(10, 0, 20, 10)));
    EXPECT_TRUE(a.isIntersect(GRect(-10, 10, 0, 20)));
    EXPECT_TRUE(a.isIntersect(GRect(2, 2, 3, 3)));
    EXPECT_TRUE(a.isIntersect(GRect(-5, -5, 50, 50)));
    EXPECT_FALSE(a.isIntersect(GRect(10.001, 0, 20, 10)));
    EXPECT_FALSE(a.isIntersect(GRect(-20, 0, -0.001, 10)));
    EXPECT_FALSE(a.isIntersect(GRect(0, 11, 10, 20)));
    EXPECT_FALSE(a.isIntersect(GRect(0, -20, 10, -1)));
    // This rectangle may have its edges in either order...
    EXPECT_TRUE(GRect(10, 10, 0, 0).isIntersect(GRect(5, 5, 6, 6)));
    // ...the argument may not: a swapped argument that overlaps is rejected.
    EXPECT_FALSE(a.isIntersect(GRect(20, 5, 5, 6)));
    EXPECT_TRUE(a.isIntersect(GRect(5, 5, 20, 6)));
}

TEST(GRect, BoundaryRectIsNormalised)
{
    const GRect swapped(10, 8, -2, 1);
    const GRect other(3, -4, 5, 2);
    expectEdges(swapped.getBoundaryRect(other), -2, -4, 10, 8);
    expectEdges(other.getBoundaryRect(swapped), -2, -4, 10, 8);
    expectEdges(swapped, 10, 8, -2, 1);
    expectEdges(GRect(1, 2, 3, 4).getBoundaryRect(GRect(1, 2, 3, 4)), 1, 2, 3, 4);
}

TEST(GRect, TruncationIsTowardZeroAndSaturates)
{
    EXPECT_EQ(truncateCoord(2.9), 2);
    EXPECT_EQ(truncateCoord(-2.9), -2);
    EXPECT_EQ(truncateCoord(-0.5), 0);
    EXPECT_EQ(truncateCoord(2147483647.9), INT_MAX);
    EXPECT_EQ(truncateCoord(-2147483648.9), INT_MIN);
    EXPECT_EQ(truncateCoord(1e20), INT_MAX);
    EXPECT_EQ(truncateCoord(-1e20), INT_MIN);
    EXPECT_EQ(truncateCoord(HUGE_VAL), INT_MAX);
    EXPECT_EQ(truncateCoord(std::nan("")), 0);
}

} // namespace
