// Vector drawing of GDevice: lines, shapes, fills, vertex lists, text and paths.
#include "graphics/GDevice.h"
#include "foundation/PBezier.h"
#include "foundation/PCArray.h"
#include "foundation/PNumerics.h"
#include "graphics/ForceLine.h"
#include "graphics/GMemoryDevice.h"
#include "graphics/GObjectSelection.h"
#include "graphics/GPolygonClip.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <list>

namespace {

// The platform's poly-calls are used; the vertex-at-a-time branches serve a platform without them.
constexpr int polylineCallsEnabled = 1;

// The most vertices that go to one platform call.
constexpr int chunkLimit = 16000;

// A circle this large is drawn as two segments through its middle point.
constexpr double largestArcRadius = 15000;

// A Bezier segment becomes this many points, t stepping by 1/20 from 0 to 1.
constexpr int bezierSteps = 20;
constexpr int pointsPerSegment = bezierSteps + 1;

// Flatness of the curves clipped by polyBezierBoxed, in device units.
constexpr double bezierTolerance = 0.5;

constexpr unsigned int ownStyleBits = 0xFFFF0000u;

bool samePoint(POINT const &a, POINT const &b)
{
    return a.x == b.x && a.y == b.y;
}

// n points on the C heap, or null when n is not positive or too large.
POINT *allocatePoints(long long n)
{
    if (n <= 0 || static_cast<unsigned long long>(n) > SIZE_MAX / sizeof(POINT) || n > 0x7fffffff)
        return nullptr;
    return static_cast<POINT *>(std::calloc(static_cast<std::size_t>(n), sizeof(POINT)));
}

struct FreeOnExit {
    void *block;
    ~FreeOnExit() { std::free(block); }
};

// One run of vertices, by one call or a vertex at a time.
void drawPolylineRun(HDC dc, POINT const *points, int n)
{
    if (n <= 0)
        return;
    if (polylineCallsEnabled) {
        Polyline(dc, points, n);
        return;
    }
    MoveToEx(dc, points[0].x, points[0].y, nullptr);
    for (int i = 1; i < n; ++i)
        LineTo(dc, points[i].x, points[i].y);
}

// The four control points from p[0] at t = step / 20, truncated.
POINT bezierFlatten(POINT const *p, int step)
{
    const double t = step * (1.0 / bezierSteps);
    const double t2 = t * t, t3 = t2 * t;
    const double w0 = 1 - 3 * t + 3 * t2 - t3;
    const double w1 = 3 * t - 6 * t2 + 3 * t3;
    const double w2 = 3 * t2 - 3 * t3;
    const double w3 = t3;
    return POINT{truncateCoord(w0 * p[0].x + w1 * p[1].x + w2 * p[2].x + w3 * p[3].x),
                 truncateCoord(w0 * p[0].y + w1 * p[1].y + w2 * p[2].y + w3 * p[3].y)};
}

// Vertex 0 and then 21 points a segment, into room for at least 21 * segments + 1 points.
int expandBezier(GDevicePolyBezier const &list, POINT *out)
{
    POINT const *v = list.getVertexArray();
    const int segments = (list.numVertices() - 1) / 3;
    int n = 0;
    out[n++] = v[0];
    for (int s = 0; s < segments; ++s)
        for (int step = 0; step <= bezierSteps; ++step)
            out[n++] = bezierFlatten(v + 3 * s, step);
    return n;
}

// A Bezier list expanded to its polyline on the C heap, with `spare` free slots behind the
// points; no points when the list has none or no memory can be had.
struct ExpandedBezier {
    ExpandedBezier(GDevicePolyBezier const &list, int spare) : points(nullptr), count(0)
    {
        if (list.numVertices() <= 0 || !list.getVertexArray())
            return;
        const long long segments = (list.numVertices() - 1) / 3;
        points = allocatePoints(pointsPerSegment * segments + 1 + spare);
        if (points)
            count = expandBezier(list, points);
    }
    ~ExpandedBezier() { std::free(points); }
    ExpandedBezier(ExpandedBezier const &) = delete;
    ExpandedBezier &operator=(ExpandedBezier const &) = delete;

