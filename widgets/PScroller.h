// PScroller.h - the scrolling policy of one window.
//
//   PScroller  the view's position in the application's range units and in pixels, their
//              conversion and clamping, the window's scroll bars, line, page and thumb steps,
//              and drag-to-scroll while the mouse is held outside the client area
//
// The floating position is what the application reads and writes; the pixel position is what
// the scroll bars and ScrollWindow see. After a scroll an axis's position is its pixel
// position divided by its unit, so a position always falls on a whole pixel.
#pragma once

#include "foundation/GPoint.h"
#include "foundation/PTPoint.h"
#include "foundation/TeskWinExport.h"
#include "graphics/GRect.h"

#include <memory>

class PWindow;

class TESKWIN_API PScroller {
    // The window forwards its scroll events and drives the automatic scrolling.
    friend class PWindow;

public:
    PScroller();
    // A unit below 1 becomes 1.
    PScroller(long xUnit, long yUnit, float xRange, float yRange);
    // Copies share the scroll and clip rectangles with their source.
    PScroller(PScroller const &other) = default;
    PScroller &operator=(PScroller const &other) = default;

protected:
    // The virtual operations in the order of their table.
    // Moves the window's content by delta pixels, inside the scroll and clip areas if set.
    virtual void scrollWindow(GPoint const &delta);
    // One step of a scroll bar by the platform's codes; always 1.
    virtual int hScroll(unsigned short code, int thumb);
    virtual int vScroll(unsigned short code, int thumb);
    // The greatest pixel position from range and page, given to both bars; the view follows.
    virtual void setSBarRange();
    // One step of drag-to-scroll, by the cursor's distance from the client area.
    virtual void autoScroll();

public:
    virtual ~PScroller();
    // The page from the window's client area; nothing without a live window.
    virtual void setPageSize();
    // The page from the given pixel sizes; nothing without a live window.
    void setPageSize(long width, long height);

    void setWindow(PWindow *window);
    void setRange(float x, float y);
    // A unit below 1 becomes 1.
    void setUnits(long x, long y);
    void setLines(long x, long y);
    // Device units, kept from then on.
    void setScrollArea(GRect const &area);
    void setClipArea(GRect const &area);
    int setTrackFlag(int flag);
    void setAutoMode(int mode);

    PTPoint<float> getPos() const { return pos; }
    PTPoint<float> getPage() const { return page; }
    PTPoint<float> getRange() const { return range; }
    PTPoint<long> getLine() const { return line; }
    PTPoint<long> getUnit() const { return unit; }
    PTPoint<long> getOrg() const { return org; }
    PTPoint<long> getMax() const { return max; }
    int hasHorizontal() const { return horizontalShown; }
    int hasVertical() const { return verticalShown; }
    int getTrackFlag() const { return trackFlag; }
    int autoModeOn() const { return autoMode; }
    GRect const *getScrollArea() const { return scrollArea.get(); }
    GRect const *getClipArea() const { return clipArea.get(); }

    static int getHorizontalHeight();
    static int getVerticalWidth();

    // Positions are clamped to 0 and the greatest pixel position; nothing moves without a
    // window or with no bar shown.
    void scrollTo(float x, float y);
    void scrollBy(float dx, float dy);
    void scrollToX(float x);
    void scrollToY(float y);

    // Range units to pixels, truncated, unclamped; and back.
    long xScrollValue(float value) const;
    long yScrollValue(float value) const;
    float xRangeValue(int value) const;
    float yRangeValue(int value) const;
    // A client point in pixels to a point of the scrolled document in pixels.
    GPoint transform(GPoint const &point) const;

    void showHorizontal();
    void showVertical();
    void showBoth();
    void hideHorizontal();
    void hideVertical();
    void hideBoth();

    // The client size the window would have without its scroll bars; (0, 0) without a window.
    GPoint getClientPotential();

protected:
    PWindow *getWindow() const { return window; }

private:
    bool hasLiveWindow() const;
    void showBars(int bar, int show);
    // One axis of autoScroll: the cursor's distance beyond the edge, in steps of divisor.
    static float autoStep(long cursor, long edge, long line, float page, long divisor);
    // Touching the view's near edge counts as visible, touching its far edge does not.
    int isVisibleRect(long x, long y, int width, int height);

    PWindow *window;
    int autoMode;
    // Set and copied, never read.
    int reservedFlag;
    int horizontalShown;
    int verticalShown;
    int trackFlag;
    PTPoint<long> line;
    PTPoint<float> page;
    PTPoint<float> pos;
    PTPoint<float> range;
    PTPoint<long> unit;
    PTPoint<long> org;
    PTPoint<long> max;
    // Shared, not copied, by copies of the scroller; the last one frees them.
    std::shared_ptr<GRect> scrollArea;
    std::shared_ptr<GRect> clipArea;
};
