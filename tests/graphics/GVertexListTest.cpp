#include <gtest/gtest.h>
#include <windows.h>

#include <climits>
#include <cmath>
#include <initializer_list>
#include <list>
#include <vector>

#include "TeskWin.h"
#include "graphics/GPolygonClip.h"

namespace {

std::vector<POINT> points(std::initializer_list<POINT> list)
{
    return std::vector<POINT>(list);
}

// The polygons of a clip, one vector each.
std::vector<std::vector<POINT>> polygonsOf(ClipPolygons const &clip)
{
    std::vector<std::vector<POINT>> result;
    int first = 0;
    for (int i = 0; i < clip.polygonCount(); ++i) {
        result.emplace_back(clip.vertices.data() + first, clip.vertices.data() + first + clip.lengths[i]);
        first += clip.lengths[i];
    }
    EXPECT_EQ(first, clip.vertices.size());
    return result;
}

void expectPoints(std::vector<POINT> const &actual, std::vector<POINT> const &expected)
{
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(actual[i].x, expected[i].x) << "vertex " << i;
        EXPECT_EQ(actual[i].y, expected[i].y) << "vertex " << i;
    }
}

GMapMode scaledMapping()
{
    // Scale 2, window origin (1.5, -3): offsets -3 and 6.
    GMapMode mode(scaledMappingMode);
    mode.setWindowExt(GPoint(50, 50));
    mode.setViewportExt(GPoint(100, 100));
    mode.setWindowOrg(GPoint(1.5, -3));
    return mode;
}

TEST(ForceLine, ClipsMovesAndRejectsInTwoRounds)
{
    struct Case {
        long line[4];
        long bounds[4];
        int result;
        long clipped[4];
    };
    const Case cases[] = {
        {{0, 5, 10, 5}, {2, 0, 8, 10}, 1, {2, 5, 8, 5}},
        // Both ends left of the rectangle: rejected, untouched.
        {{-5, 1, -1, 9}, {0, 0, 10, 10}, 0, {-5, 1, -1, 9}},
        // An end on a bound is inside.
        {{0, 10, 10, 0}, {0, 0, 10, 10}, 1, {0, 10, 10, 0}},
        // Past the corner: the first end moves, the second's ratio is above 1, then rejection.
        {{-10, 1, 1, -10}, {0, 0, 10, 10}, 0, {0, -9, 1, -10}},
        // The long form truncates the step before adding: 5 / 3 gives 1.
        {{-1, 0, 2, 5}, {0, 0, 10, 10}, 1, {0, 1, 2, 5}},
    };
    for (Case const &c : cases) {
        long v[4] = {c.line[0], c.line[1], c.line[2], c.line[3]};
        long const *b = c.bounds;
        EXPECT_EQ(ForceLine<long>::forceLine(v[0], v[1], v[2], v[3], b[0], b[1], b[2], b[3]), c.result);
        for (int i = 0; i < 4; ++i)
            EXPECT_EQ(v[i], c.clipped[i]) << "line from " << c.line[0] << "," << c.line[1] << " value " << i;
    }

    // The double form keeps the fraction.
    double dx0 = -1, dy0 = 0, dx1 = 2, dy1 = 5;
    EXPECT_EQ(ForceLine<double>::forceLine(dx0, dy0, dx1, dy1, 0, 0, 10, 10), 1);
    EXPECT_DOUBLE_EQ(dx0, 0);
    EXPECT_DOUBLE_EQ(dy0, 5.0 / 3);

    // Both ends need a move on each axis: after two rounds the result is 1 untested.
    long x0 = -10, y0 = -20, x1 = 30, y1 = 25;
    EXPECT_EQ(ForceLine<long>::forceLine(x0, y0, x1, y1, 0, 0, 10, 10), 1);

    // Near the 32-bit limits nothing overflows.
    x0 = LONG_MIN, y0 = LONG_MIN, x1 = LONG_MAX, y1 = LONG_MAX;
    EXPECT_EQ(ForceLine<long>::forceLine(x0, y0, x1, y1, 0, 0, 10, 10), 1);
    EXPECT_GE(x0, -1);
    EXPECT_LE(x1, 11);
}

