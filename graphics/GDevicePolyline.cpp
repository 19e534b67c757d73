#include "graphics/GDevicePolyline.h"
#include "graphics/ForceLine.h"
#include "graphics/GDevice.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

// n records, or null when n is negative or its bytes pass the address space.
template <class T>
T *allocate(std::int64_t n)
{
    if (n < 0 || static_cast<std::uint64_t>(n) > SIZE_MAX / sizeof(T))
        return nullptr;
    return static_cast<T *>(std::malloc(n == 0 ? 1 : static_cast<std::size_t>(n) * sizeof(T)));
}

// Vertices are compared whole, as the clip asks whether an end has moved.
bool samePoint(POINT const &a, POINT const &b)
{
    return a.x == b.x && a.y == b.y;
}

} // namespace

// --- GDeviceVertexArray

GDeviceVertexArray::~GDeviceVertexArray()
{
    std::free(vertices);
}

void GDeviceVertexArray::takeArrayOf(GDeviceVertexArray &other)
{
    if (this == &other)
        return;
    std::free(vertices);
    vertices = other.vertices;
    capacity = other.capacity;
    count = other.count;
    map = other.map;
    other.vertices = nullptr;
    other.capacity = other.count = 0;
}

// --- GDevicePolyline

GDevicePolyline::GDevicePolyline(int n, GMapMode const &mode)
    : GDeviceVertexArray(GDevice::getGDeviceMapMode(mode)), room(0)
{
    resize(n);
}

GDevicePolyline &GDevicePolyline::operator=(GDevicePolyline &other)
{
    if (this != &other) {
        takeArrayOf(other);
        room = other.room;
        other.room = 0;
    }
    return *this;
}

void GDevicePolyline::resize(int n)
{
    if (n <= 0 || (vertices && n <= capacity))
        return;
    const int keep = count < capacity ? count : capacity;
    // The first allocation is exact; each later growth brings 256 spare vertices.
    const std::int64_t wanted = vertices ? std::int64_t(n) + 256 : n;
    if (wanted > INT_MAX)
        return;
    if (vertices && wanted <= room) {
        capacity = int(wanted);
        return;
    }
    // Beneath the stated capacity the block at least doubles, so growth is amortised.
    std::int64_t newRoom = vertices ? std::int64_t(room) * 2 : wanted;
    if (newRoom < wanted)
        newRoom = wanted;
    if (newRoom > INT_MAX)
        newRoom = INT_MAX;
    // The heap may grow the block in place; what lies past the kept vertices is not read.
    if (static_cast<std::uint64_t>(newRoom) > SIZE_MAX / sizeof(POINT))
        return;
    auto *grown = static_cast<POINT *>(std::realloc(vertices, sizeof(POINT) * std::size_t(newRoom)));
    if (!grown)
        return;
    vertices = grown;
    count = keep;
    capacity = int(wanted);
    room = int(newRoom);
}

void GDevicePolyline::append(int x, int y)
{
    if (count < INT_MAX)
        resize(count + 1);
    if (vertices && count < capacity)
        vertices[count++] = POINT{x, y};
}

void GDevicePolyline::addVertex(int x, int y)
{
    append(GDeviceMapMode::translateX(map, x), GDeviceMapMode::translateY(map, y));
}

void GDevicePolyline::addVertex(double x, double y)
{
    append(GDeviceMapMode::translateX(map, x), GDeviceMapMode::translateY(map, y));
}

void GDevicePolyline::addVertex(PCoord<double> const &p)
{
    addVertex(p.xval(), p.yval());
}

// --- GDevicePolyPolyline

GDevicePolyPolyline::GDevicePolyPolyline(int maxVertices, int maxRuns, GMapMode const &mode)
    : vertices(allocate<POINT>(maxVertices)), capacity(vertices ? maxVertices : 0),
      runLengths(allocate<int>(maxRuns)), runCapacity(runLengths ? maxRuns : 0), count(0),
      openLength(0), runCount(0), map(GDevice::getGDeviceMapMode(mode))
{
}

GDevicePolyPolyline::GDevicePolyPolyline(GDevicePolyPolyline const &other)
    : vertices(nullptr), capacity(0), runLengths(nullptr), runCapacity(0), count(0), openLength(0),
      runCount(0)
{
    copyFrom(other);
}

GDevicePolyPolyline &GDevicePolyPolyline::operator=(GDevicePolyPolyline const &other)
{
    // A list assigned to itself keeps its contents.
    if (this != &other) {
        release();
        copyFrom(other);
    }
    return *this;
}

GDevicePolyPolyline::~GDevicePolyPolyline()
{
    release();
}

void GDevicePolyPolyline::release()
{
    std::free(vertices);
    std::free(runLengths);
    vertices = nullptr;
    runLengths = nullptr;
    capacity = runCapacity = 0;
}

// Whole arrays at the other's capacities; counters are held to what could be allocated.
void GDevicePolyPolyline::copyFrom(GDevicePolyPolyline const &other)
{
    vertices = allocate<POINT>(other.capacity);
    runLengths = allocate<int>(other.runCapacity);
    capacity = vertices ? other.capacity : 0;
    runCapacity = runLengths ? other.runCapacity : 0;
    if (capacity > 0)
        std::memcpy(vertices, other.vertices, sizeof(POINT) * std::size_t(capacity));
    if (runCapacity > 0)
        std::memcpy(runLengths, other.runLengths, sizeof(int) * std::size_t(runCapacity));
    const bool whole = capacity == other.capacity && runCapacity == other.runCapacity;
    count = whole ? other.count : 0;
    openLength = whole ? other.openLength : 0;
    runCount = whole ? other.runCount : 0;
    map = other.map;
}

