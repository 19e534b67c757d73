#include "imaging/ImageBytes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

// Stored rows: bottom 1 2 3, top 4 5 6.
Rows twoByThree() { return {{1, 2, 3}, {4, 5, 6}}; }

} // namespace

TEST(GImageGeometry, RightAnglesTransposeTheRows)
{
    ProbeImage left = indexImage(twoByThree());
    EXPECT_EQ(left.rotate(90.0f, GColor(), 0), GImage::resultOk);
    EXPECT_EQ(left.info().biWidth, 2);
    EXPECT_EQ(left.info().biHeight, 3);
    EXPECT_EQ(left.info().biSizeImage, 12u);
    EXPECT_EQ(storedRows(left), (Rows{{4, 1}, {5, 2}, {6, 3}}));
    EXPECT_EQ(left.isModified(), 1);

    // Half a degree either side still counts as a right angle.
    ProbeImage nearly = indexImage(twoByThree());
    EXPECT_EQ(nearly.rotate(90.4f, GColor(), 1), GImage::resultOk);
    EXPECT_EQ(storedRows(nearly), storedRows(left));

    ProbeImage right = indexImage(twoByThree());
    EXPECT_EQ(right.rotate(-90.0f, GColor(), 0), GImage::resultOk);
    EXPECT_EQ(storedRows(right), (Rows{{3, 6}, {2, 5}, {1, 4}}));

    ProbeImage triples = tripleImage({{1, 2, 3, 4, 5, 6}});
    EXPECT_EQ(triples.rotate(89.6f, GColor(), 0), GImage::resultOk);
    EXPECT_EQ(storedRows(triples), (Rows{{1, 2, 3}, {4, 5, 6}}));
}

TEST(GImageGeometry, GeneralAnglesResampleFromTheCentre)
{
    // 0 degrees goes through the general path, samples itself, and isn't a change.
    ProbeImage same = indexImage({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}});
    EXPECT_EQ(same.rotate(0.0f, GColor(), 0), GImage::resultOk);
    EXPECT_EQ(storedRows(same), (Rows{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}));
    EXPECT_EQ(same.isModified(), 0);

    ProbeImage half = indexImage({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}});
    EXPECT_EQ(half.rotate(180.0f, GColor(), 0), GImage::resultOk);
    EXPECT_EQ(storedRows(half), (Rows{{9, 8, 7}, {6, 5, 4}, {3, 2, 1}}));
    EXPECT_EQ(half.isModified(), 1);

    // 450 reduces to 90 on the general path: the sine is 1, the cosine snaps to 0, and the
    // column whose source row is 2 of 2 rows takes the background's index.
    ProbeImage turned = indexImage(twoByThree());
    EXPECT_EQ(turned.rotate(450.0f, GColor(9, 9, 9), 0), GImage::resultOk);
    EXPECT_EQ(storedRows(turned), (Rows{{9, 4}, {9, 5}, {9, 6}}));

    // True colour, too, fills with the palette entry at the background's index, red first.
    const Rows colourRows = {{1, 1, 1, 2, 2, 2, 3, 3, 3}, {4, 4, 4, 5, 5, 5, 6, 6, 6}};
    ProbeImage colour = tripleImage(colourRows);
    GColor entry(10, 20, 30);
    colour.palette() = GPalette(1, &entry);
    EXPECT_EQ(colour.rotate(450.0f, GColor(10, 20, 30), 0), GImage::resultOk);
    EXPECT_EQ(storedRows(colour),
              (Rows{{10, 20, 30, 4, 4, 4}, {10, 20, 30, 5, 5, 5}, {10, 20, 30, 6, 6, 6}}));
    ProbeImage stock = tripleImage(colourRows);
    const GColor first = stock.palette()[0];
    EXPECT_EQ(stock.rotate(450.0f, GColor(10, 20, 30), 0), GImage::resultOk);
    EXPECT_EQ(storedRows(stock)[0], (std::vector<int>{first.getR(), first.getG(), first.getB(), 4, 4, 4}));

    // The interpolation flag changes no pixel.
    Rows picture;
    for (int r = 0; r < 5; ++r) {
        picture.emplace_back();
        for (int c = 0; c < 7; ++c)
            picture.back().push_back(r * 7 + c + 1);
    }
    ProbeImage nearest = indexImage(picture), smooth = indexImage(picture);
    EXPECT_EQ(nearest.rotate(30.0f, GColor(0, 0, 0), 0), GImage::resultOk);
    EXPECT_EQ(smooth.rotate(30.0f, GColor(0, 0, 0), 1), GImage::resultOk);
    EXPECT_EQ(storedRows(nearest), storedRows(smooth));
    EXPECT_GT(nearest.info().biWidth, 7);
}

