#include "widgets/PScroller.h"

#include "windows/PWindow.h"

#include <cmath>

namespace {

// The pixel position of v range units: below 0 is 0, beyond the greatest position is that.
long clampedPixels(long unit, float v, long greatest)
{
    float pixels = static_cast<float>(unit) * v;
    if (pixels < 0)
        pixels = 0;
    if (pixels > static_cast<float>(greatest))
        pixels = static_cast<float>(greatest);
    return static_cast<long>(pixels);
}

// The last pixel position at which a whole page still fits; 0 when the page is the larger.
long greatestPixels(long unit, float range, float page)
{
    const float room = range - page;
    const double pixels = std::floor(static_cast<double>(unit) * room);
    return pixels < 0 ? 0 : static_cast<long>(pixels);
}

float pageOf(float pixels, long unit)
{
    const float units = pixels / static_cast<float>(unit);
    return units < 0 ? 0.0f : units;
}

long atLeastOne(long unit)
{
    return unit < 1 ? 1 : unit;
}

RECT *nativeRect(GRect const *area, RECT &rect)
{
    if (!area)
        return nullptr;
    rect = {truncateCoord(area->lVal()), truncateCoord(area->tVal()), truncateCoord(area->rVal()),
            truncateCoord(area->bVal())};
    return &rect;
}

} // namespace

PScroller::PScroller() : PScroller(1, 1, 0.0f, 0.0f)
{
}

PScroller::PScroller(long xUnit, long yUnit, float xRange, float yRange)
    : window(nullptr), autoMode(1), reservedFlag(1), horizontalShown(0), verticalShown(0), trackFlag(0),
      line(1, 1), page(0.0f, 0.0f), pos(0.0f, 0.0f), range(xRange, yRange),
      unit(atLeastOne(xUnit), atLeastOne(yUnit)), org(0, 0), max(0, 0)
{
}

PScroller::~PScroller() = default;

bool PScroller::hasLiveWindow() const
{
    return window && window->isValidWindow();
}

void PScroller::setWindow(PWindow *window)
{
    this->window = window;
}

void PScroller::setRange(float x, float y)
{
    range = PTPoint<float>(x, y);
    setSBarRange();
}

void PScroller::setUnits(long x, long y)
{
    unit = PTPoint<long>(atLeastOne(x), atLeastOne(y));
    setPageSize();
}

void PScroller::setLines(long x, long y)
{
    line = PTPoint<long>(x, y);
}

void PScroller::setPageSize()
{
    if (!hasLiveWindow())
        return;
    const GRect client = window->getClientArea();
    setPageSize(static_cast<long>(client.width()), static_cast<long>(client.height()));
}

// A dimension of 0 keeps that axis's page: a window reduced to nothing keeps its last page.
void PScroller::setPageSize(long width, long height)
{
    if (!hasLiveWindow())
        return;
    if (width != 0 && unit.xVal() > 0)
        page.xVal() = pageOf(static_cast<float>(width), unit.xVal());
    if (height != 0 && unit.yVal() > 0)
        page.yVal() = pageOf(static_cast<float>(height), unit.yVal());
    setSBarRange();
}

void PScroller::setScrollArea(GRect const &area)
{
    if (!scrollArea)
        scrollArea = std::make_shared<GRect>(area);
    else
        *scrollArea = area;
}

void PScroller::setClipArea(GRect const &area)
{
    if (!clipArea)
        clipArea = std::make_shared<GRect>(area);
    else
        *clipArea = area;
}

int PScroller::setTrackFlag(int flag)
{
    trackFlag = flag;
    return flag;
}

void PScroller::setAutoMode(int mode)
{
    autoMode = mode;
}

int PScroller::getHorizontalHeight()
{
    return GetSystemMetrics(SM_CYHSCROLL);
}

int PScroller::getVerticalWidth()
{
    return GetSystemMetrics(SM_CXVSCROLL);
}