TEST(GDevicePolyline, GrowsExactlyThenBy256AndConvertsOnAdding)
{
    GDevicePolyline list(0, GMapMode());
    EXPECT_EQ(list.numVertices(), 0);
    EXPECT_EQ(list.getVertexArray(), nullptr);
    list.resize(10);
    EXPECT_EQ(list.getCapacity(), 10);
    list.resize(11);
    EXPECT_EQ(list.getCapacity(), 267);
    list.resize(200);
    EXPECT_EQ(list.getCapacity(), 267);

    GDevicePolyline scaled(2, scaledMapping());
    scaled.addVertex(2, 3);
    scaled.addVertex(-1.75, 0.9);
    scaled.addVertex(PCoord<double>(10.3, -2.6));
    ASSERT_EQ(scaled.numVertices(), 3);
    POINT const *v = scaled.getVertexArray();
    EXPECT_EQ(v[0].x, 1);    // 2 * 2 - 3
    EXPECT_EQ(v[0].y, 12);   // 2 * 3 + 6
    EXPECT_EQ(v[1].x, -6);   // -3.5 - 3 = -6.5, truncated
    EXPECT_EQ(v[1].y, 7);    // 7.8
    EXPECT_EQ(v[2].x, 17);   // 17.6
    EXPECT_EQ(v[2].y, 0);    // 0.8
    EXPECT_EQ(scaled.getCapacity(), 259);

    // Many vertices one by one keep every value; clearing keeps the storage.
    GDevicePolyline many(0, GMapMode());
    for (int i = 0; i < 100000; ++i)
        many.addVertex(i, -i);
    ASSERT_EQ(many.numVertices(), 100000);
    EXPECT_EQ(many.getVertexArray()[99999].x, 99999);
    EXPECT_EQ(many.getVertexArray()[65536].y, -65536);
    POINT *storage = many.getVertexArray();
    const int capacity = many.getCapacity();
    many.clearVertices();
    EXPECT_EQ(many.numVertices(), 0);
    many.addVertex(7, 7);
    EXPECT_EQ(many.getVertexArray(), storage);
    EXPECT_EQ(many.getCapacity(), capacity);

    // Assignment transfers the array: one owner, whose vertices are the other's.
    GDevicePolyline target(5, GMapMode());
    target = scaled;
    EXPECT_EQ(target.numVertices(), 3);
    EXPECT_EQ(target.getVertexArray()[2].x, 17);
    EXPECT_EQ(target.getMapMode().scale, 2.0);
    EXPECT_EQ(scaled.numVertices(), 0);

    // Coordinates far beyond 32 bits are held at the limits.
    GDevicePolyline distant(1, GMapMode());
    distant.addVertex(1e300, -1e300);
    EXPECT_EQ(distant.getVertexArray()[0].x, INT_MAX);
    EXPECT_EQ(distant.getVertexArray()[0].y, INT_MIN);
}

TEST(GDevicePolyPolyline, ClipSplitsRunsThatLeaveAndDropsSingleVertices)
{
    GDevicePolyPolyline list(12, 5, GMapMode());
    // Leaves on the right and comes back.
    list.addVertex(2, 2);
    list.addVertex(15, 2);
    list.addVertex(15, 8);
    list.addVertex(5, 8);
    list.addBreak();
    list.addBreak();    // an empty run
    list.addVertex(3, 3);
    list.addBreak();    // one vertex
    list.addVertex(1.5, 1.9);
    list.addVertex(4, 9);
    list.addVertex(PCoord<double>(9, 1));
    list.addBreak();
    list.addVertex(5, 5);    // after the last break: dropped
    EXPECT_EQ(list.numVertices(), 9);
    EXPECT_EQ(list.numRuns(), 4);

    // Beyond the announced room vertices and breaks are dropped, not written.
    GDevicePolyPolyline full(list);
    for (int i = 0; i < 10; ++i) {
        full.addVertex(i, i);
        full.addBreak();
    }
    EXPECT_EQ(full.numVertices(), 12);
    EXPECT_EQ(full.numRuns(), 5);

    list.clip(GRect(0, 0, 10, 10));
    expectPoints(std::vector<POINT>(list.getVertexArray(), list.getVertexArray() + list.numVertices()),
                 points({{2, 2}, {10, 2}, {10, 8}, {5, 8}, {1, 1}, {4, 9}, {9, 1}}));
    ASSERT_EQ(list.numRuns(), 3);
    EXPECT_EQ(list.getRunLengths()[0], 2);
    EXPECT_EQ(list.getRunLengths()[1], 2);
    EXPECT_EQ(list.getRunLengths()[2], 3);

    // Deep copies: the copy is not touched by clipping the original again.
    GDevicePolyPolyline copy(1, 1, GMapMode());
    copy = list;
    list.clip(GRect(0, 0, 3, 3));
    EXPECT_EQ(copy.numVertices(), 7);
    EXPECT_EQ(copy.getVertexArray()[6].x, 9);
    ASSERT_EQ(list.numRuns(), 2);
    EXPECT_EQ(list.getRunLengths()[0], 2);

    // Everything outside: no runs.
    list.clip(GRect(100, 100, 200, 200));
    EXPECT_EQ(list.numRuns(), 0);
    EXPECT_EQ(list.numVertices(), 0);
}

