#include <gtest/gtest.h>

#include "support/ReadBack.h"
#include "support/TestApplication.h"
#include "windows/WindowProbes.h"

#include <cmath>

namespace {

// Each test makes its own application: one that lived from load on would stay the process's
// console application for the other tests of this program.

// Reaches the steps that the window drives.
class SteppedScroller : public PScroller {
public:
    SteppedScroller(long xUnit, long yUnit, float xRange, float yRange) : PScroller(xUnit, yUnit, xRange, yRange) {}
    using PScroller::autoScroll;
    using PScroller::scrollWindow;
    void autoScroll() override
    {
        ++autoSteps;
        PScroller::autoScroll();
    }
    int autoSteps = 0;
};

// A window scrolled by a scroller; it lets the scroller go and closes at the end of the scope.
struct ScrolledWindow {
    PaintedWindow *window;
    ~ScrolledWindow()
    {
        window->setScroller(nullptr);
        window->shutDownWindow();
    }
    PaintedWindow *operator->() const { return window; }
    PaintedWindow &operator*() const { return *window; }
};

ScrolledWindow scrolledWindow(PAppInterface *app, PScroller &scroller, int x = 20, int y = 20)
{
    PaintedWindow *window = new PaintedWindow(app, 160, 140);
    window->setLocation(x, y);
    EXPECT_NE(0, window->registerWindow());
    window->setScroller(&scroller);
    scroller.showBoth();
    EXPECT_EQ(1, window->create());
    // The bars have taken their room from the client area: the page follows when asked.
    scroller.setPageSize();
    return {window};
}

void scrollMessage(HWND window, UINT message, WORD code, WORD thumb = 0)
{
    SendMessageA(window, message, MAKEWPARAM(code, thumb), 0);
}

} // namespace

TEST(PScroller, ScrollingMovesTheDrawingByTheExpectedPixels)
{
    ExpectNoLeaks leaks;
    TestApplication app;
    PScroller scroller(1, 1, 400, 400);
    ScrolledWindow window = scrolledWindow(&app, scroller);
    window->updateWindow();
    ASSERT_EQ(probeRed, pixelAt(*window, 15, 26));

    scroller.scrollTo(4, 5);
    window->updateWindow();
    // The square of the document at (10, 10)-(30, 30) now stands at (6, 5)-(26, 25).
    expectPixels(*window, {{6, 5, probeRed}, {25, 24, probeRed}, {26, 25, probeWhite}, {5, 4, probeWhite}});
    EXPECT_EQ(4, GetScrollPos(*window, SB_HORZ));
    EXPECT_EQ(5, GetScrollPos(*window, SB_VERT));
    // A client point becomes a point of the document.
    EXPECT_EQ(14.0, scroller.transform(GPoint(10, 10)).xVal());
    EXPECT_EQ(15.0, scroller.transform(GPoint(10, 10)).yVal());
}

TEST(PScroller, PositionsAreClampedAndFallOnWholePixels)
{
    TestApplication app;
    PScroller scroller(3, 3, 200, 200);
    ScrolledWindow window = scrolledWindow(&app, scroller);
    RECT client;
    GetClientRect(*window, &client);
    // The page is the client area in range units, unrounded; the greatest position leaves
    // one page of room.
    EXPECT_FLOAT_EQ(client.right / 3.0f, scroller.getPage().xVal());
    const long maxY = static_cast<long>(std::floor(3.0 * (200.0f - client.bottom / 3.0f)));
    EXPECT_EQ(maxY, scroller.getMax().yVal());
    int low = 0, high = 0;
    GetScrollRange(*window, SB_VERT, &low, &high);
    EXPECT_EQ(maxY, high);

    scroller.scrollTo(1.5f, 1e6f);
    EXPECT_EQ(4, scroller.getOrg().xVal());
    EXPECT_FLOAT_EQ(4.0f / 3.0f, scroller.getPos().xVal());
    EXPECT_EQ(maxY, scroller.getOrg().yVal());
    scroller.scrollTo(-5, -5);
    EXPECT_EQ(0, scroller.getOrg().xVal());
    EXPECT_EQ(0, scroller.getOrg().yVal());

    // A range smaller than the page leaves no room, and the view goes back to 0.
    scroller.scrollTo(10, 10);
    scroller.setRange(1, 1);
    EXPECT_EQ(0, scroller.getMax().xVal());
    EXPECT_EQ(0, scroller.getOrg().yVal());
    EXPECT_EQ(0.0f, scroller.getPos().yVal());

    // A window reduced to nothing keeps its last page.
    const float page = scroller.getPage().xVal();
    scroller.setPageSize(0, 0);
    EXPECT_EQ(page, scroller.getPage().xVal());
}

