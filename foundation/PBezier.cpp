#include "foundation/PBezier.h"

#include <cmath>

namespace {

struct Point {
    double x, y;
};

Point midpoint(Point const &a, Point const &b)
{
    return Point{(a.x + b.x) * 0.5, (a.y + b.y) * 0.5};
}

// Squared distance from p to the segment a-b.
double squaredDistanceToSegment(Point const &p, Point const &a, Point const &b)
{
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double lengthSquared = dx * dx + dy * dy;
    double t = 0;
    if (lengthSquared > 0) {
        t = ((p.x - a.x) * dx + (p.y - a.y) * dy) / lengthSquared;
        t = t < 0 ? 0 : t > 1 ? 1 : t;
    }
    const double ex = a.x + t * dx - p.x, ey = a.y + t * dy - p.y;
    return ex * ex + ey * ey;
}

// The curve lies in the hull of its control points, and the distance to the chord is convex,
// so the chord is within tolerance of the curve when both inner control points are.
bool flatEnough(Point const (&c)[4], double toleranceSquared)
{
    return squaredDistanceToSegment(c[1], c[0], c[3]) <= toleranceSquared &&
           squaredDistanceToSegment(c[2], c[0], c[3]) <= toleranceSquared;
}

// Each halving shrinks the distance to the chord by about four, so this depth meets any
// tolerance the coordinates of a device can ask for, and bounds the points to 2^16 a curve.
constexpr int maxDepth = 16;

void flatten(Point const (&c)[4], double toleranceSquared, int depth, std::list<PCoord<double>> &out)
{
    if (depth >= maxDepth || flatEnough(c, toleranceSquared)) {
        out.emplace_back(c[3].x, c[3].y);
        return;
    }
    // de Casteljau at one half.
    const Point ab = midpoint(c[0], c[1]), bc = midpoint(c[1], c[2]), cd = midpoint(c[2], c[3]);
    const Point abc = midpoint(ab, bc), bcd = midpoint(bc, cd);
    const Point middle = midpoint(abc, bcd);
    const Point first[4] = {c[0], ab, abc, middle};
    const Point second[4] = {middle, bcd, cd, c[3]};
    flatten(first, toleranceSquared, depth + 1, out);
    flatten(second, toleranceSquared, depth + 1, out);
}

} // namespace

PBezier::PBezier(PCoord<double> const points[4])
{
    for (int i = 0; i < 4; ++i)
        control[i] = points[i];
}

void PBezier::getPolyline(double tolerance, std::list<PCoord<double>> &polyline) const
{
    Point c[4];
    bool finite = true;
    for (int i = 0; i < 4; ++i) {
        c[i] = Point{control[i].xval(), control[i].yval()};
        finite = finite && std::isfinite(c[i].x) && std::isfinite(c[i].y);
    }
    polyline.emplace_back(c[0].x, c[0].y);
    if (!finite) {
        polyline.emplace_back(c[3].x, c[3].y);
        return;
    }
    const double t = std::fabs(tolerance);
    flatten(c, t * t, 0, polyline);
}
