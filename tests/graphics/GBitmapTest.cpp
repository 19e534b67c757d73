// Bitmaps from bits, from the program's resources and from files; their sharing, their
// locations, and that every bitmap made or loaded is deleted exactly once.
#include <gtest/gtest.h>

#include "TeskWin.h"
#include "graphics/TestResources.h"
#include "support/GdiObjectCounter.h"
#include "support/ReadBack.h"
#include "support/TestApplication.h"

#include <string>

namespace {

const COLORREF red = RGB(255, 0, 0), green = RGB(0, 255, 0), blue = RGB(0, 0, 255), white = RGB(255, 255, 255);

// Quadrants24.bmp: red, green over blue, white, each quadrant 3 by 2.
void expectQuadrants(GBitmap const &bitmap)
{
    ASSERT_TRUE(bitmap.isValid());
    EXPECT_EQ(bitmap.getSize().getX(), 6);
    EXPECT_EQ(bitmap.getSize().getY(), 4);
    const PlatformPixels pixels(bitmap);
    expectPixels(pixels, {{0, 0, red}, {2, 1, red}, {3, 0, green}, {5, 1, green}, {0, 2, blue}, {2, 3, blue},
                          {3, 2, white}, {5, 3, white}});
    EXPECT_EQ(pixels.countPixels(red), 6);
}

// A file that lies beside the test program.
std::string besideProgram(char const *name)
{
    char path[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, path, sizeof path);
    std::string folder(path);
    return folder.substr(0, folder.find_last_of("\\/") + 1) + name;
}

TEST(GBitmap, EmptyBitmapHasNoHandleAndNoSize)
{
    GdiObjectCounter counter;
    {
        GBitmap empty;
        EXPECT_FALSE(empty.isValid());
        EXPECT_EQ(empty.getHandle(), nullptr);
        EXPECT_EQ(static_cast<HBITMAP>(empty), nullptr);
        EXPECT_EQ(empty.getSize().getX(), 0);
        EXPECT_EQ(empty.getSize().getY(), 0);
        EXPECT_EQ(empty.getLocation().getX(), 0);
        GBitmap copy(empty);
        EXPECT_TRUE(copy == empty);
    }
    EXPECT_EQ(counter.deleteCalls(), 0);
}

TEST(GBitmap, FromBitsHoldsThosePixels)
{
    const unsigned char checks[] = {0xAA, 0, 0x55, 0, 0xAA, 0, 0x55, 0};
    GdiObjectCounter counter;
    {
        GBitmap bitmap(checks, 8, 4, 1, 1);
        ASSERT_TRUE(bitmap.isValid());
        EXPECT_EQ(static_cast<void *>(bitmap.getHandle()), counter.lastCreated());
        EXPECT_EQ(bitmap.getSize().getX(), 8);
        EXPECT_EQ(bitmap.getSize().getY(), 4);
        unsigned char back[sizeof checks] = {};
        EXPECT_EQ(GetBitmapBits(bitmap, sizeof back, back), static_cast<LONG>(sizeof back));
        EXPECT_EQ(std::string(back, back + sizeof back), std::string(checks, checks + sizeof checks));

        GBitmap blank(nullptr, 5, 3, 1, 32);
        EXPECT_TRUE(blank.isValid());
        EXPECT_EQ(blank.getSize().getX(), 5);
        EXPECT_FALSE(blank == bitmap);

        GBitmap impossible(nullptr, 4, 3, 1, 33);
        EXPECT_FALSE(impossible.isValid());
        EXPECT_EQ(impossible.getSize().getY(), 0);
    }
    EXPECT_EQ(counter.created(), 2);
    EXPECT_TRUE(counter.eachDeletedOnce());
}

TEST(GBitmap, CopiesShareTheBitmapButNotTheLocation)
{
    GdiObjectCounter counter;
    {
        GBitmap original(nullptr, 4, 4, 1, 1);
        void *handle = original.getHandle();
        original.setLocation(GPoint(3, 4));
        GBitmap copy(original);
        EXPECT_TRUE(copy == original);
        EXPECT_EQ(copy.getLocation().getX(), 0);
        EXPECT_EQ(copy.getLocation().getY(), 0);

        GBitmap assigned(nullptr, 2, 2, 1, 1);
        void *replaced = assigned.getHandle();
        assigned.setLocation(GPoint(7, 8));
        assigned = original;
        EXPECT_EQ(counter.deletions(replaced), 1);
        EXPECT_TRUE(assigned == original);
        EXPECT_EQ(assigned.getLocation().getX(), 7) << "assignment keeps the target's location";
        EXPECT_EQ(assigned.getLocation().getY(), 8);
        assigned = assigned;
        EXPECT_EQ(assigned.getLocation().getX(), 7);

        original = GBitmap();
        copy = GBitmap();
        EXPECT_EQ(counter.deletions(handle), 0);
        EXPECT_NE(GetObjectType(handle), 0u);
    }
    EXPECT_EQ(counter.created(), 2);
    EXPECT_TRUE(counter.eachDeletedOnce());
}

TEST(GBitmap, LoadsResourcesByNumberAndByName)
{
    TestApplication app;
    GdiObjectCounter counter;
    {
        GBitmap quadrants;
        EXPECT_EQ(quadrants.load(&app, IDB_QUADRANTS), 1);
        expectQuadrants(quadrants);
        HBITMAP loaded = quadrants;
        EXPECT_EQ(quadrants.load(&app, "STRIPES"), 0) << "a valid bitmap is not reloaded";
        EXPECT_EQ(quadrants.load(&app, IDB_QUADRANTS), 0);
        EXPECT_EQ(quadrants.getHandle(), loaded);

        GBitmap stripes(&app, "STRIPES");
        ASSERT_TRUE(stripes.isValid());
        EXPECT_EQ(stripes.getSize().getX(), 8);
        EXPECT_EQ(stripes.getSize().getY(), 8);
        const PlatformPixels pixels(stripes);
        expectPixels(pixels, {{4, 0, RGB(0, 0, 0)}, {4, 1, white}});

        GBitmap highBits;
        EXPECT_EQ(highBits.load(&app, 0x50000 | IDB_QUADRANTS), 1) << "only the low 16 bits name it";
        expectQuadrants(highBits);
    }
    EXPECT_EQ(counter.created(), 3);
    EXPECT_TRUE(counter.eachDeletedOnce());
}

TEST(GBitmap, LoadFailuresLeaveTheBitmapEmpty)
{
    TestApplication app;
    GdiObjectCounter counter;
    GBitmap bitmap;
    EXPECT_EQ(bitmap.load(&app, "NO_SUCH_BITMAP"), 0);
    EXPECT_EQ(bitmap.load(&app, 999), 0);
    EXPECT_EQ(bitmap.load(&app, 0), 0);
    EXPECT_EQ(bitmap.load(&app, ""), 0);
    EXPECT_EQ(bitmap.load(nullptr, IDB_QUADRANTS), 0);
    EXPECT_EQ(bitmap.load(nullptr, "STRIPES"), 0);
    EXPECT_EQ(GBitmap(nullptr, "STRIPES").isValid(), 0);
    EXPECT_EQ(bitmap.loadEx(&app, nullptr, 0), 0);
    EXPECT_EQ(bitmap.loadEx(nullptr, besideProgram("NoSuchFile.bmp").c_str(), LR_LOADFROMFILE), 0);
    EXPECT_FALSE(bitmap.isValid());
    EXPECT_EQ(counter.created(), 0);
}

TEST(GBitmap, LoadExReadsFilesAndResources)
{
    TestApplication app;
    GdiObjectCounter counter;
    {
        GBitmap fromFile;
        EXPECT_EQ(fromFile.loadEx(nullptr, besideProgram("Quadrants24.bmp").c_str(), LR_LOADFROMFILE), 1);
        expectQuadrants(fromFile);
        EXPECT_EQ(fromFile.loadEx(nullptr, besideProgram("Stripes1.bmp").c_str(), LR_LOADFROMFILE), 0);
        EXPECT_EQ(fromFile.getSize().getX(), 6);

        GBitmap section;
        EXPECT_EQ(section.loadEx(nullptr, besideProgram("Stripes1.bmp").c_str(), LR_LOADFROMFILE | LR_CREATEDIBSECTION), 1);
        DIBSECTION description = {};
        EXPECT_EQ(GetObjectA(section, sizeof description, &description), static_cast<int>(sizeof description));
        EXPECT_EQ(description.dsBmih.biBitCount, 1);

        GBitmap resource;
        EXPECT_EQ(resource.loadEx(&app, MAKEINTRESOURCEA(IDB_QUADRANTS), 0), 1);
        expectQuadrants(resource);
    }
    EXPECT_EQ(counter.created(), 3);
    EXPECT_TRUE(counter.eachDeletedOnce());
}

} // namespace
