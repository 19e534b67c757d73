#include <gtest/gtest.h>

#include "support/ReadBack.h"

#include <vector>

namespace {

const COLORREF green = RGB(0, 160, 0);
const COLORREF blue = RGB(0, 0, 255);
const COLORREF red = RGB(255, 0, 0);

// A filled square, framed by whatever pen the device holds.
class SquareGlyph : public PGlyph {
public:
    SquareGlyph(int left, int top, int size, COLORREF colour) : corner(left, top), size(size), colour(colour) {}
    void setPosition(GPoint const &position) override { corner = position; }
    GPoint getPosition() const override { return corner; }
    GRect getBounds() override
    {
        return GRect(corner.xVal(), corner.yVal(), corner.xVal() + size, corner.yVal() + size);
    }
    void draw(GDevice &device) override { device.fillRectangle(getBounds(), GBrush(GColor(colour))); }

private:
    GPoint corner;
    int size;
    COLORREF colour;
};

// Shows the saved pixels.
class OpenBitmapLaputa : public PBitmapLaputa {
public:
    using PBitmapLaputa::PBitmapLaputa;
    GBitmap const &savedBitmap() const { return saved; }
};

// 60 by 60 pixels in stripes of white and green, so that pixels differ from column to column.
class StripedBack : public ReadBack<> {
public:
    StripedBack() : ReadBack<>(60, 60)
    {
        for (int x = 0; x < 60; x += 6)
            fill(x, 0, x + 3, 60, green);
    }
    std::vector<COLORREF> snapshot() const
    {
        std::vector<COLORREF> pixels;
        for (int y = 0; y < 60; ++y)
            for (int x = 0; x < 60; ++x)
                pixels.push_back(pixel(x, y));
        return pixels;
    }
};

} // namespace

TEST(PXorLaputa, DrawingTwiceRestoresEveryPixelAndLeavesCopyMode)
{
    StripedBack back;
    const std::vector<COLORREF> before = back.snapshot();
    SquareGlyph glyph(10, 10, 20, blue);
    PXorLaputa overlay(glyph);
    EXPECT_EQ(&glyph, &overlay.getGlyph());

    SetROP2(back.device.getDC(), R2_NOT);
    overlay.beforeDraw(back.device);
    overlay.draw(back.device);
    EXPECT_EQ(R2_COPYPEN, GetROP2(back.device.getDC()));
    // White and green under the glyph, each exclusive-ored with blue.
    EXPECT_EQ(RGB(255, 255, 0), back.pixel(15, 15));
    EXPECT_EQ(RGB(0, 160, 255), back.pixel(12, 15));
    EXPECT_EQ(before[5 * 60 + 5], back.pixel(5, 5));

    SetROP2(back.device.getDC(), R2_NOT);
    overlay.erase(back.device);
    EXPECT_EQ(R2_COPYPEN, GetROP2(back.device.getDC()));
    EXPECT_EQ(before, back.snapshot());
}

TEST(PBitmapLaputa, EraseWritesBackThePixelsSavedBeforeDrawing)
{
    StripedBack back;
    const std::vector<COLORREF> before = back.snapshot();
    SquareGlyph glyph(10, 12, 20, blue);
    OpenBitmapLaputa overlay(glyph);
    // Erasing before anything was saved writes nothing.
    overlay.erase(back.device);
    EXPECT_EQ(before, back.snapshot());

    overlay.beforeDraw(back.device);
    EXPECT_EQ(20.0, overlay.savedBitmap().getSize().xVal());
    EXPECT_EQ(20.0, overlay.savedBitmap().getSize().yVal());
    overlay.draw(back.device);
    EXPECT_EQ(blue, back.pixel(12, 20));
    EXPECT_EQ(blue, back.pixel(20, 20));
    // Pixels under the glyph that change after it was drawn come back too.
    back.fill(18, 18, 24, 24, red);
    overlay.erase(back.device);
    EXPECT_EQ(before, back.snapshot());
    // Twice writes the same pixels again.
    overlay.erase(back.device);
    EXPECT_EQ(before, back.snapshot());
}

TEST(PBitmapLaputa, AssignmentCopiesThePixelsAndKeepsTheGlyph)
{
    StripedBack back;
    back.fill(0, 0, 10, 10, red);
    SquareGlyph first(0, 0, 10, blue);
    SquareGlyph second(40, 40, 10, blue);
    PBitmapLaputa source(first);
    PBitmapLaputa target(second);
    source.beforeDraw(back.device);
    target = source;
    EXPECT_EQ(&second, &target.getGlyph());
    // The target writes the source's pixels at its own glyph's place.
    target.erase(back.device);
    EXPECT_EQ(red, back.pixel(45, 45));
    EXPECT_EQ(red, back.pixel(49, 49));
    EXPECT_NE(red, back.pixel(50, 50));

    // A glyph with empty bounds saves an empty area and erases nothing.
    SquareGlyph empty(30, 30, 0, blue);
    OpenBitmapLaputa nothing(empty);
    const std::vector<COLORREF> before = back.snapshot();
    nothing.beforeDraw(back.device);
    EXPECT_FALSE(nothing.savedBitmap().isValid());
    nothing.erase(back.device);
    EXPECT_EQ(before, back.snapshot());
}