    POINT *points;
    int count;
};

// Clips the chain of points to the box and hands on each visible run. The unclipped point
// becomes the previous one, so the next segment starts where the chain really is.
class BoxedRuns {
public:
    BoxedRuns(RECT const &box, POINT *work) : box(box), work(work) {}

    // Returns true when the run so far must be drawn now.
    bool add(POINT const &from, POINT const &to)
    {
        POINT a = from, b = to;
        if (!ForceLine<long>::forceLine(a.x, a.y, b.x, b.y, box.left, box.top, box.right, box.bottom))
            return false;
        if (m == 0)
            work[m++] = a;
        work[m++] = b;
        return !samePoint(b, to);
    }
    int pending() const { return m; }
    POINT const *points() const { return work; }
    void reset() { m = 0; }

private:
    RECT box;
    POINT *work;
    int m = 0;
};

// The platform on the old Windows family has 16-bit coordinates.
bool hasShortCoordinates()
{
    OSVERSIONINFOA version{};
    version.dwOSVersionInfoSize = sizeof(version);
    GetVersionExA(&version);
    return version.dwPlatformId == VER_PLATFORM_WIN32_WINDOWS;
}

// A turn of the three points, in the 32-bit arithmetic of the platform's integers, wrapping.
int turnDirection(POINT const &a, POINT const &b, POINT const &c)
{
    const unsigned p = unsigned(a.y) - unsigned(b.y), q = unsigned(a.x) - unsigned(c.x);
    const unsigned r = unsigned(a.y) - unsigned(c.y), s = unsigned(a.x) - unsigned(b.x);
    return static_cast<int>(p * q - r * s);
}

void arcThroughPoints(HDC dc, POINT const &a, POINT const &b, POINT const &c)
{
    // Three points that do not differ make a line.
    if (samePoint(c, b) || samePoint(c, a)) {
        MoveToEx(dc, a.x, a.y, nullptr);
        LineTo(dc, b.x, b.y);
        return;
    }
    const double ax = a.x, ay = a.y, bx = b.x, by = b.y, cx = c.x, cy = c.y;
    const double sa = ax * ax + ay * ay, sb = bx * bx + by * by, sc = cx * cx + cy * cy;
    const double p = 2 * (ax - bx), q = 2 * (ay - by), u = 2 * (ax - cx), v = 2 * (ay - cy);
    const double d1 = sa - sb, d2 = sa - sc;
    const double det = v * p - u * q;
    // Deliberately, collinear points take the middle point as the centre.
    double centreX = cx, centreY = cy;
    if (!IS_ZERO(det, 1e-9)) {
        centreX = (v * d1 - q * d2) / det;
        centreY = (p * d2 - u * d1) / det;
    }
    const double r = std::sqrt(std::fabs((ax - centreX) * (ax - centreX) + (ay - centreY) * (ay - centreY)));
    // Top above bottom numerically, as the platform receives it.
    RECT bounds;
    SetRect(&bounds, truncateCoord(centreX - r), truncateCoord(centreY + r), truncateCoord(centreX + r),
            truncateCoord(centreY - r));
    if (r < largestArcRadius) {
        const bool counter = turnDirection(a, b, c) > 0;
        const POINT &start = counter ? b : a;
        const POINT &end = counter ? a : b;
        if (Arc(dc, bounds.left, bounds.top, bounds.right, bounds.bottom, start.x, start.y, end.x, end.y))
            return;
    }
    // Too flat, or refused: two segments through the middle point.
    MoveToEx(dc, a.x, a.y, nullptr);
    LineTo(dc, c.x, c.y);
    LineTo(dc, b.x, b.y);
}

// The DT_ value of the library's own style bits.
unsigned int platformTextFlags(unsigned int flags)
{
    if ((flags & ownStyleBits) == 0)
        return flags;
    struct StyleBits {
        unsigned int style;
        unsigned int platform;
    };
    static constexpr StyleBits styleBits[] = {
        {TextBottomLine, DT_BOTTOM | DT_SINGLELINE}, {TextRight, DT_RIGHT},
        {TextSingleLine, DT_SINGLELINE},             {TextCentre, DT_CENTER},
        {TextMiddleLine, DT_VCENTER | DT_SINGLELINE}, {TextExpandTabs, DT_EXPANDTABS},
        {TextNoClip, DT_NOCLIP},                     {TextOneLine, DT_SINGLELINE},
    };
    unsigned int value = 0;
    for (StyleBits const &bits : styleBits)
        if (flags & bits.style)
            value |= bits.platform;
    // Word breaking overrides every single-line request.
    if (flags & TextWordBreak)
        value = (value & ~unsigned(DT_SINGLELINE)) | DT_WORDBREAK;
    return value;
}

// Families of one enumeration; always goes on.
int CALLBACK addFontName(LOGFONTA const *font, TEXTMETRICA const *, DWORD type, LPARAM data)
{
    if (type & RASTER_FONTTYPE)
        return 1;
    auto &names = *reinterpret_cast<PList<PString> *>(data);
    char const *face = font->lfFaceName;
    // A vertical variant is kept only when its plain family is not listed already.
    if (face[0] == '@') {
        const PString plain(face + 1);
        for (int i = int(names.length()) - 1; i >= 0; --i)
            if (names[unsigned(i)] == plain)
                return 1;
    }
    names.add(PString(face));
    return 1;
}

} // namespace