// Both bars get their range, shown or not.
void PScroller::setSBarRange()
{
    max = PTPoint<long>(greatestPixels(unit.xVal(), range.xVal(), page.xVal()),
                        greatestPixels(unit.yVal(), range.yVal(), page.yVal()));
    if (hasLiveWindow()) {
        SetScrollRange(*window, SB_HORZ, 0, max.xVal(), FALSE);
        SetScrollRange(*window, SB_VERT, 0, max.yVal(), FALSE);
    }
    scrollTo(pos.xVal(), pos.yVal());
}

// An axis without a bar still moves the content, while its position stays: the content is
// shifted before the has-flags are consulted. Deliberate. The whole client area is repainted
// as well as scrolled.
void PScroller::scrollTo(float x, float y)
{
    if (!window || (!horizontalShown && !verticalShown))
        return;
    const long newX = clampedPixels(unit.xVal(), x, max.xVal());
    const long newY = clampedPixels(unit.yVal(), y, max.yVal());
    if (newX == org.xVal() && newY == org.yVal())
        return;
    scrollWindow(GPoint(org.xVal() - newX, org.yVal() - newY));
    if (newX != org.xVal() && horizontalShown) {
        if (window->isValidWindow())
            SetScrollPos(*window, SB_HORZ, newX, TRUE);
        pos.xVal() = static_cast<float>(newX) / static_cast<float>(unit.xVal());
        org.xVal() = newX;
    }
    if (newY != org.yVal() && verticalShown) {
        if (window->isValidWindow())
            SetScrollPos(*window, SB_VERT, newY, TRUE);
        pos.yVal() = static_cast<float>(newY) / static_cast<float>(unit.yVal());
        org.yVal() = newY;
    }
    window->repaint(1);
}

void PScroller::scrollBy(float dx, float dy)
{
    scrollTo(pos.xVal() + dx, pos.yVal() + dy);
}

void PScroller::scrollToX(float x)
{
    scrollTo(x, pos.yVal());
}

void PScroller::scrollToY(float y)
{
    scrollTo(pos.xVal(), y);
}

void PScroller::scrollWindow(GPoint const &delta)
{
    if (!hasLiveWindow())
        return;
    RECT scrollRect;
    RECT clipRect;
    ScrollWindow(*window, truncateCoord(delta.xVal()), truncateCoord(delta.yVal()),
                 nativeRect(scrollArea.get(), scrollRect), nativeRect(clipArea.get(), clipRect));
}

long PScroller::xScrollValue(float value) const
{
    return static_cast<long>(static_cast<float>(unit.xVal()) * value);
}

long PScroller::yScrollValue(float value) const
{
    return static_cast<long>(static_cast<float>(unit.yVal()) * value);
}

float PScroller::xRangeValue(int value) const
{
    return unit.xVal() ? static_cast<float>(value) / static_cast<float>(unit.xVal()) : 0.0f;
}

float PScroller::yRangeValue(int value) const
{
    return unit.yVal() ? static_cast<float>(value) / static_cast<float>(unit.yVal()) : 0.0f;
}

GPoint PScroller::transform(GPoint const &point) const
{
    return GPoint(point.xVal() + org.xVal(), point.yVal() + org.yVal());
}

int PScroller::hScroll(unsigned short code, int thumb)
{
    switch (code) {
    case SB_LINELEFT: scrollBy(static_cast<float>(-line.xVal()), 0); break;
    case SB_LINERIGHT: scrollBy(static_cast<float>(line.xVal()), 0); break;
    case SB_PAGELEFT: scrollBy(-page.xVal(), 0); break;
    case SB_PAGERIGHT: scrollBy(page.xVal(), 0); break;
    case SB_THUMBPOSITION: scrollTo(xRangeValue(thumb), pos.yVal()); break;
    case SB_THUMBTRACK:
        // Without live tracking the thumb follows the mouse and the view waits for the drop.
        if (trackFlag)
            scrollTo(xRangeValue(thumb), pos.yVal());
        else if (window && horizontalShown && window->isValidWindow())
            SetScrollPos(*window, SB_HORZ, thumb, TRUE);
        break;
    case SB_LEFT: scrollTo(0, pos.yVal()); break;
    case SB_RIGHT: scrollTo(range.xVal() - page.xVal(), pos.yVal()); break;
    default: break;
    }
    return 1;
}

