#include "foundation/ScratchFiles.h"
#include "imaging/TestImages.h"
#include "support/ReadBack.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

namespace {

unsigned long fieldAt(std::string const &file, size_t at)
{
    unsigned long v = 0;
    for (int i = 3; i >= 0; --i)
        v = (v << 8) | static_cast<unsigned char>(file[at + i]);
    return v;
}

} // namespace

TEST(GImage, ConstructorMakesHeaderAndZeroedRows)
{
    GImage image(5, 3, 256);
    BITMAPINFOHEADER const &h = *image.getHeader();
    EXPECT_EQ(h.biSize, 40u);
    EXPECT_EQ(h.biBitCount, 8);
    EXPECT_EQ(h.biPlanes, 1);
    EXPECT_EQ(h.biSizeImage, 8u * 3); // 5 pixels padded to 8 bytes
    EXPECT_EQ(h.biClrUsed, 256u);
    EXPECT_EQ(h.biClrImportant, 256u);
    EXPECT_EQ(image.getWidth(), 5);
    EXPECT_EQ(image.getHeight(), 3);
    EXPECT_EQ(image.isModified(), 0);
    EXPECT_EQ(image.getResolutionScale(), 1.0);

    EXPECT_EQ(GImage(9, 2, 2).getHeader()->biBitCount, 1);
    EXPECT_EQ(GImage(9, 2, 16).getHeader()->biBitCount, 4);
    GImage odd(10, 10, 3);
    EXPECT_EQ(odd.getHeader()->biBitCount, 0);
    EXPECT_EQ(odd.getHeader()->biSizeImage, 0u);
    EXPECT_EQ(odd.getPixel(0, 0), GColor()); // rows of no bytes hold nothing to read

    GImage empty;
    EXPECT_EQ(empty.getHeader(), nullptr);
    EXPECT_EQ(empty.getWidth(), 0);
    EXPECT_EQ(empty.numColors(), 0);
    EXPECT_EQ(empty.getPixel(0, 0), GColor());
    EXPECT_EQ(empty.getSubImage(GPoint(0, 0), GPoint(3, 3)), nullptr);
    EXPECT_EQ(empty.load(PString("x.bmp")), -1);
}

TEST(GImage, NumColorsFollowsCountBitsAndCoreLayout)
{
    ProbeImage trueColor(3, 2, {});
    EXPECT_EQ(trueColor.numColors(), 0);
    EXPECT_EQ(trueColor.getHeader()->biSizeImage, 12u * 2); // 9 bytes padded to 12
    EXPECT_EQ(trueColor.getImageType(), 2);

    ProbeImage indexed(5, 1, ProbeImage::greys(17));
    EXPECT_EQ(indexed.numColors(), 17);
    indexed.info().biClrUsed = 0;
    EXPECT_EQ(indexed.numColors(), 256);
    indexed.info().biClrUsed = 0x10011; // only the low 16 bits count
    EXPECT_EQ(indexed.numColors(), 0x11);

    // The core layout keeps its bit count at offset 10 and has no colour count.
    BITMAPINFOHEADER &h = indexed.info();
    h.biSize = 12;
    h.biBitCount = 24;
    reinterpret_cast<WORD *>(&h)[5] = 4;
    EXPECT_EQ(indexed.numColors(), 16);
}

TEST(GImage, ImageTypeDependsOnThePalette)
{
    EXPECT_EQ(ProbeImage(2, 2, ProbeImage::greys(4)).getImageType(), 0);
    EXPECT_EQ(ProbeImage(2, 2, {GColor(0, 0, 0), GColor(1, 1, 2)}).getImageType(), 1);
}