TEST(GDevicePolyBezier, HoldsTheStartAndThreeVerticesASegment)
{
    GDevicePolyBezier curve(2, scaledMapping());
    EXPECT_EQ(curve.numVertices(), 1);
    curve.setInitialVertex(PCoord<double>(2, 0));
    curve.addSegment(3, 0, 4, 0, 5, 0);
    curve.addSegment(PCoord<double>(1, 1), PCoord<double>(2, 2), PCoord<double>(3, 3));
    curve.addSegment(9, 9, 9, 9, 9, 9);    // beyond the announced segments
    ASSERT_EQ(curve.numVertices(), 7);
    POINT const *v = curve.getVertexArray();
    EXPECT_EQ(v[0].x, 1);
    EXPECT_EQ(v[0].y, 6);
    EXPECT_EQ(v[3].x, 7);
    EXPECT_EQ(v[6].x, 3);
    EXPECT_EQ(v[6].y, 12);

    GDevicePolyBezier none(-3, GMapMode());
    EXPECT_EQ(none.numVertices(), 0);
    none.setInitialVertex(1, 1);
    none.addSegment(1, 1, 1, 1, 1, 1);
    EXPECT_EQ(none.numVertices(), 0);

    GDevicePolyBitmap<long> stamps(2);
    stamps.addVertex(1, 2);
    stamps.addVertex(PCoord<long>(3, 4));
    stamps.addVertex(5, 6);    // the one spare place
    stamps.addVertex(7, 8);    // dropped
    EXPECT_EQ(stamps.numVertices(), 3);
    EXPECT_EQ(stamps.getVertexArray()[2].xval(), 5);
    GDevicePolyBitmap<long> moved(0);
    moved = stamps;
    EXPECT_EQ(moved.numVertices(), 3);
    EXPECT_EQ(moved.getVertexArray()[1].yval(), 4);
    EXPECT_EQ(stamps.numVertices(), 0);
    stamps.addVertex(1, 1);
    EXPECT_EQ(stamps.numVertices(), 0);
}

TEST(PolygonClip, HalfPlanesPairCrossingsAlongTheLine)
{
    EXPECT_TRUE(isInsideHalfPlane(POINT{0, 5}, 1, 0, 5));    // y not less than 5
    EXPECT_FALSE(isInsideHalfPlane(POINT{0, 5}, 0, 0, 5));   // y less than 5
    EXPECT_TRUE(isInsideHalfPlane(POINT{4, 99}, 0, 1, 5));   // x less than 5

    // A U cut through both arms by y < 20 falls into the two arms, in walking order.
    const std::vector<POINT> u = points({{0, 0}, {10, 0}, {10, 30}, {20, 30}, {20, 0}, {30, 0}, {30, 40}, {0, 40}});
    ClipPolygons arms;
    clipPolygonToHalfPlane(u.data(), int(u.size()), 0, 0, 20, arms);
    auto pieces = polygonsOf(arms);
    ASSERT_EQ(pieces.size(), 2u);
    expectPoints(pieces[0], points({{0, 0}, {10, 0}, {10, 20}, {0, 20}}));
    expectPoints(pieces[1], points({{20, 0}, {30, 0}, {30, 20}, {20, 20}}));

    // The same U the other way round pairs its crossings by their order along the line.
    const std::vector<POINT> reversed(u.rbegin(), u.rend());
    ClipPolygons other;
    clipPolygonToHalfPlane(reversed.data(), int(reversed.size()), 0, 0, 20, other);
    pieces = polygonsOf(other);
    ASSERT_EQ(pieces.size(), 2u);
    expectPoints(pieces[0], points({{0, 0}, {0, 20}, {10, 20}, {10, 0}}));
    expectPoints(pieces[1], points({{30, 0}, {20, 0}, {20, 20}, {30, 20}}));

    // Wholly outside with no crossing: nothing; wholly inside: the input as it stands.
    ClipPolygons none;
    clipPolygonToHalfPlane(u.data(), int(u.size()), 1, 0, 50, none);
    EXPECT_EQ(none.polygonCount(), 0);
    EXPECT_EQ(none.vertices.size(), 0);
    ClipPolygons all;
    clipPolygonToHalfPlane(u.data(), int(u.size()), 0, 1, 31, all);
    ASSERT_EQ(all.polygonCount(), 1);
    expectPoints(polygonsOf(all)[0], u);

    // Nothing at all is read or written for an empty list.
    ClipPolygons empty;
    clipPolygonToHalfPlane(nullptr, 0, 0, 0, 0, empty);
    EXPECT_EQ(empty.polygonCount(), 0);
}

