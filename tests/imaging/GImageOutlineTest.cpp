#include "imaging/ImageBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace {

using Points = std::vector<std::pair<int, int>>;

// The tracer's protected forms opened.
class OutlineProbe : public ProbeImage {
public:
    explicit OutlineProbe(ProbeImage const &image) : ProbeImage(image) {}
    using GImage::traceOne;
    using GImage::traceSingleOutline;
};

// An index image from rows listed top first, as the tracer sees the picture.
ProbeImage picture(Rows topDown)
{
    std::reverse(topDown.begin(), topDown.end());
    return indexImage(topDown);
}

Points pointsOf(POutlines const &outline)
{
    Points points;
    for (PCoord<double> const &p : outline.getPoints())
        points.emplace_back(static_cast<int>(p.xval()), static_cast<int>(p.yval()));
    return points;
}

std::vector<int> valuesOf(PList<POutlines> const &outlines)
{
    std::vector<int> values;
    for (POutlines const &outline : outlines)
        values.push_back(outline.getValue());
    return values;
}

// A one-pixel-high line of value 1 and `length` pixels along the middle row of a wider picture.
ProbeImage line(int length)
{
    Rows rows(3, std::vector<int>(length + 2, 0));
    std::fill(rows[1].begin(), rows[1].begin() + length, 1);
    return picture(rows);
}

SHORT WINAPI escapeHeld(int) { return static_cast<SHORT>(0x8000); }

} // namespace

TEST(GImageOutline, ShapesGiveClosedClockwiseOutlinesFromTheirTopLeft)
{
    ProbeImage square = picture({{0, 0, 0, 0}, {0, 1, 1, 0}, {0, 1, 1, 0}, {0, 0, 0, 0}});
    PList<POutlines> outlines;
    EXPECT_EQ(square.outlineTrace(0, 0, outlines), 0);
    ASSERT_EQ(outlines.length(), 1u);
    EXPECT_EQ(outlines[0].getValue(), 1);
    EXPECT_EQ(pointsOf(outlines[0]), (Points{{1, 1}, {2, 1}, {2, 2}, {1, 2}, {1, 1}}));

    ProbeImage ell = picture({{0, 0, 0, 0}, {0, 2, 0, 0}, {0, 2, 2, 0}, {0, 0, 0, 0}});
    outlines.empty();
    EXPECT_EQ(ell.outlineTrace(0, 0, outlines), 0);
    ASSERT_EQ(outlines.length(), 1u);
    EXPECT_EQ(outlines[0].getValue(), 2);
    EXPECT_EQ(pointsOf(outlines[0]), (Points{{1, 1}, {2, 2}, {1, 2}, {1, 1}}));

    // A two-pixel region: three points, the first repeated last.
    ProbeImage pair = picture({{0, 5, 5, 0}, {0, 0, 0, 0}});
    outlines.empty();
    EXPECT_EQ(pair.outlineTrace(0, 0, outlines), 0);
    ASSERT_EQ(outlines.length(), 1u);
    EXPECT_EQ(pointsOf(outlines[0]), (Points{{1, 0}, {2, 0}, {1, 0}}));

    // The outer boundary of a ring; its hole is background and gives no outline of its own.
    ProbeImage ring = picture({{0, 0, 0, 0, 0}, {0, 1, 1, 1, 0}, {0, 1, 0, 1, 0}, {0, 1, 1, 1, 0}, {0, 0, 0, 0, 0}});
    outlines.empty();
    EXPECT_EQ(ring.outlineTrace(0, 0, outlines), 0);
    ASSERT_EQ(outlines.length(), 1u);
    EXPECT_EQ(pointsOf(outlines[0]),
              (Points{{1, 1}, {2, 1}, {3, 1}, {3, 2}, {3, 3}, {2, 3}, {1, 3}, {1, 2}, {1, 1}}));

    // In a thicker ring the pixel right of the hole is an untraced left edge: the hole's
    // boundary follows as a second outline, walked from there.
    ProbeImage thick = picture({{0, 0, 0, 0, 0, 0, 0},
                                {0, 1, 1, 1, 1, 1, 0},
                                {0, 1, 1, 0, 1, 1, 0},
                                {0, 1, 1, 1, 1, 1, 0},
                                {0, 0, 0, 0, 0, 0, 0}});
    outlines.empty();
    EXPECT_EQ(thick.outlineTrace(0, 0, outlines), 0);
    ASSERT_EQ(outlines.length(), 2u);
    EXPECT_EQ(pointsOf(outlines[0]), (Points{{1, 1}, {2, 1}, {3, 1}, {4, 1}, {5, 1}, {5, 2}, {5, 3}, {4, 3}, {3, 3},
                                            {2, 3}, {1, 3}, {1, 2}, {1, 1}}));
    EXPECT_EQ(pointsOf(outlines[1]), (Points{{4, 2}, {3, 1}, {2, 2}, {3, 3}, {4, 2}}));
}