TEST(GImage, TrueColourPixelsSwapRedAndBlueOnTheWayBack)
{
    ProbeImage image(3, 2, {});
    image.setPixel(0, 1, GColor(10, 20, 30));
    // Picture row 0 is the top: the last stored row.
    unsigned char const *p = image.at(1, 1);
    EXPECT_EQ(p[0], 10);
    EXPECT_EQ(p[1], 20);
    EXPECT_EQ(p[2], 30);
    EXPECT_EQ(image.getPixel(0, 1), GColor(30, 20, 10));
    EXPECT_EQ(image.isModified(), 0);
    EXPECT_EQ(image.pixelAddr(0, 0), image.bytes());
    EXPECT_EQ(image.pixelAddr(1, 2), image.bytes() + 12 + 6);

    // x one past the width passes the bound and reads the row's padding.
    image.at(0, 3)[0] = 7;
    image.at(0, 3)[1] = 8;
    image.at(0, 3)[2] = 9;
    EXPECT_EQ(image.getPixel(1, 3), GColor(9, 8, 7));
    EXPECT_EQ(image.getPixel(1, 4), GColor());
    EXPECT_EQ(image.getPixel(3, 0), GColor());
    // y equal to the height would address the row before the buffer: nothing is read or written.
    EXPECT_EQ(image.getPixel(2, 0), GColor());
    image.setPixel(2, 0, GColor(1, 2, 3));
    // Without padding, x at the width of the top row lies past the buffer's end.
    ProbeImage tight(4, 1, {});
    EXPECT_EQ(tight.getPixel(0, 4), GColor());
    tight.setPixel(0, 4, GColor(1, 2, 3));
}

TEST(GImage, PalettePixelsStoreTheNearestIndex)
{
    ProbeImage image(2, 2, {GColor(0, 0, 0), GColor(9, 9, 9), GColor(50, 60, 70), GColor(50, 60, 70)});
    image.setPixel(1, 0, GColor(50, 60, 70));
    EXPECT_EQ(*image.at(0, 0), 2); // the lowest of two equal entries
    EXPECT_EQ(image.getPixel(1, 0), GColor(50, 60, 70));
    EXPECT_EQ(image.getIndex(GColor(9, 9, 9)), 1);

    // Deliberate mismatch: past entry 0 the blue term compares with the target's red.
    ProbeImage tie(1, 1, {GColor(0, 0, 0), GColor(0, 0, 100)});
    EXPECT_EQ(tie.getIndex(GColor(100, 0, 0)), 0);
    // (200, 0, 0) against red 200: entry 2 is truly nearer, but entry 1's blue matches the red.
    ProbeImage skew(1, 1, {GColor(0, 0, 0), GColor(150, 0, 200), GColor(200, 0, 40)});
    EXPECT_EQ(skew.getIndex(GColor(200, 0, 0)), 1);
    // Entries the palette doesn't hold read as black.
    ProbeImage shortPalette(1, 1, {GColor(5, 5, 5)});
    shortPalette.info().biClrUsed = 3;
    EXPECT_EQ(shortPalette.getIndex(GColor(0, 0, 0)), 1);
}

TEST(GImage, SubsetWindowsAreSizeOrSizePlusOneSquare)
{
    ProbeImage image(6, 6, {});
    for (unsigned long r = 0; r < 6; ++r)
        for (unsigned long c = 0; c < 6; ++c) {
            unsigned char *p = image.at(r, c);
            p[0] = static_cast<unsigned char>(10 * r + c);
            p[1] = 100;
            p[2] = 200;
        }
    unsigned char out[40];
    std::memset(out, 0xEE, sizeof out);
    image.getSubset(2, 2, 0, 3, 2, out);
    EXPECT_EQ(out[0], 11);
    EXPECT_EQ(out[4], 22);
    EXPECT_EQ(out[8], 33);
    EXPECT_EQ(out[9], 0xEE); // nine values
    image.getSubset(2, 2, 2, 4, 2, out);
    EXPECT_EQ(out[24], 200);
    EXPECT_EQ(out[25], 0xEE); // an even size gives 5 by 5
    // Raw bytes go one byte per column from the window's first pixel.
    image.getSubset(2, 2, -1, 3, 2, out);
    EXPECT_EQ(out[0], 11);
    EXPECT_EQ(out[1], 100);
    EXPECT_EQ(out[2], 200);
    EXPECT_EQ(out[3], 21);
    GColor colors[9];
    image.getSubset(1, 1, 3, 2, colors);
    EXPECT_EQ(colors[0], GColor(0, 100, 200));
    EXPECT_EQ(colors[8], GColor(22, 100, 200));
    // A window over the edge yields zeros there instead of reading outside.
    image.getSubset(5, 5, 0, 3, 2, out);
    EXPECT_EQ(out[0], 44);
    EXPECT_EQ(out[2], 0);
    EXPECT_EQ(out[8], 0);

    ProbeImage indexed(3, 3, {GColor(1, 2, 3), GColor(4, 5, 6)});
    *indexed.at(1, 1) = 1;
    indexed.getSubset(1, 1, 1, 1, 1, out);
    EXPECT_EQ(out[0], 5);
    indexed.getSubset(1, 1, 7, 1, 0, out);
    EXPECT_EQ(out[0], 4); // grey kind: red whatever the plane
    out[0] = 0xEE;
    indexed.getSubset(1, 1, 3, 1, 1, out);
    EXPECT_EQ(out[0], 0xEE); // no such plane: nothing written
    indexed.getSubset(1, 1, 1, 1, colors);
    EXPECT_EQ(colors[0], GColor(4, 5, 6));
    colors[0] = GColor(9, 9, 9);
    indexed.getSubset(1, 1, 1, -1, colors);
    EXPECT_EQ(colors[0], GColor(9, 9, 9));
}

