#include "imagefiles/ImageEngine.h"
#include "imagefiles/ImageFiles.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

namespace {

// Loads a pattern of the depth from a .bmp written byte by byte.
void loadPattern(ProbePImage &image, TestPicture const &picture, TempPath const &bmp)
{
    ASSERT_TRUE(writeBytes(bmp.path, picture.bmpBytes()));
    ASSERT_EQ(image.load(bmp.str()), 0);
}

void expectSamePicture(ProbePImage &image, TestPicture const &picture)
{
    ASSERT_EQ(image.getWidth(), picture.width);
    ASSERT_EQ(image.getHeight(), picture.height);
    int wrong = 0;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            wrong += image.colour(x, y) != picture.colour(x, y);
    EXPECT_EQ(wrong, 0) << "depth " << picture.bits;
}

struct LosslessCase {
    char const *extension;
    int format;
    std::vector<int> depths;
};

} // namespace

TEST(PImage, NewImageHasNoHandle)
{
    ProbePImage image;
    EXPECT_EQ(image.getWidth(), -13);
    EXPECT_EQ(image.getHeight(), -13);
    EXPECT_EQ(image.numColors(), 0xfff3);
    EXPECT_FALSE(image.isValid());
    EXPECT_EQ(image.save("nowhere.png", PImage::formatPng), PImage::resultNoHandle);
    EXPECT_EQ(image.setPalette(GPalette()), PImage::resultNoHandle);
    EXPECT_EQ(image.octreeReduction(16), PImage::resultNoHandle);
    EXPECT_EQ(image.setImageHandle(12345678), PImage::resultBadHandle);
    PCoord<double> points[4];
    EXPECT_EQ(image.warp(points), PImage::resultNoHandle);
}

TEST(PImage, LosslessFormatsRoundTripExactlyAtEveryDepth)
{
    const LosslessCase cases[] = {{".png", PImage::formatPng, {1, 4, 8, 24}},
                                  {".tif", PImage::formatTiff, {1, 4, 8, 24}},
                                  {".bmp", PImage::formatBmp, {1, 4, 8, 24}},
                                  {".gif", PImage::formatGif, {1, 4, 8}}};
    TempPath bmp("source.bmp");
    for (LosslessCase const &c : cases) {
        for (int depth : c.depths) {
            SCOPED_TRACE(std::string(c.extension) + " at " + std::to_string(depth));
            const TestPicture picture = TestPicture::pattern(37, 23, depth);
            ProbePImage source;
            loadPattern(source, picture, bmp);
            // Depths 1 and 4 never reach the image operations.
            EXPECT_EQ(source.getHeader()->biBitCount, depth == 24 ? 24 : 8);
            EXPECT_EQ(source.getSource(), 1);
            expectSamePicture(source, picture);

            TempPath saved((std::string("saved") + c.extension).c_str());
            ASSERT_EQ(source.save(saved.str(), c.format), 0);
            ProbePImage back;
            ASSERT_EQ(back.load(saved.str()), 0);
            expectSamePicture(back, picture);
            EXPECT_EQ(back.numColors(), depth == 24 ? 0 : 256);

            // Format 0 goes by the extension; GImage::write saves a library-backed image so.
            TempPath written((std::string("written") + c.extension).c_str());
            ASSERT_EQ(static_cast<GImage &>(source).write(written.str()), 0);
            ProbePImage again;
            ASSERT_EQ(again.load(written.str()), 0);
            expectSamePicture(again, picture);
        }
    }
}

