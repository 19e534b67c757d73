#include "foundation/ScratchFiles.h"
#include "imaging/TestImages.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace {

// A .bmp file put together byte by byte.
struct BmpFile {
    std::vector<unsigned char> bytes;

    void word(unsigned int v)
    {
        bytes.push_back(static_cast<unsigned char>(v));
        bytes.push_back(static_cast<unsigned char>(v >> 8));
    }
    void dword(unsigned long v)
    {
        word(v & 0xFFFF);
        word(v >> 16);
    }
    void put(unsigned long at, unsigned long v, int width)
    {
        for (int i = 0; i < width; ++i)
            bytes[at + i] = static_cast<unsigned char>(v >> (8 * i));
    }

    // File header, 40-byte header, a table of `entries` colours i -> (i, 2i, 3i), then rows.
    static BmpFile info(long width, long height, int bits, unsigned long clrUsed, unsigned int entries,
                        std::vector<unsigned char> const &rows)
    {
        BmpFile f;
        const unsigned long offset = 54 + 4 * entries;
        f.word(0x4D42);
        f.dword(offset + rows.size());
        f.dword(0);
        f.dword(offset);
        f.dword(40);
        f.dword(static_cast<unsigned long>(width));
        f.dword(static_cast<unsigned long>(height));
        f.word(1);
        f.word(bits);
        f.dword(0);
        f.dword(rows.size());
        f.dword(2835);
        f.dword(2835);
        f.dword(clrUsed);
        f.dword(clrUsed);
        for (unsigned int i = 0; i < entries; ++i)
            f.bytes.insert(f.bytes.end(), {static_cast<unsigned char>(3 * i), static_cast<unsigned char>(2 * i),
                                           static_cast<unsigned char>(i), 0});
        f.bytes.insert(f.bytes.end(), rows.begin(), rows.end());
        return f;
    }

    std::string save(ScratchFiles &files) const
    {
        const std::string name = files.empty();
        HANDLE file = CreateFileA(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        DWORD written = 0;
        if (!bytes.empty())
            WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
        CloseHandle(file);
        return name;
    }
};

class LoadedBitmap : public GDiBitmap {
public:
    int loadFile(std::string const &name) { return load(PString(name.c_str())); }
    unsigned char *bytes() { return pixels; }
    BITMAPINFOHEADER &info() { return *getHeader(); }
    // Every stored byte, read once: a buffer shorter than its header says faults here.
    unsigned long sumOfPixels()
    {
        unsigned long sum = 0;
        for (unsigned long i = 0; i < info().biSizeImage; ++i)
            sum += pixels[i];
        return sum;
    }
};

std::vector<unsigned char> range(int count, int first = 0)
{
    std::vector<unsigned char> v;
    for (int i = 0; i < count; ++i)
        v.push_back(static_cast<unsigned char>(first + i));
    return v;
}

} // namespace

TEST(GDiBitmap, WrittenEightBitPicturesReadBackExactly)
{
    ScratchFiles files;
    std::vector<GColor> colors;
    for (int i = 0; i < 256; ++i)
        colors.emplace_back(i, 255 - i, i / 2);
    for (long width : {1L, 3L, 4L, 7L}) {
        ProbeImage image(width, 5, colors);
        for (unsigned long r = 0; r < 5; ++r)
            for (long c = 0; c < width; ++c)
                *image.at(r, c) = static_cast<unsigned char>(37 * r + 11 * c);
        const std::string name = files.empty();
        ASSERT_EQ(image.write(PString(name.c_str())), 0);

        LoadedBitmap loaded;
        ASSERT_EQ(loaded.loadFile(name), 0) << width;
        EXPECT_EQ(loaded.getSource(), 4);
        EXPECT_EQ(loaded.numColors(), 256);
        EXPECT_EQ(loaded.info().biWidth, width);
        EXPECT_EQ(loaded.info().biHeight, 5);
        ASSERT_EQ(loaded.info().biSizeImage, image.info().biSizeImage);
        EXPECT_EQ(std::memcmp(loaded.bytes(), image.bytes(), image.info().biSizeImage), 0);
        for (int i = 0; i < 256; ++i)
            ASSERT_EQ(loaded.palette().getEntry(i), colors[i]) << i;
    }
}