// ---- Text metrics and fonts

GPoint GDevice::getCellDimensions()
{
    return GPoint(textMetrics.tmAveCharWidth, textMetrics.tmHeight);
}

short GDevice::getExternalLeading()
{
    return static_cast<short>(textMetrics.tmExternalLeading);
}

GPoint GDevice::getStringSize(PString const &text)
{
    if (!dc)
        return GPoint::Zero;
    SIZE size{};
    GetTextExtentPoint32A(dc, text, text.length(), &size);
    return GPoint(size.cx, size.cy);
}

void GDevice::getFontNames(PList<PString> &names)
{
    for (BYTE charSet : {BYTE(DEFAULT_CHARSET), BYTE(SYMBOL_CHARSET)}) {
        LOGFONTA description{};
        description.lfCharSet = charSet;
        EnumFontFamiliesExA(dc, &description, addFontName,
                            reinterpret_cast<LPARAM>(&names), 0);
    }
}

// ---- Points and lines

void GDevice::moveTo(double x, double y)
{
    MoveToEx(dc, newTranslateX(x), newTranslateY(y), nullptr);
}

void GDevice::moveTo(GPoint const &p)
{
    moveTo(p.xVal(), p.yVal());
}

void GDevice::lineTo(double x, double y)
{
    LineTo(dc, newTranslateX(x), newTranslateY(y));
}

void GDevice::lineTo(GPoint const &p)
{
    lineTo(p.xVal(), p.yVal());
}

void GDevice::setPixel(GPoint const &p)
{
    setPixel(p, pen.getColor());
}

void GDevice::setPixel(GPoint const &p, GColor const &color)
{
    SetPixel(dc, newTranslateX(p.xVal()), newTranslateY(p.yVal()), color);
}

// ---- Shapes

void GDevice::rectangle(GRect const &rect)
{
    moveTo(rect.lVal(), rect.tVal());
    lineTo(rect.rVal(), rect.tVal());
    lineTo(rect.rVal(), rect.bVal());
    lineTo(rect.lVal(), rect.bVal());
    lineTo(rect.lVal(), rect.tVal());
}

void GDevice::rectangle(GPoint const &a, GPoint const &b)
{
    rectangle(GRect(a, b));
}

void GDevice::ellipse(GRect const &rect)
{
    Ellipse(dc, newTranslateX(rect.lVal()), newTranslateY(rect.tVal()), newTranslateX(rect.rVal()),
            newTranslateY(rect.bVal()));
}

void GDevice::circle(GPoint const &centre, PFFloat const &radius)
{
    const GPoint reach(radius, radius);
    ellipse(GRect(centre - reach, centre + reach));
}

void GDevice::circularArc(GPoint const &a, GPoint const &b, GPoint const &through)
{
    if (!dc)
        return;
    arcThroughPoints(dc, POINT{newTranslateX(a.xVal()), newTranslateY(a.yVal())},
                     POINT{newTranslateX(b.xVal()), newTranslateY(b.yVal())},
                     POINT{newTranslateX(through.xVal()), newTranslateY(through.yVal())});
}