TEST(GImageGeometry, RotationRefusesWhatItCannotTurnAndEndsForAnyAngle)
{
    GImage empty;
    EXPECT_EQ(empty.rotate(30.0f, GColor(), 0), GImage::resultImpossible);
    ProbeImage image = indexImage(twoByThree());
    EXPECT_EQ(image.rotate(std::numeric_limits<float>::quiet_NaN(), GColor(), 0), GImage::resultImpossible);
    EXPECT_EQ(image.rotate(std::numeric_limits<float>::infinity(), GColor(), 0), GImage::resultImpossible);
    EXPECT_EQ(storedRows(image), twoByThree());
    // Angles whose float can't step down by whole turns still end.
    EXPECT_EQ(image.rotate(1e30f, GColor(), 0), GImage::resultOk);
    EXPECT_EQ(image.rotate(-1e30f, GColor(), 0), GImage::resultOk);

    ProbeImage one = indexImage({{7}});
    EXPECT_EQ(one.rotate(30.0f, GColor(), 0), GImage::resultOk);
    EXPECT_EQ(one.rotate(90.0f, GColor(), 0), GImage::resultOk);

    // One-bit pixels have no whole bytes: the sizes turn, nothing is copied.
    GImage bits(5, 3, 2);
    EXPECT_EQ(bits.rotate(90.0f, GColor(), 0), GImage::resultOk);
    EXPECT_EQ(bits.getWidth(), 3);
    EXPECT_EQ(bits.getHeight(), 5);
    GImage noDepth(10, 10, 3);
    EXPECT_EQ(noDepth.rotate(45.0f, GColor(), 0), GImage::resultOk);
}

TEST(GImageGeometry, ScaleSamplesNearestBelow)
{
    ProbeImage doubled = indexImage({{1, 2}, {3, 4}});
    EXPECT_EQ(doubled.scale(2.0f, 2.0f, 0), GImage::resultOk);
    EXPECT_EQ(storedRows(doubled), (Rows{{1, 1, 2, 2}, {1, 1, 2, 2}, {3, 3, 4, 4}, {3, 3, 4, 4}}));
    EXPECT_EQ(doubled.info().biSizeImage, 16u);
    EXPECT_EQ(doubled.info().biClrUsed, 256u);
    EXPECT_EQ(doubled.isModified(), 1);

    ProbeImage nearest = indexImage({{1, 2}}), smooth = indexImage({{1, 2}});
    EXPECT_EQ(nearest.scale(1.5f, 1.0f, 0), GImage::resultOk);
    EXPECT_EQ(smooth.scale(1.5f, 1.0f, 1), GImage::resultOk);
    EXPECT_EQ(storedRows(nearest), (Rows{{1, 1, 2}}));
    EXPECT_EQ(storedRows(smooth), storedRows(nearest));

    ProbeImage halved = tripleImage({{1, 1, 1, 2, 2, 2, 3, 3, 3}, {4, 4, 4, 5, 5, 5, 6, 6, 6}});
    EXPECT_EQ(halved.scale(0.5f, 0.5f, 0), GImage::resultOk);
    EXPECT_EQ(storedRows(halved), (Rows{{1, 1, 1}}));
}

TEST(GImageGeometry, ScaleRefusesZeroAndNegativeFactorsAndKeepsSidesTo16Bits)
{
    GImage empty;
    EXPECT_EQ(empty.scale(2.0f, 2.0f, 0), GImage::resultImpossible);
    ProbeImage image = indexImage(Rows(10, std::vector<int>(10, 1)));
    EXPECT_EQ(image.scale(0.0f, 1.0f, 0), GImage::resultImpossible);
    EXPECT_EQ(image.scale(1.0f, 1e-10f, 0), GImage::resultImpossible);
    EXPECT_EQ(image.scale(-2.0f, 1.0f, 0), GImage::resultImpossible);
    EXPECT_EQ(image.scale(std::numeric_limits<float>::quiet_NaN(), 1.0f, 0), GImage::resultImpossible);
    EXPECT_EQ(image.isModified(), 0);

    EXPECT_EQ(image.scale(0.05f, 1.0f, 0), GImage::resultOk);
    EXPECT_EQ(image.getWidth(), 0);
    EXPECT_EQ(image.info().biSizeImage, 0u);

    // 1e9 pixels wide keeps its low 16 bits: 51712.
    ProbeImage wide = indexImage({{5}});
    EXPECT_EQ(wide.scale(1e9f, 1.0f, 0), GImage::resultOk);
    EXPECT_EQ(wide.getWidth(), 51712);
    EXPECT_EQ(*wide.at(0, 51711), 5);
}