TEST(GImage, SubImageCopiesPictureRowsInOrder)
{
    ProbeImage image(4, 3, ProbeImage::greys(256));
    for (unsigned long r = 0; r < 3; ++r)
        for (unsigned long c = 0; c < 4; ++c)
            *image.at(r, c) = static_cast<unsigned char>(10 * r + c);
    EXPECT_EQ(image.getSubImage(GPoint(0, 0), GPoint(0, 0)), nullptr);

    std::unique_ptr<GImage> one(image.getSubImage(GPoint(1, 0), GPoint(1, 0)));
    ASSERT_NE(one, nullptr);
    EXPECT_EQ(one->getWidth(), 1);
    EXPECT_EQ(one->getHeight(), 1);
    EXPECT_EQ(one->getPixel(0, 0), GColor(21, 21, 21));

    // Corners past the picture are clamped.
    std::unique_ptr<GImage> part(image.getSubImage(GPoint(1.7, 1), GPoint(9, 9)));
    ASSERT_NE(part, nullptr);
    EXPECT_EQ(part->getWidth(), 3);
    EXPECT_EQ(part->getHeight(), 2);
    EXPECT_EQ(part->getHeader()->biSizeImage, 4u * 2);
    EXPECT_EQ(part->getHeader()->biClrUsed, 256u);
    EXPECT_EQ(part->getPixel(0, 0), GColor(11, 11, 11));
    EXPECT_EQ(part->getPixel(1, 2), GColor(3, 3, 3));

    std::unique_ptr<GImage> all(image.getSubImage(GPoint(-1e300, 0), GPoint(1e300, 1e300)));
    ASSERT_NE(all, nullptr);
    EXPECT_EQ(all->getWidth(), 4);
    EXPECT_EQ(image.getSubImage(GPoint(3, 2), GPoint(1, 1)), nullptr); // corners out of order
    EXPECT_EQ(ProbeImage(0, 2, ProbeImage::greys(2)).getSubImage(GPoint(0, 0), GPoint(1, 1)), nullptr);

    ProbeImage color(3, 2, {});
    color.setPixel(1, 2, GColor(1, 2, 3));
    std::unique_ptr<GImage> corner(color.getSubImage(GPoint(2, 1), GPoint(2, 1)));
    ASSERT_NE(corner, nullptr);
    EXPECT_EQ(corner->getPixel(0, 0), GColor(3, 2, 1));
}

