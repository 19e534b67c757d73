#include <gtest/gtest.h>
#include <windows.h>

#include "TeskWin.h"
#include "support/TestApplication.h"
#include "windows/WindowProbes.h"
#include "support/ReadBack.h"

namespace {

void expectCorner(GPoint const &p, double x, double y)
{
    EXPECT_DOUBLE_EQ(double(p.xVal()), x);
    EXPECT_DOUBLE_EQ(double(p.yVal()), y);
}

void expectUpper(GPoint const &left, GPoint const &right, double height, double ulx, double uly, double urx,
                 double ury)
{
    PRectangle r(left, right, height);
    r.recalculate();
    expectCorner(r.upperLeft(), ulx, uly);
    expectCorner(r.upperRight(), urx, ury);
}

TEST(PRectangle, UpperCornersFollowTheBaseTurnedAQuarter)
{
    expectUpper(GPoint(0, 10), GPoint(10, 10), 5, 0, 5, 10, 5);
    // A horizontal base running right to left still has its upper edge at smaller y.
    expectUpper(GPoint(10, 10), GPoint(0, 10), 5, 10, 5, 0, 5);
    expectUpper(GPoint(0, 0), GPoint(0, 10), 5, 5, 0, 5, 10);
    expectUpper(GPoint(0, 0), GPoint(3, 4), 5, 4, -3, 7, 1);
    // Slightly off horizontal, right to left: the turned base puts the edge at greater y.
    PRectangle nearly(GPoint(10, 10), GPoint(0, 10.001), 5);
    nearly.recalculate();
    EXPECT_GT(double(nearly.upperLeft().yVal()), 14.9);
    // Equal points: the horizontal rule, no division.
    expectUpper(GPoint(2, 2), GPoint(2, 2), 5, 2, -3, 2, -3);
    // A negative height puts the edge on the other side, in both branches.
    expectUpper(GPoint(0, 10), GPoint(10, 10), -5, 0, 15, 10, 15);
    expectUpper(GPoint(0, 0), GPoint(3, 4), -5, -4, 3, -1, 7);
}

TEST(PRectangle, SettersStoreWithoutRecalculating)
{
    PRectangle r(GPoint(0, 10), GPoint(10, 10), 5);
    expectCorner(r.upperLeft(), 0, 0);    // default until recalculated
    r.recalculate();
    r.setBase(GPoint(0, 0), GPoint(3, 4));
    r.setHeight(10);
    expectCorner(r.lowerRight(), 3, 4);
    expectCorner(r.upperLeft(), 0, 5);    // stale
    PRectangle copy(r);
    copy.recalculate();
    expectCorner(copy.upperLeft(), 8, -6);
    expectCorner(r.upperLeft(), 0, 5);
    r = copy;
    expectCorner(r.upperRight(), 11, -2);
    expectCorner(r.lowerLeft(), 0, 0);
}

TEST(PRectangle, DrawsItsOutlineWithTheCurrentPen)
{
    ExpectNoLeaks leaks;
    TestApplication app;
    PaintedWindow *window = new PaintedWindow(&app, 120, 90);
    window->square = RECT{};
    ASSERT_NE(0, window->registerWindow());
    ASSERT_EQ(1, window->create());
    window->updateWindow();
    {
        GContext context(window, GCClient);
        context.setPen(GPen(GColor::Red, 0, LineSolid));
        PRectangle r(GPoint(5, 30), GPoint(35, 30), 20);
        r.draw(context);
        expectCorner(r.upperRight(), 35, 10);
        context.setPen(GPen());
    }
    EXPECT_EQ(pixelAt(*window, 20, 30), probeRed);
    EXPECT_EQ(pixelAt(*window, 20, 10), probeRed);
    EXPECT_EQ(pixelAt(*window, 5, 20), probeRed);
    EXPECT_EQ(pixelAt(*window, 35, 20), probeRed);
    EXPECT_EQ(pixelAt(*window, 20, 20), probeWhite); // nothing is filled
    PWindowObject::deleteWindow(window);
}

} // namespace