TEST(PScroller, NothingMovesWithoutAWindowOrABar)
{
    TestApplication app;
    PScroller alone;
    alone.setUnits(0, -5);
    EXPECT_EQ(1, alone.getUnit().xVal());
    EXPECT_EQ(1, alone.getUnit().yVal());
    alone.showBoth();
    alone.setRange(100, 100);
    alone.scrollTo(5, 5);
    EXPECT_EQ(0.0f, alone.getPos().yVal());
    // Before the window exists the page cannot be known.
    alone.setPageSize();
    EXPECT_EQ(0.0f, alone.getPage().xVal());
    EXPECT_EQ(0.0f, alone.xRangeValue(0));
    EXPECT_EQ(7, alone.yScrollValue(7.9f));

    PScroller barless(1, 1, 1000, 1000);
    ScrolledWindow window = scrolledWindow(&app, barless);
    barless.hideBoth();
    barless.scrollTo(50, 50);
    EXPECT_EQ(0, barless.getOrg().yVal());
    // A scroll that goes nowhere repaints nothing.
    barless.showVertical();
    window->updateWindow();
    barless.scrollBy(0, 0);
    EXPECT_FALSE(GetUpdateRect(*window, nullptr, FALSE));
}

TEST(PScroller, ScrollBarMessagesStepTheView)
{
    TestApplication app;
    PScroller scroller(1, 2, 1000, 1000);
    scroller.setLines(3, 7);
    ScrolledWindow window = scrolledWindow(&app, scroller);
    const long page = static_cast<long>(scroller.getPage().yVal() * 2);

    scrollMessage(*window, WM_VSCROLL, SB_LINEDOWN);
    EXPECT_EQ(14, scroller.getOrg().yVal());
    scrollMessage(*window, WM_VSCROLL, SB_PAGEDOWN);
    EXPECT_NEAR(14 + page, scroller.getOrg().yVal(), 1);
    scrollMessage(*window, WM_VSCROLL, SB_TOP);
    EXPECT_EQ(0, scroller.getOrg().yVal());

    // Without live tracking the thumb moves and the view waits for the drop.
    scrollMessage(*window, WM_VSCROLL, SB_THUMBTRACK, 50);
    EXPECT_EQ(0, scroller.getOrg().yVal());
    EXPECT_EQ(50, GetScrollPos(*window, SB_VERT));
    scrollMessage(*window, WM_VSCROLL, SB_THUMBPOSITION, 50);
    EXPECT_EQ(50, scroller.getOrg().yVal());
    EXPECT_EQ(25.0f, scroller.getPos().yVal());
    scroller.setTrackFlag(1);
    scrollMessage(*window, WM_VSCROLL, SB_THUMBTRACK, 60);
    EXPECT_EQ(60, scroller.getOrg().yVal());

    scrollMessage(*window, WM_VSCROLL, SB_BOTTOM);
    EXPECT_EQ(scroller.getMax().yVal(), scroller.getOrg().yVal());
    scrollMessage(*window, WM_HSCROLL, SB_LINERIGHT);
    EXPECT_EQ(3, scroller.getOrg().xVal());
    scrollMessage(*window, WM_HSCROLL, SB_LINELEFT);
    scrollMessage(*window, WM_HSCROLL, SB_LINELEFT);
    EXPECT_EQ(0, scroller.getOrg().xVal());

    window->setScroller(nullptr);
    // Without a scroller the events are not claimed.
    EXPECT_EQ(0, window->vScrollEvent(SB_LINEDOWN, 0));
}