TEST(PImage, JpegRoundTripStaysWithinItsError)
{
    // A smooth picture: the stated error is at most 12 in any channel and 2 on average.
    TestPicture picture{64, 48, 24, {}, {}};
    for (int y = 0; y < 48; ++y)
        for (int x = 0; x < 64; ++x)
            picture.values.push_back((static_cast<unsigned long>(x * 4) << 16) | ((y * 5) << 8) | (x + y));
    TempPath bmp("smooth.bmp"), jpg("smooth.jpg");
    ProbePImage source;
    loadPattern(source, picture, bmp);
    ASSERT_EQ(source.save(jpg.str(), PImage::formatJpeg), 0);
    std::vector<unsigned char> bytes = readBytes(jpg.path);
    ASSERT_GE(bytes.size(), 2u);
    EXPECT_EQ(bytes[0], 0xFF);
    EXPECT_EQ(bytes[1], 0xD8);
    ProbePImage back;
    ASSERT_EQ(back.load(jpg.str()), 0);
    int worst = 0;
    double total = 0;
    for (int y = 0; y < 48; ++y)
        for (int x = 0; x < 64; ++x) {
            const COLORREF a = picture.colour(x, y), b = back.colour(x, y);
            for (int shift = 0; shift < 24; shift += 8) {
                const int d = std::abs(int((a >> shift) & 0xFF) - int((b >> shift) & 0xFF));
                worst = d > worst ? d : worst;
                total += d;
            }
        }
    EXPECT_LE(worst, 12);
    EXPECT_LE(total / (64 * 48 * 3), 2.0);
}

TEST(PImage, BadFilesGiveNegativeCodesAndKeepTheImage)
{
    TempPath bmp("good.bmp"), png("good.png"), bad("bad.png"), empty("empty.png"), missing("missing.png");
    const TestPicture picture = TestPicture::pattern(20, 10, 8);
    ProbePImage image;
    loadPattern(image, picture, bmp);
    ASSERT_EQ(image.save(png.str(), PImage::formatPng), 0);
    const std::vector<unsigned char> good = readBytes(png.path);

    EXPECT_EQ(image.load(missing.str()), -2);
    ASSERT_TRUE(writeBytes(empty.path, {}));
    EXPECT_LT(image.load(empty.str()), 0);
    // Cut anywhere: never a success, never a crash.
    for (std::size_t cut : {std::size_t(1), std::size_t(8), std::size_t(30), good.size() / 2, good.size() - 13}) {
        ASSERT_TRUE(writeBytes(bad.path, std::vector<unsigned char>(good.begin(), good.begin() + long(cut))));
        EXPECT_LT(image.load(bad.str()), 0) << cut;
    }
    // Not an image at all.
    ASSERT_TRUE(writeBytes(bad.path, std::vector<unsigned char>(300, 'x')));
    EXPECT_EQ(image.load(bad.str()), -10);
    // A header that claims more than the file holds, and one of enormous dimensions.
    std::vector<unsigned char> lying = picture.bmpBytes();
    lying[22] = 0x10;
    lying[23] = 0x27;
    ASSERT_TRUE(writeBytes(bad.path, lying));
    EXPECT_LT(image.load(bad.str()), 0);
    std::vector<unsigned char> huge = picture.bmpBytes();
    huge[18] = huge[22] = 0xA0;
    huge[19] = huge[23] = 0x86;
    huge[20] = huge[24] = 0x01;
    ASSERT_TRUE(writeBytes(bad.path, huge));
    EXPECT_LT(image.load(bad.str()), 0);

    // The image is still the one loaded first.
    EXPECT_TRUE(image.isValid());
    expectSamePicture(image, picture);
    // A file of one format under another's extension is read by its contents.
    TempPath disguised("disguised.bmp");
    ASSERT_TRUE(writeBytes(disguised.path, good));
    ProbePImage other;
    ASSERT_EQ(other.load(disguised.str()), 0);
    expectSamePicture(other, picture);
    // And from memory.
    ProbePImage fromMemory;
    std::vector<unsigned char> copy = good;
    ASSERT_EQ(fromMemory.load(copy.data(), int(copy.size())), 0);
    expectSamePicture(fromMemory, picture);
    EXPECT_LT(fromMemory.load(copy.data(), 0), 0);
}

