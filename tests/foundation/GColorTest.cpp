#include <gtest/gtest.h>

#include "TeskWin.h"

#include <windows.h>

namespace {

TEST(GColor, ComponentsAndColorRef)
{
    const GColor c(10, 20, 30);
    EXPECT_EQ(c.getR(), 10);
    EXPECT_EQ(c.getG(), 20);
    EXPECT_EQ(c.getB(), 30);
    EXPECT_EQ(static_cast<unsigned long>(c), RGB(10, 20, 30));

    // The top byte of a COLORREF (palette flags) is not a component.
    const GColor fromRef(0x02332211UL);
    EXPECT_EQ(fromRef.getR(), 0x11);
    EXPECT_EQ(fromRef.getG(), 0x22);
    EXPECT_EQ(fromRef.getB(), 0x33);
    EXPECT_EQ(static_cast<unsigned long>(fromRef), 0x332211UL);

    const PALETTEENTRY entry = c;
    EXPECT_EQ(entry.peRed, 10);
    EXPECT_EQ(entry.peGreen, 20);
    EXPECT_EQ(entry.peBlue, 30);
    EXPECT_EQ(entry.peFlags, 0);

    EXPECT_TRUE(GColor() == GColor::Black);
    EXPECT_FALSE(c == GColor(10, 20, 31));
}

TEST(GHSVColor, KnownColours)
{
    struct Case { GColor color; double h, s, v; };
    const Case cases[] = {
        {GColor(255, 0, 0), 0, 1, 1},      {GColor(255, 255, 0), 60, 1, 1},
        {GColor(0, 255, 0), 120, 1, 1},    {GColor(0, 255, 255), 180, 1, 1},
        {GColor(0, 0, 255), 240, 1, 1},    {GColor(255, 0, 255), 300, 1, 1},
        {GColor(255, 0, 51), 348, 1, 1},   {GColor(102, 51, 51), 0, 0.5, 0.4},
        {GColor(0, 0, 0), -999, 0, 0},     {GColor(51, 51, 51), -999, 0, 0.2},
        {GColor(255, 255, 255), -999, 0, 1},
    };
    for (const Case &c : cases) {
        const GHSVColor hsv(c.color);
        EXPECT_NEAR(hsv.getH(), c.h, 1e-12) << static_cast<unsigned long>(c.color);
        EXPECT_NEAR(hsv.getS(), c.s, 1e-12) << static_cast<unsigned long>(c.color);
        EXPECT_NEAR(hsv.getV(), c.v, 1e-12) << static_cast<unsigned long>(c.color);
    }
    EXPECT_EQ(GHSVColor(GColor(7, 7, 7)).getH(), GHSVColor::Achromatic);
}

TEST(GHSVColor, EveryColourSurvivesTheRoundTrip)
{
    int mismatches = 0;
    for (unsigned long ref = 0; ref < 0x1000000UL; ++ref) {
        const GColor color(ref);
        const GColor back(GHSVColor{color});
        if (!(back == color) && ++mismatches <= 5)
            ADD_FAILURE() << std::hex << ref << " came back as " << static_cast<unsigned long>(back);
    }
    EXPECT_EQ(mismatches, 0);
}

TEST(GHSVColor, ChangedComponentsConvertBack)
{
    GHSVColor hsv(GColor(200, 100, 0));
    hsv.getS() = 0.0; // no saturation: the grey of the value
    EXPECT_TRUE(GColor(hsv) == GColor(200, 200, 200));

    GHSVColor white(GColor::White);
    white.getV() = 0.5;
    EXPECT_TRUE(GColor(white) == GColor(128, 128, 128));
    white.getV() = 1.7; // held at 1
    EXPECT_TRUE(GColor(white) == GColor::White);
    white.getV() = -0.2; // held at 0
    EXPECT_TRUE(GColor(white) == GColor::Black);

    // A negative hue is a grey whatever the saturation says.
    GHSVColor grey(GColor(51, 51, 51));
    grey.getS() = 0.01;
    EXPECT_TRUE(GColor(grey) == GColor(51, 51, 51));

    GHSVColor red(GColor::Red);
    red.getH() = 360.0; // a full turn is red again
    EXPECT_TRUE(GColor(red) == GColor::Red);
    red.getH() = 720.0 + 120.0;
    EXPECT_TRUE(GColor(red) == GColor(0, 255, 0));
    red.getH() = 359.99999999999994; // just short of a full turn
    EXPECT_TRUE(GColor(red) == GColor::Red);
    red.getH() = 30.0;
    red.getS() = 2.0; // held at 1
    EXPECT_TRUE(GColor(red) == GColor(255, 128, 0));
}

} // namespace
