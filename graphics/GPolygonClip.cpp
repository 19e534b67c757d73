#include "graphics/GPolygonClip.h"
#include "foundation/PNumerics.h"

#include <cstdlib>

namespace {

struct ClipNode {
    int index;      // into the points, or into the crossings for a crossing node
    int isCrossing;
    int inside;
    int visited;
};

struct ClipCrossing {
    int node;
    int x;
    int y;
};

// Scratch kept through one clip, so that the four levels and all their pieces share a few
// blocks instead of allocating for each half-plane.
struct ClipWorkspace {
    ClipBuffer<ClipNode> nodes;
    ClipBuffer<POINT> crossings;
    ClipBuffer<ClipCrossing> sorted;
    ClipBuffer<int> place;
    ClipPolygons pieces[4];
};

int compareCrossingX(void const *a, void const *b)
{
    const int p = static_cast<ClipCrossing const *>(a)->x, q = static_cast<ClipCrossing const *>(b)->x;
    return p < q ? -1 : p > q ? 1 : 0;
}

int compareCrossingY(void const *a, void const *b)
{
    const int p = static_cast<ClipCrossing const *>(a)->y, q = static_cast<ClipCrossing const *>(b)->y;
    return p < q ? -1 : p > q ? 1 : 0;
}

// Where the edge from prev to cur meets the line; the differences are taken in floating
// point so that coordinates near the 32-bit limits cannot overflow.
POINT crossingPoint(POINT const &prev, POINT const &cur, int axis, int bound)
{
    if (axis == 1) {
        const double d = double(cur.x) - double(prev.x);
        const double t = IS_ZERO(d, 1e-9) ? 0.0 : (double(bound) - double(prev.x)) / d;
        return POINT{bound, truncateCoord((double(cur.y) - double(prev.y)) * t + double(prev.y))};
    }
    const double d = double(cur.y) - double(prev.y);
    const double t = IS_ZERO(d, 1e-9) ? 0.0 : (double(bound) - double(prev.y)) / d;
    return POINT{truncateCoord((double(cur.x) - double(prev.x)) * t + double(prev.x)), bound};
}

// The truncating remainder could step below node 0; the walk wraps to the last node instead.
int wrap(int position, int m)
{
    const int r = position % m;
    return r < 0 ? r + m : r;
}

} // namespace

int isInsideHalfPlane(POINT const &p, int side, int axis, int bound)
{
    const int value = axis == 0 ? p.y : p.x;
    return (value < bound) != (side != 0);
}