TEST(PImage, SaveKeepsABackupOfTiffOnlyAndRestoresOnFailure)
{
    TempPath bmp("backup.bmp"), tif("OLD.TIF"), plain("plain.bmp");
    ProbePImage image;
    loadPattern(image, TestPicture::pattern(9, 7, 24), bmp);
    ASSERT_TRUE(writeBytes(tif.path, {'o', 'l', 'd'}));
    // An unknown format number fails, and the old file comes back.
    EXPECT_EQ(image.save(tif.str(), 77), -10);
    EXPECT_EQ(readBytes(tif.path), (std::vector<unsigned char>{'o', 'l', 'd'}));
    EXPECT_FALSE(exists(tif.path + ".bak"));
    ASSERT_EQ(image.save(tif.str(), PImage::formatTiff), 0);
    EXPECT_FALSE(exists(tif.path + ".bak"));
    EXPECT_GT(readBytes(tif.path).size(), 3u);
    // A palette-only format refuses true colour.
    TempPath gif("true.gif");
    EXPECT_EQ(image.save(gif.str(), PImage::formatGif), -7);
    ASSERT_EQ(image.save(plain.str(), PImage::formatBmp), 0);
    EXPECT_FALSE(exists(plain.path + ".bak"));
}

TEST(PImage, DecodeErrorMapsTheWholeTable)
{
    const int table[][2] = {{0, 0},        {-1000, -1},   {-2030, -2},   {-2475, -3},   {-3330, -4},
                            {-2031, -6},   {-2010, -7},   {-2100, -7},   {-2110, -7},   {-2391, -7},
                            {-2480, -7},   {-3600, -7},   {-3602, -7},   {-3604, -7},   {-2394, -8},
                            {-2393, -9},   {-2005, -10},  {-2006, -10},  {2100, -11},   {-3060, -12},
                            {-4016, -15},  {-4035, -17},  {-2113, -18},  {-4032, -18},  {-4033, -18},
                            {-4043, -18},  {-3605, -19},  {-1, -19},     {12345, -19}};
    for (auto const &row : table) {
        ImageEngine::pushError(-777);
        ImageEngine::pushError(row[0]);
        EXPECT_EQ(PImage::decodeError(99), row[1]) << row[0];
        // The stack is emptied.
        EXPECT_EQ(PImage::decodeError(0), 0);
    }
    EXPECT_EQ(scanAcquireImage(nullptr, nullptr), -18);
}

TEST(PImage, PaletteScaleResolutionAndReduction)
{
    TempPath bmp("ops.bmp");
    ProbePImage image;
    loadPattern(image, TestPicture::pattern(16, 8, 8), bmp);
    std::vector<GColor> colours(255, GColor(1, 2, 3));
    EXPECT_EQ(image.setPalette(GPalette(255, colours.data())), -12);
    colours.assign(256, GColor(10, 20, 30));
    EXPECT_EQ(image.setPalette(GPalette(256, colours.data())), 0);
    GBitmap rendered;
    ASSERT_EQ(image.makeBitmap(&rendered, GPoint(0, 0)), 0);
    EXPECT_EQ(rendered.getSize().xVal(), 16);
    {
        HDC dc = CreateCompatibleDC(nullptr);
        HGDIOBJ old = SelectObject(dc, rendered.getHandle());
        EXPECT_EQ(GetPixel(dc, 3, 3), RGB(10, 20, 30));
        SelectObject(dc, old);
        DeleteDC(dc);
    }

    // The file's resolution is used: the pixels stay, the resolution halves.
    EXPECT_TRUE(image.resizeResolutionScale(2.0, 2.0));
    EXPECT_EQ(image.getWidth(), 16);
    EXPECT_EQ(image.getHeader()->biXPelsPerMeter, 1417);
    EXPECT_FALSE(image.resizeByResolution(0.0, 1.0));

    EXPECT_EQ(image.scale(2.0), 1);
    EXPECT_EQ(image.getWidth(), 32);
    EXPECT_EQ(image.getHeight(), 16);
    EXPECT_DOUBLE_EQ(image.getInternalImagePoints()[3].xval(), 30.0);

    // A bitmap has no resolution: the resize is made in pixels.
    ProbePImage fromBitmap;
    GBitmap bitmap(nullptr, 6, 4, 1, 32);
    ASSERT_EQ(fromBitmap.load(bitmap), 0);
    EXPECT_EQ(fromBitmap.getBitsPerPixel(), 24);
    EXPECT_TRUE(fromBitmap.resizeResolutionScale(2.0, 0.5));
    EXPECT_EQ(fromBitmap.getWidth(), 12);
    EXPECT_EQ(fromBitmap.getHeight(), 2);
    EXPECT_EQ(fromBitmap.getHeader()->biWidth, 12);

    // An optimised palette of at most 5 colours keeps a picture of three.
    TempPath colourBmp("colour.bmp");
    ProbePImage colour;
    TestPicture stripes{30, 20, 24, {}, {}};
    for (int i = 0; i < 600; ++i)
        stripes.values.push_back(i % 3 == 0 ? 0xFF0000 : i % 3 == 1 ? 0x00FF00 : 0x0000FF);
    loadPattern(colour, stripes, colourBmp);
    ASSERT_EQ(colour.numColors(), 0);
    ASSERT_EQ(colour.octreeReduction(5), 0);
    EXPECT_EQ(colour.numColors(), 256);
    EXPECT_EQ(colour.getHeader()->biBitCount, 8);
    std::set<COLORREF> used;
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 30; ++x)
            used.insert(colour.colour(x, y));
    EXPECT_EQ(used.size(), 3u);
}

