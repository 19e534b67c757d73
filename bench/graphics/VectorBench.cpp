// VectorBench - vertex collection, polygon and polyline clipping, and line drawing through the
// library against the same platform calls made by hand. Two sizes show how the cost grows.
//   wine graphics_vector_bench.exe
#include "TeskWin.h"
#include "BenchTimer.h"
#include "graphics/GPolygonClip.h"

#include <windows.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

volatile long theSink;

// A scaled view: 2.5 device units a logical unit, the window origin off the corner.
GMapMode scaledView()
{
    GMapMode mode(scaledMappingMode);
    mode.setWindowExt(GPoint(400, 400));
    mode.setViewportExt(GPoint(1000, 1000));
    mode.setWindowOrg(GPoint(-3.25, 7.5));
    return mode;
}

// n vertices round a circle that crosses each side of the box twice.
std::vector<POINT> circle(int n)
{
    std::vector<POINT> points(n);
    for (int i = 0; i < n; ++i) {
        const double a = 6.283185307179586 * i / n;
        points[i] = POINT{long(500 + 300 * std::cos(a)), long(500 + 300 * std::sin(a))};
    }
    return points;
}

// n vertices of a star whose spikes all cross the box's sides: a crossing every other edge.
std::vector<POINT> star(int n)
{
    std::vector<POINT> points(n);
    for (int i = 0; i < n; ++i) {
        const double a = 6.283185307179586 * i / n;
        const double r = i % 2 ? 150 : 450;
        points[i] = POINT{long(500 + r * std::cos(a)), long(500 + r * std::sin(a))};
    }
    return points;
}

void clipPolygon(char const *name, std::vector<POINT> const &points, int repeats)
{
    const GRect box(250, 250, 750, 750);
    ClipPolygons out;
    const double ns = nanosecondsPerCall(repeats, [&](int n) {
        for (int i = 0; i < n; ++i)
            clipPolygonToRect(points.data(), int(points.size()), box, 0, out);
        theSink = out.vertices.size();
    });
    std::printf("%-52s %7d %10.1f us %8.1f ns/vertex  (%d pieces)\n", name, int(points.size()), ns / 1000,
                ns / points.size(), out.polygonCount());
}

void collect(char const *name, int vertices, bool presized, int repeats)
{
    const GMapMode mode = scaledView();
    const double ns = nanosecondsPerCall(repeats, [&](int n) {
        for (int r = 0; r < n; ++r) {
            GDevicePolyline list(presized ? vertices : 0, mode);
            for (int i = 0; i < vertices; ++i)
                list.addVertex(i * 0.37, (i & 255) * 1.3);
            theSink = list.numVertices();
        }
    });
    std::printf("%-52s %7d %10.1f us %8.2f ns/vertex\n", name, vertices, ns / 1000, ns / vertices);
}

// What the heap alone costs for a block of that many vertices, written once and freed.
void heapReference(int vertices, int repeats)
{
    const double ns = nanosecondsPerCall(repeats, [&](int n) {
        for (int r = 0; r < n; ++r) {
            auto *block = static_cast<POINT *>(std::malloc(sizeof(POINT) * std::size_t(vertices)));
            for (int i = 0; i < vertices; ++i)
                block[i] = POINT{i, i};
            theSink = block[vertices / 2].x;
            std::free(block);
        }
    });
    std::printf("%-52s %7d %10.1f us %8.2f ns/vertex\n", "reference: malloc, fill and free a vertex block", vertices,
                ns / 1000, ns / vertices);
}

// A list kept from call to call and refilled after clearVertices, as a view redrawing does.
void refill(int vertices, int repeats)
{
    GDevicePolyline list(vertices, scaledView());
    const double ns = nanosecondsPerCall(repeats, [&](int n) {
        for (int r = 0; r < n; ++r) {
            list.clearVertices();
            for (int i = 0; i < vertices; ++i)
                list.addVertex(i * 0.37, (i & 255) * 1.3);
            theSink = list.numVertices();
        }
    });
    std::printf("%-52s %7d %10.1f us %8.2f ns/vertex\n", "polyline collection, kept list refilled", vertices,
                ns / 1000, ns / vertices);
}

