#include "imaging/ImageBytes.h"

#include <gtest/gtest.h>

TEST(GImageReduction, OctreeOrdersColoursByTheirLeadingBits)
{
    ProbeImage colour = tripleImage({{10, 20, 30, 200, 100, 50}, {200, 100, 50, 10, 20, 30}});
    const DWORD size = colour.info().biSizeImage;
    EXPECT_EQ(colour.octreeReduction(256), GImage::resultOk);
    EXPECT_EQ(colour.info().biBitCount, 8);
    // Deliberate: the recorded size stays that of the 24-bit picture.
    EXPECT_EQ(colour.info().biSizeImage, size);
    EXPECT_EQ(colour.info().biClrUsed, 256u);
    EXPECT_EQ(colour.info().biClrImportant, 256u);
    EXPECT_EQ(colour.numColors(), 256);
    EXPECT_EQ(colour.palette()[0], GColor(10, 20, 30));
    EXPECT_EQ(colour.palette()[1], GColor(200, 100, 50));
    EXPECT_EQ(storedRows(colour), (Rows{{0, 1}, {1, 0}}));
    EXPECT_EQ(colour.isModified(), 1);

    // Colours that share a leaf give it their mean, halves away from zero: 31 / 2 gives 16.
    ProbeImage merged = tripleImage({{0, 0, 0, 31, 31, 31}});
    EXPECT_EQ(merged.octreeReduction(8), GImage::resultOk);
    EXPECT_EQ(merged.palette()[0], GColor(16, 16, 16));
    EXPECT_EQ(storedRows(merged), (Rows{{0, 0}}));
    EXPECT_EQ(merged.info().biClrUsed, 8u);
}

TEST(GImageReduction, PaletteIndicesAreReadThroughTheNewPalette)
{
    // Black, grey 2 and white become entries 0, 1 and 2; the old index 2 then names white.
    ProbeImage indexed = indexImage({{0, 2, 255, 255}});
    EXPECT_EQ(indexed.octreeReduction(256), GImage::resultOk);
    EXPECT_EQ(indexed.palette()[1], GColor(2, 2, 2));
    EXPECT_EQ(indexed.palette()[2], GColor(255, 255, 255));
    EXPECT_EQ(storedRows(indexed), (Rows{{0, 2, 2, 2}}));
}

TEST(GImageReduction, ManyColoursFoldIntoFewAndHostileInputEnds)
{
    Rows rows(16, std::vector<int>());
    for (int r = 0; r < 16; ++r)
        for (int c = 0; c < 16; ++c)
            rows[r].insert(rows[r].end(), {r * 16, c * 16, (r * c) & 0xFF});
    for (unsigned short n : {0, 1, 8, 16, 100}) {
        ProbeImage image = tripleImage(rows);
        EXPECT_EQ(image.octreeReduction(n), GImage::resultOk);
        int highest = 0;
        for (auto const &row : storedRows(image))
            for (int v : row)
                highest = v > highest ? v : highest;
        // The leaf count may stand one above n after the last pixel.
        EXPECT_LE(highest, n) << n;
    }

    GImage empty;
    EXPECT_EQ(empty.octreeReduction(8), GImage::resultImpossible);
    ProbeImage one = tripleImage({{1, 2, 3}});
    EXPECT_EQ(one.octreeReduction(1), GImage::resultOk);
    EXPECT_EQ(one.palette()[0], GColor(1, 2, 3));
    ProbeImage single(3, 3, {GColor(7, 8, 9)});
    EXPECT_EQ(single.octreeReduction(4), GImage::resultOk);
    GImage bits(9, 9, 2);
    EXPECT_EQ(bits.octreeReduction(2), GImage::resultOk);
    GImage noDepth(10, 10, 3);
    EXPECT_EQ(noDepth.octreeReduction(2), GImage::resultOk);
}

TEST(GImageReduction, FixedPalettesByChannelTests)
{
    const std::vector<GColor> colours = {{255, 0, 0},     {0, 255, 0}, {0, 0, 255}, {255, 255, 0},
                                         {255, 255, 255}, {0, 0, 0},   {128, 0, 0}, {127, 0, 0}};
    auto picture = [&] {
        ProbeImage image(8, 1, colours);
        for (int i = 0; i < 8; ++i)
            *image.at(0, i) = static_cast<unsigned char>(i);
        return image;
    };
    ProbeImage sixteen = picture();
    EXPECT_EQ(sixteen.PLUT16Reduction(), GImage::resultOk);
    EXPECT_EQ(storedRows(sixteen), (Rows{{3, 5, 6, 9, 15, 0, 3, 0}}));
    EXPECT_EQ(sixteen.info().biClrUsed, 16u);
    EXPECT_EQ(sixteen.numColors(), 16);
    EXPECT_EQ(sixteen.palette()[1], GColor(127, 127, 0));
    EXPECT_EQ(sixteen.palette()[11], GColor(255, 127, 127));
    EXPECT_EQ(sixteen.isModified(), 1);

    // Red takes bit 1, whose entry is blue.
    ProbeImage eight = picture();
    EXPECT_EQ(eight.PLUT8Reduction(), GImage::resultOk);
    EXPECT_EQ(storedRows(eight), (Rows{{1, 2, 4, 3, 7, 0, 1, 0}}));
    EXPECT_EQ(eight.info().biClrImportant, 8u);
    EXPECT_EQ(eight.palette()[1], GColor(0, 0, 255));
    EXPECT_EQ(eight.palette()[4], GColor(255, 0, 0));

    ProbeImage colour = tripleImage({{255, 0, 0}});
    EXPECT_EQ(colour.PLUT16Reduction(), GImage::resultNoMemory);
    EXPECT_EQ(colour.PLUT8Reduction(), GImage::resultNoMemory);
    EXPECT_EQ(colour.info().biBitCount, 24);
    EXPECT_EQ(colour.isModified(), 0);
    GImage empty;
    EXPECT_EQ(empty.PLUT16Reduction(), GImage::resultImpossible);
    EXPECT_EQ(empty.PLUT8Reduction(), GImage::resultImpossible);
    GImage bits(9, 9, 2);
    EXPECT_EQ(bits.PLUT8Reduction(), GImage::resultOk);
}