TEST(GDiBitmap, LowDepthFilesSpreadToOneBytePerPixel)
{
    ScratchFiles files;
    // 4 bits, 5 wide, 2 high: 3 bytes of pixels in rows of 4.
    LoadedBitmap four;
    ASSERT_EQ(four.loadFile(BmpFile::info(5, 2, 4, 16, 16, {0x12, 0x34, 0x50, 0, 0xAB, 0xCD, 0xEF, 0}).save(files)), 0);
    EXPECT_EQ(four.info().biBitCount, 8);
    EXPECT_EQ(four.info().biSizeImage, 16u);
    EXPECT_EQ(std::vector<unsigned char>(four.bytes(), four.bytes() + 16),
              (std::vector<unsigned char>{1, 2, 3, 4, 5, 0, 0, 0, 10, 11, 12, 13, 14, 0, 0, 0}));
    EXPECT_EQ(four.numColors(), 16);
    EXPECT_EQ(four.palette().getEntry(5), GColor(5, 10, 15));

    // Without a count the 8-bit header counts 256 entries: the file's 16, then what follows.
    LoadedBitmap uncounted;
    ASSERT_EQ(uncounted.loadFile(BmpFile::info(5, 2, 4, 0, 16, {0x12, 0x34, 0x50, 0, 0xAB, 0xCD, 0xEF, 0}).save(files)), 0);
    EXPECT_EQ(uncounted.numColors(), 256);
    EXPECT_EQ(uncounted.palette().getEntry(15), GColor(15, 30, 45));
    EXPECT_EQ(uncounted.palette().getEntry(16), GColor(0x50, 0x34, 0x12)); // the pixel bytes
    EXPECT_EQ(uncounted.bytes()[8], 10); // the pixels still come from the pixel offset

    // 1 bit, 9 wide: 9 bytes of 0 or 1 and 3 zeros per row.
    LoadedBitmap one;
    ASSERT_EQ(one.loadFile(BmpFile::info(9, 1, 1, 2, 2, {0xA5, 0x80, 0xFF, 0xFF}).save(files)), 0);
    EXPECT_EQ(std::vector<unsigned char>(one.bytes(), one.bytes() + 12),
              (std::vector<unsigned char>{1, 0, 1, 0, 0, 1, 0, 1, 1, 0, 0, 0}));
    EXPECT_EQ(one.palette().getEntry(1), GColor(1, 2, 3));
    LoadedBitmap oneUncounted;
    ASSERT_EQ(oneUncounted.loadFile(BmpFile::info(9, 1, 1, 0, 2, {0xA5, 0x80, 0xFF, 0xFF}).save(files)), 0);
    EXPECT_EQ(oneUncounted.numColors(), 256);
    EXPECT_EQ(oneUncounted.bytes()[8], 1);
    EXPECT_EQ(oneUncounted.palette().getEntry(2), GColor(0xFF, 0x80, 0xA5));
}

TEST(GDiBitmap, EightAndTwentyFourBitFiles)
{
    ScratchFiles files;
    LoadedBitmap eight;
    ASSERT_EQ(eight.loadFile(BmpFile::info(3, 2, 8, 0, 256, range(8, 40)).save(files)), 0);
    EXPECT_EQ(eight.bytes()[5], 45);
    EXPECT_EQ(eight.palette().getEntry(200), GColor(200, 144, 88));

    // A 24-bit file needs a colour count; its bytes are then taken as indices.
    EXPECT_EQ(LoadedBitmap().loadFile(BmpFile::info(2, 2, 24, 0, 0, range(16)).save(files)), 1);
    LoadedBitmap counted;
    ASSERT_EQ(counted.loadFile(BmpFile::info(2, 2, 24, 2, 2, range(16)).save(files)), 0);
    EXPECT_EQ(counted.info().biSizeImage, 8u);
    EXPECT_EQ(counted.bytes()[7], 7);
    EXPECT_EQ(counted.info().biBitCount, 8);

    // Any other depth with a count reads no pixels.
    LoadedBitmap sixteen;
    ASSERT_EQ(sixteen.loadFile(BmpFile::info(2, 2, 16, 4, 4, std::vector<unsigned char>(8, 9)).save(files)), 0);
    EXPECT_EQ(sixteen.sumOfPixels(), 0u);
}

