#include <gtest/gtest.h>
#include <windows.h>

#include "TeskWin.h"
#include "support/ReadBack.h"
#include "graphics/DeviceProbes.h"

namespace {

void expectPoint(GPoint const &p, double x, double y)
{
    EXPECT_DOUBLE_EQ(double(p.xVal()), x);
    EXPECT_DOUBLE_EQ(double(p.yVal()), y);
}

TEST(GDevice, WithoutAHandleSelectionAndConversionAreNeutral)
{
    ExpectNoLeaks leaks;
    HandlelessDevice device;
    EXPECT_EQ(device.getDC(), nullptr);
    EXPECT_EQ(device.getMapMode().getMode(), textMappingMode);

    device.setPen(GPen(GColor::Red, 3, LineDash));
    EXPECT_EQ(device.getPen().getWidth(), 0);
    device.setBrush(GBrush(GColor::Red));
    EXPECT_EQ(device.getBrush().getBrushColor(), GColor::White);
    const GFont before = device.getFont();
    device.setFont(GFont(-20, "Tahoma", GFont::Bold, 0, 0));
    EXPECT_EQ(HFONT(device.getFont()), HFONT(before));
    EXPECT_EQ(device.setPalette(GPalette(), 1), ~0u);

    device.setWindow(0, 100, 50, 0);
    EXPECT_EQ(device.getMapMode().getMode(), scaledMappingMode);
    EXPECT_EQ(device.reduced().scale, 1.0);
    EXPECT_EQ(device.reduced().offsetX, 0);
    expectPoint(device.logicalToDevice(GPoint(5, 6)), 0, 0);
    expectPoint(device.deviceToLogical(GPoint(5, 6)), 0, 0);
    EXPECT_EQ(device.lengthLogicalToDevice(7.5), 7.5);
    EXPECT_EQ(device.lengthDeviceToLogical(7.5), 7.5);
    EXPECT_EQ(device.newTranslateX(2.9), 2);
    EXPECT_EQ(device.newTranslateY(-2.9), -2);

    EXPECT_FALSE(device.getClipRegion().isValid());
    expectPoint(device.getDeviceCaps().getOffset(), 0, 0);
    expectPoint(device.getDeviceCaps().getRes(), 0, 0);
}

TEST(GDevice, ScaledModeFitsTheWindowIntoTheArea)
{
    ReadBack<ProbeDevice> surface(200, 200);
    ProbeDevice &device = surface.device;

    // 100 wide by 50 high on 200 by 200: ratios 2 and 4, the smaller wins.
    device.setWindow(0, 100, 50, 0);
    EXPECT_EQ(device.reduced().scale, 2.0);
    EXPECT_EQ(device.reduced().offsetX, 0);
    EXPECT_TRUE(device.reduced() == GDevice::getGDeviceMapMode(device.getMapMode()));
    EXPECT_EQ(device.newTranslateX(10.7), 21);
    EXPECT_EQ(device.newTranslateY(49.99), 99);
    expectPoint(device.logicalToDevice(GPoint(25.3, 12.9)), 50, 25);
    expectPoint(device.deviceToLogical(GPoint(51.9, 25.2)), 25.5, 12.5);
    EXPECT_EQ(device.lengthLogicalToDevice(3), 6.0);
    EXPECT_EQ(device.lengthDeviceToLogical(3), 1.5);

    device.setWindow(10, 20, 40, 30);
    // Y grows down the device from d toward c: 30 at the top.
    EXPECT_EQ(device.newTranslateY(30), 0);
    EXPECT_EQ(device.newTranslateY(40), 200);
    EXPECT_EQ(device.newTranslateX(10), 0);

    // The offset is truncated once when made and the sum again: -4.95 gives -4.
    GBitmap wide = colourBitmap(150, 150);
    ProbeDevice scaled(surface.screen, wide);
    scaled.setWindow(3.3, 103.3, 10, 0);
    EXPECT_EQ(scaled.reduced().scale, 1.5);
    EXPECT_EQ(scaled.reduced().offsetX, -4);
    EXPECT_EQ(scaled.reduced().offsetY, 0);
    EXPECT_EQ(scaled.newTranslateX(3.3), 0);
    EXPECT_EQ(scaled.newTranslateX(-10), -19);

    // The platform stays in pixels with the viewport origin alone.
    GMapMode stated(scaledMappingMode);
    stated.setWindowOrg(GPoint(-5.5, 7.9));
    stated.setWindowExt(GPoint(50, 100));
    stated.setViewportOrg(GPoint(12.8, -3.2));
    stated.setViewportExt(GPoint(100.9, 100.9));
    device.setMapMode(stated);
    EXPECT_EQ(GetMapMode(device), MM_TEXT);
    POINT origin;
    GetViewportOrgEx(device, &origin);
    EXPECT_EQ(origin.x, 12);
    EXPECT_EQ(origin.y, -3);
    GetWindowOrgEx(device, &origin);
    EXPECT_EQ(origin.x, 0);
    EXPECT_EQ(origin.y, 0);
    EXPECT_DOUBLE_EQ(device.reduced().scale, 100.9 / 100);
    EXPECT_EQ(device.reduced().offsetX, 5);
    EXPECT_EQ(device.reduced().offsetY, -7);
    EXPECT_TRUE(device.reduced() == GDevice::getGDeviceMapMode(stated));
}

TEST(GDevice, DegenerateExtentsFollowTwoRoutes)
{
    ReadBack<ProbeDevice> surface(10, 10);
    ProbeDevice &device = surface.device;
    GMapMode zero(scaledMappingMode);
    zero.setWindowOrg(GPoint(5.5, -7.2));
    zero.setViewportExt(GPoint(100, 100));
    // setMapMode: scale 1 and offsets from the window origin.
    device.setMapMode(zero);
    EXPECT_EQ(device.reduced().scale, 1.0);
    EXPECT_EQ(device.reduced().offsetX, -5);
    EXPECT_EQ(device.reduced().offsetY, 7);
    // getGDeviceMapMode: the identity.
    const GDeviceMapMode reduced = GDevice::getGDeviceMapMode(zero);
    EXPECT_EQ(reduced.scale, 1.0);
    EXPECT_EQ(reduced.offsetX, 0);
    EXPECT_EQ(reduced.offsetY, 0);

    // A tall window on a wide area: the vertical ratio wins on both routes.
    GMapMode tall(scaledMappingMode);
    tall.setWindowExt(GPoint(10, 100));
    tall.setViewportExt(GPoint(400, 200));
    tall.setWindowOrg(GPoint(1, 1));
    device.setMapMode(tall);
    EXPECT_EQ(device.reduced().scale, 2.0);
    EXPECT_EQ(GDevice::getGDeviceMapMode(tall).scale, 2.0);
    EXPECT_EQ(GDevice::getGDeviceMapMode(tall).offsetY, -2);
    // Another mode gives the identity.
    EXPECT_TRUE(GDevice::getGDeviceMapMode(GMapMode(loMetricMappingMode)) == GDeviceMapMode());
}

TEST(GDevice, PlatformModesLeaveTheMappingToThePlatform)
{
    ReadBack<ProbeDevice> surface(64, 64);
    ProbeDevice &device = surface.device;
    device.setWindow(0, 10, 10, 0);
    ASSERT_EQ(device.reduced().scale, 6.4);

    GMapMode stated(anisotropicMappingMode);
    stated.setWindowOrg(GPoint(10.9, -20.9));
    stated.setWindowExt(GPoint(100, -50));
    stated.setViewportOrg(GPoint(3, 4));
    stated.setViewportExt(GPoint(400, 300));
    device.setMapMode(stated);
    EXPECT_TRUE(device.reduced() == GDeviceMapMode());
    EXPECT_EQ(device.newTranslateX(12.7), 12);
    EXPECT_EQ(GetMapMode(device), MM_ANISOTROPIC);
    // The platform takes the truncated mapping and agrees with it to its own rounding.
    GMapMode truncated(anisotropicMappingMode);
    truncated.setWindowOrg(GPoint(10, -20));
    truncated.setWindowExt(GPoint(100, -50));
    truncated.setViewportOrg(GPoint(3, 4));
    truncated.setViewportExt(GPoint(400, 300));
    for (int x = -30; x <= 30; x += 10) {
        POINT p{x, x / 2};
        LPtoDP(device, &p, 1);
        const GPoint ours = truncated.logicalToDevice(GPoint(x, x / 2));
        EXPECT_NEAR(double(ours.xVal()), p.x, 0.5 + 1e-9);
        EXPECT_NEAR(double(ours.yVal()), p.y, 0.5 + 1e-9);
    }

    // A fixed mode: the platform's own scale with the stated origins.
    for (MappingMode mode : {loMetricMappingMode, hiMetricMappingMode, loEnglishMappingMode,
                             hiEnglishMappingMode, twipsMappingMode, isotropicMappingMode, textMappingMode}) {
        GMapMode fixed(mode);
        fixed.setWindowOrg(GPoint(7, 9));
        fixed.setViewportOrg(GPoint(2, 3));
        fixed.setWindowExt(GPoint(10, 10));
        fixed.setViewportExt(GPoint(10, 10));
        device.setMapMode(fixed);
        EXPECT_EQ(GetMapMode(device), int(mode));
        POINT p{7, 9};
        LPtoDP(device, &p, 1);
        EXPECT_EQ(p.x, 2) << mode;
        EXPECT_EQ(p.y, 3) << mode;
        EXPECT_TRUE(device.reduced() == GDeviceMapMode());
    }
}

TEST(GDevice, SelectionKeepsObjectsAndTheBrushSetsTheBackground)
{
    ReadBack<ProbeDevice> surface(20, 20);
    ProbeDevice &device = surface.device;

    HPEN penHandle;
    {
        const GPen red(GColor::Red, 1, LineSolid);
        device.setPen(red);
        penHandle = static_cast<HPEN>(GetCurrentObject(device, OBJ_PEN));
    }
    // The device's copy keeps the pen alive after the caller's copy went.
    EXPECT_EQ(GetObjectType(penHandle), DWORD(OBJ_PEN));
    EXPECT_EQ(device.getPen().getColor(), GColor::Red);
    MoveToEx(device, 0, 5, nullptr);
    LineTo(device, 20, 5);
    EXPECT_EQ(pixelAt(device, 10, 5), RGB(255, 0, 0));

    const GColor blue(0, 0, 255);
    device.setBrush(GBrush(blue));
    EXPECT_EQ(device.getBackgroundColor(), blue);
    PatBlt(device, 0, 10, 20, 5, PATCOPY);
    EXPECT_EQ(pixelAt(device, 3, 12), RGB(0, 0, 255));
    // A hatched brush's background is its own colour too.
    device.setBrush(GBrush(HS_CROSS, GColor::Red));
    EXPECT_EQ(device.getBackgroundColor(), GColor::Red);

    device.setTextColor(blue);
    EXPECT_EQ(device.getTextColor(), blue);
    device.setBackgroundMode(TransparentBackground);
    EXPECT_EQ(device.getBackgroundMode(), TRANSPARENT);
    device.setTextCharacterSpacing(3);
    EXPECT_EQ(device.getTextCharacterSpacing(), 3);

    const std::pair<void (GDevice::*)(int), int> rops[] = {
        {&GDevice::setNOT, R2_NOT}, {&GDevice::setXOR, R2_XORPEN}, {&GDevice::setMASK, R2_MASKPEN}};
    for (auto const &rop : rops) {
        (device.*rop.first)(1);
        EXPECT_EQ(GetROP2(device), rop.second);
        (device.*rop.first)(0);
        EXPECT_EQ(GetROP2(device), R2_COPYPEN);
    }

    // Drawn twice in XOR, the red line goes away; NOT inverts what is there.
    const auto drawRow = [&device] {
        MoveToEx(device, 0, 7, nullptr);
        LineTo(device, 20, 7);
    };
    device.setXOR(1);
    drawRow();
    EXPECT_EQ(pixelAt(device, 10, 7), RGB(0, 255, 255));
    drawRow();
    EXPECT_EQ(pixelAt(device, 10, 7), RGB(255, 255, 255));
    device.setNOT(1);
    drawRow();
    EXPECT_EQ(pixelAt(device, 10, 7), RGB(0, 0, 0));
    device.setMASK(1);
    drawRow();
    EXPECT_EQ(pixelAt(device, 10, 7), RGB(0, 0, 0));
}

TEST(GDevice, FontSelectionRefreshesMetricsOnlyForAnotherFont)
{
    ReadBack<ProbeDevice> surface(8, 8);
    ProbeDevice &device = surface.device;

    const GFont tahoma(-30, "Tahoma", GFont::Plain, 0, 0);
    device.setFont(tahoma);
    EXPECT_EQ(HFONT(device.getFont()), HFONT(tahoma));
    EXPECT_EQ(HFONT(GetCurrentObject(device, OBJ_FONT)), HFONT(tahoma));
    TEXTMETRICA platform;
    GetTextMetricsA(device, &platform);
    EXPECT_EQ(device.metrics().tmHeight, platform.tmHeight);
    EXPECT_GE(device.metrics().tmHeight, 30);

    device.metrics().tmHeight = -12345;
    device.setFont(GFont(tahoma));
    EXPECT_EQ(device.metrics().tmHeight, -12345);
    device.setFont(GFont(-12, "Tahoma", GFont::Bold, 0, 0));
    GetTextMetricsA(device, &platform);
    EXPECT_EQ(device.metrics().tmHeight, platform.tmHeight);
    EXPECT_EQ(device.metrics().tmWeight, FW_BOLD);
}

// A face the platform refuses in one character set is tried again in the system's.
TEST(GDevice, FontSelectionRetriesInTheSystemsCharacterSet)
{
    const UINT codePage = GetACP();
    if (codePage == 932 || codePage == 936 || codePage == 949 || codePage == 950 || codePage == 1253)
        GTEST_SKIP() << "code page " << codePage << " has a character set of its own";
    ReadBack<ProbeDevice> surface(8, 8);
    ProbeDevice &device = surface.device;

    // Marlett has only symbol glyphs; asked for in ANSI the platform takes another face.
    const GFont marlett(-20, "Marlett", GFont::Plain, 0, 0);
    ASSERT_EQ(marlett.getCharSet(), ANSI_CHARSET);
    device.setFont(marlett);
    EXPECT_NE(HFONT(device.getFont()), HFONT(marlett));
    EXPECT_EQ(device.getFont().getCharSet(), SYMBOL_CHARSET);
    EXPECT_EQ(device.getFont().getFaceName(), "Marlett");
    EXPECT_EQ(HFONT(GetCurrentObject(device, OBJ_FONT)), HFONT(device.getFont()));
    char face[80];
    GetTextFaceA(device, sizeof face, face);
    EXPECT_STREQ(face, "Marlett");
    EXPECT_EQ(device.metrics().tmCharSet, SYMBOL_CHARSET);

    // A face that exists nowhere stays as asked, though the platform took another.
    const GFont unknown(-20, "No Such Face Anywhere", GFont::Plain, 0, 0);
    device.setFont(unknown);
    EXPECT_EQ(HFONT(device.getFont()), HFONT(unknown));
    EXPECT_EQ(HFONT(GetCurrentObject(device, OBJ_FONT)), HFONT(unknown));
}

TEST(GDevice, ClipRegionsAreInDeviceUnits)
{
    ReadBack<ProbeDevice> surface(40, 40);
    ProbeDevice &device = surface.device;
    EXPECT_FALSE(device.getClipRegion().isValid());

    // Untranslated, even in the library's own mode.
    device.setWindow(0, 10, 10, 0);
    device.setClipRegion(GRect(10.9, 10.9, 20.5, 30.5));
    GRgn clip = device.getClipRegion();
    ASSERT_TRUE(clip.isValid());
    HRGN expected = CreateRectRgn(10, 10, 20, 30);
    EXPECT_TRUE(EqualRgn(clip, expected));
    DeleteObject(expected);
    PatBlt(device, 0, 0, 40, 40, BLACKNESS);
    expectPixels(device, {{10, 10, RGB(0, 0, 0)}, {19, 29, RGB(0, 0, 0)}, {20, 15, RGB(255, 255, 255)},
                          {9, 15, RGB(255, 255, 255)}});

    GRgn ellipse;
    ellipse.create(0, 0, 40, 40);
    device.setClipRegion(ellipse);
    EXPECT_TRUE(EqualRgn(device.getClipRegion(), ellipse));
    // The device keeps its own copy.
    ellipse.destroy();
    EXPECT_TRUE(device.getClipRegion().isValid());

    device.setClipRegion(GRgn());
    EXPECT_FALSE(device.getClipRegion().isValid());
}

TEST(GDevice, FlushEndsWithTheDevicesBrush)
{
    ReadBack<ProbeDevice> surface(8, 8);
    ProbeDevice &device = surface.device;
    device.setBrush(GBrush(GColor::Red));
    HGDIOBJ selected = GetCurrentObject(device, OBJ_BRUSH);
    const int before = surface.leaks.counter.created();
    device.flush();
    EXPECT_EQ(GetCurrentObject(device, OBJ_BRUSH), selected);
    // Twenty black brushes, each gone once the null brush replaced it.
    EXPECT_EQ(surface.leaks.counter.created() - before, 20);
    EXPECT_EQ(GetObjectType(surface.leaks.counter.lastCreated()), 0u);
    PatBlt(device, 0, 0, 8, 8, PATCOPY);
    EXPECT_EQ(pixelAt(device, 4, 4), RGB(255, 0, 0));
}

TEST(GDevice, SavedStateComesBackAtTheEnd)
{
    ExpectNoLeaks leaks;
    HDC dc = CreateCompatibleDC(nullptr);
    ASSERT_NE(dc, nullptr);
    HGDIOBJ originalPen = GetCurrentObject(dc, OBJ_PEN);
    HGDIOBJ originalBrush = GetCurrentObject(dc, OBJ_BRUSH);
    {
        HandleDevice device(dc);
        EXPECT_GT(device.saved(), 0);
        device.setPen(GPen(GColor::Red, 2, LineSolid));
        device.setBrush(GBrush(GColor::Red));
        device.setWindow(0, 1, 1, 0);
        EXPECT_NE(GetCurrentObject(dc, OBJ_PEN), originalPen);
        EXPECT_EQ(GetMapMode(dc), MM_TEXT);
    }
    EXPECT_EQ(GetCurrentObject(dc, OBJ_PEN), originalPen);
    EXPECT_EQ(GetCurrentObject(dc, OBJ_BRUSH), originalBrush);

    // A copy shares the handle, the objects and the saved state, and restores it when it goes.
    HandleDevice device(dc);
    device.setPen(GPen(GColor::Red, 2, LineSolid));
    HGDIOBJ red = GetCurrentObject(dc, OBJ_PEN);
    {
        HandleDevice copy(device);
        EXPECT_EQ(copy.getDC(), dc);
        EXPECT_EQ(copy.saved(), device.saved());
        EXPECT_EQ(copy.getPen().getColor(), GColor::Red);
        EXPECT_EQ(GetCurrentObject(dc, OBJ_PEN), red);
    }
    EXPECT_EQ(GetCurrentObject(dc, OBJ_PEN), originalPen);
    DeleteDC(dc);
}

LRESULT CALLBACK plainProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

TEST(GDevice, OnlyADeviceOnAWindowRealisesPalettes)
{
    ExpectNoLeaks leaks;
    GColor colours[3] = {GColor(10, 20, 30), GColor(40, 50, 60), GColor(70, 80, 90)};
    const GPalette palette(3, colours);
    GMemoryDevice memory;
    EXPECT_EQ(memory.setPalette(palette, 1), ~0u);

    WNDCLASSA wc = {};
    wc.lpfnWndProc = plainProc;
    wc.hInstance = GetModuleHandleA(nullptr);
    wc.lpszClassName = "GDevicePaletteProbe";
    ASSERT_NE(RegisterClassA(&wc), 0);
    HWND hwnd = CreateWindowExA(0, wc.lpszClassName, "", WS_POPUP, 0, 0, 50, 50, nullptr, nullptr,
                                wc.hInstance, nullptr);
    ASSERT_NE(hwnd, nullptr);
    HDC dc = GetDC(hwnd);
    HGDIOBJ defaultPalette = GetCurrentObject(dc, OBJ_PAL);
    {
        HandleDevice device(dc);
        // What the platform realises on this display, asked for directly on another handle.
        HDC reference = GetDC(hwnd);
        const UINT expectedDefault = RealizePalette(reference);
        struct {
            WORD version, count;
            PALETTEENTRY entries[3];
        } logical = {0x300, 3, {{10, 20, 30, 0}, {40, 50, 60, 0}, {70, 80, 90, 0}}};
        HPALETTE copy = CreatePalette(reinterpret_cast<LOGPALETTE *>(&logical));
        HPALETTE old = SelectPalette(reference, copy, FALSE);
        const UINT expected = RealizePalette(reference);
        SelectPalette(reference, old, FALSE);
        DeleteObject(copy);
        ReleaseDC(hwnd, reference);

        EXPECT_EQ(device.setPalette(palette, 1), expected);
        // Realised, not left selected.
        EXPECT_EQ(GetCurrentObject(dc, OBJ_PAL), defaultPalette);
        EXPECT_EQ(device.setPalette(palette, 0), expectedDefault);
        EXPECT_EQ(GetCurrentObject(dc, OBJ_PAL), defaultPalette);
    }
    ReleaseDC(hwnd, dc);
    DestroyWindow(hwnd);
    UnregisterClassA(wc.lpszClassName, wc.hInstance);
}

TEST(GDeviceCaps, PairsTakeTheFirstIndexAsX)
{
    ExpectNoLeaks leaks;
    GMemoryDevice memory;
    const GDeviceCaps caps = memory.getDeviceCaps();
    // The test display is 1280 by 1024, so a swapped pair shows.
    expectPoint(caps.getRes(), GetDeviceCaps(memory, HORZRES), GetDeviceCaps(memory, VERTRES));
    ASSERT_NE(double(caps.getRes().xVal()), double(caps.getRes().yVal()));
    expectPoint(caps.getSize(), GetDeviceCaps(memory, HORZSIZE), GetDeviceCaps(memory, VERTSIZE));
    EXPECT_EQ(caps.getDeviceType(), rasterDisplayDevice);
    EXPECT_EQ(caps.getColorPlanes(), 1);
    // A display has no printable margin.
    expectPoint(caps.getOffset(), 0, 0);
}

} // namespace
