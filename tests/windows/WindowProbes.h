// WindowProbes.h - reading windows back in the tests of windows, widgets and contexts.
//
//   pixelAt         one pixel of a window's client area, copied out through a memory device
//   expectPixels    expects the colours of a list of pixels of a window's client area
//   pumpMessages    dispatches what is queued for this thread
//   created         registers and creates a new window object, expecting both to succeed
//   placementIn     a child's window rectangle in its parent's client coordinates
//   PaintedWindow   a top-level window that fills a square of its document in red when painted
#pragma once

#include "TeskWin.h"
#include "support/ReadBack.h"

#include <gtest/gtest.h>

#include <windows.h>

inline COLORREF pixelAt(HWND window, int x, int y)
{
    HDC dc = GetDC(window);
    HDC memory = CreateCompatibleDC(dc);
    HBITMAP bitmap = CreateCompatibleBitmap(dc, 1, 1);
    HGDIOBJ old = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, 1, 1, dc, x, y, SRCCOPY);
    COLORREF pixel = GetPixel(memory, 0, 0);
    SelectObject(memory, old);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(window, dc);
    return pixel;
}

inline void expectPixels(HWND window, std::initializer_list<PixelProbe> probes)
{
    for (PixelProbe const &probe : probes)
        EXPECT_EQ(pixelAt(window, probe.x, probe.y), probe.colour) << "pixel (" << probe.x << ", " << probe.y << ")";
}

inline void pumpMessages()
{
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
}

template <typename Window>
Window *created(Window *window)
{
    EXPECT_NE(0, window->registerWindow());
    EXPECT_EQ(1, window->create());
    return window;
}

inline RECT placementIn(HWND parent, HWND child)
{
    RECT rect;
    GetWindowRect(child, &rect);
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT *>(&rect), 2);
    return rect;
}

const COLORREF probeRed = RGB(255, 0, 0);
const COLORREF probeWhite = RGB(255, 255, 255);

// Paints the document square (square.left, square.top)-(square.right, square.bottom) red,
// through the scroller's view when it has a scroller.
class PaintedWindow : public PWindow {
public:
    PaintedWindow(PAppInterface *app, int width, int height)
        : PWindow(nullptr, PString("painted"), app, WS_VISIBLE | WS_POPUP)
    {
        setBackground(GBrush(GColor(255, 255, 255)));
        setLocation(20, 20);
        setSize(width, height);
    }
    char *getClassName() override
    {
        static char name[] = "TeskWinPaintedWindow";
        return name;
    }
    int paintEvent(GContext &context, GRect &area) override
    {
        ++paints;
        lastArea = area;
        deviceArea = context.getDeviceArea();
        context.beginScrollerView();
        HBRUSH red = CreateSolidBrush(probeRed);
        // Logical coordinates: the viewport origin carries the scroll offset.
        FillRect(context, &square, red);
        DeleteObject(red);
        return claim;
    }

    RECT square = {10, 10, 30, 30};
    int claim = 1;
    int paints = 0;
    GRect lastArea;
    GPoint deviceArea;
};
