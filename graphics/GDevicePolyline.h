// GDevicePolyline.h - vertex lists in device integers.
//
//   GDeviceVertexArray    the owned array beneath the two growing kinds, handed over rather than copied
//   GDevicePolyline       a growing list of device vertices, converted once as they are added
//   GDevicePolyPolyline   fixed-size vertices in closed runs, with line clipping to a rectangle
//   GDevicePolyBezier     a start vertex and segments of two control points and an end
//   GDevicePolyBitmap<T>  coordinates as given, double or long, for stamping bitmaps along a path
//
// A list converts each logical coordinate with the reduced form of the mapping it was built
// with; it must be drawn on a device in that mapping. The arrays go to the platform as they
// stand. The fixed-size lists take what their constructors announced and drop the rest.
#pragma once

#include "foundation/PCoord.h"
#include "foundation/TeskWinExport.h"
#include "graphics/GMapMode.h"
#include "graphics/GRect.h"

#include <windows.h>

#include <new>

// The array of a device vertex list. Assignment between lists is a transfer, as of a
// short-lived list: the target takes the array and the source is left empty, so that the
// array has one owner.
class TESKWIN_API GDeviceVertexArray {
public:
    GDeviceMapMode getMapMode() const { return map; }

protected:
    explicit GDeviceVertexArray(GDeviceMapMode map) : vertices(nullptr), capacity(0), count(0), map(map) {}
    ~GDeviceVertexArray();
    GDeviceVertexArray(GDeviceVertexArray const &) = delete;
    GDeviceVertexArray &operator=(GDeviceVertexArray const &) = delete;
    void takeArrayOf(GDeviceVertexArray &other);

    POINT *vertices;
    int capacity;
    int count;
    GDeviceMapMode map;
};

class TESKWIN_API GDevicePolyline : public GDeviceVertexArray {
public:
    // n vertices are allocated at once; n of 0 or less waits for the first vertex.
    GDevicePolyline(int n, GMapMode const &mode);
    GDevicePolyline &operator=(GDevicePolyline &other);

    // Makes room for n vertices; the first allocation is exact, later ones bring 256 spare.
    void resize(int n);
    // The list grows by itself; a vertex is dropped when no room can be had.
    void addVertex(int x, int y);
    void addVertex(double x, double y);
    void addVertex(PCoord<double> const &p);
    int numVertices() const { return vertices ? count : 0; }
    // The storage stays.
    void clearVertices() { count = 0; }
    POINT *getVertexArray() const { return vertices; }
    int getCapacity() const { return capacity; }

private:
    void append(int x, int y);

    // What is really allocated: it grows by doubling beneath the stated capacity, so that
    // adding vertex by vertex costs linear time.
    int room;
};

class TESKWIN_API GDevicePolyPolyline {
public:
    GDevicePolyPolyline(int maxVertices, int maxRuns, GMapMode const &mode);
    GDevicePolyPolyline(GDevicePolyPolyline const &other);
    // Deep.
    GDevicePolyPolyline &operator=(GDevicePolyPolyline const &other);
    ~GDevicePolyPolyline();

    // Beyond the announced vertices or runs, vertices and breaks are dropped.
    void addVertex(int x, int y);
    void addVertex(double x, double y);
    void addVertex(PCoord<double> const &p);
    // Closes the run of the vertices added since the last break.
    void addBreak();
    void clearVertices() { count = openLength = runCount = 0; }
    GDeviceMapMode getMapMode() const { return map; }

    // Replaces the closed runs by their parts inside the rectangle, in device units with left
    // and top as the minima. Vertices after the last break are dropped.
    void clip(GRect const &rect);

    POINT const *getVertexArray() const { return vertices; }
    int numVertices() const { return count; }
    int const *getRunLengths() const { return runLengths; }
    int numRuns() const { return runCount; }

private:
    void append(int x, int y);
    void release();
    void copyFrom(GDevicePolyPolyline const &other);

    POINT *vertices;
    int capacity;
    int *runLengths;
    int runCapacity;
    int count;
    int openLength;
    int runCount;
    GDeviceMapMode map;
};

// Vertex 0 is the start; each segment adds two control points and an end, as PolyBezier expects.
class TESKWIN_API GDevicePolyBezier : public GDeviceVertexArray {
public:
    GDevicePolyBezier(int segments, GMapMode const &mode);
    GDevicePolyBezier &operator=(GDevicePolyBezier &other);

    void setInitialVertex(int x, int y);
    void setInitialVertex(double x, double y);
    void setInitialVertex(PCoord<double> const &p);
    // Segments beyond the announced number are dropped.
    void addSegment(int x1, int y1, int x2, int y2, int x3, int y3);
    void addSegment(double x1, double y1, double x2, double y2, double x3, double y3);
    void addSegment(PCoord<double> const &c1, PCoord<double> const &c2, PCoord<double> const &end);

    POINT const *getVertexArray() const { return vertices; }
    int numVertices() const { return count; }
};

// The coordinates as given, with no map: the device places them when it draws.
template <class T>
class GDevicePolyBitmap {
public:
    explicit GDevicePolyBitmap(int n)
        : vertices(n >= 0 && n < 0x7fffffff ? new (std::nothrow) PCoord<T>[n + 1] : nullptr),
          capacity(vertices ? n + 1 : 0), count(0)
    {
    }
    ~GDevicePolyBitmap() { delete[] vertices; }
    GDevicePolyBitmap(GDevicePolyBitmap const &) = delete;
    // A transfer, as with GDeviceVertexArray.
    GDevicePolyBitmap &operator=(GDevicePolyBitmap &other)
    {
        if (this != &other) {
            delete[] vertices;
            vertices = other.vertices;
            capacity = other.capacity;
            count = other.count;
            other.vertices = nullptr;
            other.capacity = other.count = 0;
        }
        return *this;
    }

    // Beyond the capacity, vertices are dropped.
    void addVertex(PCoord<T> const &p)
    {
        if (count < capacity)
            vertices[count++] = p;
    }
    void addVertex(T x, T y) { addVertex(PCoord<T>(x, y)); }
    int numVertices() const { return count; }
    void clearVertices() { count = 0; }
    PCoord<T> const *getVertexArray() const { return vertices; }

private:
    PCoord<T> *vertices;
    int capacity;
    int count;
};
