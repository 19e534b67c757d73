// Outline tracing of GImage: regions of index values become closed polygons.
#include "imaging/GImage.h"

#include "foundation/PMemory.h"
#include "graphics/DibFormat.h"

#include <windows.h>

#include <algorithm>
#include <new>

namespace {

// Directions numbered clockwise as seen on the picture (y down), from east.
const int stepX[8] = {1, 1, 0, -1, -1, -1, 0, 1};
const int stepY[8] = {0, 1, 1, 1, 0, -1, -1, -1};
const int directionCount = 8;
// The first direction tried from a contour's start, as if it had been reached going north-east.
const int startDirection = 7;
// A turn back by two before sweeping clockwise: left of the way the walk came.
const int turnBack = 6;
// Steps after which a contour is given up.
const unsigned long stepLimit = 50001;

// A whole-number point of the picture.
struct Spot {
    int x;
    int y;
    bool operator==(Spot const &other) const { return x == other.x && y == other.y; }
};

Spot moved(Spot p, int direction) { return Spot{p.x + stepX[direction], p.y + stepY[direction]}; }

PCoord<double> coordOf(Spot p) { return PCoord<double>(p.x, p.y); }

// The truncated point; positions far outside the picture stay outside.
Spot spotOf(PCoord<double> const &point)
{
    auto truncated = [](double v) { return v > -1e9 && v < 1e9 ? static_cast<int>(v) : -1; };
    return Spot{truncated(point.xval()), truncated(point.yval())};
}

// A contour is kept as its directions while it is walked; points are made only once it closes.
struct ChainLink {
    int direction;
    ChainLink *next;
};

class Chain {
public:
    Chain() = default;
    Chain(Chain const &) = delete;
    Chain &operator=(Chain const &) = delete;
    ~Chain()
    {
        while (first) {
            ChainLink *doomed = first;
            first = first->next;
            delete doomed;
        }
    }
    bool append(int direction)
    {
        ChainLink *link = new (std::nothrow) ChainLink{direction, nullptr};
        if (!link)
            return false;
        (last ? last->next : first) = link;
        last = link;
        return true;
    }
    ChainLink const *head() const { return first; }

private:
    ChainLink *first = nullptr;
    ChainLink *last = nullptr;
};

// The tracer of one call: the image's bytes, borrowed, and one visited bit per buffer byte,
// zeroed by PGlobalAlloc.
class OutlineTracer {
public:
    OutlineTracer(unsigned char *pixels, BITMAPINFOHEADER const &header)
        : pixels(pixels), width(static_cast<unsigned short>(header.biWidth)),
          height(static_cast<unsigned short>(header.biHeight)), stride(dibStride(header)),
          visited(static_cast<unsigned char *>(PGlobalAlloc((static_cast<unsigned long>(height) * stride >> 3) + 1)))
    {}
    OutlineTracer(OutlineTracer const &) = delete;
    OutlineTracer &operator=(OutlineTracer const &) = delete;
    ~OutlineTracer() { PGlobalFree(visited); }

    bool hasVisitedMap() const { return visited != nullptr; }
    void setBand(unsigned char newLow, unsigned char newHigh)
    {
        low = newLow;
        high = newHigh;
    }

    // The byte of a picture position, row 0 at the top: the last stored row.
    unsigned long index(int row, int column) const
    {
        return static_cast<unsigned long>(height - row - 1) * stride + static_cast<unsigned long>(column);
    }
    bool inPicture(Spot p) const { return p.x >= 0 && p.y >= 0 && p.x < width && p.y < height; }
    unsigned char valueAt(Spot p) const { return pixels[index(p.y, p.x)]; }
    bool inBand(Spot p) const
    {
        if (!inPicture(p))
            return false;
        const unsigned char v = valueAt(p);
        return v >= low && v <= high;
    }

    bool isVisited(Spot p) const
    {
        if (!visited)
            return false;
        const unsigned long bit = index(p.y, p.x);
        return (visited[bit >> 3] >> (bit & 7)) & 1;
    }
    void markVisited(Spot p)
    {
        if (!visited)
            return;
        const unsigned long bit = index(p.y, p.x);
        visited[bit >> 3] |= static_cast<unsigned char>(1 << (bit & 7));
    }
    void markPoints(PList<PCoord<double>> const &points)
    {
        for (PCoord<double> const &point : points)
            markVisited(spotOf(point));
    }
    void markValue(unsigned char v)
    {
        for (int row = 0; row < height; ++row)
            for (int column = 0; column < width; ++column)
                if (pixels[index(row, column)] == v)
                    markVisited(Spot{column, row});
    }