TEST(GDiBitmap, CoreHeaderFiles)
{
    ScratchFiles files;
    BmpFile f;
    f.word(0x4D42);
    f.dword(14 + 12 + 768 + 8);
    f.dword(0);
    f.dword(14 + 12 + 768);
    f.dword(12);
    f.word(3);
    f.word(2);
    f.word(1);
    f.word(8);
    for (int i = 0; i < 256; ++i)
        f.bytes.insert(f.bytes.end(), {static_cast<unsigned char>(i), static_cast<unsigned char>(i / 2),
                                       static_cast<unsigned char>(255 - i)});
    const std::vector<unsigned char> rows = {1, 2, 3, 0, 4, 5, 6, 0};
    f.bytes.insert(f.bytes.end(), rows.begin(), rows.end());
    LoadedBitmap core;
    ASSERT_EQ(core.loadFile(f.save(files)), 0);
    EXPECT_EQ(core.info().biSize, 40u);
    EXPECT_EQ(core.info().biWidth, 3);
    EXPECT_EQ(core.info().biClrUsed, 256u);
    EXPECT_EQ(core.palette().getEntry(0), GColor(255, 0, 0));
    EXPECT_EQ(core.palette().getEntry(10), GColor(245, 5, 10));
    EXPECT_EQ(core.palette().getEntry(255), GColor(0, 127, 255));
    EXPECT_EQ(core.bytes()[6], 6);
}

TEST(GDiBitmap, BadFilesGiveTheirResultAndAnEmptyImage)
{
    ScratchFiles files;
    LoadedBitmap image;
    EXPECT_EQ(image.loadFile(files.missing()), 4);
    EXPECT_EQ(image.loadFile(files.withBytes(13)), 4);
    EXPECT_EQ(image.loadFile(files.withBytes(200)), 2); // starts 0, 1: not "BM"
    EXPECT_EQ(image.getHeader(), nullptr);

    const BmpFile good = BmpFile::info(4, 4, 8, 0, 256, range(16));
    BmpFile shortHeader = good;
    shortHeader.bytes.resize(14 + 39);
    EXPECT_EQ(image.loadFile(shortHeader.save(files)), 4);
    BmpFile shortPixels = good;
    shortPixels.bytes.pop_back();
    EXPECT_EQ(image.loadFile(shortPixels.save(files)), 4);
    EXPECT_EQ(image.getHeader(), nullptr);

    BmpFile huge = good;
    huge.put(18, 0x7FFFFFFF, 4);
    huge.put(22, 0x7FFFFFFF, 4);
    EXPECT_EQ(image.loadFile(huge.save(files)), 3); // more than 32 bits of pixels
    huge.put(18, 60000, 4);
    huge.put(22, 60000, 4);
    EXPECT_EQ(image.loadFile(huge.save(files)), 4); // the file can't hold them
    BmpFile upsideDown = good;
    upsideDown.put(22, static_cast<unsigned long>(-4), 4);
    EXPECT_EQ(image.loadFile(upsideDown.save(files)), 3);
    BmpFile farOffset = good;
    farOffset.put(10, 0x7FFFFFF0, 4);
    EXPECT_EQ(image.loadFile(farOffset.save(files)), 4);
    BmpFile unpackedHuge = BmpFile::info(8, 1, 1, 2, 2, {0xFF, 0, 0, 0});
    unpackedHuge.put(18, 0x10000000, 4);
    EXPECT_EQ(image.loadFile(unpackedHuge.save(files)), 4);
    // An empty picture takes its buffer from the file sizes, which must then be in the file.
    BmpFile noRows = good;
    noRows.put(22, 0, 4);
    ASSERT_EQ(image.loadFile(noRows.save(files)), 0);
    EXPECT_EQ(image.info().biSizeImage, 0u);
    noRows.put(2, 0xFFFFFF00, 4);
    EXPECT_EQ(image.loadFile(noRows.save(files)), 4);
    // A depth that reads no pixels may not claim more than its file could ever spread to.
    BmpFile claims = BmpFile::info(2, 2, 32, 4, 4, {});
    claims.put(18, 40000, 4);
    claims.put(22, 40000, 4);
    EXPECT_EQ(image.loadFile(claims.save(files)), 3);
    // A colour count whose low 16 bits are zero counts no colours.
    BmpFile countless = good;
    countless.put(46, 0x10000, 4);
    EXPECT_EQ(image.loadFile(countless.save(files)), 1);
    EXPECT_EQ(image.getHeader(), nullptr);

    // A second load replaces the first.
    ASSERT_EQ(image.loadFile(good.save(files)), 0);
    ASSERT_EQ(image.loadFile(BmpFile::info(2, 1, 8, 3, 3, {1, 2, 0, 0}).save(files)), 0);
    EXPECT_EQ(image.numColors(), 3);
}

