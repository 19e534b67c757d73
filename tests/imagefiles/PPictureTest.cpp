#include "imagefiles/ImageEngine.h"
#include "imagefiles/ImageFiles.h"
#include "support/ReadBack.h"

#include <gtest/gtest.h>

namespace {

// A picture loaded from a pattern of the depth, through a .bmp and a PNG of it.
void makePictureFile(TempPath const &path, int width, int height, int bits)
{
    TempPath bmp("picture_source.bmp");
    ASSERT_TRUE(writeBytes(bmp.path, TestPicture::pattern(width, height, bits).bmpBytes()));
    PImage image;
    ASSERT_EQ(image.load(bmp.str()), 0);
    ASSERT_EQ(image.save(path.str(), PImage::formatByExtension), 0);
}

// A PStream in memory.
class MemoryStream : public PStream {
public:
    PStream &read(unsigned char *buffer, int size) override
    {
        last = 0;
        while (last < size && place < bytes.size())
            buffer[last++] = bytes[place++];
        return *this;
    }
    PStream &seekg(long offset, std::ios_base::seekdir) override
    {
        place = static_cast<std::size_t>(offset);
        return *this;
    }
    long tellg() override { return static_cast<long>(place); }
    int good() const override { return 1; }
    void close() override {}
    PStream &write(unsigned char const *buffer, int size) override
    {
        bytes.insert(bytes.end(), buffer, buffer + size);
        return *this;
    }
    int gcount() const override { return last; }

    std::vector<unsigned char> bytes;
    std::size_t place = 0;
    int last = 0;
};

} // namespace

TEST(PPicture, LoadRefusesWpgAndReportsTheEnginesCode)
{
    TempPath png("pic.png"), wpg("pic.WpG"), empty("empty.gif"), junk("junk.png");
    makePictureFile(png, 12, 5, 8);
    PPicture picture;
    EXPECT_EQ(picture.getStatus(), PPicture::statusOk);
    ASSERT_EQ(picture.load(png.str()), 0);
    EXPECT_TRUE(picture.isValid());
    int w = 0, h = 0;
    picture.getDimension(w, h);
    EXPECT_EQ(w, 12);
    EXPECT_EQ(h, 5);
    ASSERT_TRUE(writeBytes(wpg.path, readBytes(png.path)));
    EXPECT_EQ(picture.load(wpg.str()), -1);
    EXPECT_FALSE(picture.isValid());
    picture.getDimension(w, h);
    EXPECT_EQ(w + h, 0);

    ASSERT_TRUE(writeBytes(empty.path, {}));
    EXPECT_EQ(picture.load(empty.str()), PPicture::emptyFileCode);
    EXPECT_EQ(picture.getStatus(), PPicture::statusLoadFailed);
    ASSERT_TRUE(writeBytes(junk.path, std::vector<unsigned char>(64, 7)));
    EXPECT_EQ(picture.load(junk.str()), ImageEngine::codeNotAnImage);
    EXPECT_EQ(picture.getStatus(), PPicture::statusOk);
}

TEST(PPicture, StreamFormRoundTrips)
{
    PPicture empty;
    MemoryStream nothing;
    empty.write(nothing);
    EXPECT_EQ(nothing.bytes, (std::vector<unsigned char>{0, 0, 0, 0}));
    PPicture fromNothing;
    fromNothing.read(nothing);
    EXPECT_FALSE(fromNothing.isValid());

    TempPath tif("stream.tif");
    makePictureFile(tif, 33, 17, 24);
    PPicture picture;
    ASSERT_EQ(picture.load(tif.str()), 0);
    MemoryStream stream;
    picture.write(stream);
    ASSERT_GT(stream.bytes.size(), 8u);
    const unsigned long length = stream.bytes[0] | (stream.bytes[1] << 8) | (stream.bytes[2] << 16) |
                                 (static_cast<unsigned long>(stream.bytes[3]) << 24);
    EXPECT_EQ(length + 4, stream.bytes.size());
    PPicture back;
    back.read(stream);
    ASSERT_TRUE(back.isValid());
    int w = 0, h = 0;
    back.getDimension(w, h);
    EXPECT_EQ(w, 33);
    EXPECT_EQ(h, 17);

    // A block that claims more than the stream holds leaves the picture empty.
    MemoryStream cut;
    cut.bytes.assign(stream.bytes.begin(), stream.bytes.begin() + 20);
    back.read(cut);
    EXPECT_FALSE(back.isValid());
}

TEST(PPicture, ReductionSaveAndBitmaps)
{
    TempPath png("reduce.png"), gif("reduce.gif");
    makePictureFile(png, 40, 30, 24);
    PPicture picture;
    ASSERT_EQ(picture.load(png.str()), 0);
    {
        ExpectNoLeaks leaks;
        EXPECT_EQ(picture.colorReduction(3, 16), 0);
        // Format 14 takes palette images: true colour is reduced in place first.
        ASSERT_EQ(picture.save(gif.str(), PPicture::formatPaletteOnly), 0);
        EXPECT_EQ(picture.colorReduction(PPicture::reduceOptimised, 16), 1);
        EXPECT_EQ(picture.colorReduction(PPicture::reduceFixedTable, 8), 1);
        EXPECT_EQ(picture.save(gif.str(), 99), -1);
    }
    PImage saved;
    ASSERT_EQ(saved.load(gif.str()), 0);
    EXPECT_EQ(saved.numColors(), 256);

    HBITMAP bitmap = picture.makeBitmap();
    ASSERT_NE(bitmap, nullptr);
    BITMAP description;
    GetObjectA(bitmap, sizeof description, &description);
    EXPECT_EQ(description.bmWidth, 40);
    HBITMAP small = picture.makeBitmap(4, 3);
    ASSERT_NE(small, nullptr);
    GetObjectA(small, sizeof description, &description);
    EXPECT_EQ(description.bmHeight, 3);
    DeleteObject(small);

    PPicture fromBitmap;
    EXPECT_EQ(fromBitmap.createFromBitmap(nullptr), -1);
    EXPECT_EQ(fromBitmap.createFromBitmap(bitmap), 0);
    EXPECT_TRUE(fromBitmap.isValid());
    DeleteObject(bitmap);
}

TEST(PPicture, ShowPicturePaintsAtTheOrigin)
{
    TempPath bmp("show.bmp");
    TestPicture red{4, 4, 24, std::vector<unsigned long>(16, 0xFF0000), {}};
    ASSERT_TRUE(writeBytes(bmp.path, red.bmpBytes()));
    PPicture picture;
    ASSERT_EQ(picture.load(bmp.str()), 0);
    ReadBack<> target(20, 20);
    picture.showPicture(target.device.getDC(), 8, 6);
    EXPECT_EQ(target.pixel(0, 0), RGB(255, 0, 0));
    EXPECT_EQ(target.pixel(7, 5), RGB(255, 0, 0));
    EXPECT_EQ(target.pixel(8, 5), RGB(255, 255, 255));
    EXPECT_EQ(target.pixel(7, 6), RGB(255, 255, 255));
    PPicture none;
    none.showPicture(target.device.getDC(), 8, 6);
}
