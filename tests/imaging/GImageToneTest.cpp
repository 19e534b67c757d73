#include "imaging/TestImages.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// A one-row 24-bit image of greys, one per pixel.
ProbeImage greyRow(std::vector<int> const &values)
{
    ProbeImage image(static_cast<long>(values.size()), 1, {});
    for (size_t i = 0; i < values.size(); ++i) {
        unsigned char *p = image.at(0, i);
        p[0] = p[1] = p[2] = static_cast<unsigned char>(values[i]);
    }
    return image;
}

// A one-row 8-bit image on a grey palette of 256 entries.
ProbeImage indexRow(std::vector<int> const &values)
{
    ProbeImage image(static_cast<long>(values.size()), 1, ProbeImage::greys(256));
    for (size_t i = 0; i < values.size(); ++i)
        *image.at(0, i) = static_cast<unsigned char>(values[i]);
    return image;
}

std::vector<int> indices(ProbeImage &image)
{
    std::vector<int> values;
    for (long i = 0; i < image.info().biWidth; ++i)
        values.push_back(*image.at(0, i));
    return values;
}

std::vector<int> triple(ProbeImage &image, unsigned long column)
{
    unsigned char const *p = image.at(0, column);
    return {p[0], p[1], p[2]};
}

} // namespace

TEST(GImageTone, BrightnessWashesThePaletteOutAndRestoresIt)
{
    // Saturations 0.3 (below the amount: loses a third), 0.5 (down to a hint), 0 (a grey).
    ProbeImage image(1, 1, {GColor(200, 140, 140), GColor(200, 100, 100), GColor(100, 100, 100)});
    image.adjustBrightness(0.5);
    EXPECT_EQ(image.palette().getEntry(0), GColor(200, 160, 160));
    EXPECT_EQ(image.palette().getEntry(1), GColor(200, 198, 198));
    EXPECT_EQ(image.palette().getEntry(2), GColor(152, 152, 152)); // a third of the way to white
    EXPECT_EQ(image.isModified(), 0);

    // A second wash-out saves the first one's result.
    image.adjustBrightness(0.5);
    EXPECT_EQ(image.palette().getEntry(2), GColor(186, 186, 186));
    image.restoreBrightness();
    EXPECT_EQ(image.palette().getEntry(2), GColor(152, 152, 152));
    image.restoreBrightness(); // nothing saved any more
    EXPECT_EQ(image.palette().getEntry(2), GColor(152, 152, 152));

    // The slot is shared: another image restores what this one saved.
    ProbeImage other(1, 1, {GColor(1, 1, 1), GColor(2, 2, 2), GColor(3, 3, 3), GColor(4, 4, 4)});
    image.adjustBrightness(0.5);
    other.restoreBrightness();
    EXPECT_EQ(other.palette().getEntry(0), GColor(200, 160, 160));
    EXPECT_EQ(other.palette().getEntry(3), GColor(0, 0, 0)); // past what was saved
}

TEST(GImageTone, TrueColourBrightnessRunsFlatAcrossPadding)
{
    // One pixel per row: bytes 0-2 a pixel, 3 padding, 4-6 the next pixel, 7 padding.
    ProbeImage image(1, 2, {});
    for (int i = 0; i < 8; ++i)
        image.bytes()[i] = 100;
    image.adjustBrightness(0.5);
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(image.bytes()[i], 152) << i;
    EXPECT_EQ(image.bytes()[6], 100); // the last partial triple is left
    EXPECT_EQ(image.bytes()[7], 100);
    image.restoreBrightness();
    EXPECT_EQ(image.bytes()[0], 152);

    // Many colours, each seen several times, wash out as the same colours do in a palette.
    std::vector<GColor> colors;
    unsigned int state = 99;
    for (int i = 0; i < 200; ++i) {
        state = state * 1103515245u + 12345u;
        colors.emplace_back(state >> 24, state >> 16, state >> 8);
    }
    ProbeImage reference(1, 1, colors);
    reference.adjustBrightness(0.3);
    ProbeImage picture(static_cast<long>(colors.size()), 3, {});
    for (unsigned long r = 0; r < 3; ++r)
        for (size_t i = 0; i < colors.size(); ++i)
            picture.setPixel(r, i, colors[(i * 7 + r) % colors.size()]);
    picture.adjustBrightness(0.3);
    for (unsigned long r = 0; r < 3; ++r)
        for (size_t i = 0; i < colors.size(); ++i) {
            const GColor expected = reference.palette().getEntry((i * 7 + r) % colors.size());
            unsigned char const *p = picture.at(2 - r, i);
            ASSERT_EQ(GColor(p[0], p[1], p[2]), expected) << r << ", " << i;
        }
}

