#include <gtest/gtest.h>
#include <windows.h>

#include <vector>

#include "TeskWin.h"
#include "graphics/DeviceProbes.h"
#include "support/ReadBack.h"

namespace {

const COLORREF black = RGB(0, 0, 0);
const COLORREF white = RGB(255, 255, 255);
const COLORREF red = RGB(255, 0, 0);
const COLORREF blue = RGB(0, 0, 255);

// A white 32-bit canvas of the given size with a device on it.
struct Canvas {
    Canvas(int width, int height) : bitmap(colourBitmap(width, height)), device(screen, bitmap)
    {
        device.clear();
    }
    COLORREF at(int x, int y) const { return pixelAt(device, x, y); }
    // How many pixels of the area are not white.
    int inked(int left, int top, int right, int bottom) const
    {
        int n = 0;
        for (int y = top; y < bottom; ++y)
            for (int x = left; x < right; ++x)
                n += at(x, y) != white;
        return n;
    }

    GMemoryDevice screen;
    GBitmap bitmap;
    ProbeDevice device;
};

// Scale 2 with the window origin at (1.5, -3): device x = 2x - 3, y = 2y + 6.
void scale(GDevice &device)
{
    GMapMode mode(scaledMappingMode);
    mode.setWindowExt(GPoint(50, 50));
    mode.setViewportExt(GPoint(100, 100));
    mode.setWindowOrg(GPoint(1.5, -3));
    device.setMapMode(mode);
}

TEST(GDeviceVector, LinesAndPixelsTruncateTowardZeroAndTranslate)
{
    ExpectNoLeaks leaks;
    Canvas canvas(40, 40);
    GDevice &device = canvas.device;
    device.moveTo(2.9, 5);
    device.lineTo(GPoint(10.9, 5.99));
    expectPixels(canvas.device, {{2, 5, black}, {9, 5, black}, {10, 5, white}, // the end is not drawn
                                 {1, 5, white}});
    device.moveTo(GPoint(-0.9, 8));        // -0.9 truncates to 0
    device.lineTo(3, 8);
    EXPECT_EQ(canvas.at(0, 8), black);

    scale(device);
    device.moveTo(2, 3);                   // (1, 12)
    device.lineTo(6, 3);                   // (9, 12)
    expectPixels(canvas.device, {{1, 12, black}, {8, 12, black}, {9, 12, white}, {0, 12, white}});

    device.setPen(GPen(GColor::Red, 0, LineSolid));
    device.setPixel(GPoint(10, 10));       // (17, 26)
    EXPECT_EQ(canvas.at(17, 26), red);
    device.setPixel(GPoint(10.4, 10.4), GColor(0, 0, 255));    // (17.8, 26.8)
    EXPECT_EQ(canvas.at(17, 26), blue);
    device.setPen(GPen());
}

TEST(GDeviceVector, ShapesOutlineOrFillAsTold)
{
    ExpectNoLeaks leaks;
    Canvas canvas(60, 60);
    GDevice &device = canvas.device;
    device.rectangle(GRect(5, 5, 15, 15));
    expectPixels(canvas.device, {{5, 5, black}, {15, 15, black}, // the closing lineTo passes every corner
                                 {10, 15, black}, {10, 10, white}}); // not filled

    const GBrush blueBrush(GColor(0, 0, 255));
    device.setBrush(blueBrush);
    device.ellipse(GRect(20, 5, 40, 25));
    expectPixels(canvas.device, {{30, 15, blue}, // filled with the brush
                                 {30, 5, black}, // framed with the pen
                                 {21, 6, white}});

    device.circle(GPoint(15, 45), 8);
    expectPixels(canvas.device, {{15, 45, blue}, {15, 36, white}, {15, 38, blue}});
    device.setBrush(GBrush());
}

TEST(GDeviceVector, ArcsRunThroughTheMiddlePointOrBecomeLines)
{
    ExpectNoLeaks leaks;
    Canvas canvas(40, 40);
    GDevice &device = canvas.device;
    // Centre (20, 20), radius 10: the upper half only.
    device.circularArc(GPoint(10, 20), GPoint(30, 20), GPoint(20, 10));
    expectPixels(canvas.device, {{20, 10, black}, {20, 30, white}});
    EXPECT_GT(canvas.inked(0, 0, 40, 19), 20);
    EXPECT_EQ(canvas.inked(0, 22, 40, 40), 0);

    canvas.device.clear();
    device.circularArc(GPoint(10, 20), GPoint(30, 20), GPoint(20, 30));
    // The box's far edges are exclusive on the platform: the lowest point is on row 29.
    EXPECT_GT(canvas.inked(19, 28, 22, 31), 0);
    EXPECT_GT(canvas.inked(0, 22, 40, 40), 20);
    EXPECT_EQ(canvas.inked(0, 0, 40, 18), 0);

    // The middle point equal to an end: the straight line a to b.
    canvas.device.clear();
    device.circularArc(GPoint(5, 5), GPoint(25, 5), GPoint(25, 5));
    EXPECT_EQ(canvas.at(15, 5), black);
    EXPECT_EQ(canvas.inked(0, 6, 40, 40), 0);

    HandlelessDevice none;
    none.circularArc(GPoint(0, 0), GPoint(1, 1), GPoint(2, 0));
}

TEST(GDeviceVector, ThreeDRectanglesAndFills)
{
    ExpectNoLeaks leaks;
    Canvas canvas(50, 50);
    GDevice &device = canvas.device;
    device.draw3DRect(GRect(10, 10, 20, 20), GColor(255, 0, 0), GColor(0, 0, 255));
    expectPixels(canvas.device, {{10, 15, red}, // left
                                 {15, 10, red}, // top
                                 {15, 19, blue}, // bottom - 1
                                 {19, 15, blue}, // right - 1
                                 {15, 15, white}});
    EXPECT_EQ(device.getPen().getColor(), GColor(0, 0, 255));
    device.setPen(GPen());

    HBRUSH selectedBrush = HBRUSH(GetCurrentObject(device, OBJ_BRUSH));
    const GBrush redBrush(GColor::Red);
    device.fillRectangle(GRect(30, 30, 40, 40), redBrush);
    expectPixels(canvas.device, {{35, 35, red}, {30, 35, black}, // the pen's frame
                                 {40, 35, white}});
    EXPECT_EQ(HBRUSH(GetCurrentObject(device, OBJ_BRUSH)), selectedBrush);
    device.fillRectangle(GPoint(30, 5), GPoint(40, 15), redBrush);
    EXPECT_EQ(canvas.at(35, 10), red);
    // The device's own brush, white here.
    device.fillRectangle(GRect(32, 7, 38, 13));
    expectPixels(canvas.device, {{35, 10, white}, {32, 10, black}});

    PList<GPoint> triangle;
    triangle.add(GPoint(2, 30));
    triangle.add(GPoint(22, 30));
    triangle.add(GPoint(2, 48));
    device.fillPolygon(triangle, redBrush);
    expectPixels(canvas.device, {{6, 34, red}, {20, 46, white}});
    PList<GPoint> nothing;
    device.fillPolygon(nothing, redBrush);
}

TEST(GDeviceVector, RegionsFillWithTheUnionOfTheClip)
{
    ExpectNoLeaks leaks;
    Canvas canvas(40, 40);
    GDevice &device = canvas.device;
    const GBrush redBrush(GColor::Red);
    GRgn region;
    ASSERT_TRUE(region.create(GRect(5, 5, 10, 10)));
    device.fillRgn(region, redBrush);
    expectPixels(canvas.device, {{7, 7, red}, {2, 2, white}});

    // With a clip region the whole clip is painted.
    canvas.device.clear();
    device.setClipRegion(GRect(0, 0, 20, 20));
    device.fillRgn(region, redBrush);
    expectPixels(canvas.device, {{2, 2, red}, {19, 19, red}, {25, 25, white}});
    device.setClipRegion(GRgn());

    canvas.device.clear();
    GRgn frame;
    ASSERT_TRUE(frame.create(GRect(20, 20, 30, 30)));
    device.drawRgn(frame, redBrush, 2, 2);
    expectPixels(canvas.device, {{21, 25, red}, {25, 25, white}});
}

// A polyline of n vertices in a list with the identity mapping.
void fillList(GDevicePolyline &list, std::vector<POINT> const &points)
{
    for (POINT const &p : points)
        list.addVertex(int(p.x), int(p.y));
}

TEST(GDeviceVector, PolylinesGoInChunksOf16000WhichAreNotJoined)
{
    ExpectNoLeaks leaks;
    Canvas canvas(30, 30);
    GDevice &device = canvas.device;
    GDevicePolyline list(0, GMapMode());
    device.polyline(list);
    for (int i = 0; i < 15999; ++i)
        list.addVertex(1, 1);
    list.addVertex(6, 1);        // the last of the first chunk
    list.addVertex(6, 10);       // the second chunk
    list.addVertex(20, 10);
    device.polyline(list);
    expectPixels(canvas.device, {{3, 1, black}, {6, 5, white}, // no segment between the chunks
                                 {12, 10, black}});

    // polylineTo starts at the current position.
    canvas.device.clear();
    GDevicePolyline to(2, GMapMode());
    to.addVertex(15, 20);
    to.addVertex(15, 28);
    device.moveTo(2, 20);
    device.polylineTo(to);
    expectPixels(canvas.device, {{8, 20, black}, {15, 25, black}});
}

TEST(GDeviceVector, BoxedPolylinesDrawAndCountTheVisibleRuns)
{
    ExpectNoLeaks leaks;
    Canvas canvas(40, 40);
    GDevice &device = canvas.device;
    GRect box(0, 0, 20, 20);
    GDevicePolyline one(1, GMapMode());
    one.addVertex(5, 5);
    EXPECT_EQ(device.polylineBoxed(one, box), 0);

    GDevicePolyline inside(3, GMapMode());
    fillList(inside, {{2, 2}, {10, 2}, {10, 10}});
    EXPECT_EQ(device.polylineBoxed(inside, box), 3);
    EXPECT_EQ(canvas.at(5, 2), black);

    // Leaves on the right and comes back: two runs of two.
    canvas.device.clear();
    GDevicePolyline out(4, GMapMode());
    fillList(out, {{2, 5}, {30, 5}, {30, 8}, {2, 8}});
    EXPECT_EQ(device.polylineBoxed(out, box), 4);
    // (20, 6): the runs are not joined along the edge.
    expectPixels(canvas.device, {{10, 5, black}, {10, 8, black}, {25, 5, white}, {30, 6, white}, {20, 6, white}});

    // The box is in device units, untranslated, while the list holds device vertices.
    canvas.device.clear();
    scale(device);
    GMapMode mode = device.getMapMode();
    GDevicePolyline scaled(2, mode);
    scaled.addVertex(2, 3);      // (1, 12)
    scaled.addVertex(20, 3);     // (37, 12)
    GRect deviceBox(0, 0, 10, 20);
    EXPECT_EQ(device.polylineBoxed(scaled, deviceBox), 2);
    expectPixels(canvas.device, {{5, 12, black}, {15, 12, white}});

    // A zero-size box on a vertex: one point-sized run.
    GRect point(5, 12, 5, 12);
    EXPECT_EQ(device.polylineBoxed(scaled, point), 2);
    GRect away(100, 100, 100, 100);
    EXPECT_EQ(device.polylineBoxed(scaled, away), 0);
}

TEST(GDeviceVector, PolyPolylinesAndBeziers)
{
    ExpectNoLeaks leaks;
    Canvas canvas(60, 60);
    GDevice &device = canvas.device;
    GDevicePolyPolyline runs(4, 2, GMapMode());
    device.polyPolyline(runs);
    runs.addVertex(2, 2);
    runs.addVertex(20, 2);
    runs.addBreak();
    runs.addVertex(2, 10);
    runs.addVertex(20, 10);
    runs.addBreak();
    device.polyPolyline(runs);
    expectPixels(canvas.device, {{10, 2, black}, {10, 10, black}, {20, 6, white}});

    // A straight curve along y = 20 from x 2 to 50.
    canvas.device.clear();
    GDevicePolyBezier straight(1, GMapMode());
    straight.setInitialVertex(2, 20);
    straight.addSegment(18, 20, 34, 20, 50, 20);
    device.polyBezier(straight);
    expectPixels(canvas.device, {{3, 20, black}, {45, 20, black}});
    EXPECT_EQ(canvas.inked(0, 21, 60, 60), 0);

    canvas.device.clear();
    GRect box(10, 0, 30, 60);
    device.polyBezierBoxed(straight, box);
    expectPixels(canvas.device, {{5, 20, white}, {15, 20, black}, {29, 20, black}, {35, 20, white}});
    GDevicePolyBezier empty(-1, GMapMode());
    device.polyBezier(empty);
    device.polyBezierBoxed(empty, box);
    device.fillPolyBezier(empty, GBrush());
}

TEST(GDeviceVector, FilledBeziersTakeTheBrushColourForTheirOutline)
{
    ExpectNoLeaks leaks;
    Canvas canvas(60, 60);
    GDevice &device = canvas.device;
    // A closed bulge: from (5, 30) over to (55, 30) and straight back.
    GDevicePolyBezier bulge(2, GMapMode());
    bulge.setInitialVertex(5, 30);
    bulge.addSegment(5, 0, 55, 0, 55, 30);
    bulge.addSegment(40, 30, 20, 30, 5, 30);
    HPEN selectedPen = HPEN(GetCurrentObject(device, OBJ_PEN));
    device.fillPolyBezier(bulge, GBrush(GColor::Red));
    expectPixels(canvas.device, {{30, 20, red}, {30, 30, red}, // the outline is red, not the black pen
                                 {30, 35, white}});
    EXPECT_EQ(canvas.inked(0, 0, 60, 60) > 0, true);
    EXPECT_EQ(HPEN(GetCurrentObject(device, OBJ_PEN)), selectedPen);

    // Boxed: only the part in the box.
    canvas.device.clear();
    GRect left(0, 0, 30, 60);
    device.fillPolyBezierBoxed(bulge, left, GBrush(GColor::Red));
    expectPixels(canvas.device, {{20, 20, red}, {40, 20, white}});
    EXPECT_EQ(canvas.inked(31, 0, 60, 60), 0);

    // Wholly outside the box: nothing.
    canvas.device.clear();
    GRect away(100, 100, 200, 200);
    device.fillPolyBezierBoxed(bulge, away, GBrush(GColor::Red));
    EXPECT_EQ(canvas.inked(0, 0, 60, 60), 0);
}

TEST(GDeviceVector, PolyBitmapsStampAtEachVertex)
{
    ExpectNoLeaks leaks;
    Canvas canvas(40, 40);
    GDevice &device = canvas.device;
    GBitmap stamp = colourBitmap(3, 2);
    {
        GMemoryDevice paint(canvas.screen, stamp);
        RECT all{0, 0, 3, 2};
        HBRUSH brush = CreateSolidBrush(red);
        FillRect(paint, &all, brush);
        DeleteObject(brush);
    }
    GDevicePolyBitmap<double> places(2);
    places.addVertex(5, 5);
    places.addVertex(20.7, 10.2);
    device.polyBitmap(places, stamp, GPoint(1, 1), SRCCOPY);
    expectPixels(canvas.device, {{4, 4, red}, {6, 5, red}, {7, 5, white}, {3, 4, white}, {19, 9, red}});

    canvas.device.clear();
    scale(device);
    GDevicePolyBitmap<long> longPlaces(1);
    longPlaces.addVertex(5, 5);    // (7, 16)
    device.polyBitmap(longPlaces, stamp, GPoint(0, 0), SRCCOPY, 0);
    expectPixels(canvas.device, {{7, 16, red}, {9, 17, red}, {6, 16, white}});
    EXPECT_EQ(device.getMapMode().getMode(), scaledMappingMode);

    GBitmap invalid;
    device.polyBitmap(places, invalid, GPoint(0, 0), SRCCOPY);
}

TEST(GDeviceVector, PolyDrawTranslatesTheCallersPoints)
{
    ExpectNoLeaks leaks;
    Canvas canvas(40, 40);
    GDevice &device = canvas.device;
    scale(device);
    POINT points[2] = {{2, 3}, {10, 3}};
    BYTE types[2] = {PT_MOVETO, PT_LINETO};
    device.polyDraw(points, types, 2);
    EXPECT_EQ(points[0].x, 1);
    EXPECT_EQ(points[0].y, 12);
    EXPECT_EQ(points[1].x, 17);
    EXPECT_EQ(canvas.at(10, 12), black);
    device.polyDraw(nullptr, types, 2);
}

TEST(GDeviceVector, TextIsWrittenAndMeasured)
{
    ExpectNoLeaks leaks;
    Canvas canvas(120, 80);
    ProbeDevice &device = canvas.device;
    device.setMapMode(GMapMode());    // reads the metrics
    const GPoint cell = device.getCellDimensions();
    EXPECT_EQ(double(cell.xVal()), device.metrics().tmAveCharWidth);
    EXPECT_EQ(double(cell.yVal()), device.metrics().tmHeight);
    EXPECT_EQ(device.getExternalLeading(), short(device.metrics().tmExternalLeading));
    const GPoint size = device.getStringSize(PString("WWW"));
    EXPECT_GT(double(size.xVal()), 0);
    EXPECT_GT(double(size.yVal()), 0);
    HandlelessDevice none;
    EXPECT_EQ(double(none.getStringSize(PString("WWW")).xVal()), 0);

    device.writeText(GPoint(2, 2), PString("WWW"));
    EXPECT_GT(canvas.inked(2, 2, 2 + int(size.xVal()), 2 + int(size.yVal())), 0);
    EXPECT_EQ(canvas.inked(60, 0, 120, 80), 0);

    // The library's bottom-line style puts a single line at the bottom.
    canvas.device.clear();
    GRect rect(0, 0, 120, 80);
    device.drawText(PString("WWW"), rect, TextBottomLine);
    EXPECT_EQ(canvas.inked(0, 0, 120, 40), 0);
    EXPECT_GT(canvas.inked(0, 40, 120, 80), 0);
    EXPECT_EQ(double(rect.bVal()), 80);
    // Flags below 0x10000 pass as DT_ values: top left.
    canvas.device.clear();
    device.drawText(PString("WWW"), rect, DT_LEFT | DT_TOP);
    EXPECT_GT(canvas.inked(0, 0, 60, 40), 0);
    EXPECT_EQ(canvas.inked(0, 40, 120, 80), 0);
    // Word break: a narrow rectangle wraps onto a second line.
    canvas.device.clear();
    GRect narrow(0, 0, int(size.xVal()) + 2, 80);
    device.drawText(PString("WWW WWW"), narrow, TextWordBreak | TextBottomLine);
    EXPECT_GT(canvas.inked(0, int(size.yVal()), 120, 2 * int(size.yVal())), 0);

    canvas.device.clear();
    EXPECT_NE(device.drawState(nullptr, nullptr, reinterpret_cast<LPARAM>("WWW"), 3, 10, 40, 0, 0,
                               DST_TEXT | DSS_NORMAL),
              0);
    EXPECT_GT(canvas.inked(10, 40, 60, 80), 0);
}

TEST(GDeviceVector, FontNamesLeaveOutVerticalVariantsOfListedFamilies)
{
    ExpectNoLeaks leaks;
    Canvas canvas(4, 4);
    PList<PString> names;
    canvas.device.getFontNames(names);
    ASSERT_GT(names.length(), 0u);
    for (unsigned i = 0; i < names.length(); ++i) {
        PString const &name = names[i];
        if (name[0] != '@')
            continue;
        for (unsigned j = 0; j < i; ++j)
            EXPECT_FALSE(names[j] == PString(static_cast<char const *>(name) + 1)) << static_cast<char const *>(name);
    }
}

TEST(GDeviceVector, PathsStrokeAndClip)
{
    ExpectNoLeaks leaks;
    Canvas canvas(40, 40);
    GDevice &device = canvas.device;
    EXPECT_NE(device.beginPath(), 0);
    device.rectangle(GRect(5, 5, 20, 20));
    EXPECT_NE(device.endPath(), 0);
    EXPECT_NE(device.strokePath(), 0);
    expectPixels(canvas.device, {{10, 5, black}, {10, 10, white}});

    device.beginPath();
    device.rectangle(GRect(5, 5, 20, 20));
    device.endPath();
    EXPECT_NE(device.selectClipPath(RegionCopy), 0);
    device.fillRectangle(GRect(0, 0, 40, 40), GBrush(GColor::Red));
    expectPixels(canvas.device, {{10, 10, red}, {30, 30, white}});
    device.setClipRegion(GRgn());

    HandlelessDevice none;
    EXPECT_EQ(none.beginPath(), 0);
    EXPECT_EQ(none.widenPath(), 0);
}

} // namespace