// Headers with random bytes, at random lengths: every load ends with a result the reader
// knows, and a loaded picture lies wholly inside its buffer.
TEST(GDiBitmap, MutatedHeadersNeverReachOutsideTheirBuffers)
{
    ScratchFiles files;
    const std::string name = files.empty();
    const std::vector<BmpFile> seeds = {
        BmpFile::info(5, 3, 8, 0, 256, range(24)),
        BmpFile::info(5, 3, 4, 16, 16, range(12)),
        BmpFile::info(9, 2, 1, 0, 2, range(8)),
        BmpFile::info(3, 2, 24, 2, 2, range(24)),
    };
    std::uint32_t state = 12345;
    auto next = [&state]() {
        state = state * 1664525u + 1013904223u;
        return state >> 8;
    };
    // The fields worth lying in: sizes, offsets, dimensions, depth, counts.
    const int fieldOffsets[] = {2, 10, 14, 18, 22, 28, 34, 46};
    int results[7] = {};
    for (int round = 0; round < 1500; ++round) {
        BmpFile f = seeds[round % seeds.size()];
        const int mutations = 1 + next() % 3;
        for (int m = 0; m < mutations; ++m) {
            const int at = fieldOffsets[next() % 8];
            switch (next() % 4) {
            case 0: f.bytes[at + next() % 2] = static_cast<unsigned char>(next()); break;
            case 1: f.put(at, next() % 70, at == 28 ? 2 : 4); break;
            case 2: f.put(at, 0xFFFFFFFFu - next() % 4, at == 28 ? 2 : 4); break;
            default: f.put(at, 12, at == 28 ? 2 : 4); break;
            }
        }
        if (next() % 4 == 0)
            f.bytes.resize(next() % f.bytes.size());
        HANDLE file = CreateFileA(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        DWORD written = 0;
        if (!f.bytes.empty())
            WriteFile(file, f.bytes.data(), static_cast<DWORD>(f.bytes.size()), &written, nullptr);
        CloseHandle(file);

        LoadedBitmap image;
        const int result = image.loadFile(name);
        ASSERT_TRUE(result == 0 || result == 1 || result == 2 || result == 3 || result == 4 || result == 6)
            << round << ": " << result;
        ++results[result];
        if (result != 0) {
            ASSERT_EQ(image.getHeader(), nullptr) << round;
            continue;
        }
        image.sumOfPixels();
        image.getPixel(0, 0);
        image.grayScale(2);
        EXPECT_EQ(image.histEqua(), 0);
    }
    // The mutations reach every path: pictures, refused depths, claims too large, files too short.
    EXPECT_GT(results[0], 100);
    EXPECT_GT(results[1], 10);
    EXPECT_GT(results[3], 10);
    EXPECT_GT(results[4], 100);
}

TEST(GDiBitmap, DeviceBitmapsReadInTheirOwnDepth)
{
    // 1 bit, 8 by 2: rows of 2 bytes in CreateBitmap's form, top row first.
    const unsigned char bits[] = {0xF0, 0, 0x0F, 0};
    GBitmap mono(bits, 8, 2, 1, 1);
    LoadedBitmap image;
    ScreenDcCount screen;
    ASSERT_EQ(image.load(mono), 0);
    EXPECT_EQ(screen.taken, 1);
    EXPECT_EQ(screen.released, 1);
    EXPECT_EQ(image.info().biBitCount, 1);
    EXPECT_EQ(image.info().biWidth, 8);
    EXPECT_EQ(image.bytes()[0], 0x0F); // the bottom row comes first
    EXPECT_EQ(image.bytes()[4], 0xF0);

    GBitmap deep(nullptr, 4, 4, 1, 32);
    EXPECT_EQ(LoadedBitmap().load(deep), 1);
    EXPECT_EQ(LoadedBitmap().load(GBitmap()), 3);
}
