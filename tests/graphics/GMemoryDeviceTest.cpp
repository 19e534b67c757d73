#include <gtest/gtest.h>
#include <windows.h>

#include "TeskWin.h"
#include "support/ReadBack.h"
#include "graphics/DeviceProbes.h"

namespace {

TEST(GMemoryDevice, AreaIsTheBitmapsSize)
{
    ExpectNoLeaks leaks;
    GMemoryDevice screen;
    EXPECT_NE(screen.getDC(), nullptr);
    EXPECT_EQ(double(screen.getDeviceArea().xVal()), 0.0);
    EXPECT_EQ(double(screen.getDeviceArea().yVal()), 0.0);
    // Without a bitmap, clear has nothing to do.
    screen.clear();

    // Given as a GMemoryDevice, the copy constructor would be chosen.
    GMemoryDevice compatible(static_cast<GDevice &>(screen));
    EXPECT_NE(compatible.getDC(), nullptr);
    EXPECT_NE(compatible.getDC(), screen.getDC());

    GBitmap bitmap = colourBitmap(37, 21);
    GMemoryDevice device(screen, bitmap);
    EXPECT_EQ(double(device.getDeviceArea().xVal()), 37.0);
    EXPECT_EQ(double(device.getDeviceArea().yVal()), 21.0);
    EXPECT_EQ(GetCurrentObject(device, OBJ_BITMAP), HBITMAP(bitmap));
    EXPECT_EQ(device.getMapMode().getMode(), textMappingMode);
    EXPECT_EQ(device.newTranslateX(5.9), 5);
}

TEST(GMemoryDevice, ClearWhitensTheWholeBitmapInAnyScaledWindow)
{
    ReadBack<ProbeDevice> surface(30, 20, RGB(0, 0, 0));
    ProbeDevice &device = surface.device;
    device.setWindow(-100, -90, 50, 40);
    ASSERT_NE(device.reduced().offsetX, 0);
    device.clear();
    EXPECT_EQ(surface.countPixels(RGB(255, 255, 255)), 30 * 20);
}

TEST(GMemoryDevice, TheBitmapOutlivesTheDeviceWithItsContents)
{
    ExpectNoLeaks leaks;
    GMemoryDevice screen;
    GBitmap bitmap = colourBitmap(10, 10);
    HDC first;
    {
        GMemoryDevice device(screen, bitmap);
        first = device;
        device.clear();
        SetPixel(device, 3, 4, RGB(0, 128, 255));
    }
    // The handle went, and the bitmap left it first.
    EXPECT_EQ(GetObjectType(first), 0u);
    ASSERT_TRUE(bitmap.isValid());
    GMemoryDevice again(screen, bitmap);
    expectPixels(again, {{3, 4, RGB(0, 128, 255)}, {4, 4, RGB(255, 255, 255)}});

    // The device's share keeps the bitmap alive when the caller's copies go.
    HBITMAP handle;
    {
        GBitmap temporary = colourBitmap(4, 4);
        handle = temporary;
        GMemoryDevice holder(screen, temporary);
        temporary = GBitmap();
        EXPECT_EQ(GetObjectType(handle), DWORD(OBJ_BITMAP));
        holder.clear();
        EXPECT_EQ(pixelAt(holder, 3, 3), RGB(255, 255, 255));
    }
    EXPECT_EQ(GetObjectType(handle), 0u);
}

TEST(GMemoryDevice, RestoresTheOldBitmapOnce)
{
    ReadBack<> surface(5, 5);
    GMemoryDevice &device = surface.device;
    const HBITMAP bitmap = surface.bitmap;
    EXPECT_EQ(device.RestoreOldBitmap(), bitmap);
    EXPECT_NE(GetCurrentObject(device, OBJ_BITMAP), bitmap);
    EXPECT_EQ(device.RestoreOldBitmap(), nullptr);
    // The bitmap is free to go into another handle.
    GMemoryDevice other(surface.screen, surface.bitmap);
    EXPECT_EQ(GetCurrentObject(other, OBJ_BITMAP), bitmap);
}

TEST(GMonoMemoryDevice, AlwaysDrawsWhite)
{
    ExpectNoLeaks leaks;
    GMemoryDevice screen;
    GBitmap mask(nullptr, 16, 16, 1, 1);
    GMonoMemoryDevice device(screen, mask);
    EXPECT_EQ(device.getPen().getColor(), GColor::White);
    PatBlt(device, 0, 0, 16, 16, BLACKNESS);

    device.setPen(GPen(GColor::Black, 3, LineSolid));
    GDevice &asDevice = device;
    asDevice.setPen(GPen(GColor::Black, 3, LineSolid));
    EXPECT_EQ(device.getPen().getColor(), GColor::White);
    EXPECT_EQ(device.getPen().getWidth(), 0);

    MoveToEx(device, 0, 8, nullptr);
    LineTo(device, 16, 8);
    expectPixels(device, {{5, 8, RGB(255, 255, 255)}, {5, 9, RGB(0, 0, 0)}});
}

} // namespace