// The offsets of 1 and 2 are logical, as the lines are.
void GDevice::draw3DRect(GRect const &rect, GColor const &first, GColor const &second)
{
    const double left = rect.lVal(), top = rect.tVal(), right = rect.rVal(), bottom = rect.bVal();
    setPen(GPen(first, 0, LineSolid));
    moveTo(left, bottom - 2);
    lineTo(left, top);
    lineTo(right - 1, top);
    setPen(GPen(second, 0, LineSolid));
    moveTo(left, bottom - 1);
    lineTo(right - 1, bottom - 1);
    lineTo(right - 1, top - 1);
}

// ---- Fills

void GDevice::fillRectangle(GRect const &rect)
{
    fillRectangle(rect, brush);
}

void GDevice::fillRectangle(GRect const &rect, GBrush const &fill)
{
    if (!dc)
        return;
    GObjectSelection selection(dc, HBRUSH(fill));
    Rectangle(dc, newTranslateX(rect.lVal()), newTranslateY(rect.tVal()), newTranslateX(rect.rVal()),
              newTranslateY(rect.bVal()));
}

void GDevice::fillRectangle(GPoint const &a, GPoint const &b, GBrush const &fill)
{
    fillRectangle(GRect(a, b), fill);
}

void GDevice::fillPolygon(PList<GPoint> &points, GBrush const &fill)
{
    if (!dc)
        return;
    const int n = int(points.length());
    PCArray<POINT> corners(n);
    int i = 0;
    if (corners.length() == n)
        for (GPoint const &p : points)
            corners(i++) = POINT{newTranslateX(p.xVal()), newTranslateY(p.yVal())};
    GObjectSelection selection(dc, HBRUSH(fill));
    Polygon(dc, i > 0 ? &corners(0) : nullptr, i);
}

void GDevice::fillRgn(GRgn const &region, GBrush const &fill)
{
    if (!dc)
        return;
    GRgn clip = getClipRegion();
    if (clip.isValid()) {
        clip += region;
        FillRgn(dc, clip, fill);
    } else {
        FillRgn(dc, region, fill);
    }
}

void GDevice::drawRgn(GRgn const &region, GBrush const &frame, int width, int height)
{
    if (!dc)
        return;
    FrameRgn(dc, region, frame, width, height);
}

// ---- Vertex lists

void GDevice::polyline(GDevicePolyline const &list)
{
    const int n = list.numVertices();
    POINT const *v = list.getVertexArray();
    if (n <= 0 || !v)
        return;
    if (!polylineCallsEnabled) {
        drawPolylineRun(dc, v, n);
        return;
    }
    for (int first = 0; first < n; first += chunkLimit)
        Polyline(dc, v + first, n - first < chunkLimit ? n - first : chunkLimit);
}

void GDevice::polylineTo(GDevicePolyline const &list)
{
    const int n = list.numVertices();
    POINT const *v = list.getVertexArray();
    if (n <= 0 || !v)
        return;
    POINT *shortened = nullptr;
    if (hasShortCoordinates()) {
        shortened = allocatePoints(n);
        if (!shortened)
            return;
        for (int i = 0; i < n; ++i)
            shortened[i] = POINT{short(v[i].x), short(v[i].y)};
        v = shortened;
    }
    FreeOnExit release{shortened};
    if (!polylineCallsEnabled) {
        for (int i = 0; i < n; ++i)
            LineTo(dc, v[i].x, v[i].y);
        return;
    }
    for (int first = 0; first < n; first += chunkLimit)
        PolylineTo(dc, v + first, DWORD(n - first < chunkLimit ? n - first : chunkLimit));
}

void GDevice::polyPolyline(GDevicePolyPolyline const &list)
{
    if (list.numRuns() > 0)
        PolyPolyline(dc, list.getVertexArray(), reinterpret_cast<DWORD const *>(list.getRunLengths()),
                     DWORD(list.numRuns()));
}