TEST(PScroller, AutoScrollStepsByTheCursorsDistance)
{
    TestApplication app;
    SteppedScroller scroller(1, 1, 10000, 10000);
    scroller.setLines(5, 5);
    ScrolledWindow window = scrolledWindow(&app, scroller, 300, 600);
    scroller.setPageSize(100, 100);
    scroller.scrollTo(1000, 1000);
    const GPoint origin = window->clientToScreen(GPoint(0, 0));
    auto stepAt = [&](int x, int y) {
        const PTPoint<float> before = scroller.getPos();
        SetCursorPos(static_cast<int>(origin.xVal()) + x, static_cast<int>(origin.yVal()) + y);
        scroller.autoScroll();
        return scroller.getPos() - before;
    };
    EXPECT_EQ(-5.0f, stepAt(10, -1).yVal());
    EXPECT_EQ(-60.0f, stepAt(10, -250).yVal());
    EXPECT_EQ(-95.0f, stepAt(10, -390).yVal());
    EXPECT_EQ(-100.0f, stepAt(10, -500).yVal());
    EXPECT_EQ(0.0f, stepAt(10, 10).yVal());
    // Sideways a line for each 10 pixels.
    EXPECT_EQ(-20.0f, stepAt(-45, 10).xVal());
    scroller.setAutoMode(0);
    EXPECT_EQ(0.0f, stepAt(10, -250).yVal());
}

TEST(PScroller, AutoScrollingPumpsUntilTheButtonIsUp)
{
    TestApplication app;
    SteppedScroller scroller(1, 1, 1000, 1000);
    ScrolledWindow window = scrolledWindow(&app, scroller);
    pumpMessages();
    PostThreadMessageA(GetCurrentThreadId(), WM_QUIT, 3, 0);
    PostMessageA(*window, WM_LBUTTONUP, 0, 0);
    window->processAutoScrolling();
    EXPECT_GE(scroller.autoSteps, 2);
    EXPECT_EQ(nullptr, GetCapture());
    // The quit message was dispatched like any other.
    MSG msg;
    EXPECT_FALSE(PeekMessageA(&msg, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));

    // Without the automatic mode nothing is pumped.
    scroller.setAutoMode(0);
    PostMessageA(*window, WM_APP, 0, 0);
    window->processAutoScrolling();
    EXPECT_TRUE(PeekMessageA(&msg, *window, WM_APP, WM_APP, PM_REMOVE));
}

TEST(PScroller, TheClipAreaBoundsTheMovedPixels)
{
    TestApplication app;
    SteppedScroller scroller(1, 1, 400, 400);
    ScrolledWindow window = scrolledWindow(&app, scroller);
    window->updateWindow();
    ASSERT_EQ(probeRed, pixelAt(*window, 25, 25));

    // Only the pixels inside the clip area change: the square moves down there alone.
    scroller.setClipArea(GRect(0, 0, 20, 200));
    scroller.scrollWindow(GPoint(0, 40));
    expectPixels(*window, {{15, 55, probeRed}, {25, 55, probeWhite}, {25, 25, probeRed}});
}

TEST(PScroller, CopiesShareTheirAreas)
{
    PScroller first;
    first.setScrollArea(GRect(0, 0, 10, 10));
    PScroller copy(first);
    copy.setScrollArea(GRect(1, 2, 3, 4));
    ASSERT_NE(nullptr, first.getScrollArea());
    EXPECT_EQ(first.getScrollArea(), copy.getScrollArea());
    EXPECT_EQ(2.0, first.getScrollArea()->tVal());
    EXPECT_EQ(nullptr, copy.getClipArea());
}
