#include "imaging/ImageBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

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

TEST(GImageMorphology, MorphologyPaintsWhereTheRuleHolds)
{
    const GColor black(0, 0, 0), nine(9, 9, 9);
    const Rows square = block(7, 7, 2, 2, 4, 4);

    // Only the square's middle has eight equal neighbours; the rest keeps its index.
    ProbeImage keep = indexImage(square);
    EXPECT_EQ(keep.morphology(0, nine, black, 0), GImage::resultOk);
    Rows expected = square;
    expected[3][3] = 9;
    EXPECT_EQ(storedRows(keep), expected);
    EXPECT_EQ(keep.isModified(), 1);

    // With the background written, every inner pixel with a differing neighbour becomes 0.
    ProbeImage clear = indexImage(square);
    EXPECT_EQ(clear.morphology(0, nine, black, 1), GImage::resultOk);
    Rows cleared(7, std::vector<int>(7, 0));
    cleared[3][3] = 9;
    EXPECT_EQ(storedRows(clear), cleared);

    // Equal colours: the background moves to the entry farthest in channel sum, 255.
    ProbeImage apart = indexImage(square);
    EXPECT_EQ(apart.morphology(0, black, black, 1), GImage::resultOk);
    EXPECT_EQ(storedRows(apart)[2], (std::vector<int>{0, 255, 255, 255, 255, 255, 0}));
    EXPECT_EQ(storedRows(apart)[3][3], 0);
    // With useBackground 2 it is chosen but never written.
    ProbeImage unwritten = indexImage(square);
    EXPECT_EQ(unwritten.morphology(0, black, black, 2), GImage::resultOk);
    EXPECT_EQ(storedRows(unwritten)[2], square[2]);

    ProbeImage every = indexImage(square);
    EXPECT_EQ(every.morphology(7, nine, black, 1), GImage::resultOk);
    EXPECT_EQ(storedRows(every)[1], (std::vector<int>{0, 9, 9, 9, 9, 9, 0}));
    EXPECT_EQ(storedRows(every)[0], square[0]);
}

TEST(GImageMorphology, MorphologyTablesEdgesAndCorners)
{
    const GColor black(0, 0, 0), nine(9, 9, 9);
    // The same-word of the middle is 5 (w0 and w2): table 3 holds 1 there, so the rule fails.
    const Rows sameCorners = {{0, 1, 0}, {1, 0, 1}, {1, 1, 1}};
    ProbeImage three = indexImage(sameCorners);
    EXPECT_EQ(three.morphology(3, nine, GColor(5, 5, 5), 1), GImage::resultOk);
    EXPECT_EQ(*three.at(1, 1), 5);
    // The differing-word of the middle is 5: table 4 holds 1 there.
    const Rows otherCorners = {{1, 0, 1}, {0, 0, 0}, {0, 0, 0}};
    ProbeImage four = indexImage(otherCorners);
    EXPECT_EQ(four.morphology(4, nine, GColor(5, 5, 5), 1), GImage::resultOk);
    EXPECT_EQ(*four.at(1, 1), 9);
    ProbeImage fourFails = indexImage(sameCorners);
    EXPECT_EQ(fourFails.morphology(4, nine, GColor(5, 5, 5), 1), GImage::resultOk);
    EXPECT_EQ(*fourFails.at(1, 1), 5);

    ProbeImage edges = indexImage({{1, 0, 1}, {0, 0, 0}, {1, 0, 1}});
    EXPECT_EQ(edges.morphology(1, nine, GColor(5, 5, 5), 1), GImage::resultOk);
    EXPECT_EQ(*edges.at(1, 1), 9);
    ProbeImage corners = indexImage({{1, 0, 1}, {0, 0, 0}, {1, 0, 1}});
    EXPECT_EQ(corners.morphology(2, nine, GColor(5, 5, 5), 1), GImage::resultOk);
    EXPECT_EQ(*corners.at(1, 1), 5);

    // True colour is reduced to 256 colours first and stays 8-bit.
    ProbeImage colour = tripleImage(flatTriples(3, 3, 40));
    EXPECT_EQ(colour.morphology(7, black, black, 0), GImage::resultOk);
    EXPECT_EQ(colour.info().biBitCount, 8);

    GImage empty;
    EXPECT_EQ(empty.morphology(0, black, black, 0), GImage::resultImpossible);
    ProbeImage one = indexImage({{3}});
    EXPECT_EQ(one.morphology(0, black, black, 1), GImage::resultOk);
    EXPECT_EQ(*one.at(0, 0), 3);
    GImage bits(9, 9, 2);
    EXPECT_EQ(bits.morphology(1, black, black, 1), GImage::resultOk);
}

TEST(GImageMorphology, RowsAtOnceMatchTheRulesPositionByPosition)
{
    const char *const table3Rows[8] = {
        "00000100000011000100010011001100", "01111111000011001111111111001100", "01111111000011000100010000000000",
        "01111111000011000100010000000000", "01111111111111110100010011001100", "11111111111111111111111111001100",
        "01111111000011000100000000000000", "01111111000001000100010000000000"};
    const int table4Words[] = {5, 12, 17, 24, 33, 34, 36, 48, 65, 66, 68, 129, 130, 132, 136, 160};
    auto holds = [&](int mode, unsigned char const *w) {
        const int neighbours[8] = {0, 1, 2, 3, 5, 6, 7, 8};
        int same = 0;
        for (int bit = 0; bit < 8; ++bit)
            same |= (w[neighbours[bit]] == w[4]) << bit;
        switch (mode) {
        case 0: return same == 0xFF;
        case 1: return w[1] == w[4] && w[3] == w[4] && w[5] == w[4] && w[7] == w[4];
        case 2: return w[0] == w[4] && w[2] == w[4] && w[6] == w[4] && w[8] == w[4];
        case 3: return table3Rows[same / 32][same % 32] == '0';
        case 4: return std::count(std::begin(table4Words), std::end(table4Words), ~same & 0xFF) == 1;
        default: return true;
        }
    };
    // Few index values, so that every word occurs; widths around the sixteen of a step.
    unsigned long state = 99;
    for (int mode : {0, 1, 2, 3, 4, 7})
        for (int useBackground : {0, 1, 2})
            for (long width : {1L, 3L, 17L, 18L, 35L}) {
                const long height = 6;
                ProbeImage image(width, height, ProbeImage::greys(256));
                for (unsigned long i = 0; i < image.info().biSizeImage; ++i) {
                    state = state * 1664525u + 1013904223u;
                    image.bytes()[i] = static_cast<unsigned char>((state >> 24) % 3);
                }
                ProbeImage expected(image);
                const unsigned char foreground = 200, background = 100;
                for (long r = 1; r + 1 < height; ++r)
                    for (long c = 1; c + 1 < width; ++c) {
                        unsigned char w[9];
                        image.getSubset(static_cast<unsigned short>(r), static_cast<unsigned short>(c), -1, 3, 0, w);
                        if (holds(mode, w))
                            *expected.at(r, c) = foreground;
                        else if (useBackground == 1)
                            *expected.at(r, c) = background;
                    }
                ASSERT_EQ(image.morphology(mode, GColor(200, 200, 200), GColor(100, 100, 100), useBackground),
                          GImage::resultOk);
                EXPECT_EQ(storedRows(image), storedRows(expected))
                    << "mode " << mode << ", useBackground " << useBackground << ", width " << width;
            }
}