TEST(PolygonClip, RectanglesCutTopBottomLeftRightInThatOrder)
{
    const GRect box(0, 0, 20, 20);
    const std::vector<POINT> square = points({{-10, -10}, {10, -10}, {10, 10}, {-10, 10}});
    ClipPolygons out;
    out.vertices.append(POINT{99, 99});    // level 0 starts afresh
    clipPolygonToRect(square.data(), int(square.size()), box, 0, out);
    auto pieces = polygonsOf(out);
    ASSERT_EQ(pieces.size(), 1u);
    expectPoints(pieces[0], points({{10, 10}, {0, 10}, {0, 0}, {10, 0}}));

    // Wholly inside: unchanged. Right and bottom are exclusive, left and top inclusive.
    const std::vector<POINT> inside = points({{0, 0}, {19, 0}, {19, 19}, {0, 19}});
    clipPolygonToRect(inside.data(), int(inside.size()), box, 0, out);
    pieces = polygonsOf(out);
    ASSERT_EQ(pieces.size(), 1u);
    expectPoints(pieces[0], inside);
    const std::vector<POINT> onEdge = points({{20, 0}, {30, 0}, {30, 19}, {20, 19}});
    clipPolygonToRect(onEdge.data(), int(onEdge.size()), box, 0, out);
    EXPECT_EQ(out.polygonCount(), 0);

    // Outside, around the corner, without a crossing.
    const std::vector<POINT> beyond = points({{-10, -10}, {-1, -10}, {-1, -1}, {-10, -1}});
    clipPolygonToRect(beyond.data(), int(beyond.size()), box, 0, out);
    EXPECT_EQ(out.polygonCount(), 0);

    // Level 4 appends as it stands.
    clipPolygonToRect(beyond.data(), int(beyond.size()), box, 4, out);
    ASSERT_EQ(out.polygonCount(), 1);
    expectPoints(polygonsOf(out)[0], beyond);

    // Degenerate and self-intersecting polygons, and coordinates at the 32-bit limits, stay
    // within what they announce: every piece is inside or on the box.
    const std::vector<POINT> hostile = points({{INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}, {INT_MAX, INT_MIN},
                                               {INT_MIN, INT_MAX}, {5, 5}, {5, 5}, {15, -3}, {-4, 12}});
    for (int n = 0; n <= int(hostile.size()); ++n) {
        clipPolygonToRect(hostile.data(), n, box, 0, out);
        for (auto const &piece : polygonsOf(out)) {
            EXPECT_FALSE(piece.empty());
            for (POINT const &p : piece) {
                EXPECT_TRUE(p.x >= 0 && p.x <= 20 && p.y >= 0 && p.y <= 20) << n << ": " << p.x << ", " << p.y;
            }
        }
    }
}

TEST(PBezier, PolylineStartsAndEndsOnTheCurveAndStaysWithinTolerance)
{
    const PCoord<double> control[4] = {PCoord<double>(0, 0), PCoord<double>(0, 100), PCoord<double>(100, 100),
                                       PCoord<double>(100, 0)};
    const PBezier curve(control);
    std::list<PCoord<double>> line(1, PCoord<double>(-1, -1));
    curve.getPolyline(0.5, line);
    // Appended after what the list held.
    ASSERT_GT(line.size(), 8u);
    EXPECT_EQ(line.front().xval(), -1);
    line.pop_front();
    EXPECT_EQ(line.front().xval(), 0);
    EXPECT_EQ(line.front().yval(), 0);
    EXPECT_EQ(line.back().xval(), 100);
    EXPECT_EQ(line.back().yval(), 0);
    // Every point of the curve lies near a point of the polyline: the top is at y 75.
    bool nearTop = false;
    for (auto const &p : line)
        nearTop = nearTop || (std::fabs(p.xval() - 50) < 8 && std::fabs(p.yval() - 75) <= 0.5);
    EXPECT_TRUE(nearTop);

    // A straight curve needs no inner points; non-finite control points give the chord.
    const PCoord<double> straight[4] = {PCoord<double>(0, 0), PCoord<double>(1, 1), PCoord<double>(2, 2),
                                        PCoord<double>(3, 3)};
    std::list<PCoord<double>> chord;
    PBezier(straight).getPolyline(0.5, chord);
    EXPECT_EQ(chord.size(), 2u);
    const PCoord<double> broken[4] = {PCoord<double>(0, 0), PCoord<double>(1e308 * 10, 1), PCoord<double>(2, 2),
                                      PCoord<double>(3, 3)};
    std::list<PCoord<double>> fallback;
    PBezier(broken).getPolyline(0.5, fallback);
    EXPECT_EQ(fallback.size(), 2u);
}

} // namespace