TEST(PImage, BrightnessIsRestoredFromItsTemporaryFile)
{
    TempPath bmp("bright.bmp");
    const TestPicture picture = TestPicture::pattern(12, 9, 24);
    ProbePImage image;
    loadPattern(image, picture, bmp);
    image.adjustBrightness(0.5);
    int changed = 0;
    for (int y = 0; y < 9; ++y)
        for (int x = 0; x < 12; ++x)
            changed += image.colour(x, y) != picture.colour(x, y);
    EXPECT_GT(changed, 0);
    image.restoreBrightness();
    expectSamePicture(image, picture);
    EXPECT_EQ(image.isModified(), 0);
}

TEST(PImage, WarpCopyAndTrace)
{
    TempPath bmp("warp.bmp");
    ProbePImage image;
    loadPattern(image, TestPicture::pattern(10, 10, 24), bmp);
    PCoord<double> unit[4] = {{5, 7}, {6, 7}, {5, 8}, {6, 8}};
    ASSERT_EQ(image.warp(unit), 0);
    EXPECT_EQ(image.getWidth(), 2);
    EXPECT_EQ(image.getHeight(), 2);
    EXPECT_EQ(image.isModified(), 1);
    EXPECT_DOUBLE_EQ(unit[0].xval(), 0.0);
    EXPECT_DOUBLE_EQ(unit[0].yval(), 0.0);
    EXPECT_DOUBLE_EQ(unit[3].xval(), 1.0);

    // A warp onto the whole rectangle keeps the corners.
    ProbePImage whole;
    const TestPicture picture = TestPicture::pattern(10, 10, 24);
    loadPattern(whole, picture, bmp);
    PCoord<double> same[4] = {{0, 0}, {9, 0}, {0, 9}, {9, 9}};
    ASSERT_EQ(whole.warp(same), 0);
    EXPECT_EQ(whole.colour(0, 0), picture.colour(0, 0));
    EXPECT_EQ(whole.colour(9, 9), picture.colour(9, 9));

    ProbePImage copy(whole);
    EXPECT_TRUE(copy.isValid());
    EXPECT_NE(copy.getImageHandle(), whole.getImageHandle());
    EXPECT_EQ(copy.colour(9, 0), whole.colour(9, 0));

    // True colour is traced on its 256-colour shadow.
    TestPicture block{8, 8, 24, std::vector<unsigned long>(64, 0xFFFFFF), {}};
    for (int y = 2; y < 6; ++y)
        for (int x = 2; x < 6; ++x)
            block.values[y * 8 + x] = 0x0000FF;
    ProbePImage traced;
    loadPattern(traced, block, bmp);
    POutlines outline;
    EXPECT_EQ(traced.outlineTrace(PCoord<double>(3, 3), outline, 0), 0);
    EXPECT_GT(outline.getPoints().length(), 3u);
    EXPECT_EQ(traced.outlineTrace(PCoord<double>(8, 3), outline, 0), GImage::resultImpossible);
}
