#include "graphics/GRect.h"
#include "foundation/PMemory.h"
#include "foundation/PNumerics.h"

namespace {

double lowest(double a, double b, double c, double d)
{
    return (min)((min)(a, b), (min)(c, d));
}

double highest(double a, double b, double c, double d)
{
    return (max)((max)(a, b), (max)(c, d));
}

} // namespace

GRect::operator tagRECT *()
{
    nativeRect.left = truncateCoord(left);
    nativeRect.top = truncateCoord(top);
    nativeRect.right = truncateCoord(right);
    nativeRect.bottom = truncateCoord(bottom);
    return &nativeRect;
}

int GRect::isEmpty() const
{
    return left == 0.0 && top == 0.0 && right == 0.0 && bottom == 0.0;
}

GRect GRect::operator+(GRect const &other) const
{
    return GRect(left + other.left, top + other.top, right + other.right, bottom + other.bottom);
}

GRect GRect::operator-(GRect const &other) const
{
    return GRect(left - other.left, top - other.top, right - other.right, bottom - other.bottom);
}

GRect &GRect::operator+=(float d)
{
    return offset(d, d);
}

GRect &GRect::operator-=(float d)
{
    return offset(-d, -d);
}

GRect &GRect::offset(float dx, float dy)
{
    left += dx;
    right += dx;
    top += dy;
    bottom += dy;
    return *this;
}

GRect &GRect::inflate(float dx, float dy)
{
    left -= dx;
    top -= dy;
    right += dx;
    bottom += dy;
    return *this;
}

int GRect::operator==(GRect const &other) const
{
    return left == other.left || top == other.top || right == other.right || bottom == other.bottom;
}

int GRect::isIn(GPoint const &p)
{
    const POINT point{truncateCoord(p.xVal()), truncateCoord(p.yVal())};
    return PtInRect(*this, point) != FALSE;
}

int GRect::isCloseToBorder(GPoint const &p)
{
    const int x = truncateCoord(p.xVal());
    const int y = truncateCoord(p.yVal());
    const RECT *rect = *this;
    // The margin is added in double so that it saturates at the ends of int.
    const auto shifted = [](int v, int d) { return LONG(truncateCoord(double(v) + d)); };
    static const int corners[4][2] = {{2, 2}, {2, -2}, {-2, 2}, {-2, -2}};
    for (auto const &corner : corners) {
        if (!PtInRect(rect, POINT{shifted(x, corner[0]), shifted(y, corner[1])}))
            return 0;
    }
    return 1;
}

int GRect::isIntersect(GRect const &other) const
{
    if (other.left > left && other.left > right)
        return 0;
    if (other.right < left && other.right < right)
        return 0;
    if (other.top > top && other.top > bottom)
        return 0;
    if (other.bottom < top && other.bottom < bottom)
        return 0;
    return 1;
}

GRect GRect::getBoundaryRect(GRect const &other) const
{
    return GRect(lowest(left, right, other.left, other.right),
                 lowest(top, bottom, other.top, other.bottom),
                 highest(left, right, other.left, other.right),
                 highest(top, bottom, other.top, other.bottom));
}

GRgn::~GRgn()
{
    destroy();
}

GRgn::GRgn(GRgn const &other) : handle(nullptr)
{
    *this = other;
}

GRgn &GRgn::operator=(GRgn const &other)
{
    if (isValid())
        destroy();
    if (other.isValid()) {
        create();
        combine(other, GRgn(), RGN_COPY);
    }
    return *this;
}

int GRgn::create()
{
    handle = CreateRectRgn(0, 0, 0, 0);
    return handle != nullptr;
}

int GRgn::create(GRect const &rect)
{
    handle = CreateRectRgn(truncateCoord(rect.lVal()), truncateCoord(rect.tVal()),
                           truncateCoord(rect.rVal()), truncateCoord(rect.bVal()));
    return isValid();
}

int GRgn::create(GPoint const *points, int count)
{
    // No polygon for an empty count, as the platform would answer; none beyond memory either.
    if (count <= 0 || points == nullptr || count > INT_MAX / int(sizeof(POINT))) {
        handle = nullptr;
        return 0;
    }
    auto *corners = static_cast<POINT *>(PLocalAlloc(sizeof(POINT) * static_cast<unsigned>(count)));
    if (corners == nullptr) {
        handle = nullptr;
        return 0;
    }
    for (int i = 0; i < count; ++i)
        corners[i] = POINT{truncateCoord(points[i].xVal()), truncateCoord(points[i].yVal())};
    handle = CreatePolygonRgn(corners, count, WINDING);
    PLocalFree(corners);
    return isValid();
}

int GRgn::create(double left, double top, double right, double bottom)
{
    handle = CreateEllipticRgn(truncateCoord(left), truncateCoord(top), truncateCoord(right),
                               truncateCoord(bottom));
    return isValid();
}

void GRgn::getBox(GRect &rect)
{
    RECT box{};
    if (GetRgnBox(handle, &box) != NULLREGION)
        rect.set(box.left, box.top, box.right, box.bottom);
}

void GRgn::operator+=(GRgn const &other) const
{
    combine(*this, other, RGN_OR);
}

void GRgn::combine(GRgn const &a, GRgn const &b, int mode) const
{
    CombineRgn(handle, a.handle, b.handle, mode);
}

void GRgn::destroy()
{
    if (isValid()) {
        DeleteObject(handle);
        handle = nullptr;
    }
}