void clipPolyPolyline(int vertices, int repeats)
{
    const GMapMode mode = scaledView();
    GDevicePolyPolyline source(vertices, vertices / 100 + 1, mode);
    for (int i = 0; i < vertices; ++i) {
        source.addVertex(100 + 300 * std::cos(i * 0.01), 100 + 300 * std::sin(i * 0.013));
        if (i % 100 == 99)
            source.addBreak();
    }
    const double ns = nanosecondsPerCall(repeats, [&](int n) {
        for (int r = 0; r < n; ++r) {
            GDevicePolyPolyline list(source);
            list.clip(GRect(100, 100, 600, 600));
            theSink = list.numVertices();
        }
    });
    std::printf("%-52s %7d %10.1f us %8.2f ns/vertex\n", "poly-polyline copy and clip", vertices, ns / 1000,
                ns / vertices);
}

class BitmapDevice : public GMemoryDevice {
public:
    BitmapDevice(GDevice &screen, GBitmap &bitmap) : GMemoryDevice(screen, bitmap) {}
};

void drawLines(GDevice &device, int lines, int repeats)
{
    const GMapMode mode = scaledView();
    device.setMapMode(mode);
    GDevicePolyline list(lines + 1, mode);
    for (int i = 0; i <= lines; ++i)
        list.addVertex(10 + (i * 7 % 180), 10 + (i * 13 % 180));
    std::vector<POINT> copy(list.getVertexArray(), list.getVertexArray() + list.numVertices());
    HDC dc = device.getDC();

    const double library = nanosecondsPerCall(repeats, [&](int n) {
        for (int r = 0; r < n; ++r)
            device.polyline(list);
    });
    const double byHand = nanosecondsPerCall(repeats, [&](int n) {
        for (int r = 0; r < n; ++r)
            Polyline(dc, copy.data(), int(copy.size()));
    });
    GRect box(0, 0, 1000, 1000);
    const double boxed = nanosecondsPerCall(repeats, [&](int n) {
        for (int r = 0; r < n; ++r)
            theSink = device.polylineBoxed(list, box);
    });
    std::printf("%-52s %7d %10.1f us\n", "polyline through the library", lines, library / 1000);
    std::printf("%-52s %7d %10.1f us\n", "the same Polyline call by hand", lines, byHand / 1000);
    std::printf("%-52s %7d %10.1f us\n", "polylineBoxed, all inside (clip and draw)", lines, boxed / 1000);

    // Segment by segment with logical coordinates, against the platform's own calls.
    const double segments = nanosecondsPerCall(repeats, [&](int n) {
        for (int r = 0; r < n; ++r) {
            device.moveTo(10, 10);
            for (int i = 0; i < lines; ++i)
                device.lineTo(10 + (i * 7 % 180), 10 + (i * 13 % 180));
        }
    });
    const double segmentsByHand = nanosecondsPerCall(repeats, [&](int n) {
        for (int r = 0; r < n; ++r) {
            MoveToEx(dc, copy[0].x, copy[0].y, nullptr);
            for (int i = 1; i <= lines; ++i)
                LineTo(dc, copy[i].x, copy[i].y);
        }
    });
    std::printf("%-52s %7d %10.1f us\n", "lineTo through the library, logical", lines, segments / 1000);
    std::printf("%-52s %7d %10.1f us\n", "LineTo by hand, device", lines, segmentsByHand / 1000);
}

} // namespace

int main()
{
    std::printf("%-52s %7s %13s\n", "", "size", "per call");
    for (int n : {10000, 100000}) {
        clipPolygon("polygon clip, circle crossing each side twice", circle(n), n == 10000 ? 200 : 20);
        clipPolygon("polygon clip, star crossing at every other edge", star(n), n == 10000 ? 200 : 20);
    }
    for (int n : {10000, 100000}) {
        collect("polyline collection, growing from empty", n, false, n == 10000 ? 500 : 50);
        collect("polyline collection, presized", n, true, n == 10000 ? 500 : 50);
        refill(n, n == 10000 ? 500 : 50);
        heapReference(n, n == 10000 ? 500 : 50);
    }
    for (int n : {10000, 100000})
        clipPolyPolyline(n, n == 10000 ? 200 : 20);

    GMemoryDevice screen;
    GBitmap bitmap(nullptr, 1024, 1024, 1, 32);
    BitmapDevice device(screen, bitmap);
    drawLines(device, 10000, 20);
    return 0;
}
