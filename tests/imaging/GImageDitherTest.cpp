#include "imaging/ImageBytes.h"

#include <gtest/gtest.h>

#include <limits>
#include <tuple>

namespace {

using Bar = std::tuple<int, int, int, int, int>; // x, y, thickness, length, forward

std::vector<Bar> bars(PList<PImgDithSquare> const &list)
{
    std::vector<Bar> out;
    for (PImgDithSquare const &s : list)
        out.emplace_back(s.origin.xval(), s.origin.yval(), s.thickness, s.length, s.forward);
    return out;
}

ProbeImage flatGrey(long width, long height, int grey)
{
    return indexImage(Rows(height, std::vector<int>(width, grey)));
}

} // namespace

TEST(GImageDither, FlatPicturesGiveOneBarARowInAlternatingDirections)
{
    ProbeImage black = flatGrey(100, 100, 0);
    PList<PImgDithSquare> dark;
    black.makeDitherSquares(0, 8, 1.0f, 1, dark);
    // Rows at y 4, 12, ... 92; full bars of the cell's thickness, centred on the row.
    ASSERT_EQ(dark.length(), 12u);
    EXPECT_EQ(bars(dark)[0], Bar(0, 0, 8, 100, 1));
    EXPECT_EQ(bars(dark)[1], Bar(100, 16, 8, 100, 0));
    EXPECT_EQ(bars(dark)[11], Bar(100, 96, 8, 100, 0));

    ProbeImage white = flatGrey(100, 100, 255);
    PList<PImgDithSquare> light;
    white.makeDitherSquares(180, 3, 1.0f, 1, light);
    ASSERT_EQ(light.length(), 12u);
    EXPECT_EQ(bars(light)[0], Bar(0, 4, 0, 100, 1));
    EXPECT_EQ(bars(light)[1], Bar(100, 12, 0, 100, 0));

    PList<PImgDithSquare> none;
    white.makeDitherSquares(90, 8, 1.0f, 1, none);
    EXPECT_EQ(none.length(), 0u);
}

TEST(GImageDither, BarsSplitWhereTheThicknessClassChanges)
{
    // Grid cells of 2 columns: black, black, white, white; thickness 8, 8, 0, 0.
    Rows rows(16, std::vector<int>{0, 0, 0, 0, 255, 255, 255, 255});
    ProbeImage image = indexImage(rows);
    PList<PImgDithSquare> list;
    image.makeDitherSquares(0, 8, 1.0f, 1, list);
    EXPECT_EQ(bars(list), (std::vector<Bar>{Bar(0, 0, 8, 4, 1), Bar(4, 4, 0, 4, 1)}));

    // Thin where light: black gives 0 and white the cell.
    PList<PImgDithSquare> inverse;
    image.makeDitherSquares(0, 8, 1.0f, 0, inverse);
    EXPECT_EQ(bars(inverse), (std::vector<Bar>{Bar(0, 4, 0, 4, 1), Bar(4, 0, 8, 4, 1)}));
}

TEST(GImageDither, FourScreensStartAtTheirOwnOffsets)
{
    ProbeImage grey = flatGrey(100, 100, 128);
    PList<PImgDithSquare> l1, l2, l3, l4;
    grey.makeDitherSquares(0, 8, 1.0f, 0, l1, l2, l3, l4);
    ASSERT_EQ(l1.length(), 12u);
    EXPECT_EQ(l2.length(), 12u);
    EXPECT_EQ(l3.length(), 11u);
    ASSERT_EQ(l4.length(), 11u);
    EXPECT_EQ(bars(l1)[0], Bar(0, 4, 0, 100, 1));
    EXPECT_EQ(bars(l2)[0], Bar(0, 6, 0, 100, 1));
    EXPECT_EQ(bars(l3)[0], Bar(0, 8, 0, 100, 1));
    // Black of 128 is 128 * 8 / 255 = 4, centred on y 10.
    EXPECT_EQ(bars(l4)[0], Bar(0, 8, 4, 100, 1));
    EXPECT_EQ(bars(l4)[1], Bar(100, 20, 4, 100, 0));

    PList<PImgDithSquare> m1, m2, m3, m4;
    grey.makeDitherSquares(0, 8, 1.0f, 1, m1, m2, m3, m4);
    // Inverted black: 127 * 8 / 255 = 3, thin enough to lie on its row.
    EXPECT_EQ(bars(m4)[0], Bar(0, 10, 3, 100, 1));
}

TEST(GImageDither, HostileScalesAndPicturesAddNothingOrEnd)
{
    GImage empty;
    PList<PImgDithSquare> list, l2, l3, l4;
    empty.makeDitherSquares(0, 8, 1.0f, 1, list);
    empty.makeDitherSquares(0, 8, 1.0f, 1, list, l2, l3, l4);
    ProbeImage image = flatGrey(20, 20, 0);
    image.makeDitherSquares(0, 8, 0.0f, 1, list);
    image.makeDitherSquares(0, 8, -2.0f, 1, list);
    image.makeDitherSquares(0, 8, std::numeric_limits<float>::quiet_NaN(), 1, list);
    EXPECT_EQ(list.length(), 0u);

    ProbeImage one = flatGrey(1, 1, 0);
    one.makeDitherSquares(0, 8, 1.0f, 1, list, l2, l3, l4);
    EXPECT_EQ(list.length(), 0u);
    // Scales past the cell sample every pixel.
    ProbeImage small = flatGrey(2, 2, 0);
    small.makeDitherSquares(0, 8, 10000.0f, 1, list);
    EXPECT_GT(list.length(), 0u);
    ProbeImage colour = tripleImage(flatTriples(30, 30, 200));
    PList<PImgDithSquare> c1, c2, c3, c4;
    colour.makeDitherSquares(0, 65535, 1.0f, 1, c1, c2, c3, c4);
    colour.makeDitherSquares(0, 8, 1.0f, 1, c1, c2, c3, c4);
    EXPECT_GT(c1.length(), 0u);
}
