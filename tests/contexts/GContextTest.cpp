#include <gtest/gtest.h>

#include "support/ReadBack.h"
#include "support/TestApplication.h"
#include "windows/WindowProbes.h"

#include <string>

namespace {

TestApplication theApp;

PaintedWindow *createdPaintedWindow(int width = 120, int height = 90)
{
    return created(new PaintedWindow(&theApp, width, height));
}

POINT viewportOrigin(HDC dc)
{
    POINT origin = {};
    GetViewportOrgEx(dc, &origin);
    return origin;
}

// Exposes the handle a context keeps to itself.
class OpenContext : public GContext {
public:
    OpenContext(PWindowObject *window, GContextStyle style) : GContext(window, style) {}
    using GContext::getDC;
};

} // namespace

TEST(GPainter, PaintedWindowIsReadBackByPixels)
{
    ExpectNoLeaks leaks;
    PaintedWindow *window = createdPaintedWindow();
    window->updateWindow();
    ASSERT_EQ(1, window->paints);
    expectPixels(*window, {{15, 15, probeRed}, {29, 29, probeRed}, {30, 30, probeWhite}, {5, 5, probeWhite}});

    // The handler got the update rectangle and a device the size of the client area.
    RECT client;
    GetClientRect(*window, &client);
    EXPECT_EQ(0.0, window->lastArea.lVal());
    EXPECT_EQ(client.right, window->lastArea.rVal());
    EXPECT_EQ(client.bottom, window->lastArea.bVal());
    EXPECT_EQ(client.right, window->deviceArea.xVal());
    EXPECT_EQ(client.bottom, window->deviceArea.yVal());

    // A part of the window painted again: only that part is the update area.
    RECT part = {40, 30, 60, 50};
    InvalidateRect(*window, &part, TRUE);
    window->updateWindow();
    EXPECT_EQ(2, window->paints);
    EXPECT_EQ(40.0, window->lastArea.lVal());
    EXPECT_EQ(50.0, window->lastArea.bVal());
    window->shutDownWindow();
}

TEST(GPainter, UnclaimedPaintEndsBeforeTheDefaultProcedure)
{
    PaintedWindow *window = createdPaintedWindow();
    window->claim = 0;
    InvalidateRect(*window, nullptr, TRUE);
    window->updateWindow();
    // Painted once and validated: the default procedure found nothing left to paint.
    EXPECT_EQ(1, window->paints);
    EXPECT_FALSE(GetUpdateRect(*window, nullptr, FALSE));
    EXPECT_EQ(probeRed, pixelAt(*window, 15, 15));
    window->shutDownWindow();
}

TEST(GContext, StylesChooseTheHandleAndTheWindow)
{
    PaintedWindow *window = createdPaintedWindow(100, 80);
    RECT client;
    GetClientRect(*window, &client);
    {
        OpenContext screenByNull(nullptr, GCWindow);
        EXPECT_EQ(nullptr, screenByNull.getWindow());
        EXPECT_NE(nullptr, screenByNull.getDC());
        EXPECT_EQ(0.0, screenByNull.getDeviceArea().xVal());
        OpenContext screen(window, GCScreen);
        EXPECT_EQ(nullptr, screen.getWindow());
        EXPECT_EQ(0.0, screen.getDeviceArea().yVal());
        OpenContext outOfRange(window, static_cast<GContextStyle>(7));
        EXPECT_EQ(window, outOfRange.getWindow());
        EXPECT_EQ(WindowFromDC(outOfRange.getDC()), static_cast<HWND>(*window));
        EXPECT_EQ(client.right, outOfRange.getDeviceArea().xVal());
        EXPECT_EQ(client.bottom, outOfRange.getDeviceArea().yVal());
    }
    window->updateWindow();

    // clearWindow fills the client area with the window's background, over the red square.
    {
        GContext context(window, GCClient);
        context.clearWindow();
    }
    EXPECT_EQ(probeWhite, pixelAt(*window, 15, 15));

    // exclude keeps a rectangle of device units out of later drawing.
    {
        OpenContext context(window, GCClient);
        context.exclude(GRect(0, 0, 50, 50));
        RECT all = {0, 0, client.right, client.bottom};
        HBRUSH red = CreateSolidBrush(probeRed);
        FillRect(context.getDC(), &all, red);
        DeleteObject(red);
    }
    expectPixels(*window, {{49, 49, probeWhite}, {50, 50, probeRed}});

    window->shutDownWindow();
}