TEST(GImageOutline, RegionsOnTheBorderAndOnlyBackgroundTraceSafely)
{
    // A tie between 0 and 3 makes the lower index the background.
    ProbeImage corner = picture({{3, 3, 0}, {3, 0, 0}});
    PList<POutlines> outlines;
    EXPECT_EQ(corner.outlineTrace(0, 0, outlines), 0);
    ASSERT_EQ(outlines.length(), 1u);
    EXPECT_EQ(outlines[0].getValue(), 3);
    EXPECT_EQ(pointsOf(outlines[0]), (Points{{0, 0}, {1, 0}, {0, 1}, {0, 0}}));

    // One value: all background. A lone pixel: one point, dropped.
    outlines.empty();
    EXPECT_EQ(picture({{4, 4}, {4, 4}}).outlineTrace(0, 0, outlines), 0);
    EXPECT_EQ(picture({{0, 0, 0}, {0, 9, 0}, {0, 0, 0}}).outlineTrace(0, 0, outlines), 0);
    EXPECT_EQ(picture({{7}}).outlineTrace(0, 0, outlines), 0);
    EXPECT_EQ(outlines.length(), 0u);
}

TEST(GImageOutline, BandsJoinValuesAndSkipsLeaveIndicesOut)
{
    // With a range of 1 the values 1 and 2 are one region, valued at its start.
    ProbeImage adjacent = picture({{0, 0, 0, 0}, {0, 1, 2, 0}, {0, 0, 0, 0}});
    PList<POutlines> outlines;
    EXPECT_EQ(adjacent.outlineTrace(1, 0, outlines), 0);
    ASSERT_EQ(outlines.length(), 1u);
    EXPECT_EQ(outlines[0].getValue(), 1);
    EXPECT_EQ(pointsOf(outlines[0]), (Points{{1, 1}, {2, 1}, {1, 1}}));
    // Each on its own they are lone pixels.
    outlines.empty();
    EXPECT_EQ(adjacent.outlineTrace(0, 0, outlines), 0);
    EXPECT_EQ(outlines.length(), 0u);

    ProbeImage pairs = picture({{0, 0, 0, 0, 0, 0, 0, 0}, {1, 1, 0, 2, 2, 0, 6, 6}, {0, 0, 0, 0, 0, 0, 0, 0}});
    outlines.empty();
    EXPECT_EQ(pairs.outlineTrace(0, 0, outlines), 0);
    EXPECT_EQ(valuesOf(outlines), (std::vector<int>{1, 2, 6}));
    EXPECT_EQ(pointsOf(outlines[0]), (Points{{0, 1}, {1, 1}, {0, 1}}));
    // After index 1 a skip of 5 goes on at 6.
    outlines.empty();
    EXPECT_EQ(pairs.outlineTrace(0, 5, outlines), 0);
    EXPECT_EQ(valuesOf(outlines), (std::vector<int>{1, 6}));
}

TEST(GImageOutline, OnePointTracesFromTheLeftEdgeOfItsRow)
{
    ProbeImage square = picture({{0, 0, 0, 0}, {0, 1, 1, 0}, {0, 1, 1, 0}, {0, 0, 0, 0}});
    POutlines outline;
    EXPECT_EQ(square.outlineTrace(PCoord<double>(2.7, 2.2), outline, 0), 0);
    EXPECT_EQ(outline.getValue(), 1);
    EXPECT_EQ(pointsOf(outline), (Points{{1, 2}, {1, 1}, {2, 1}, {2, 2}, {1, 2}}));

    // A traced region is remembered by its tracer only: a new call traces it again, while
    // the single attempt needs no memory at all.
    OutlineProbe probe(square);
    POutlines again;
    EXPECT_EQ(probe.traceSingleOutline(&probe, PCoord<double>(1, 1), again, 0), 0);
    EXPECT_EQ(pointsOf(again), (Points{{1, 1}, {2, 1}, {2, 2}, {1, 2}, {1, 1}}));
    EXPECT_EQ(probe.traceOne(&probe, PCoord<double>(2, 1), again, 0), 0);
    EXPECT_EQ(pointsOf(again), (Points{{1, 1}, {2, 1}, {2, 2}, {1, 2}, {1, 1}}));

    // A range reaching a present value widens the band.
    ProbeImage adjacent = picture({{0, 0, 0, 0}, {0, 1, 2, 0}, {0, 0, 0, 0}});
    EXPECT_EQ(adjacent.outlineTrace(PCoord<double>(1, 1), outline, 1), 0);
    EXPECT_EQ(pointsOf(outline), (Points{{1, 1}, {2, 1}, {1, 1}}));

    // An isolated pixel moves the try left, onto the background around it.
    ProbeImage lone = picture({{0, 0, 0}, {0, 9, 0}, {0, 0, 0}});
    EXPECT_EQ(lone.outlineTrace(PCoord<double>(1, 1), outline, 0), 0);
    EXPECT_EQ(outline.getValue(), 0);
    EXPECT_EQ(pointsOf(outline).front(), (std::pair<int, int>(0, 1)));
    EXPECT_EQ(pointsOf(outline).back(), (std::pair<int, int>(0, 1)));
    OutlineProbe loneProbe(lone);
    EXPECT_EQ(loneProbe.traceSingleOutline(&loneProbe, PCoord<double>(1, 1), outline, 0), 1);
}

