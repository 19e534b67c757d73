// PictureWindow.cpp - painting, zoom, scrolling, overlays and the selection of one picture.
#include "PictureWindow.h"

#include "Workbench.h"
#include "WorkbenchApp.h"

#include <algorithm>
#include <cstdio>

namespace {

const int minZoom = 25;
const int maxZoom = 800;
const long scrollLine = 16;
// The background around a picture smaller than its window.
const GColor surround(96, 96, 104);
// Outline colours, one after the other by region value.
const GColor outlineColours[] = {GColor(255, 230, 0), GColor(255, 40, 40), GColor(0, 230, 255), GColor(255, 0, 220)};
// Regions are traced after the picture is reduced to this many colours.
const unsigned short tracedColours = 6;
const int rankMedian = 4;
const unsigned short maxTracedWidth = 320;
const int smoothingPasses = 2;
const unsigned short tracedBlock = 4;
// Bars of the line screen: the row pitch in picture pixels, and bars thickest where dark.
const unsigned short screenCell = 8;
const int darkIsThick = 1;
const unsigned short screenAngle = 0;

} // namespace

PictureWindow::PictureWindow(PWindowObject *frame, PString const &title, Picture const &picture, WorkbenchApp *app)
    : PWindow(frame, title, app), workbench(app), title(title), picture(picture)
{
    setBackground(GBrush(surround));
    scroller.setLines(scrollLine, scrollLine);
    scroller.showBoth();
    setScroller(&scroller);
    pictureChanged();
}

PictureWindow::~PictureWindow() { setScroller(nullptr); }

char *PictureWindow::getClassName() { return const_cast<char *>("WorkbenchPicture"); }

int PictureWindow::canClose() { return !workbench->busy; }

void PictureWindow::pictureChanged()
{
    // Outlines, bars and the selection belong to the picture as it was.
    clearOverlays();
    selected = false;
    band.forget();
    setZoom(zoom);
}

void PictureWindow::setZoom(int percent)
{
    zoom = std::clamp(percent, minZoom, maxZoom);
    scroller.setRange(static_cast<float>(picture.getWidth() * scale()), static_cast<float>(picture.getHeight() * scale()));
    scroller.setPageSize();
    repaint(1);
}

void PictureWindow::scrollToPicture(double x, double y)
{
    scroller.scrollTo(static_cast<float>(x * scale()), static_cast<float>(y * scale()));
}

void PictureWindow::select(GPoint const &a, GPoint const &b)
{
    selection = GRect(std::min(a.getX(), b.getX()), std::min(a.getY(), b.getY()), std::max(a.getX(), b.getX()),
                      std::max(a.getY(), b.getY()));
    selected = true;
    GContext context(this, GCClient);
    context.beginScrollerView();
    band.show(context, onScreen(selection));
}

void PictureWindow::queueDrag(GPoint const &from, GPoint const &to)
{
    const PTPoint<long> origin = scroller.getOrg();
    auto client = [&](GPoint const &p) {
        return GPoint(p.getX() * scale() - origin.xVal(), p.getY() * scale() - origin.yVal());
    };
    auto position = [](GPoint const &p) {
        return static_cast<LPARAM>(MAKELPARAM(static_cast<short>(p.getX()), static_cast<short>(p.getY())));
    };
    const GPoint start = client(from), end = client(to);
    setCursorPosition(clientToScreen(end));
    postEvent(this, PEvent(this, WM_LBUTTONDOWN, MK_LBUTTON, position(start)));
    const int moves = 8;
    for (int i = 1; i <= moves; ++i) {
        const GPoint at(start.getX() + (end.getX() - start.getX()) * i / moves,
                        start.getY() + (end.getY() - start.getY()) * i / moves);
        postEvent(this, PEvent(this, WM_MOUSEMOVE, MK_LBUTTON, position(at)));
    }
    postEvent(this, PEvent(this, WM_LBUTTONUP, 0, position(end)));
}

bool PictureWindow::cropToSelection()
{
    if (!selected)
        return false;
    GImage *part = picture.getSubImage(GPoint(selection.lVal(), selection.tVal()), GPoint(selection.rVal(), selection.bVal()));
    if (!part)
        return false;
    picture = Picture(*part);
    delete part;
    picture.setModified(1);
    pictureChanged();
    return true;
}

int PictureWindow::traceOutlines()
{
    clearOverlays();
    Picture regions(picture);
    // A smaller copy, smoothed and cut into blocks, so that noise does not break the regions
    // into crumbs: the tracer gives up a band of colours whose border runs too long.
    int result = picture.getWidth() > maxTracedWidth ? regions.scale(0.5f, 0.5f, 1) : GImage::resultOk;
    for (int pass = 0; pass < smoothingPasses && result == GImage::resultOk; ++pass)
        result = regions.NLFilter(rankMedian, 3);
    if (result == GImage::resultOk)
        result = regions.mosaic(tracedBlock);
    if (result == GImage::resultOk)
        result = regions.octreeReduction(tracedColours);
    traceScale = regions.getWidth() ? double(picture.getWidth()) / regions.getWidth() : 1;
    if (result == GImage::resultOk)
        result = regions.outlineTrace(0, 0, outlines);
    repaint(0);
    return result;
}

