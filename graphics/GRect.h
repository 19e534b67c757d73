// GRect.h - rectangles and regions.
//
//   truncateCoord  a coordinate to a device integer, truncated toward zero
//   GRect          four floating edges in the caller's coordinates, with a cached RECT
//   GRgn           sole owner of one platform region; copies are deep
//
// Neither class knows about mapping modes: every conversion to integers truncates the
// stored value, so a rectangle given to a region is in device units unless translated first.
#pragma once

#include "foundation/TeskWinExport.h"
#include "foundation/GPoint.h"
#include "foundation/PFFloat.h"

#include <windows.h>

#include <climits>

// Truncation toward zero, the one rule by which coordinates become device integers.
// Values beyond int are held at its limits and NaN gives 0, so no input is undefined.
inline int truncateCoord(double value)
{
    if (value > -2147483649.0 && value < 2147483648.0)
        return static_cast<int>(value);
    return value > 0 ? INT_MAX : value < 0 ? INT_MIN : 0;
}

// Edges in any order: left may exceed right and the Y axis has no fixed direction.
class TESKWIN_API GRect {
public:
    GRect();
    GRect(GPoint const &a, GPoint const &b);
    GRect(PFFloat const &l, PFFloat const &t, PFFloat const &r, PFFloat const &b);
    GRect(GRect const &other);
    // Copies the edges only; the cache is refreshed wherever it is read.
    GRect &operator=(GRect const &other);

    void set(GPoint const &a, GPoint const &b);
    void set(PFFloat const &l, PFFloat const &t, PFFloat const &r, PFFloat const &b);

    PFFloat &lVal() { return left; }
    PFFloat &tVal() { return top; }
    PFFloat &rVal() { return right; }
    PFFloat &bVal() { return bottom; }
    PFFloat const &lVal() const { return left; }
    PFFloat const &tVal() const { return top; }
    PFFloat const &rVal() const { return right; }
    PFFloat const &bVal() const { return bottom; }

    // Signed: right minus left, bottom minus top.
    PFFloat width() const { return right - left; }
    PFFloat height() const { return bottom - top; }
    // Only the rectangle at the origin with all edges exactly 0 is empty.
    int isEmpty() const;

    // Edge by edge.
    GRect operator+(GRect const &other) const;
    GRect operator-(GRect const &other) const;
    // A diagonal shift of all four edges, not a growth.
    GRect &operator+=(float d);
    GRect &operator-=(float d);
    GRect &offset(float dx, float dy);
    GRect &inflate(float dx, float dy);

    // Deliberately true when any one edge is equal to its counterpart.
    int operator==(GRect const &other) const;
    // Deliberately the negation of the any-edge test: true only when all four edges differ.
    int operator!=(GRect const &other) const { return !(*this == other); }

    // The platform's point test on the truncated point: left and top inclusive.
    int isIn(GPoint const &p);
    // Deliberately inverted: 1 for a point at least 2 units clear of every edge.
    int isCloseToBorder(GPoint const &p);
    // Touching counts. Deliberately one-sided: this rectangle may have its edges in
    // either order, the argument is taken with left and top as its low edges.
    int isIntersect(GRect const &other) const;
    // The normalised rectangle around both.
    GRect getBoundaryRect(GRect const &other) const;

private:
    // The library's classes that hand rectangles to the platform.
    friend class GDevice;
    friend class GPainter;
    friend class PWindowObject;
    friend class PWindow;
    friend class PFrame;
    friend class PStatusBar;
    friend class PImageList;

    explicit GRect(tagRECT &rect);
    // Truncates the edges into the cache afresh at each call.
    operator tagRECT *();

    RECT nativeRect;
    PFFloat left;
    PFFloat top;
    PFFloat right;
    PFFloat bottom;
};

class TESKWIN_API GRgn {
public:
    GRgn() : handle(nullptr) {}
    ~GRgn();
    GRgn(GRgn const &other);
    // Deliberately no test for self-assignment: r = r destroys the region and leaves r invalid.
    GRgn &operator=(GRgn const &other);

    // Takes ownership; a handle already held is abandoned, not deleted.
    void attach(HRGN region) { handle = region; }

    // No create deletes a region already held. Coordinates are truncated device units.
    int create();
    int create(GRect const &rect);
    int create(GPoint const *points, int count);
    // An ellipse in the bounding box left, top, right, bottom.
    int create(double left, double top, double right, double bottom);

    // The bounding box; an empty region leaves the rectangle as it was.
    void getBox(GRect &rect);

    operator HRGN() const { return handle; }

    void operator+=(GRgn const &other) const;
    // The platform's result is ignored; this region must already exist.
    void combine(GRgn const &a, GRgn const &b, int mode) const;

    void destroy();
    int isValid() const { return handle != nullptr; }

private:
    HRGN handle;
};
