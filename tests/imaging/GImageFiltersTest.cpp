#include "imaging/ImageBytes.h"

#include <gtest/gtest.h>

namespace {

// A 5 by 5 grey-index picture of 0 with `value` in the middle.
ProbeImage spot(int value)
{
    Rows rows(5, std::vector<int>(5, 0));
    rows[2][2] = value;
    return indexImage(rows);
}

// A 3 by 3 true-colour picture of greys; only its middle is filtered.
ProbeImage greyTriples(Rows const &greys)
{
    Rows rows;
    for (auto const &row : greys) {
        rows.emplace_back();
        for (int g : row)
            rows.back().insert(rows.back().end(), {g, g, g});
    }
    return tripleImage(rows);
}

int middle(ProbeImage &image) { return *image.at(1, 1); }

} // namespace

TEST(GImageFilters, ConvolutionsFoldNegativeResponsesAndLeaveTheBorder)
{
    ProbeImage sharp = spot(100);
    EXPECT_EQ(sharp.LFilter(13, 3), GImage::resultOk);
    EXPECT_EQ(storedRows(sharp), (Rows{{0, 0, 0, 0, 0},
                                       {0, 100, 100, 100, 0},
                                       {0, 100, 255, 100, 0},
                                       {0, 100, 100, 100, 0},
                                       {0, 0, 0, 0, 0}}));
    EXPECT_EQ(sharp.isModified(), 1);

    // The mean truncates: 53 / 9 is 5.
    ProbeImage mean = indexImage({{0, 1, 2}, {3, 9, 5}, {6, 7, 20}});
    EXPECT_EQ(mean.LFilter(8, 3), GImage::resultOk);
    EXPECT_EQ(storedRows(mean), (Rows{{0, 1, 2}, {3, 5, 5}, {6, 7, 20}}));
    ProbeImage weighted = indexImage({{0, 1, 2}, {3, 0, 5}, {6, 7, 17}});
    EXPECT_EQ(weighted.LFilter(12, 3), GImage::resultOk);
    // (0 + 2 + 2 + 6 + 0 + 10 + 6 + 14 + 17) / 16 = 57 / 16.
    EXPECT_EQ(middle(weighted), 3);

    ProbeImage flat = indexImage(Rows(4, std::vector<int>(4, 200)));
    EXPECT_EQ(flat.LFilter(8, 3), GImage::resultOk);
    EXPECT_EQ(storedRows(flat), Rows(4, std::vector<int>(4, 200)));

    // Any other mode sets each filtered value to the size argument.
    ProbeImage other = greyTriples({{9, 9, 9}, {9, 9, 9}, {9, 9, 9}});
    EXPECT_EQ(other.LFilter(99, 3), GImage::resultOk);
    EXPECT_EQ(storedRows(other)[1], (std::vector<int>{9, 9, 9, 3, 3, 3, 9, 9, 9}));

    // True colour filters each byte on its own.
    ProbeImage planes = tripleImage({{0, 0, 0, 0, 0, 0, 0, 0, 0}, {0, 0, 0, 10, 20, 30, 0, 0, 0}, {0, 0, 0, 0, 0, 0, 0, 0, 0}});
    EXPECT_EQ(planes.LFilter(14, 3), GImage::resultOk);
    EXPECT_EQ(storedRows(planes)[1], (std::vector<int>{0, 0, 0, 50, 100, 150, 0, 0, 0}));
}