void GDevice::polyBezier(GDevicePolyBezier const &list)
{
    const int n = list.numVertices();
    POINT const *v = list.getVertexArray();
    if (n <= 0 || !v)
        return;
    if (polylineCallsEnabled) {
        PolyBezier(dc, v, DWORD(n));
        return;
    }
    MoveToEx(dc, v[0].x, v[0].y, nullptr);
    for (int i = 1; i + 2 < n; i += 3)
        for (int step = 0; step <= bezierSteps; ++step) {
            const POINT p = bezierFlatten(v + i - 1, step);
            LineTo(dc, p.x, p.y);
        }
}

int GDevice::polylineBoxed(GDevicePolyline const &list, GRect &box)
{
    const int n = list.numVertices();
    POINT const *v = list.getVertexArray();
    if (n < 2 || !v)
        return 0;
    POINT *work = allocatePoints(n);
    if (!work)
        return 0;
    FreeOnExit release{work};
    BoxedRuns runs(*static_cast<tagRECT *>(box), work);
    int total = 0;
    for (int i = 1; i < n; ++i) {
        // A run goes out when it leaves the box or reaches the limit of one call.
        if (runs.add(v[i - 1], v[i]) || runs.pending() >= chunkLimit) {
            total += runs.pending();
            drawPolylineRun(dc, runs.points(), runs.pending());
            runs.reset();
        }
    }
    if (runs.pending() > 0) {
        total += runs.pending();
        drawPolylineRun(dc, runs.points(), runs.pending());
    }
    return total;
}

void GDevice::polyBezierBoxed(GDevicePolyBezier const &list, GRect &box)
{
    const int n = list.numVertices();
    POINT const *v = list.getVertexArray();
    if (n <= 0 || !v)
        return;
    const RECT bounds = *static_cast<tagRECT *>(box);
    PCoord<double> control[4];
    control[0] = PCoord<double>(v[0].x, v[0].y);
    std::list<PCoord<double>> curve;
    for (int i = 1; i + 2 < n; i += 3) {
        for (int k = 0; k < 3; ++k)
            control[k + 1] = PCoord<double>(v[i + k].x, v[i + k].y);
        const PBezier bezier(control);
        curve.erase(curve.begin(), curve.end());
        bezier.getPolyline(bezierTolerance, curve);
        control[0] = control[3];
        if (curve.empty())
            continue;
        POINT *work = allocatePoints(static_cast<long long>(curve.size()));
        if (!work)
            continue;
        FreeOnExit release{work};
        BoxedRuns runs(bounds, work);
        auto point = curve.begin();
        POINT previous{truncateCoord(point->xval()), truncateCoord(point->yval())};
        for (++point; point != curve.end(); ++point) {
            const POINT next{truncateCoord(point->xval()), truncateCoord(point->yval())};
            if (runs.add(previous, next)) {
                Polyline(dc, runs.points(), runs.pending());
                runs.reset();
            }
            previous = next;
        }
        if (runs.pending() > 0)
            Polyline(dc, runs.points(), runs.pending());
    }
}

void GDevice::fillPolyBezier(GDevicePolyBezier const &list, GBrush const &fill)
{
    const ExpandedBezier curve(list, 0);
    if (!curve.points)
        return;
    const GPen outline(fill.getBrushColor(), 0, LineSolid);
    GObjectSelection brushSelection(dc, HBRUSH(fill));
    GObjectSelection penSelection(dc, HPEN(outline));
    Polygon(dc, curve.points, curve.count);
}

void GDevice::fillPolyBezierBoxed(GDevicePolyBezier const &list, GRect &box, GBrush const &fill)
{
    // One spare slot closes the outline.
    ExpandedBezier curve(list, 1);
    if (!curve.points)
        return;
    POINT *points = curve.points;
    int n = curve.count;
    if (!samePoint(points[0], points[n - 1]))
        points[n++] = points[0];
    ClipPolygons pieces;
    clipPolygonToRect(points, n, box, 0, pieces);
    const GPen outline(fill.getBrushColor(), 0, LineSolid);
    GObjectSelection brushSelection(dc, HBRUSH(fill));
    GObjectSelection penSelection(dc, HPEN(outline));
    int first = 0;
    for (int i = 0; i < pieces.polygonCount(); ++i) {
        const int length = pieces.lengths[i];
        if (length > pieces.vertices.size() - first)
            break;
        Polygon(dc, pieces.vertices.data() + first, length);
        first += length;
    }
}