TEST(GImageTone, GrayScaleModes)
{
    ProbeImage image = greyRow({0, 0, 0});
    unsigned char *p = image.at(0, 0);
    p[0] = 10, p[1] = 20, p[2] = 31;
    p = image.at(0, 1);
    p[0] = p[1] = p[2] = 255;
    p = image.at(0, 2);
    p[0] = 1, p[1] = 2, p[2] = 4;
    image.grayScale(3);
    EXPECT_EQ(image.isModified(), 1);
    EXPECT_EQ(triple(image, 0), (std::vector<int>{10, 20, 31}));

    ProbeImage weighted(image);
    weighted.grayScale(1);
    EXPECT_EQ(triple(weighted, 0), (std::vector<int>{18, 18, 18})); // (300 + 1180 + 341) / 100
    EXPECT_EQ(triple(weighted, 1), (std::vector<int>{255, 255, 255}));
    EXPECT_EQ(triple(weighted, 2), (std::vector<int>{2, 2, 2}));  // 1.92
    ProbeImage mean(image);
    mean.grayScale(0);
    EXPECT_EQ(triple(mean, 0), (std::vector<int>{20, 20, 20}));  // 20.33
    EXPECT_EQ(triple(mean, 2), (std::vector<int>{2, 2, 2}));     // 2.33
    ProbeImage largest(image);
    largest.grayScale(2);
    EXPECT_EQ(triple(largest, 0), (std::vector<int>{31, 31, 31}));

    ProbeImage indexed(1, 1, {GColor(10, 20, 31), GColor(0, 0, 1)});
    *indexed.at(0, 0) = 1;
    indexed.grayScale(1);
    EXPECT_EQ(indexed.palette().getEntry(0), GColor(18, 18, 18));
    EXPECT_EQ(indexed.palette().getEntry(1), GColor(0, 0, 0));
    EXPECT_EQ(*indexed.at(0, 0), 1);

    GImage empty;
    empty.grayScale(0);
    EXPECT_EQ(empty.isModified(), 0);
}

TEST(GImageTone, AdjustScalesChannelsWithClamping)
{
    ProbeImage image = greyRow({100, 200, 0});
    image.at(0, 2)[1] = 3; // green 3
    image.bytes()[9] = 77; // padding is not touched
    ProbeImage darker(image);
    image.adjust(100);
    EXPECT_EQ(triple(image, 0), (std::vector<int>{200, 200, 200}));
    EXPECT_EQ(triple(image, 1), (std::vector<int>{255, 255, 255}));
    EXPECT_EQ(triple(image, 2), (std::vector<int>{0, 6, 0}));
    EXPECT_EQ(image.bytes()[9], 77);
    EXPECT_EQ(image.isModified(), 1);
    darker.adjust(-100);
    EXPECT_EQ(triple(darker, 1), (std::vector<int>{0, 0, 0}));
    darker.adjust(-50);
    ProbeImage untouched = greyRow({5});
    untouched.adjust(0);
    EXPECT_EQ(untouched.isModified(), 0);

    ProbeImage indexed(1, 1, {GColor(100, 10, 200)});
    indexed.adjust(-30);
    EXPECT_EQ(indexed.palette().getEntry(0), GColor(70, 7, 140));
}

TEST(GImageTone, HistogramAndRunningSums)
{
    ProbeImage image = indexRow({3, 3, 7, 255});
    unsigned long *histogram = image.buildHistogram();
    ASSERT_NE(histogram, nullptr);
    EXPECT_EQ(histogram[3], 2u);
    EXPECT_EQ(histogram[7], 1u);
    EXPECT_EQ(histogram[255], 1u);
    unsigned long *sums = image.buildIntegrate(histogram);
    ASSERT_NE(sums, nullptr);
    EXPECT_EQ(sums[2], 0u);
    EXPECT_EQ(sums[6], 2u);
    EXPECT_EQ(sums[254], 3u);
    EXPECT_EQ(sums[255], 4u);
    PGlobalFree(histogram);
    PGlobalFree(sums);

    // A short palette counts only its own values.
    ProbeImage small(2, 1, ProbeImage::greys(4));
    *small.at(0, 0) = 200;
    unsigned long *few = small.buildHistogram();
    EXPECT_EQ(few[0], 1u);
    EXPECT_EQ(few[3], 0u);
    PGlobalFree(few);
    EXPECT_EQ(GImage().histEqua(), 7);
    EXPECT_EQ(GImage().histFlatten(), 7);
    EXPECT_EQ(GImage().histTreeEqua(2), 7);
}