TEST(GContext, AWindowThatHasGoneGivesNoHandleAndNoArea)
{
    PaintedWindow *window = createdPaintedWindow(100, 80);
    PScroller scroller(1, 1, 500, 500);
    scroller.showBoth();
    window->setScroller(&scroller);
    // The platform window goes; the object stays.
    DestroyWindow(*window);
    ASSERT_EQ(0, window->isValidWindow());
    {
        OpenContext context(window, GCClient);
        EXPECT_EQ(0.0, context.getDeviceArea().xVal());
        context.clearWindow();
        context.beginScrollerView();
        context.exclude(GRect(0, 0, 5, 5));
    }
    // The scroller keeps its model and leaves the platform alone.
    scroller.scrollTo(3, 4);
    EXPECT_EQ(4, scroller.getOrg().yVal());
    scroller.setPageSize();
    EXPECT_EQ(1, window->vScrollEvent(SB_LINEDOWN, 0));
    EXPECT_EQ(5, scroller.getOrg().yVal());
    window->setScroller(nullptr);
    PWindowObject::deleteWindow(window);
}

TEST(GContext, ScrollerViewMovesTheViewportOriginByTheOffset)
{
    PaintedWindow *window = createdPaintedWindow(100, 80);
    {
        OpenContext plain(window, GCClient);
        plain.beginScrollerView();
        EXPECT_EQ(0, viewportOrigin(plain.getDC()).x);
    }
    PScroller scroller(2, 3, 500, 500);
    scroller.showBoth();
    window->setScroller(&scroller);
    scroller.scrollTo(5, 4);
    ASSERT_EQ(5.0f, scroller.getPos().xVal());
    ASSERT_EQ(4.0f, scroller.getPos().yVal());
    {
        OpenContext context(window, GCClient);
        context.beginScrollerView();
        EXPECT_EQ(-10, viewportOrigin(context.getDC()).x);
        EXPECT_EQ(-12, viewportOrigin(context.getDC()).y);
        // Each starts from the stored origin: the end does not undo the begin.
        context.endScrollerView();
        EXPECT_EQ(10, viewportOrigin(context.getDC()).x);
        EXPECT_EQ(12, viewportOrigin(context.getDC()).y);
    }
    window->setScroller(nullptr);
    window->shutDownWindow();
}

TEST(GDC, AdoptsTheMappingOfAHandleItDoesNotOwn)
{
    ExpectNoLeaks leaks;
    HDC memory = CreateCompatibleDC(nullptr);
    GPoint area(64, 48);
    {
        GDC device(memory, area);
        EXPECT_EQ(textMappingMode, device.getMapMode().getMode());
        EXPECT_EQ(64.0, device.getDeviceArea().xVal());
        EXPECT_EQ(memory, device.getDC());
    }
    SetMapMode(memory, MM_ANISOTROPIC);
    SetWindowExtEx(memory, 200, 100, nullptr);
    SetViewportOrgEx(memory, 7, 9, nullptr);
    {
        GDC device(memory, area);
        EXPECT_EQ(anisotropicMappingMode, device.getMapMode().getMode());
        EXPECT_EQ(200.0, device.getDeviceArea().xVal());
        EXPECT_EQ(100.0, device.getDeviceArea().yVal());
        EXPECT_EQ(7.0, device.getMapMode().getViewportOrg().xVal());
        EXPECT_EQ(9.0, device.getMapMode().getViewportOrg().yVal());
    }
    // Read, never written, and never released.
    EXPECT_EQ(MM_ANISOTROPIC, GetMapMode(memory));
    EXPECT_EQ(7, viewportOrigin(memory).x);
    EXPECT_EQ(0, leaks.counter.deletions(memory));
    EXPECT_TRUE(DeleteDC(memory));
}

TEST(GContext, TrueTypeFontNamesLeaveRasterFontsOut)
{
    PList<PString> names;
    getTrueTypeFontNames(names);
    ASSERT_GT(names.length(), 0u);
    bool sawSymbolPass = false;
    for (unsigned int index = 0; index < names.length(); ++index) {
        const std::string name = static_cast<char const *>(names(index));
        EXPECT_FALSE(name.empty());
        // Raster families of the platform.
        EXPECT_NE("System", name);
        EXPECT_NE("Fixedsys", name);
        for (unsigned int earlier = 0; earlier < index; ++earlier) {
            if (names(earlier) == names(index))
                sawSymbolPass = true;
        }
    }
    // The two passes list a family of both character sets twice.
    EXPECT_TRUE(sawSymbolPass);
}