void GDevicePolyPolyline::append(int x, int y)
{
    if (count >= capacity)
        return;
    vertices[count++] = POINT{x, y};
    ++openLength;
}

void GDevicePolyPolyline::addVertex(int x, int y)
{
    append(GDeviceMapMode::translateX(map, x), GDeviceMapMode::translateY(map, y));
}

void GDevicePolyPolyline::addVertex(double x, double y)
{
    append(GDeviceMapMode::translateX(map, x), GDeviceMapMode::translateY(map, y));
}

void GDevicePolyPolyline::addVertex(PCoord<double> const &p)
{
    addVertex(p.xval(), p.yval());
}

void GDevicePolyPolyline::addBreak()
{
    if (runCount >= runCapacity)
        return;
    runLengths[runCount++] = openLength;
    openLength = 0;
}

void GDevicePolyPolyline::clip(GRect const &rect)
{
    const long minX = truncateCoord(rect.lVal()), minY = truncateCoord(rect.tVal());
    const long maxX = truncateCoord(rect.rVal()), maxY = truncateCoord(rect.bVal());
    // Each pair adds at most its two ends and each run of the output ends at a pair.
    const std::int64_t workSize = 2 * std::int64_t(capacity);
    POINT *work = allocate<POINT>(workSize);
    int *workRuns = allocate<int>(workSize);
    if (!work || !workRuns) {
        std::free(work);
        std::free(workRuns);
        return;
    }
    int outCount = 0, outRuns = 0;
    int first = 0;
    for (int run = 0; run < runCount; ++run) {
        const int length = runLengths[run];
        if (length <= 0 || length > count - first) {
            first += length > 0 ? length : 0;
            continue;
        }
        int out = 0;
        for (int i = first + 1; i < first + length; ++i) {
            POINT a = vertices[i - 1], b = vertices[i];
            if (!ForceLine<long>::forceLine(a.x, a.y, b.x, b.y, minX, minY, maxX, maxY))
                continue;
            if (out == 0) {
                work[outCount++] = a;
                out = 1;
            }
            work[outCount++] = b;
            ++out;
            // The line has left the rectangle.
            if (!samePoint(b, vertices[i])) {
                workRuns[outRuns++] = out;
                out = 0;
            }
        }
        if (out > 0)
            workRuns[outRuns++] = out;
        first += length;
    }

    if (outCount > capacity) {
        std::free(vertices);
        vertices = work;
        capacity = int(workSize);
        work = nullptr;
    } else if (outCount > 0) {
        std::memcpy(vertices, work, sizeof(POINT) * std::size_t(outCount));
    }
    if (outRuns > runCapacity) {
        std::free(runLengths);
        runLengths = workRuns;
        runCapacity = int(workSize);
        workRuns = nullptr;
    } else if (outRuns > 0) {
        std::memcpy(runLengths, workRuns, sizeof(int) * std::size_t(outRuns));
    }
    std::free(work);
    std::free(workRuns);
    count = outCount;
    runCount = outRuns;
    openLength = 0;
}

// --- GDevicePolyBezier

GDevicePolyBezier::GDevicePolyBezier(int segments, GMapMode const &mode)
    : GDeviceVertexArray(GDevice::getGDeviceMapMode(mode))
{
    const std::int64_t wanted = 3 * std::int64_t(segments) + 1;
    if (wanted < 1 || wanted > INT_MAX)
        return;
    // Zeroed, so that an unset start vertex reads as the origin.
    vertices = static_cast<POINT *>(std::calloc(std::size_t(wanted), sizeof(POINT)));
    if (vertices) {
        capacity = int(wanted);
        count = 1;
    }
}

GDevicePolyBezier &GDevicePolyBezier::operator=(GDevicePolyBezier &other)
{
    takeArrayOf(other);
    return *this;
}

void GDevicePolyBezier::setInitialVertex(int x, int y)
{
    if (vertices)
        vertices[0] = POINT{GDeviceMapMode::translateX(map, x), GDeviceMapMode::translateY(map, y)};
}

void GDevicePolyBezier::setInitialVertex(double x, double y)
{
    if (vertices)
        vertices[0] = POINT{GDeviceMapMode::translateX(map, x), GDeviceMapMode::translateY(map, y)};
}

void GDevicePolyBezier::setInitialVertex(PCoord<double> const &p)
{
    setInitialVertex(p.xval(), p.yval());
}

void GDevicePolyBezier::addSegment(int x1, int y1, int x2, int y2, int x3, int y3)
{
    addSegment(double(x1), double(y1), double(x2), double(y2), double(x3), double(y3));
}

void GDevicePolyBezier::addSegment(double x1, double y1, double x2, double y2, double x3, double y3)
{
    if (capacity - count < 3)
        return;
    vertices[count++] = POINT{GDeviceMapMode::translateX(map, x1), GDeviceMapMode::translateY(map, y1)};
    vertices[count++] = POINT{GDeviceMapMode::translateX(map, x2), GDeviceMapMode::translateY(map, y2)};
    vertices[count++] = POINT{GDeviceMapMode::translateX(map, x3), GDeviceMapMode::translateY(map, y3)};
}

void GDevicePolyBezier::addSegment(PCoord<double> const &c1, PCoord<double> const &c2, PCoord<double> const &end)
{
    addSegment(c1.xval(), c1.yval(), c2.xval(), c2.yval(), end.xval(), end.yval());
}