int PictureWindow::makeLineScreen()
{
    clearOverlays();
    picture.makeDitherSquares(screenAngle, screenCell, 1.0f, darkIsThick, bars);
    repaint(1);
    return bars.length() ? GImage::resultOk : GImage::resultImpossible;
}

void PictureWindow::clearOverlays()
{
    outlines.empty();
    bars.empty();
    repaint(1);
}

PString PictureWindow::describe()
{
    char text[96];
    const unsigned short colours = picture.numColors();
    if (colours)
        std::snprintf(text, sizeof text, "%u x %u, %u colours", picture.getWidth(), picture.getHeight(), colours);
    else
        std::snprintf(text, sizeof text, "%u x %u, true colour", picture.getWidth(), picture.getHeight());
    return PString(text);
}

int PictureWindow::paintEvent(GContext &context)
{
    context.beginScrollerView();
    const GRect whole(0, 0, picture.getWidth(), picture.getHeight());
    if (bars.length())
        drawLineScreen(context);
    else
        context.zoomImage(picture, whole, onScreen(whole), SRCCOPY);
    drawOutlines(context);
    band.redraw(context);
    return 1;
}

int PictureWindow::resizeEvent(GPoint const &size)
{
    PWindow::resizeEvent(size);
    scroller.setPageSize();
    return 0;
}

int PictureWindow::mouseLDownEvent(unsigned short, GPoint const &position)
{
    if (dragging || workbench->busy)
        return 1;
    anchor = toPicture(position);
    dragging = true;
    select(anchor, anchor);
    // Pumps the messages until the button comes up; mouseMoveEvent follows the band meanwhile,
    // and the view scrolls while the pointer is outside the window.
    processAutoScrolling();
    dragging = false;
    return 1;
}

int PictureWindow::mouseMoveEvent(GPoint const &position, unsigned short)
{
    if (dragging)
        select(anchor, toPicture(position));
    showPointer(position);
    return 0;
}

GPoint PictureWindow::toPicture(GPoint const &client)
{
    const GPoint document = scroller.transform(client);
    const double x = std::clamp(document.getX() / scale(), 0.0, picture.getWidth() - 1.0);
    const double y = std::clamp(document.getY() / scale(), 0.0, picture.getHeight() - 1.0);
    return GPoint(static_cast<long>(x), static_cast<long>(y));
}

GRect PictureWindow::onScreen(GRect const &pictureRect) const
{
    return GRect(pictureRect.lVal() * scale(), pictureRect.tVal() * scale(), pictureRect.rVal() * scale(),
                 pictureRect.bVal() * scale());
}

void PictureWindow::drawOutlines(GDevice &device)
{
    if (!outlines.length())
        return;
    const GPen previous = device.getPen();
    const double toScreen = traceScale * scale(), half = toScreen / 2;
    for (POutlines const &outline : outlines) {
        device.setPen(GPen(outlineColours[outline.getValue() % 4], 1, LineSolid));
        GDevicePolyline line(static_cast<int>(outline.getPoints().length()), device.getMapMode());
        for (PCoord<double> const &point : outline.getPoints())
            line.addVertex(point.xval() * toScreen + half, point.yval() * toScreen + half);
        device.polyline(line);
    }
    device.setPen(previous);
}

void PictureWindow::drawLineScreen(GDevice &device)
{
    const GRect whole(0, 0, picture.getWidth(), picture.getHeight());
    device.fillRectangle(onScreen(whole), GBrush(GColor(255, 255, 255)));
    const GBrush ink(GColor(20, 20, 30));
    const GPen previous = device.getPen();
    device.setPen(GPen(GColor(20, 20, 30), 1, LineNull));
    // Bars run along stored rows, which count from the bottom of the picture.
    const double height = picture.getHeight();
    for (PImgDithSquare const &bar : bars) {
        if (bar.thickness == 0)
            continue;
        const double x = bar.forward ? bar.origin.xval() : bar.origin.xval() - bar.length;
        const double y = height - bar.origin.yval() - bar.thickness / 2.0;
        device.fillRectangle(onScreen(GRect(x, y, x + bar.length, y + bar.thickness)), ink);
    }
    device.setPen(previous);
}

int PictureWindow::mdiActivate()
{
    if (auto *frame = dynamic_cast<Workbench *>(getParent()))
        frame->showActive();
    return 0;
}

void PictureWindow::showPointer(GPoint const &client)
{
    auto *frame = dynamic_cast<Workbench *>(getParent());
    if (!frame)
        return;
    const GPoint at = toPicture(client);
    char text[64];
    if (selected)
        std::snprintf(text, sizeof text, "%.0f, %.0f  selection %.0f x %.0f", double(at.getX()), double(at.getY()),
                      selection.width() + 1, selection.height() + 1);
    else
        std::snprintf(text, sizeof text, "%.0f, %.0f", double(at.getX()), double(at.getY()));
    frame->status().write(StatusLine::pointer, PString(text));
}
