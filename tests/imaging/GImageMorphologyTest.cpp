#include "imaging/ImageBytes.h"

#include <gtest/gtest.h>

namespace {

// A grey-index picture of background 0 with a filled rectangle of 1.
Rows block(int width, int height, int left, int bottom, int right, int top)
{
    Rows rows(height, std::vector<int>(width, 0));
    for (int y = bottom; y <= top; ++y)
        for (int x = left; x <= right; ++x)
            rows[y][x] = 1;
    return rows;
}

int count(Rows const &rows)
{
    int n = 0;
    for (auto const &row : rows)
        for (int v : row)
            n += v != 0;
    return n;
}

} // namespace

TEST(GImageMorphology, ThinningReducesShapesToLinesAndKeepsLines)
{
    ProbeImage solid = indexImage(block(7, 7, 1, 1, 5, 5));
    EXPECT_EQ(solid.thinning(GColor(0, 0, 0)), GImage::resultOk);
    Rows expected(7, std::vector<int>(7, 0));
    expected[3] = {0, 1, 1, 1, 1, 0, 0};
    EXPECT_EQ(storedRows(solid), expected);
    EXPECT_EQ(solid.isModified(), 1);

    // A line one pixel wide, and a lone pixel, have nothing left to lose.
    ProbeImage line = indexImage(block(5, 3, 1, 1, 3, 1));
    EXPECT_EQ(line.thinning(GColor(0, 0, 0)), GImage::resultOk);
    EXPECT_EQ(storedRows(line), block(5, 3, 1, 1, 3, 1));
    ProbeImage lone = indexImage(block(3, 3, 1, 1, 1, 1));
    EXPECT_EQ(lone.thinning(GColor(0, 0, 0)), GImage::resultOk);
    EXPECT_EQ(storedRows(lone), block(3, 3, 1, 1, 1, 1));

    // The background is the index of the nearest colour: with 1 as background the frame of
    // 0 is what thins.
    ProbeImage inverse = indexImage(block(7, 7, 1, 1, 5, 5));
    EXPECT_EQ(inverse.thinning(GColor(1, 1, 1)), GImage::resultOk);
    EXPECT_LT(count(storedRows(inverse)), 49);
}

TEST(GImageMorphology, ThinningStopsAfterTenRoundsAndRefusesTrueColour)
{
    ProbeImage thick = indexImage(block(64, 64, 2, 2, 61, 61));
    EXPECT_EQ(thick.thinning(GColor(0, 0, 0)), GImage::resultOk);
    const int left = count(storedRows(thick));
    EXPECT_GT(left, 0);
    EXPECT_LT(left, 60 * 60);

    ProbeImage colour = tripleImage({{1, 1, 1}});
    EXPECT_EQ(colour.thinning(GColor()), GImage::resultImpossible);
    GImage empty;
    EXPECT_EQ(empty.thinning(GColor()), GImage::resultImpossible);

    for (Rows const &rows : {Rows{{1}}, Rows{{1, 1, 1, 1}}, Rows{{1}, {1}, {1}}}) {
        ProbeImage small = indexImage(rows);
        EXPECT_EQ(small.thinning(GColor(0, 0, 0)), GImage::resultOk);
    }
    GImage bits(9, 9, 2);
    EXPECT_EQ(bits.thinning(GColor()), GImage::resultOk);
}