TEST(GImageGeometry, ShrinkingWithinTheBufferSamplesAsFreshRowsWould)
{
    // Odd sides and factors at and below 1 on 8 and 24 bits, against sampling position by
    // position from an untouched copy into rows whose padding is zero.
    const float factors[][2] = {{0.5f, 0.5f}, {1.0f, 0.3f}, {0.77f, 1.0f}, {1.0f, 1.0f}, {0.1f, 0.9f}};
    for (int bits : {8, 24})
        for (auto const &factor : factors) {
            const long width = 23, height = 9;
            ProbeImage image(width, height, bits == 8 ? ProbeImage::greys(256) : std::vector<GColor>{});
            for (unsigned long i = 0; i < image.info().biSizeImage; ++i)
                image.bytes()[i] = static_cast<unsigned char>(i * 37 + 11);
            ProbeImage pristine(image);
            ASSERT_EQ(image.scale(factor[0], factor[1], 0), GImage::resultOk);
            const long newWidth = static_cast<long>(width * factor[0]), newHeight = static_cast<long>(height * factor[1]);
            ASSERT_EQ(image.info().biWidth, newWidth);
            ASSERT_EQ(image.info().biHeight, newHeight);
            const long bytes = bits / 8, stride = (bits * newWidth + 31) / 32 * 4;
            ASSERT_EQ(image.info().biSizeImage, static_cast<DWORD>(stride * newHeight));
            for (long r = 0; r < newHeight; ++r)
                for (long x = 0; x < stride; ++x) {
                    const long column = x / bytes;
                    const long iy = static_cast<long>(static_cast<float>(r) / factor[1]);
                    const long ix = static_cast<long>(static_cast<float>(column) / factor[0]);
                    const int expected = column < newWidth ? pristine.at(iy, ix)[x % bytes] : 0;
                    ASSERT_EQ(image.bytes()[r * stride + x], expected) << bits << " bits, factors " << factor[0]
                                                                        << ", " << factor[1] << ", row " << r << ", byte " << x;
                }
        }
}

TEST(GImageGeometry, SquaresTurnWithinTheBufferAsIntoFreshRows)
{
    // Odd and even sides around the tile of 64, 8 and 24 bits, both ways: every byte against
    // the rule read from an untouched copy, padding zero.
    for (int bits : {8, 24})
        for (long side : {1L, 2L, 5L, 66L, 131L})
            for (float degrees : {90.0f, -90.0f}) {
                ProbeImage image(side, side, bits == 8 ? ProbeImage::greys(256) : std::vector<GColor>{});
                for (unsigned long i = 0; i < image.info().biSizeImage; ++i)
                    image.bytes()[i] = static_cast<unsigned char>(i * 131 + 7);
                ProbeImage pristine(image);
                ASSERT_EQ(image.rotate(degrees, GColor(), 0), GImage::resultOk);
                const long bytes = bits / 8, stride = (bits * side + 31) / 32 * 4;
                ASSERT_EQ(image.info().biSizeImage, static_cast<DWORD>(stride * side));
                for (long j = 0; j < side; ++j)
                    for (long x = 0; x < stride; ++x) {
                        const long k = x / bytes;
                        int expected = 0;
                        if (k < side)
                            expected = degrees > 0 ? pristine.at(side - 1 - k, j)[x % bytes]
                                                   : pristine.at(k, side - 1 - j)[x % bytes];
                        ASSERT_EQ(image.bytes()[j * stride + x], expected)
                            << bits << " bits, side " << side << ", " << degrees << " degrees, row " << j << ", byte " << x;
                    }
                EXPECT_EQ(image.isModified(), 1);
            }
}