TEST(GImageFilters, EdgeKernelsByFamilyAndDirection)
{
    // Stored rows bottom first: the right column is 30 in the two lower rows.
    const Rows step = {{0, 0, 30}, {0, 0, 30}, {0, 0, 0}};
    ProbeImage three = indexImage(step), two = indexImage(step);
    EXPECT_EQ(three.edgeEnhance(3, 3, 3), GImage::resultOk);
    EXPECT_EQ(two.edgeEnhance(2, 3, 3), GImage::resultOk);
    EXPECT_EQ(middle(three), 90);
    EXPECT_EQ(storedRows(three), storedRows(two));

    ProbeImage family0 = indexImage(step);
    EXPECT_EQ(family0.edgeEnhance(0, 3, 3), GImage::resultOk);
    // 30 * -1 + 30 * -1 folds to 60.
    EXPECT_EQ(middle(family0), 60);

    // Directions 1 and 3 give 30 and 90; the root of 9000 is 94.87.
    ProbeImage magnitude = indexImage(step);
    EXPECT_EQ(magnitude.edgeDetector(2, 1, 3, 3), GImage::resultOk);
    EXPECT_EQ(middle(magnitude), 95);

    ProbeImage flat = indexImage(Rows(3, std::vector<int>(3, 77)));
    EXPECT_EQ(flat.edgeDetector(2, 1, 3, 3), GImage::resultOk);
    EXPECT_EQ(middle(flat), 0);

    ProbeImage unknown = indexImage(step);
    EXPECT_EQ(unknown.edgeEnhance(4, 0, 3), GImage::resultOk);
    EXPECT_EQ(middle(unknown), 3);
}

TEST(GImageFilters, RankFiltersChooseByChannelSum)
{
    const Rows greys = {{50, 10, 90}, {30, 70, 20}, {80, 40, 60}};
    ProbeImage median = greyTriples(greys), darkest = greyTriples(greys), brightest = greyTriples(greys);
    EXPECT_EQ(median.NLFilter(4, 3), GImage::resultOk);
    EXPECT_EQ(darkest.NLFilter(5, 3), GImage::resultOk);
    EXPECT_EQ(brightest.NLFilter(6, 3), GImage::resultOk);
    EXPECT_EQ(middle(median), 50);
    EXPECT_EQ(middle(darkest), 10);
    EXPECT_EQ(middle(brightest), 90);
    EXPECT_EQ(storedRows(median)[0], (std::vector<int>{50, 50, 50, 10, 10, 10, 90, 90, 90}));

    // The sums of 450 wrap to 194, a mean of 21, which lies nearer the darkest; the true mean
    // of 50 would tie and take the brightest.
    ProbeImage extreme = greyTriples(greys);
    EXPECT_EQ(extreme.NLFilter(7, 3), GImage::resultOk);
    EXPECT_EQ(middle(extreme), 10);

    ProbeImage none = greyTriples(greys);
    EXPECT_EQ(none.NLFilter(99, 3), GImage::resultOk);
    EXPECT_EQ(middle(none), 0);

    // A palette picture stores the chosen colour's index.
    ProbeImage indexed = indexImage(greys);
    EXPECT_EQ(indexed.NLFilter(4, 3), GImage::resultOk);
    EXPECT_EQ(middle(indexed), 50);
}

TEST(GImageFilters, JitterQuantisesWithoutNoise)
{
    ProbeImage masked = tripleImage({{250, 16, 20, 0, 7, 255}});
    EXPECT_EQ(masked.jitter(0), GImage::resultOk);
    EXPECT_EQ(storedRows(masked), (Rows{{248, 16, 16, 0, 0, 248}}));
    EXPECT_EQ(masked.isModified(), 1);

    ProbeImage stepped = tripleImage({{250, 16, 20, 0, 7, 255}});
    EXPECT_EQ(stepped.jitter(1), GImage::resultOk);
    EXPECT_EQ(storedRows(stepped), (Rows{{250, 16, 8, 0, 0, 255}}));

    ProbeImage indexed = indexImage({{20, 250}});
    EXPECT_EQ(indexed.jitter(1), GImage::resultOk);
    EXPECT_EQ(storedRows(indexed), (Rows{{8, 250}}));
}