    // The position's region's left edge on its row.
    Spot leftEdge(Spot p) const
    {
        while (inBand(p))
            --p.x;
        ++p.x;
        return p;
    }

    // Turns left of the way the walk came, then sweeps clockwise to the first neighbour in band.
    int nextDirection(Spot p, int previous, Spot &q) const
    {
        int direction = (previous + turnBack) % directionCount;
        for (int tries = 0; tries < directionCount; ++tries) {
            q = moved(p, direction);
            if (inBand(q))
                return direction;
            direction = (direction + 1) % directionCount;
        }
        return direction;
    }

    // Walks the boundary clockwise from start back to start. An isolated pixel gives its one
    // point and closed false.
    int traceContour(Spot start, PList<PCoord<double>> &points, bool &closed) const
    {
        bool lonely = true;
        for (int direction = 0; direction < directionCount && lonely; ++direction)
            lonely = !inBand(moved(start, direction));
        if (lonely) {
            closed = false;
            points.add(coordOf(start));
            return GImage::resultOk;
        }
        Chain chain;
        Spot p = start;
        int direction = startDirection;
        unsigned long count = 1;
        do {
            // The user can abort a long trace with the Escape key.
            if (GetAsyncKeyState(VK_ESCAPE) != 0)
                return GImage::resultNothingTraced;
            Spot q;
            direction = nextDirection(p, direction, q);
            if (!chain.append(direction))
                return GImage::resultNoChainMemory;
            ++count;
            if (q == start) {
                closed = true;
                points.add(coordOf(start));
                Spot at = start;
                for (ChainLink const *link = chain.head(); link; link = link->next) {
                    at = moved(at, link->direction);
                    points.add(coordOf(at));
                }
                return GImage::resultOk;
            }
            p = q;
        } while (count < stepLimit);
        return GImage::resultNothingTraced;
    }

    // The next unvisited pixel in band from the scan position on; once an outline is found,
    // only the left edges of regions not yet traced.
    bool findNextStart(Spot scan, Spot &start) const
    {
        for (int row = scan.y; row < height; ++row) {
            for (int column = scan.x; column < width; ++column) {
                const Spot p{column, row};
                if (isVisited(p) || !inBand(p))
                    continue;
                if (outlineCount == 0) {
                    start = p;
                    return true;
                }
                const Spot edge = leftEdge(p);
                if (!isVisited(edge)) {
                    start = edge;
                    return true;
                }
            }
        }
        return false;
    }

    // Adds the outline of every region of the band; 1 when there is none.
    int traceAll(unsigned char bandLow, unsigned char bandHigh, PList<POutlines> &outlines)
    {
        setBand(bandLow, bandHigh);
        Spot start{0, 0};
        if (!findNextStart(Spot{0, 0}, start))
            return GImage::resultNothingTraced;
        do {
            PList<PCoord<double>> points;
            bool closed = false;
            const int result = traceContour(start, points, closed);
            if (result != GImage::resultOk)
                return result;
            markPoints(points);
            // One-point regions are dropped.
            if (points.length() > 1) {
                outlines.add(POutlines(valueAt(start), points));
                ++outlineCount;
            }
        } while (findNextStart(Spot{0, start.y}, start));
        return outlines.length() != 0 ? GImage::resultOk : GImage::resultNothingTraced;
    }

    // From the region's left edge on the point's row; an isolated pixel moves the try to the
    // pixel left of it, taking that pixel's value as the band.
    int traceFrom(Spot p, POutlines &outline)
    {
        for (;;) {
            p = leftEdge(p);
            if (isVisited(p))
                return GImage::resultNothingTraced;
            PList<PCoord<double>> points;
            bool closed = false;
            const int result = traceContour(p, points, closed);
            if (result != GImage::resultOk)
                return result;
            if (closed && points.length() > 1) {
                markPoints(points);
                outline = POutlines(low, points);
                return GImage::resultOk;
            }
            if (!closed) {
                // Stops at the picture's left edge: the next try would stand outside it and
                // repeat this one for ever.
                if (p.x == 0)
                    return GImage::resultNothingTraced;
                --p.x;
                const unsigned char v = valueAt(p);
                setBand(v, v);
            }
        }
    }

    // One attempt from the region's left edge; visited pixels are not consulted.
    int traceSingle(Spot p, POutlines &outline) const
    {
        PList<PCoord<double>> points;
        bool closed = false;
        const int result = traceContour(leftEdge(p), points, closed);
        if (result != GImage::resultOk)
            return result;
        if (points.length() <= 1)
            return GImage::resultNothingTraced;
        outline = POutlines(low, points);
        return GImage::resultOk;
    }

private:
    unsigned char *pixels;
    unsigned short width;
    unsigned short height;
    unsigned long stride;
    unsigned char low = 0;
    unsigned char high = 0;
    unsigned short outlineCount = 0;
    unsigned char *visited;
};

} // namespace