TEST(GImageTone, HistEquaSpreadsLevels)
{
    std::vector<int> all;
    for (int v = 0; v < 256; ++v)
        all.push_back(v);
    ProbeImage even = indexRow(all);
    EXPECT_EQ(even.histEqua(), 0);
    EXPECT_EQ(indices(even), all); // one of each: already equal
    EXPECT_EQ(even.isModified(), 1);

    // Fewer pixels than levels: the level saturates at once and the value maps to the middle.
    ProbeImage flat = indexRow({50, 50, 50, 50});
    EXPECT_EQ(flat.histEqua(), 0);
    EXPECT_EQ(indices(flat), (std::vector<int>{128, 128, 128, 128}));

    // 512 pixels, two values: average 2.
    std::vector<int> two(512, 10);
    for (int i = 0; i < 256; ++i)
        two[i] = 0;
    ProbeImage halves = indexRow(two);
    EXPECT_EQ(halves.histEqua(), 0);
    EXPECT_EQ(indices(halves)[0], 64);  // levels 0 to 127
    EXPECT_EQ(indices(halves)[300], 191); // levels 127 to 255

    // A colour palette is turned grey first.
    ProbeImage colored(1, 1, {GColor(30, 60, 90), GColor(1, 2, 3)});
    EXPECT_EQ(colored.histEqua(), 0);
    EXPECT_EQ(colored.palette().getEntry(0), GColor(60, 60, 60));
}

TEST(GImageTone, HistFlattenMapsTrueColourTwice)
{
    ProbeImage image = greyRow({0, 200, 250});
    EXPECT_EQ(image.histFlatten(), 0);
    EXPECT_EQ(triple(image, 0), (std::vector<int>{85, 85, 85}));
    EXPECT_EQ(triple(image, 1), (std::vector<int>{171, 85, 85})); // T[200], then T[T[200]]
    EXPECT_EQ(triple(image, 2), (std::vector<int>{255, 255, 255}));

    ProbeImage indexed = indexRow({0, 200, 250});
    EXPECT_EQ(indexed.histFlatten(), 0);
    EXPECT_EQ(indices(indexed), (std::vector<int>{85, 171, 255}));
}

TEST(GImageTone, HistStretchSpansTheGivenRange)
{
    ProbeImage image = indexRow({10, 20, 15});
    image.histStretch(0, 255);
    EXPECT_EQ(indices(image), (std::vector<int>{0, 255, 128}));
    EXPECT_EQ(image.isModified(), 1);

    ProbeImage flat = indexRow({40, 40});
    flat.histStretch(30, 100);
    EXPECT_EQ(indices(flat), (std::vector<int>{30, 30}));

    ProbeImage narrow = greyRow({0, 100});
    narrow.histStretch(50, 60);
    EXPECT_EQ(triple(narrow, 0), (std::vector<int>{50, 50, 50}));
    EXPECT_EQ(triple(narrow, 1), (std::vector<int>{60, 60, 60}));
    EXPECT_EQ(narrow.isModified(), 1);
    GImage().histStretch(0, 255);
}

TEST(GImageTone, HistTreeEquaMapsToLeafMiddles)
{
    ProbeImage root = indexRow({0, 90, 255});
    EXPECT_EQ(root.histTreeEqua(0), 0);
    EXPECT_EQ(indices(root), (std::vector<int>{128, 128, 128}));

    // Two pixels at the ends: every split ties, so the first candidate, 1, splits.
    ProbeImage ends = indexRow({0, 255});
    EXPECT_EQ(ends.histTreeEqua(1), 0);
    EXPECT_EQ(indices(ends), (std::vector<int>{1, 129}));
    EXPECT_EQ(ends.isModified(), 1);

    ProbeImage color = greyRow({0, 255});
    EXPECT_EQ(color.histTreeEqua(1), 0);
    EXPECT_EQ(triple(color, 1), (std::vector<int>{129, 129, 129})); // T[129] is 129 again
    ProbeImage deep = indexRow({0, 64, 128, 192, 255});
    EXPECT_EQ(deep.histTreeEqua(8), 0);
}
