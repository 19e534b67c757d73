// GPolygonClip.h - polygons cut by a rectangle, in device integers. Internal to the library.
//
//   ClipPolygons             polygons one after the other, with the length of each
//   isInsideHalfPlane        which side of an axis-parallel line a point lies on
//   clipPolygonToHalfPlane   the separate polygons that remain on one side of such a line
//   clipPolygonToRect        the same against the four sides of a rectangle
//
// A concave polygon may fall apart into several. Crossings along a cutting line are paired
// by the even-odd rule instead of joined along the line, so the pieces stay apart.
#pragma once

#include "graphics/GRect.h"

#include <windows.h>

#include <cstdlib>
#include <cstring>

// A growing array of plain records on the C heap. When room cannot be had the records are
// dropped instead of raising.
template <class T>
class ClipBuffer {
public:
    ClipBuffer() = default;
    ~ClipBuffer() { std::free(records); }
    ClipBuffer(ClipBuffer const &) = delete;
    ClipBuffer &operator=(ClipBuffer const &) = delete;

    int size() const { return count; }
    T const *data() const { return records; }
    T const &operator[](int i) const { return records[i]; }
    void clear() { count = 0; }

    // Room for n records in all, kept for later appends; false when it cannot be had.
    bool reserve(int n) { return reserve(static_cast<long long>(n)); }
    // n records whose contents are the caller's to write.
    bool resize(int n)
    {
        if (n < 0 || !reserve(static_cast<long long>(n)))
            return false;
        count = n;
        return true;
    }
    T *data() { return records; }
    T &operator()(int i) { return records[i]; }

    void append(T const *from, int n)
    {
        if (n <= 0 || !reserve(count + static_cast<long long>(n)))
            return;
        std::memcpy(records + count, from, sizeof(T) * static_cast<std::size_t>(n));
        count += n;
    }
    void append(T const &record) { append(&record, 1); }

private:
    bool reserve(long long wanted)
    {
        if (wanted <= room)
            return true;
        long long grown = room < 16 ? 16 : 2LL * room;
        if (grown < wanted)
            grown = wanted;
        if (grown > 0x7fffffff || static_cast<unsigned long long>(grown) > SIZE_MAX / sizeof(T))
            return false;
        T *moved = static_cast<T *>(std::realloc(records, sizeof(T) * static_cast<std::size_t>(grown)));
        if (!moved)
            return false;
        records = moved;
        room = static_cast<int>(grown);
        return true;
    }

    T *records = nullptr;
    int count = 0;
    int room = 0;
};

struct ClipPolygons {
    ClipBuffer<POINT> vertices;
    ClipBuffer<int> lengths;

    int polygonCount() const { return lengths.size(); }
};

// Axis 0 compares y, axis 1 compares x; inside is (value below bound) differing from side.
int isInsideHalfPlane(POINT const &p, int side, int axis, int bound);

// Appends the pieces of the n points that lie inside to out.
void clipPolygonToHalfPlane(POINT const *points, int n, int side, int axis, int bound, ClipPolygons &out);

// Keeps y not less than top, y less than bottom, x not less than left and x less than right,
// in that order, one level each. Levels below 1 start afresh: out is cleared first. Levels
// above 3 append the points as one polygon.
void clipPolygonToRect(POINT const *points, int n, GRect const &rect, int level, ClipPolygons &out);