TEST(GImage, CopiesAreDeepAndAssignmentKeepsTheTargetsSettings)
{
    ProbeImage image(2, 2, {});
    image.setPixel(0, 0, GColor(1, 2, 3));
    image.setResolutionScale(2.5);
    image.setOffset(3, 4);
    image.setModified(1);

    GImage copy(image);
    EXPECT_EQ(copy.getResolutionScale(), 2.5);
    EXPECT_EQ(copy.isModified(), 1);
    EXPECT_NE(copy.getHeader(), image.getHeader());
    image.setPixel(0, 0, GColor(9, 9, 9));
    EXPECT_EQ(copy.getPixel(0, 0), GColor(3, 2, 1));

    GImage target(1, 1, 256);
    target = image;
    EXPECT_EQ(target.getResolutionScale(), 1.0);
    EXPECT_EQ(target.isModified(), 0);
    EXPECT_EQ(target.getWidth(), 2);
    EXPECT_EQ(target.getPixel(0, 0), GColor(9, 9, 9));
    target = target;
    EXPECT_EQ(target.getWidth(), 2);

    double x = 0, y = 0;
    copy.getOffset(x, y);
    EXPECT_EQ(x, 3);
    PCoord<int> pixel = copy.convertToPixel(PCoord<double>(10, 21));
    EXPECT_EQ(pixel.xval(), 1);  // 10 / 2.5 - 3
    EXPECT_EQ(pixel.yval(), 4);  // 8.4 - 4, truncated
}

TEST(GImage, WriteLaysOutABmpFile)
{
    ScratchFiles files;
    std::vector<GColor> colors = ProbeImage::greys(16);
    colors[1] = GColor(10, 20, 30);
    ProbeImage indexed(5, 2, colors);
    *indexed.at(0, 0) = 1;
    const std::string name = files.empty();
    EXPECT_EQ(indexed.write(PString(name.c_str())), 0);
    const std::string file = ScratchFiles::contents(name);
    ASSERT_EQ(file.size(), 14u + 40 + 64 + 16);
    EXPECT_EQ(file.substr(0, 2), "BM");
    EXPECT_EQ(fieldAt(file, 2), 14u + 40 + 64 + 16);
    EXPECT_EQ(fieldAt(file, 10), 118u);
    EXPECT_EQ(std::memcmp(file.data() + 14, indexed.getHeader(), 40), 0);
    EXPECT_EQ(static_cast<unsigned char>(file[54 + 4]), 30); // blue, green, red
    EXPECT_EQ(static_cast<unsigned char>(file[54 + 6]), 10);
    EXPECT_EQ(static_cast<unsigned char>(file[118]), 1);

    // A true-colour file records a size without its pixels.
    ProbeImage color(3, 2, {});
    const std::string colorName = files.empty();
    EXPECT_EQ(color.write(PString(colorName.c_str())), 0);
    const std::string colorFile = ScratchFiles::contents(colorName);
    EXPECT_EQ(colorFile.size(), 54u + 24);
    EXPECT_EQ(fieldAt(colorFile, 2), 54u);
    EXPECT_EQ(fieldAt(colorFile, 10), 54u);

    const std::string never = files.missing();
    EXPECT_EQ(GImage().write(PString(never.c_str())), 5);
    EXPECT_EQ(ScratchFiles::contents(never), "<missing>");
    EXPECT_EQ(color.write(PString("Z:\\no\\such\\folder\\x.bmp")), 5);
}

TEST(GImage, MakeBitmapDrawsThePicture)
{
    EXPECT_EQ(GImage().makeBitmap(nullptr).isValid(), 0);

    ProbeImage image(2, 2, {GColor(0, 0, 0), GColor(255, 0, 0), GColor(0, 0, 255)});
    *image.at(1, 0) = 1; // top left
    *image.at(0, 1) = 2; // bottom right
    GdiObjectCounter objects;
    ScreenDcCount screen;
    ASSERT_TRUE(screen.active());
    GBitmap bitmap = image;
    ASSERT_EQ(bitmap.isValid(), 1);
    EXPECT_EQ(screen.taken, 1);
    EXPECT_EQ(screen.released, 1);
    EXPECT_EQ(objects.live(), 1); // the bitmap, and nothing else
    EXPECT_EQ(bitmap.getSize().getX(), 2);

    const PlatformPixels read(bitmap);
    EXPECT_EQ(read.pixel(0, 0), RGB(255, 0, 0));
    EXPECT_EQ(read.pixel(1, 1), RGB(0, 0, 255));
    EXPECT_EQ(read.pixel(1, 0), RGB(0, 0, 0));
}