bool GImage::traceable() const
{
    return numColors() != 0 && header->biBitCount == 8 && holdsWholeRows() && header->biWidth <= 0xffff &&
           header->biHeight <= 0xffff;
}

int GImage::outlineTrace(unsigned char range, unsigned char skip, PList<POutlines> &outlines)
{
    if (!header || !pixels || !traceable())
        return resultImpossible;
    const unsigned int n = numColors();
    unsigned long *histogram = buildHistogram();
    if (!histogram)
        return resultNoMemory;
    const DibGlobalBlock histogramBlock(histogram);
    unsigned int background = 0;
    for (unsigned int i = 1; i < n; ++i)
        if (histogram[i] > histogram[background])
            background = i;
    OutlineTracer tracer(pixels, *header);
    // Without the map every start would be found again and again.
    if (!tracer.hasVisitedMap())
        return resultNoMemory;
    tracer.markValue(static_cast<unsigned char>(background));
    for (long i = 0; i < static_cast<long>(n); ++i) {
        if (static_cast<unsigned int>(i) == background || histogram[i] == 0)
            continue;
        long j = i + range < static_cast<long>(n) - 1 ? i + range : static_cast<long>(n) - 1;
        if (histogram[j] == 0)
            j = i;
        // Results 0 and 1 are not told apart: a band without outlines is no failure.
        if (tracer.traceAll(static_cast<unsigned char>(i), static_cast<unsigned char>(j), outlines) ==
            resultNoChainMemory)
            return resultNoChainMemory;
        // The next band starts at j + skip; with skip 0 and a band of one index that would be
        // i again, for ever, so the scan moves on by at least one index.
        i = (std::max)(j - 1 + static_cast<long>(skip), i);
    }
    return resultOk;
}

int GImage::outlineTrace(PCoord<double> const &point, POutlines &outline, unsigned char range)
{
    if (!header || !pixels || header->biWidth <= 0 || header->biHeight <= 0)
        return resultImpossible;
    if (point.xval() < 0 || point.xval() > header->biWidth - 1 || point.yval() < 0 ||
        point.yval() > header->biHeight - 1)
        return resultImpossible;
    return traceOne(this, point, outline, range);
}

bool GImage::traceBand(GImage *image, PCoord<double> const &point, unsigned char range, unsigned char &low,
                       unsigned char &high, int &result)
{
    result = resultImpossible;
    if (!image || !image->header || !image->pixels || !image->traceable())
        return false;
    const Spot p = spotOf(point);
    if (p.x < 0 || p.y < 0 || p.x >= image->header->biWidth || p.y >= image->header->biHeight)
        return false;
    const unsigned int n = image->numColors();
    const unsigned char v = image->pixels[static_cast<unsigned long>(image->header->biHeight - p.y - 1) *
                                              dibStride(*image->header) +
                                          static_cast<unsigned long>(p.x)];
    low = high = v;
    if (range == 0)
        return true;
    // The counts are this image's, whichever image is traced.
    unsigned long *histogram = buildHistogram();
    if (!histogram) {
        result = resultNoMemory;
        return false;
    }
    const DibGlobalBlock histogramBlock(histogram);
    const unsigned int sum = static_cast<unsigned char>(v + range);
    const unsigned int h = sum < n - 1 ? sum : n - 1;
    if (h < toneLevels() && histogram[h] != 0)
        high = static_cast<unsigned char>(h);
    return true;
}

int GImage::traceOne(GImage *image, PCoord<double> const &point, POutlines &outline, unsigned char range)
{
    unsigned char low = 0, high = 0;
    int result = resultOk;
    if (!traceBand(image, point, range, low, high, result))
        return result;
    OutlineTracer tracer(image->pixels, *image->header);
    tracer.setBand(low, high);
    return tracer.traceFrom(spotOf(point), outline);
}

int GImage::traceSingleOutline(GImage *image, PCoord<double> const &point, POutlines &outline, unsigned char range)
{
    unsigned char low = 0, high = 0;
    int result = resultOk;
    if (!traceBand(image, point, range, low, high, result))
        return result;
    OutlineTracer tracer(image->pixels, *image->header);
    tracer.setBand(low, high);
    return tracer.traceSingle(spotOf(point), outline);
}