TEST(GImageFilters, MosaicAveragesWholeBlocksWithHalvesAwayFromZero)
{
    // Blocks of 2: the lower-left block of 1, 1, 2, 2 averages 1.5 and rounds to 2; the
    // column and row past the last whole block stay.
    ProbeImage blocks = indexImage({{1, 1, 9}, {2, 2, 9}, {9, 9, 9}});
    EXPECT_EQ(blocks.mosaic(1), GImage::resultOk);
    EXPECT_EQ(storedRows(blocks), (Rows{{2, 2, 9}, {2, 2, 9}, {9, 9, 9}}));

    ProbeImage triples = tripleImage({{1, 2, 3, 1, 2, 3}, {2, 2, 4, 1, 2, 4}});
    EXPECT_EQ(triples.mosaic(2), GImage::resultOk);
    // 5 / 4 rounds to 1, 8 / 4 is 2, 14 / 4 = 3.5 rounds to 4.
    EXPECT_EQ(storedRows(triples), (Rows{{1, 2, 4, 1, 2, 4}, {1, 2, 4, 1, 2, 4}}));

    ProbeImage small = indexImage({{1, 2}, {3, 4}});
    EXPECT_EQ(small.mosaic(1000), GImage::resultOk);
    EXPECT_EQ(storedRows(small), (Rows{{1, 2}, {3, 4}}));
    EXPECT_EQ(small.isModified(), 1);
}

TEST(GImageFilters, HostileImagesAndArgumentsStayInsideTheirBuffers)
{
    GImage empty;
    EXPECT_EQ(empty.LFilter(8, 3), GImage::resultImpossible);
    EXPECT_EQ(empty.NLFilter(4, 3), GImage::resultImpossible);
    EXPECT_EQ(empty.edgeEnhance(0, 0, 3), GImage::resultImpossible);
    EXPECT_EQ(empty.edgeDetector(0, 0, 1, 3), GImage::resultImpossible);
    EXPECT_EQ(empty.jitter(1), GImage::resultImpossible);
    EXPECT_EQ(empty.mosaic(2), GImage::resultImpossible);

    // Sides of 2 or less leave the picture as it was.
    ProbeImage narrow = indexImage({{1, 2}, {3, 4}});
    EXPECT_EQ(narrow.LFilter(13, 3), GImage::resultOk);
    EXPECT_EQ(narrow.NLFilter(6, 3), GImage::resultOk);
    EXPECT_EQ(storedRows(narrow), (Rows{{1, 2}, {3, 4}}));

    // Margins of 0 read windows that leave the picture; large sizes filter nothing.
    for (unsigned char size : {0, 1, 2, 5, 255}) {
        ProbeImage one = indexImage({{7}});
        EXPECT_EQ(one.LFilter(8, size), GImage::resultOk);
        EXPECT_EQ(one.NLFilter(7, size), GImage::resultOk);
        EXPECT_EQ(one.edgeDetector(1, 0, 7, size), GImage::resultOk);
        ProbeImage colour = greyTriples({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}});
        EXPECT_EQ(colour.LFilter(9, size), GImage::resultOk);
        EXPECT_EQ(colour.NLFilter(4, size), GImage::resultOk);
    }

    // One-bit pictures have no whole bytes a pixel; each position is its row's first byte.
    GImage bits(9, 9, 2);
    EXPECT_EQ(bits.LFilter(8, 3), GImage::resultOk);
    EXPECT_EQ(bits.NLFilter(4, 3), GImage::resultOk);
    EXPECT_EQ(bits.jitter(2), GImage::resultOk);
    EXPECT_EQ(bits.mosaic(3), GImage::resultOk);

    // A one-colour palette.
    ProbeImage single(4, 4, {GColor(10, 20, 30)});
    EXPECT_EQ(single.LFilter(13, 3), GImage::resultOk);
    EXPECT_EQ(single.mosaic(2), GImage::resultOk);
    EXPECT_EQ(single.jitter(3), GImage::resultOk);
    EXPECT_EQ(*single.at(1, 1), 0);
}