int PScroller::vScroll(unsigned short code, int thumb)
{
    switch (code) {
    case SB_LINEUP: scrollBy(0, static_cast<float>(-line.yVal())); break;
    case SB_LINEDOWN: scrollBy(0, static_cast<float>(line.yVal())); break;
    case SB_PAGEUP: scrollBy(0, -page.yVal()); break;
    case SB_PAGEDOWN: scrollBy(0, page.yVal()); break;
    case SB_THUMBPOSITION: scrollTo(pos.xVal(), yRangeValue(thumb)); break;
    case SB_THUMBTRACK:
        if (trackFlag)
            scrollTo(pos.xVal(), yRangeValue(thumb));
        else if (window && verticalShown && window->isValidWindow())
            SetScrollPos(*window, SB_VERT, thumb, TRUE);
        break;
    case SB_TOP: scrollTo(pos.xVal(), 0); break;
    case SB_BOTTOM: scrollTo(pos.xVal(), range.yVal() - page.yVal()); break;
    default: break;
    }
    return 1;
}

// At least one line, at most one page, except that a page shorter than a line gives the line.
float PScroller::autoStep(long cursor, long edge, long line, float page, long divisor)
{
    const float lineStep = static_cast<float>(line);
    if (cursor < 0) {
        const long steps = cursor / divisor;
        const float d = lineStep * static_cast<float>(steps);
        const float a = d < -page ? -page : d;
        return -lineStep < a ? -lineStep : a;
    }
    if (cursor > edge) {
        const long steps = (cursor - edge) / divisor;
        const float d = lineStep * static_cast<float>(steps);
        const float a = d <= page ? d : page;
        return lineStep <= a ? a : lineStep;
    }
    return 0.0f;
}

// One line more for each 10 pixels sideways and each 20 pixels up or down.
void PScroller::autoScroll()
{
    enum { horizontalDivisor = 10, verticalDivisor = 20 };
    if (!autoMode || !hasLiveWindow())
        return;
    POINT cursor;
    GetCursorPos(&cursor);
    ScreenToClient(*window, &cursor);
    RECT client;
    GetClientRect(*window, &client);
    const float dx = autoStep(cursor.x, client.right, line.xVal(), page.xVal(), horizontalDivisor);
    const float dy = autoStep(cursor.y, client.bottom, line.yVal(), page.yVal(), verticalDivisor);
    scrollBy(dx, dy);
}

int PScroller::isVisibleRect(long x, long y, int width, int height)
{
    const float left = static_cast<float>(x);
    const float top = static_cast<float>(y);
    if (left + static_cast<float>(width) < pos.xVal() || top + static_cast<float>(height) < pos.yVal())
        return 0;
    if (pos.xVal() + page.xVal() <= left || pos.yVal() + page.yVal() <= top)
        return 0;
    return 1;
}

void PScroller::showBars(int bar, int show)
{
    if (hasLiveWindow())
        ShowScrollBar(*window, bar, show);
}

void PScroller::showHorizontal()
{
    horizontalShown = 1;
    showBars(SB_HORZ, TRUE);
}

void PScroller::showVertical()
{
    verticalShown = 1;
    showBars(SB_VERT, TRUE);
}

void PScroller::showBoth()
{
    horizontalShown = 1;
    verticalShown = 1;
    showBars(SB_BOTH, TRUE);
}

void PScroller::hideHorizontal()
{
    horizontalShown = 0;
    showBars(SB_HORZ, FALSE);
}

void PScroller::hideVertical()
{
    verticalShown = 0;
    showBars(SB_VERT, FALSE);
}

void PScroller::hideBoth()
{
    horizontalShown = 0;
    verticalShown = 0;
    showBars(SB_BOTH, FALSE);
}

GPoint PScroller::getClientPotential()
{
    GPoint potential;
    if (!hasLiveWindow())
        return potential;
    const GRect client = window->getClientArea();
    long width = static_cast<long>(client.width());
    long height = static_cast<long>(client.height());
    if (verticalShown)
        width += getVerticalWidth();
    if (horizontalShown)
        height += getHorizontalHeight();
    potential.set(width, height);
    return potential;
}
