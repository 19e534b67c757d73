#include <gtest/gtest.h>
#include <windows.h>

#include "TeskWin.h"
#include "support/ReadBack.h"

namespace {

bool isLiveRegion(HRGN handle)
{
    return GetObjectType(handle) == OBJ_REGION;
}

// Compares with a platform region made directly, and deletes that one.
bool sameRegion(GRgn const &ours, HRGN expected)
{
    const bool same = EqualRgn(ours, expected) != FALSE;
    DeleteObject(expected);
    return same;
}

TEST(GRgn, CreatesRegionsFromTruncatedCoordinates)
{
    ExpectNoLeaks leaks;
    GRgn empty;
    EXPECT_FALSE(empty.isValid());
    ASSERT_TRUE(empty.create());
    RECT box;
    EXPECT_EQ(GetRgnBox(empty, &box), NULLREGION);

    GRgn rect;
    ASSERT_TRUE(rect.create(GRect(-1.7, 2.9, 10.5, 20.99)));
    EXPECT_TRUE(sameRegion(rect, CreateRectRgn(-1, 2, 10, 20)));

    GRgn ellipse;
    ASSERT_TRUE(ellipse.create(3.9, -4.9, 40.2, 30.7));
    EXPECT_TRUE(sameRegion(ellipse, CreateEllipticRgn(3, -4, 40, 30)));

    // A pentagram: its centre is inside only under the winding rule.
    const GPoint star[5] = {GPoint(50.9, 0.5), GPoint(79.6, 90.1), GPoint(2.2, 34.8),
                            GPoint(97.7, 34.3), GPoint(20.5, 90.9)};
    const POINT truncated[5] = {{50, 0}, {79, 90}, {2, 34}, {97, 34}, {20, 90}};
    GRgn polygon;
    ASSERT_TRUE(polygon.create(star, 5));
    EXPECT_TRUE(sameRegion(polygon, CreatePolygonRgn(truncated, 5, WINDING)));
    EXPECT_TRUE(PtInRegion(polygon, 50, 50));

    GRgn none;
    EXPECT_FALSE(none.create(star, 0));
    EXPECT_FALSE(none.create(star, -3));
    EXPECT_FALSE(none.isValid());
}

TEST(GRgn, OwnsItsHandleAlone)
{
    GdiObjectCounter counter;
    HRGN held;
    {
        GRgn region;
        region.create(GRect(0, 0, 5, 5));
        held = region;
        ASSERT_TRUE(isLiveRegion(held));
        region.destroy();
        EXPECT_FALSE(region.isValid());
        EXPECT_FALSE(isLiveRegion(held));
        region.destroy();

        // attach takes ownership and does not delete what was held before.
        HRGN first = CreateRectRgn(0, 0, 1, 1);
        HRGN second = CreateRectRgn(0, 0, 2, 2);
        region.attach(first);
        region.attach(second);
        EXPECT_TRUE(isLiveRegion(first));
        DeleteObject(first);
        held = second;

        // A second create abandons the first region instead of deleting it.
        GRgn twice;
        twice.create(GRect(0, 0, 3, 3));
        HRGN abandoned = twice;
        twice.create(GRect(0, 0, 4, 4));
        EXPECT_TRUE(isLiveRegion(abandoned));
        EXPECT_EQ(counter.deletions(abandoned), 0);
        DeleteObject(abandoned);
    }
    EXPECT_FALSE(isLiveRegion(held));
    EXPECT_EQ(counter.deletions(held), 1);
    // Three regions made; only the abandoned one was left to the caller.
    EXPECT_EQ(counter.created(), 3);
    EXPECT_EQ(counter.live(), 1);
}

TEST(GRgn, CopiesAreDeepAndSelfAssignmentInvalidates)
{
    ExpectNoLeaks leaks;
    GRgn source;
    source.create(GRect(1, 2, 30, 40));
    GRgn copy(source);
    ASSERT_TRUE(copy.isValid());
    EXPECT_NE(HRGN(copy), HRGN(source));
    EXPECT_TRUE(EqualRgn(copy, source));

    GRgn assigned;
    assigned.create(GRect(0, 0, 1, 1));
    HRGN replaced = assigned;
    assigned = source;
    EXPECT_FALSE(isLiveRegion(replaced));
    EXPECT_TRUE(EqualRgn(assigned, source));
    source.destroy();
    EXPECT_TRUE(PtInRegion(copy, 10, 10));
    EXPECT_TRUE(PtInRegion(assigned, 10, 10));

    // An invalid source leaves the target invalid.
    assigned = source;
    EXPECT_FALSE(assigned.isValid());
    GRgn fromInvalid(source);
    EXPECT_FALSE(fromInvalid.isValid());

    HRGN before = copy;
    GRgn &alias = copy;
    copy = alias;
    EXPECT_FALSE(copy.isValid());
    EXPECT_FALSE(isLiveRegion(before));
}

TEST(GRgn, CombinesIntoAnExistingRegion)
{
    ExpectNoLeaks leaks;
    GRgn a, b;
    a.create(GRect(0, 0, 10, 10));
    b.create(GRect(20, 0, 30, 10));
    a += b;
    EXPECT_TRUE(PtInRegion(a, 5, 5));
    EXPECT_TRUE(PtInRegion(a, 25, 5));
    EXPECT_FALSE(PtInRegion(a, 15, 5));
    EXPECT_TRUE(PtInRegion(b, 25, 5));
    EXPECT_FALSE(PtInRegion(b, 5, 5));

    GRgn both;
    both.create();
    GRgn c;
    c.create(GRect(5, 0, 25, 10));
    both.combine(a, c, RGN_AND);
    GRgn expected;
    expected.create(GRect(5, 0, 10, 10));
    GRgn right;
    right.create(GRect(20, 0, 25, 10));
    expected += right;
    EXPECT_TRUE(EqualRgn(both, expected));

    // Without a destination handle nothing is written anywhere.
    GRgn noTarget;
    noTarget.combine(a, c, RGN_OR);
    EXPECT_FALSE(noTarget.isValid());
}

TEST(GRgn, BoxLeavesTheRectangleAloneForAnEmptyRegion)
{
    ExpectNoLeaks leaks;
    GRect rect(7, 8, 9, 10);
    GRgn empty;
    empty.create();
    empty.getBox(rect);
    EXPECT_EQ(double(rect.lVal()), 7.0);
    EXPECT_EQ(double(rect.bVal()), 10.0);

    GRgn region;
    region.create(GRect(-10, -20, 10, 20));
    region.getBox(rect);
    EXPECT_EQ(double(rect.lVal()), -10.0);
    EXPECT_EQ(double(rect.tVal()), -20.0);
    EXPECT_EQ(double(rect.rVal()), 10.0);
    EXPECT_EQ(double(rect.bVal()), 20.0);

    // The error result is not told apart: the scratch box is copied.
    GRgn invalid;
    invalid.getBox(rect);
    EXPECT_TRUE(rect.isEmpty());
}

} // namespace