namespace {

void clipToHalfPlane(POINT const *points, int n, int side, int axis, int bound, ClipPolygons &out,
                     ClipWorkspace &work)
{
    if (n <= 0 || points == nullptr || n > 0x3fffffff)
        return;
    if (!work.nodes.resize(2 * n) || !work.crossings.resize(n))
        return;
    ClipBuffer<ClipNode> &nodes = work.nodes;
    ClipBuffer<POINT> &crossings = work.crossings;
    int m = 0, crossingCount = 0;
    bool anythingInside = false;
    for (int i = 0; i < n; ++i) {
        const int previous = i == 0 ? n - 1 : i - 1;
        const int a = isInsideHalfPlane(points[previous], side, axis, bound);
        const int b = isInsideHalfPlane(points[i], side, axis, bound);
        anythingInside = anythingInside || b;
        nodes(m++) = ClipNode{previous, 0, a, 0};
        if (a != b) {
            nodes(m++) = ClipNode{crossingCount, 1, 1, 0};
            crossings(crossingCount++) = crossingPoint(points[previous], points[i], axis, bound);
        }
    }
    if (crossingCount == 0) {
        if (anythingInside) {
            out.vertices.append(points, n);
            out.lengths.append(n);
        }
        return;
    }

    if (!work.sorted.resize(crossingCount) || !work.place.resize(crossingCount))
        return;
    ClipBuffer<ClipCrossing> &sorted = work.sorted;
    ClipBuffer<int> &place = work.place;
    // At most one point a node, and one more for the last pair of crossings.
    out.vertices.reserve(out.vertices.size() + m + 1);
    for (int k = 0, u = 0; k < m; ++k)
        if (nodes[k].isCrossing)
            sorted(u++) = ClipCrossing{k, crossings[nodes[k].index].x, crossings[nodes[k].index].y};
    std::qsort(sorted.data(), std::size_t(crossingCount), sizeof(ClipCrossing),
               axis == 0 ? compareCrossingX : compareCrossingY);
    // Each crossing's place along the line, by its crossing number.
    for (int u = 0; u < crossingCount; ++u)
        place(nodes[sorted[u].node].index) = u;

    int produced = 0;
    // Nodes before this one are crossings, outside or visited, and stay so.
    int scan = 0;
    while (produced < m) {
        while (scan < m && (nodes[scan].isCrossing || !nodes[scan].inside || nodes[scan].visited))
            ++scan;
        if (scan == m)
            break;
        const int start = scan;
        int direction = 1;
        int current = start;
        int length = 0;
        for (;;) {
            int next;
            if (nodes[current].isCrossing) {
                nodes(current).visited = 1;
                out.vertices.append(crossings[nodes[current].index]);
                // Even-odd: entry and exit along the line pair up.
                const int u = place[nodes[current].index];
                const int partnerPlace = u % 2 == 0 ? (u + 1 < crossingCount ? u + 1 : u) : u - 1;
                current = sorted[partnerPlace].node;
                nodes(current).visited = 1;
                out.vertices.append(crossings[nodes[current].index]);
                length += 2;
                produced += 2;
                next = wrap(current + direction, m);
                if (!nodes[next].inside) {
                    direction = -direction;
                    current = current + direction;
                    next = wrap(current, m);
                }
            } else {
                nodes(current).visited = 1;
                out.vertices.append(points[nodes[current].index]);
                ++length;
                ++produced;
                current = current + direction;
                next = wrap(current, m);
            }
            if (next == start || produced >= m)
                break;
            current = next;
        }
        out.lengths.append(length);
    }
}

void clipToRect(POINT const *points, int n, GRect const &rect, int level, ClipPolygons &out, ClipWorkspace &work)
{
    if (level > 3) {
        if (n > 0 && points != nullptr) {
            out.vertices.append(points, n);
            out.lengths.append(n);
        }
        return;
    }
    struct Side {
        int bound, side, axis;
    };
    const Side sides[4] = {{truncateCoord(rect.tVal()), 1, 0},
                           {truncateCoord(rect.bVal()), 0, 0},
                           {truncateCoord(rect.lVal()), 1, 1},
                           {truncateCoord(rect.rVal()), 0, 1}};
    const Side &s = sides[level];
    // Each level's pieces are used up before a sibling at that level comes, so one buffer
    // a level serves all.
    ClipPolygons &pieces = work.pieces[level];
    pieces.vertices.clear();
    pieces.lengths.clear();
    clipToHalfPlane(points, n, s.side, s.axis, s.bound, pieces, work);
    int first = 0;
    for (int i = 0; i < pieces.lengths.size(); ++i) {
        const int length = pieces.lengths[i];
        if (length > pieces.vertices.size() - first)
            break;
        clipToRect(pieces.vertices.data() + first, length, rect, level + 1, out, work);
        first += length;
    }
}

} // namespace

void clipPolygonToHalfPlane(POINT const *points, int n, int side, int axis, int bound, ClipPolygons &out)
{
    ClipWorkspace work;
    clipToHalfPlane(points, n, side, axis, bound, out, work);
}

void clipPolygonToRect(POINT const *points, int n, GRect const &rect, int level, ClipPolygons &out)
{
    if (level < 1) {
        out.vertices.clear();
        out.lengths.clear();
        level = 0;
    }
    ClipWorkspace work;
    clipToRect(points, n, rect, level, out, work);
}