TEST(GImageOutline, BadInputIsRefusedWithoutReadingPastTheBuffer)
{
    PList<POutlines> outlines;
    POutlines outline;
    GImage empty;
    EXPECT_EQ(empty.outlineTrace(0, 0, outlines), 7);
    EXPECT_EQ(empty.outlineTrace(PCoord<double>(0, 0), outline, 0), 7);

    ProbeImage trueColor = tripleImage(flatTriples(3, 3, 0));
    EXPECT_EQ(trueColor.outlineTrace(0, 0, outlines), 7);
    EXPECT_EQ(trueColor.outlineTrace(PCoord<double>(1, 1), outline, 0), 7);

    GImage fourBits(8, 4, 16);
    EXPECT_EQ(fourBits.outlineTrace(0, 0, outlines), 7);
    EXPECT_EQ(fourBits.outlineTrace(PCoord<double>(7, 3), outline, 0), 7);

    ProbeImage square = picture({{0, 0, 0}, {0, 1, 1}, {0, 1, 1}});
    EXPECT_EQ(square.outlineTrace(PCoord<double>(-1, 0), outline, 0), 7);
    EXPECT_EQ(square.outlineTrace(PCoord<double>(2.5, 0), outline, 0), 7);
    EXPECT_EQ(square.outlineTrace(PCoord<double>(0, 3), outline, 0), 7);
    OutlineProbe probe(square);
    EXPECT_EQ(probe.traceOne(nullptr, PCoord<double>(0, 0), outline, 0), 7);
    EXPECT_EQ(probe.traceOne(&probe, PCoord<double>(5, 1), outline, 0), 7);

    // More rows claimed than the buffer holds.
    ProbeImage tall = picture({{0, 0}, {0, 1}});
    tall.info().biHeight = 40;
    EXPECT_EQ(tall.outlineTrace(0, 0, outlines), 7);
    EXPECT_EQ(tall.outlineTrace(PCoord<double>(1, 30), outline, 0), 7);
    EXPECT_EQ(outlines.length(), 0u);

    // Lone pixels at the left edge end the retries instead of repeating them.
    EXPECT_EQ(picture({{7}}).outlineTrace(PCoord<double>(0, 0), outline, 0), 1);
    EXPECT_EQ(picture({{4, 5}}).outlineTrace(PCoord<double>(1, 0), outline, 0), 1);
}

TEST(GImageOutline, LongContoursAndEscapeAbandonTheTrace)
{
    // A line of n pixels takes 2(n - 1) steps; 50000 are allowed.
    PList<POutlines> outlines;
    EXPECT_EQ(line(25001).outlineTrace(0, 0, outlines), 0);
    ASSERT_EQ(outlines.length(), 1u);
    EXPECT_EQ(outlines[0].getPoints().length(), 50001u);
    outlines.empty();
    EXPECT_EQ(line(25002).outlineTrace(0, 0, outlines), 0);
    EXPECT_EQ(outlines.length(), 0u);
    POutlines outline;
    EXPECT_EQ(line(25002).outlineTrace(PCoord<double>(3, 1), outline, 0), 1);

    ProbeImage square = picture({{0, 0, 0, 0}, {0, 1, 1, 0}, {0, 1, 1, 0}, {0, 0, 0, 0}});
    ImportPatch escape("TeskWin.dll", "user32.dll", "GetAsyncKeyState", reinterpret_cast<void *>(&escapeHeld));
    ASSERT_TRUE(escape.isActive());
    EXPECT_EQ(square.outlineTrace(0, 0, outlines), 0);
    EXPECT_EQ(outlines.length(), 0u);
    EXPECT_EQ(square.outlineTrace(PCoord<double>(1, 1), outline, 0), 1);
}

TEST(POutlines, CopiesAndAssignmentsKeepValueAndPoints)
{
    PList<PCoord<double>> corners;
    corners.add(PCoord<double>(1, 2));
    corners.add(PCoord<double>(3, 4));
    POutlines outline(9, corners);
    corners.empty();
    EXPECT_EQ(pointsOf(outline), (Points{{1, 2}, {3, 4}}));

    POutlines copy(outline);
    POutlines assigned;
    assigned = outline;
    POutlines &self = assigned;
    assigned = self;
    for (POutlines const *o : {&copy, &assigned}) {
        EXPECT_EQ(o->getValue(), 9);
        EXPECT_EQ(pointsOf(*o), (Points{{1, 2}, {3, 4}}));
    }
    EXPECT_EQ(POutlines().getPoints().length(), 0u);
}
