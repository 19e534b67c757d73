#include "imagefiles/ImageFiles.h"
#include "support/ImportPatch.h"
#include "support/ReadBack.h"

#include <gtest/gtest.h>

namespace {

const COLORREF white = RGB(255, 255, 255);
const COLORREF blue = RGB(0, 0, 255);

void loadSolid(PImage &image, int width, int height, unsigned long rgb)
{
    TempPath bmp("device.bmp");
    TestPicture solid{width, height, 24, std::vector<unsigned long>(std::size_t(width) * height, rgb), {}};
    ASSERT_TRUE(writeBytes(bmp.path, solid.bmpBytes()));
    ASSERT_EQ(image.load(bmp.str()), 0);
}

// The device reports a raster printer; every other capability is the platform's.
int WINAPI printerCaps(HDC dc, int index)
{
    return index == TECHNOLOGY ? DT_RASPRINTER : GetDeviceCaps(dc, index);
}

} // namespace

TEST(GDeviceImage, EngineImagesAreDrawnAtDevicePointsAndZoomedIntoLogicalTargets)
{
    ReadBack<> surface(60, 40);
    GMemoryDevice &target = surface.device;
    PImage image;
    loadSolid(image, 5, 4, 0x0000FF);
    target.draw(image, GPoint(10.7, 3.2));
    EXPECT_EQ(pixelAt(target, 10, 3), blue);
    EXPECT_EQ(pixelAt(target, 14, 6), blue);
    EXPECT_EQ(pixelAt(target, 15, 6), white);
    EXPECT_EQ(pixelAt(target, 14, 7), white);
    EXPECT_EQ(pixelAt(target, 9, 3), white);

    target.zoomImage(image, GRect(30, 10, 50, 30));
    EXPECT_EQ(pixelAt(target, 30, 10), blue);
    EXPECT_EQ(pixelAt(target, 49, 29), blue);
    EXPECT_EQ(pixelAt(target, 50, 29), white);
    EXPECT_EQ(pixelAt(target, 49, 30), white);

    // Without a handle nothing is drawn.
    PImage empty;
    target.draw(empty, GPoint(0, 0));
    target.zoomImage(empty, GRect(0, 0, 5, 5));
    EXPECT_EQ(pixelAt(target, 0, 0), white);

    GBitmap bitmap = colourBitmap(3, 3);
    {
        GMemoryDevice source(surface.screen, bitmap);
        fillDevice(source, 0, 0, 3, 3, blue);
    }
    EXPECT_NE(target.stretchImage(empty, bitmap, GRect(0, 0, 3, 3), GRect(0, 30, 6, 36)), 0);
    EXPECT_EQ(pixelAt(target, 5, 35), blue);
}

TEST(GDeviceImage, BitmapsGoToAPrinterFiveTimesEnlargedAroundTheirCentre)
{
    ReadBack<> surface(200, 200);
    GBitmap bitmap = colourBitmap(10, 10);
    {
        GMemoryDevice source(surface.screen, bitmap);
        fillDevice(source, 0, 0, 10, 10, blue);
    }
    ImportPatch printer("TeskWin.dll", "gdi32.dll", "GetDeviceCaps", reinterpret_cast<void *>(&printerCaps));
    ASSERT_TRUE(printer.isActive());
    surface.device.draw(bitmap, GPoint(100, 100), SRCCOPY);
    EXPECT_EQ(double(bitmap.getLocation().xVal()), 100.0);
    EXPECT_EQ(surface.pixel(80, 80), blue);
    EXPECT_EQ(surface.pixel(129, 129), blue);
    EXPECT_EQ(surface.pixel(79, 80), white);
    EXPECT_EQ(surface.pixel(130, 129), white);
    EXPECT_EQ(surface.countPixels(blue), 50 * 50);
}