void GDevice::polyBitmap(GDevicePolyBitmap<double> const &list, GBitmap const &bitmap, GPoint const &hot, int rop)
{
    if (list.numVertices() <= 0 || !dc || !bitmap.isValid())
        return;
    GBitmap stamp(bitmap);
    GMemoryDevice memory(*this, stamp);
    if (!memory.getDC())
        return;
    const GPoint size = stamp.getSize();
    const int width = truncateCoord(size.xVal()), height = truncateCoord(size.yVal());
    const double originX = truncateCoord(deviceMapMode.offsetX - hot.xVal());
    const double originY = truncateCoord(deviceMapMode.offsetY - hot.yVal());
    PCoord<double> const *v = list.getVertexArray();
    for (int i = 0; i < list.numVertices(); ++i)
        BitBlt(dc, truncateCoord(v[i].xval() * deviceMapMode.scale + originX),
               truncateCoord(v[i].yval() * deviceMapMode.scale + originY), width, height, memory.getDC(), 0, 0,
               DWORD(rop));
}

void GDevice::polyBitmap(GDevicePolyBitmap<long> const &list, GBitmap const &bitmap, GPoint const &hot, int rop, int)
{
    if (list.numVertices() <= 0 || !dc || !bitmap.isValid())
        return;
    GBitmap stamp(bitmap);
    GMemoryDevice memory(*this, stamp);
    if (!memory.getDC())
        return;
    const int n = list.numVertices();
    PCArray<tagPOINT> placed(n);
    if (placed.length() != n)
        return;
    PCoord<long> const *v = list.getVertexArray();
    for (int i = 0; i < n; ++i) {
        placed(i) = POINT{newTranslateX(double(v[i].xval())), newTranslateY(double(v[i].yval()))};
        LPtoDP(dc, &placed(i), 1);
    }
    const GPoint size = stamp.getSize();
    const int width = truncateCoord(size.xVal()), height = truncateCoord(size.yVal());
    const int hotX = truncateCoord(hot.xVal()), hotY = truncateCoord(hot.yVal());
    const GMapMode saved = mapMode;
    setMapMode(GMapMode(textMappingMode));
    for (int i = 0; i < n; ++i)
        BitBlt(dc, placed[i].x - hotX, placed[i].y - hotY, width, height, memory.getDC(), 0, 0, DWORD(rop));
    setMapMode(saved);
}

void GDevice::polyDraw(tagPOINT *points, unsigned char *types, int n)
{
    if (!points || !types || n <= 0)
        return;
    for (int i = 0; i < n; ++i)
        points[i] = POINT{newTranslateX(points[i].x), newTranslateY(points[i].y)};
    PolyDraw(dc, points, types, n);
}

// ---- Text

void GDevice::writeText(GPoint const &p, PString const &text)
{
    TextOutA(dc, newTranslateX(p.xVal()), newTranslateY(p.yVal()), text, text.length());
}

// The result of the platform is dropped and the rectangle is not written back.
void GDevice::drawText(PString const &text, GRect &rect, unsigned int flags)
{
    RECT target{newTranslateX(rect.lVal()), newTranslateY(rect.tVal()), newTranslateX(rect.rVal()),
                newTranslateY(rect.bVal())};
    DrawTextA(dc, text, text.length(), &target, platformTextFlags(flags));
}

// Deliberately, the brush pointer itself goes in the brush parameter, not a handle.
int GDevice::drawState(GBrush *brush, DRAWSTATEPROC proc, LPARAM data, WPARAM wData, double x, double y, int cx,
                       int cy, unsigned int flags)
{
    return DrawStateA(dc, reinterpret_cast<HBRUSH>(brush), proc, data, wData, newTranslateX(x), newTranslateY(y),
                      cx, cy, flags);
}

// ---- Paths

int GDevice::beginPath()
{
    return BeginPath(dc);
}

int GDevice::endPath()
{
    return EndPath(dc);
}

int GDevice::widenPath()
{
    return WidenPath(dc);
}

int GDevice::strokePath()
{
    return StrokePath(dc);
}

int GDevice::selectClipPath(enum RegionMode const &mode)
{
    return SelectClipPath(dc, mode);
}
