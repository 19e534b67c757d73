// Pens, brushes and palettes as shared values: what the platform objects are made of, and
// that each one the library creates is deleted exactly once, while stock ones never are.
#include <gtest/gtest.h>

#include "TeskWin.h"
#include "support/GdiObjectCounter.h"
#include "support/ReadBack.h"

#include <memory>

namespace {

LOGPEN penOf(void *handle)
{
    LOGPEN description = {};
    GetObjectA(handle, sizeof description, &description);
    return description;
}

LOGBRUSH brushOf(void *handle)
{
    LOGBRUSH description = {};
    GetObjectA(handle, sizeof description, &description);
    return description;
}

bool isLive(void *handle)
{
    return GetObjectType(handle) != 0;
}

TEST(GPen, StockPensAreSharedButNeverDeleted)
{
    GdiObjectCounter counter;
    {
        GPen pen;
        EXPECT_EQ(pen.getColor(), GColor::Black);
        EXPECT_EQ(pen.getWidth(), 0);
        EXPECT_EQ(pen.getStyle(), LineSolid);
        GPen copy(pen);
        GPen nullCopy(GPen::Null);
        copy = GPen::Null;
        nullCopy = pen;
    }
    EXPECT_EQ(counter.created(), 0);
    EXPECT_EQ(counter.deleteCalls(), 0);
    EXPECT_EQ(counter.deletions(GetStockObject(BLACK_PEN)), 0);
    EXPECT_EQ(counter.deletions(GetStockObject(NULL_PEN)), 0);
}

TEST(GPen, CreatedPenLivesUntilItsLastCopyGoes)
{
    GdiObjectCounter counter;
    auto first = std::make_unique<GPen>(GColor(10, 20, 30), 3, LineDash);
    ASSERT_EQ(counter.created(), 1);
    void *handle = counter.lastCreated();
    LOGPEN made = penOf(handle);
    EXPECT_EQ(made.lopnStyle, static_cast<UINT>(PS_DASH));
    EXPECT_EQ(made.lopnWidth.x, 3);
    EXPECT_EQ(made.lopnColor, RGB(10, 20, 30));

    GPen copy(*first);
    first.reset();
    EXPECT_EQ(counter.deletions(handle), 0);
    EXPECT_TRUE(isLive(handle));
    copy = copy;
    EXPECT_EQ(counter.deletions(handle), 0);

    // Assignment drops the old pen and shares the new one.
    GPen dotted(GColor(0, 0, 255), 2, LineDot);
    void *dottedHandle = counter.lastCreated();
    copy = dotted;
    EXPECT_EQ(counter.deletions(handle), 1);
    EXPECT_FALSE(isLive(handle));
    copy = GPen();
    dotted = GPen();
    EXPECT_EQ(counter.deletions(dottedHandle), 1);
    EXPECT_EQ(counter.created(), 2);
    EXPECT_TRUE(counter.eachDeletedOnce());
}

TEST(GPen, OnlyTheLowSixteenBitsOfTheStyleReachThePlatform)
{
    GdiObjectCounter counter;
    const GLineStyle geometricDash = static_cast<GLineStyle>(PS_GEOMETRIC | PS_DASH);
    GPen pen(GColor::Black, 1, geometricDash);
    EXPECT_EQ(penOf(counter.lastCreated()).lopnStyle, static_cast<UINT>(PS_DASH));
    EXPECT_EQ(pen.getStyle(), geometricDash);
}

TEST(GPen, StockObjectsSelectTheirStockHandlesAndAreNeverDeleted)
{
    GdiObjectCounter counter;
    {
        GMemoryDevice screen;
        GBitmap bitmap(nullptr, 4, 4, 1, 32);
        GMemoryDevice device(screen, bitmap);
        device.setPen(GPen::Null);
        EXPECT_EQ(GetCurrentObject(device, OBJ_PEN), GetStockObject(NULL_PEN));
        device.setBrush(GBrush::Null);
        EXPECT_EQ(GetCurrentObject(device, OBJ_BRUSH), GetStockObject(NULL_BRUSH));
        device.setPen(GPen());
        EXPECT_EQ(GetCurrentObject(device, OBJ_PEN), GetStockObject(BLACK_PEN));
        device.setBrush(GBrush::Null);
    }
    EXPECT_TRUE(counter.eachDeletedOnce());
    EXPECT_EQ(counter.deletions(GetStockObject(NULL_PEN)), 0);
    EXPECT_EQ(counter.deletions(GetStockObject(NULL_BRUSH)), 0);
    EXPECT_EQ(counter.deletions(GetStockObject(BLACK_PEN)), 0);
}

TEST(GBrush, SolidAndHatchedBrushesDescribeThemselves)
{
    GdiObjectCounter counter;
    {
        // The default brush is solid white.
        GBrush white;
        EXPECT_EQ(white.getBrushColor(), GColor::White);
        LOGBRUSH made = brushOf(counter.lastCreated());
        EXPECT_EQ(made.lbStyle, static_cast<UINT>(BS_SOLID));
        EXPECT_EQ(made.lbColor, RGB(255, 255, 255));

        GBrush teal(GColor(0, 128, 128));
        EXPECT_EQ(brushOf(counter.lastCreated()).lbColor, RGB(0, 128, 128));

        GBrush cross(HS_DIAGCROSS, GColor(200, 0, 50));
        EXPECT_EQ(cross.getBrushType(), BS_HATCHED);
        made = brushOf(counter.lastCreated());
        EXPECT_EQ(made.lbStyle, static_cast<UINT>(BS_HATCHED));
        EXPECT_EQ(made.lbHatch, static_cast<ULONG_PTR>(HS_DIAGCROSS));
        EXPECT_EQ(made.lbColor, RGB(200, 0, 50));
    }
    EXPECT_EQ(counter.created(), 3);
    EXPECT_TRUE(counter.eachDeletedOnce());
}

TEST(GBrush, CopiesShareOneBrushAndTheNullBrushIsNeverDeleted)
{
    GdiObjectCounter counter;
    {
        GBrush original(GColor::Red);
        void *handle = counter.lastCreated();
        GBrush copy(original);
        GBrush assigned;
        void *whiteHandle = counter.lastCreated();
        assigned = original;
        EXPECT_EQ(counter.deletions(whiteHandle), 1);
        EXPECT_EQ(assigned.getBrushColor(), GColor::Red);
        {
            GBrush last(copy);
        }
        EXPECT_EQ(counter.deletions(handle), 0);
        EXPECT_TRUE(isLive(handle));

        GBrush none(GBrush::Null);
        none = GBrush::Null;
        copy = none;
        original = none;
        EXPECT_EQ(counter.deletions(handle), 0);
        assigned = none;
        EXPECT_EQ(counter.deletions(handle), 1);
    }
    EXPECT_EQ(counter.created(), 2);
    EXPECT_TRUE(counter.eachDeletedOnce());
    EXPECT_EQ(counter.deletions(GetStockObject(NULL_BRUSH)), 0);
}

TEST(GBMBrush, RepeatsTheBitmapButDescribesItselfAsSolidWhite)
{
    // Even rows black, odd rows white; CreateBitmap wants rows of 16 bits.
    const unsigned char stripes[] = {0x00, 0, 0xFF, 0, 0x00, 0, 0xFF, 0, 0x00, 0, 0xFF, 0, 0x00, 0, 0xFF, 0};
    GdiObjectCounter counter;
    {
        std::unique_ptr<GBitmap> bitmap = std::make_unique<GBitmap>(stripes, 8, 8, 1, 1);
        void *bitmapHandle = counter.lastCreated();
        GBMBrush brush(*bitmap);
        bitmap.reset();
        EXPECT_EQ(counter.deletions(bitmapHandle), 1);
        ASSERT_EQ(counter.created(), 3);
        void *patternHandle = counter.lastCreated();
        EXPECT_EQ(brushOf(patternHandle).lbStyle, static_cast<UINT>(BS_PATTERN));
        EXPECT_EQ(counter.live(), 1) << "the white brush goes as soon as the pattern replaces it";
        EXPECT_EQ(brush.getBrushType(), BS_SOLID);
        EXPECT_EQ(brush.getBrushColor(), GColor::White);

        // The pattern paints: zero bits in the text colour, set bits in the background colour.
        const PlatformPixels target(8, 4, RGB(128, 128, 128));
        HGDIOBJ oldBrush = SelectObject(target, patternHandle);
        SetTextColor(target, RGB(0, 0, 0));
        SetBkColor(target, RGB(255, 255, 255));
        PatBlt(target, 0, 0, 8, 4, PATCOPY);
        SelectObject(target, oldBrush);
        expectPixels(target, {{3, 0, RGB(0, 0, 0)}, {3, 1, RGB(255, 255, 255)}, {5, 2, RGB(0, 0, 0)}});
        EXPECT_EQ(target.countPixels(RGB(0, 0, 0)), 16);

        GBMBrush copy(brush);
        GBMBrush plain;
        EXPECT_EQ(plain.getBrushColor(), GColor::White);
        plain = copy;
    }
    EXPECT_EQ(counter.created(), 4);
    EXPECT_TRUE(counter.eachDeletedOnce());
}

TEST(GPalette, DefaultIsTheStockPaletteWithItsColours)
{
    HGDIOBJ stock = GetStockObject(DEFAULT_PALETTE);
    WORD count = 0;
    ASSERT_EQ(GetObjectA(stock, sizeof count, &count), static_cast<int>(sizeof count));
    PALETTEENTRY platform[256];
    ASSERT_LE(count, 256);
    GetPaletteEntries(static_cast<HPALETTE>(stock), 0, count, platform);

    GdiObjectCounter counter;
    {
        GPalette palette;
        EXPECT_EQ(palette.getNumEntries(), count);
        for (int i = 0; i < count; ++i)
            EXPECT_EQ(palette[i], GColor(platform[i].peRed, platform[i].peGreen, platform[i].peBlue)) << i;
        EXPECT_EQ(palette.getEntry(count), GColor()) << "past the end reads as black";
        EXPECT_EQ(palette[-1], GColor());
        GPalette copy(palette);
        EXPECT_EQ(copy.getEntry(count - 1), palette[count - 1]);
    }
    EXPECT_EQ(counter.created(), 0);
    EXPECT_EQ(counter.deleteCalls(), 0);
}

TEST(GPalette, CopiesShareThePlatformPaletteButKeepTheirOwnColours)
{
    GColor colours[] = {GColor(1, 2, 3), GColor(40, 50, 60), GColor(255, 128, 0)};
    GdiObjectCounter counter;
    {
        GPalette palette(3, colours);
        ASSERT_EQ(counter.created(), 1);
        HPALETTE handle = static_cast<HPALETTE>(counter.lastCreated());
        colours[0] = GColor::White;
        EXPECT_EQ(palette.getEntry(0), GColor(1, 2, 3)) << "the palette keeps its own list";
        EXPECT_EQ(palette.getNumEntries(), 3);
        PALETTEENTRY platform[3];
        ASSERT_EQ(GetPaletteEntries(handle, 0, 3, platform), 3u);
        EXPECT_EQ(GColor(platform[2].peRed, platform[2].peGreen, platform[2].peBlue), GColor(255, 128, 0));
        EXPECT_EQ(platform[2].peFlags, 0);

        GPalette copy(palette);
        palette.setEntry(1, GColor(9, 8, 7));
        EXPECT_EQ(copy.getEntry(1), GColor(40, 50, 60));
        ASSERT_EQ(GetPaletteEntries(handle, 1, 1, platform), 1u);
        EXPECT_EQ(GColor(platform[0].peRed, platform[0].peGreen, platform[0].peBlue), GColor(9, 8, 7))
            << "both copies use the one platform palette";

        palette.setEntry(3, GColor::Red);
        palette.setEntry(-1, GColor::Red);
        EXPECT_EQ(palette.getEntry(3), GColor()) << "no entry appears past the end";

        GPalette stock;
        stock = copy;
        EXPECT_EQ(stock.getEntry(1), GColor(40, 50, 60));
        EXPECT_EQ(stock.getNumEntries(), 3);
        stock = stock;
        EXPECT_EQ(stock.getEntry(2), GColor(255, 128, 0));
        EXPECT_EQ(counter.deletions(handle), 0);
    }
    EXPECT_EQ(counter.created(), 1);
    EXPECT_TRUE(counter.eachDeletedOnce());
}

TEST(GPalette, NoColoursGiveAnEmptyList)
{
    GPalette empty(4, nullptr);
    EXPECT_EQ(empty.getEntry(0), GColor());
    EXPECT_EQ(empty[3], GColor());
}

} // namespace
