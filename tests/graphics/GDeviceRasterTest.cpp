#include <gtest/gtest.h>
#include <windows.h>

#include <vector>

#include "TeskWin.h"
#include "graphics/DeviceProbes.h"
#include "support/ReadBack.h"

namespace {

const COLORREF red = RGB(255, 0, 0);
const COLORREF blue = RGB(0, 0, 255);
const COLORREF white = RGB(255, 255, 255);

TEST(GDeviceRaster, DrawBitmapStoresTheLocationAndCopiesPixels)
{
    ReadBack<> surface(40, 30);
    GMemoryDevice &target = surface.device;

    GBitmap invalid;
    target.draw(invalid, GPoint(7.9, 3.2), SRCCOPY);
    EXPECT_EQ(double(invalid.getLocation().xVal()), 7.0);
    EXPECT_EQ(double(invalid.getLocation().yVal()), 3.0);

    GBitmap picture = colourBitmap(4, 3);
    {
        GMemoryDevice source(surface.screen, picture);
        fillDevice(source, 0, 0, 4, 3, red);
    }
    target.draw(picture, GPoint(10, 5), SRCCOPY);
    expectPixels(target, {{10, 5, red}, {13, 7, red}, {14, 7, white}, {13, 8, white}, {9, 5, white}});

    HandlelessDevice none;
    GBitmap untouched;
    none.draw(untouched, GPoint(5, 5), SRCCOPY);
    EXPECT_EQ(double(untouched.getLocation().xVal()), 0.0);
}

// A picture image width by height in one colour, of 24 bits or of a two-colour palette.
GImage solidImage(int width, int height, int bitCount, GPalette const &palette, COLORREF color)
{
    int stride = ((width * bitCount + 31) / 32) * 4;
    auto header = static_cast<BITMAPINFOHEADER *>(PGlobalAlloc(sizeof(BITMAPINFOHEADER)));
    *header = BITMAPINFOHEADER{};
    header->biSize = sizeof(BITMAPINFOHEADER);
    header->biWidth = width;
    header->biHeight = height;
    header->biPlanes = 1;
    header->biBitCount = WORD(bitCount);
    header->biSizeImage = DWORD(stride * height);
    if (bitCount == 1)
        header->biClrUsed = 2;
    auto pixels = static_cast<unsigned char *>(PGlobalAlloc(stride * height));
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            unsigned char *row = pixels + y * stride;
            if (bitCount == 24) {
                row[3 * x] = GetBValue(color);
                row[3 * x + 1] = GetGValue(color);
                row[3 * x + 2] = GetRValue(color);
            } else {
                // Index 1 everywhere.
                row[x / 8] = static_cast<unsigned char>(row[x / 8] | (0x80 >> (x % 8)));
            }
        }
    return GImage(pixels, header, palette);
}

TEST(GDeviceRaster, ImagesAreDrawnAndZoomedThroughTheirHeaderAndPalette)
{
    ReadBack<> surface(40, 30);
    GMemoryDevice &target = surface.device;
    SetBkMode(target, OPAQUE);
    {
        GImage image = solidImage(3, 2, 24, GPalette(), red);
        target.draw(image, GPoint(4, 5));
        expectPixels(target, {{4, 5, red}, {6, 6, red}, {7, 6, white}, {6, 7, white}});
        EXPECT_EQ(GetBkMode(target), TRANSPARENT);

        SetStretchBltMode(target, HALFTONE);
        EXPECT_EQ(target.zoomImage(image, GRect(0, 0, 3, 2), GRect(30, 20, 20, 10), SRCCOPY), 2);
        expectPixels(target, {{20, 10, white}, {30, 20, red}, {39, 29, red}});
        EXPECT_EQ(GetStretchBltMode(target), HALFTONE);
    }
    {
        // The palette goes to the platform as blue, green, red.
        GColor colours[2] = {GColor(0, 0, 0), GColor(0, 0, 255)};
        GImage image = solidImage(5, 1, 1, GPalette(2, colours), 0);
        ASSERT_EQ(image.numColors(), 2);
        target.clear();
        target.draw(image, GPoint(1, 1));
        expectPixels(target, {{1, 1, blue}, {5, 1, blue}, {6, 1, white}});
    }

    HandlelessDevice none;
    GImage empty;
    EXPECT_EQ(none.zoomImage(empty, GRect(0, 0, 1, 1), GRect(0, 0, 1, 1), SRCCOPY), -1);
    target.draw(empty, GPoint(0, 0));
}

TEST(GDeviceRaster, StretchKeepsSizeForReversedTargetsAndReportsMissingHandles)
{
    ReadBack<> surface(40, 30);
    GMemoryDevice &target = surface.device;
    GBitmap picture = colourBitmap(2, 2);
    {
        GMemoryDevice source(surface.screen, picture);
        fillDevice(source, 0, 0, 2, 2, blue);
    }
    // Reversed edges: the position stays at the left and top as given.
    EXPECT_NE(target.stretchImage(picture, GRect(0, 0, 2, 2), GRect(5, 5, 1, 1), SRCCOPY), 0);
    expectPixels(target, {{5, 5, blue}, {8, 8, blue}, {9, 9, white}, {4, 4, white}});
    EXPECT_EQ(GetStretchBltMode(target), COLORONCOLOR);

    GImage unused;
    target.clear();
    EXPECT_NE(target.stretchImage(unused, picture, GRect(0, 0, 2, 2), GRect(20, 10, 24, 12)), 0);
    expectPixels(target, {{23, 11, blue}, {24, 11, white}});

    HandlelessDevice none;
    EXPECT_EQ(none.stretchImage(picture, GRect(0, 0, 2, 2), GRect(0, 0, 2, 2), SRCCOPY), -1);
    EXPECT_EQ(none.stretchImage(target, GRect(0, 0, 2, 2), GRect(0, 0, 2, 2), SRCCOPY), -1);
    EXPECT_EQ(target.stretchImage(none, GRect(0, 0, 2, 2), GRect(0, 0, 2, 2), SRCCOPY), 0);
}

TEST(GDeviceRaster, PatternAndBitBlt)
{
    ReadBack<> surface(20, 20);
    GMemoryDevice &target = surface.device;
    target.patternBlt(GRect(2.7, 3.9, 6.2, 8.0), BLACKNESS);
    // left 2, top 3, width 3, height 4.
    expectPixels(target, {{2, 3, RGB(0, 0, 0)}, {4, 6, RGB(0, 0, 0)}, {5, 6, white}, {4, 7, white}});

    GBitmap sourceBitmap = colourBitmap(10, 10);
    GMemoryDevice source(surface.screen, sourceBitmap);
    source.clear();
    SetPixel(source, 3, 4, red);
    target.clear();
    target.bitBlt(GRect(10, 10, 12, 12), source, GPoint(3, 4), SRCCOPY);
    expectPixels(target, {{10, 10, red}, {11, 10, white}});
}

TEST(GDeviceRaster, TransBltLeavesOutTheTransparentColourAndRestoresColours)
{
    ReadBack<> surface(20, 20, blue);
    GMemoryDevice &target = surface.device;
    SetBkColor(target, RGB(1, 2, 3));
    SetTextColor(target, RGB(4, 5, 6));

    GBitmap sourceBitmap = colourBitmap(4, 4);
    GMemoryDevice source(surface.screen, sourceBitmap);
    fillDevice(source, 0, 0, 4, 4, white);
    SetPixel(source, 1, 2, red);
    target.transBlt(GPoint(5, 6), source, GPoint(100, 100), GColor(255, 255, 255));
    expectPixels(target, {{6, 8, red}, {5, 6, blue}, {8, 9, blue}});
    EXPECT_EQ(GetBkColor(target), RGB(1, 2, 3));
    EXPECT_EQ(GetTextColor(target), RGB(4, 5, 6));

    // A source all of the transparent colour leaves the target as it was.
    fillDevice(source, 0, 0, 4, 4, white);
    target.transBlt(GPoint(0, 0), source, GPoint(), GColor(255, 255, 255));
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x)
            ASSERT_EQ(pixelAt(target, x, y), blue) << x << "," << y;
}

TEST(GDeviceRaster, DeviceBitsGoBothWaysTopDown)
{
    ReadBack<> surface(8, 5);
    GMemoryDevice &target = surface.device;

    std::vector<DWORD> bits(2 * 3, 0x00FFFFFF);
    bits[0] = 0x00FF0000; // blue-green-red order: red at row 0, column 0
    bits[5] = 0x000000FF; // blue at row 2, column 1
    target.drawDIBits(nullptr, 2, 3, 1, 32);
    target.drawDIBits(bits.data(), 0, 3, 1, 32);
    EXPECT_EQ(pixelAt(target, 0, 0), white);
    target.drawDIBits(bits.data(), 2, 3, 1, 32);
    expectPixels(target, {{0, 0, red}, {1, 2, blue}});

    target.drawDIBitsEx(bits.data(), 5, 1, 2, 3, 1, 32);
    expectPixels(target, {{5, 1, red}, {6, 3, blue}});

    std::vector<DWORD> read(8 * 5, 0);
    EXPECT_EQ(target.getDIBits(read.data(), 0, 5, 1, 32), 0);
    EXPECT_EQ(target.getDIBits(nullptr, 8, 5, 1, 32), 0);
    EXPECT_EQ(target.getDIBits(read.data(), 8, 5, 1, 32), 5);
    EXPECT_EQ(read[0] & 0xFFFFFF, 0x00FF0000u);
    EXPECT_EQ(read[2 * 8 + 1] & 0xFFFFFF, 0x000000FFu);
    EXPECT_EQ(read[3 * 8 + 6] & 0xFFFFFF, 0x000000FFu);
    EXPECT_EQ(read[4 * 8 + 7] & 0xFFFFFF, 0x00FFFFFFu);
}

TEST(GDeviceRaster, MetafileKeepsItsShapeCentredFromTheOrigin)
{
    ReadBack<> surface(100, 100);
    GMemoryDevice &target = surface.device;

    HDC recorder = CreateEnhMetaFileA(nullptr, nullptr, nullptr, nullptr);
    HBRUSH black = HBRUSH(GetStockObject(BLACK_BRUSH));
    // Bounds are inclusive: 100 by 200.
    RECT tall{0, 0, 101, 201};
    FillRect(recorder, &tall, black);
    HENHMETAFILE metafile = CloseEnhMetaFile(recorder);
    ENHMETAHEADER header{};
    GetEnhMetaFileHeader(metafile, sizeof header, &header);
    ASSERT_EQ(header.rclBounds.right - header.rclBounds.left, 100);
    ASSERT_EQ(header.rclBounds.bottom - header.rclBounds.top, 200);

    EXPECT_EQ(target.drawEnhMetafile(metafile, GRect(0, 0, 100, 100)), 0);
    expectPixels(target, {{24, 50, white}, {30, 50, RGB(0, 0, 0)}, {70, 50, RGB(0, 0, 0)}, {76, 50, white}});
    EXPECT_EQ(target.drawEnhMetafile(metafile, GRect(0, 0, 0, 100)), 0);
    DeleteEnhMetaFile(metafile);
}

// Records the bounds and aspect it was drawn with.
class RecordingView : public IViewObject {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void **out) override
    {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE Draw(DWORD aspect, LONG index, void *, DVTARGETDEVICE *, HDC, HDC dc,
                                   LPCRECTL bounds, LPCRECTL, BOOL(STDMETHODCALLTYPE *)(ULONG_PTR), ULONG_PTR) override
    {
        seenAspect = aspect;
        seenIndex = index;
        seenDC = dc;
        seenBounds = *bounds;
        return 0x1234;
    }
    HRESULT STDMETHODCALLTYPE GetColorSet(DWORD, LONG, void *, DVTARGETDEVICE *, HDC, LOGPALETTE **) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Freeze(DWORD, LONG, void *, DWORD *) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Unfreeze(DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetAdvise(DWORD, DWORD, IAdviseSink *) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetAdvise(DWORD *, DWORD *, IAdviseSink **) override { return E_NOTIMPL; }

    DWORD seenAspect = 0;
    LONG seenIndex = 0;
    HDC seenDC = nullptr;
    RECTL seenBounds{};
};

TEST(GDeviceRaster, ViewObjectsDrawInOrderedBoundsAndBitmapsAreMadeHeightFirst)
{
    ExpectNoLeaks leaks;
    GMemoryDevice screen;
    GRect rect(30, 40, 10, 20);
    FORMATETC format{};
    format.dwAspect = DVASPECT_ICON;
    EXPECT_EQ(screen.draw(nullptr, &format, rect), long(0x80004003));

    RecordingView view;
    EXPECT_EQ(screen.draw(&view, &format, rect), 0x1234);
    EXPECT_EQ(view.seenAspect, DWORD(DVASPECT_ICON));
    EXPECT_EQ(view.seenIndex, -1);
    EXPECT_EQ(view.seenDC, screen.getDC());
    EXPECT_EQ(view.seenBounds.left, 10);
    EXPECT_EQ(view.seenBounds.top, 20);
    EXPECT_EQ(view.seenBounds.right, 30);
    EXPECT_EQ(view.seenBounds.bottom, 40);

    GBitmap made = screen.createCompatibleBitmap(10, 20);
    EXPECT_TRUE(made.isValid());
    EXPECT_EQ(double(made.getSize().xVal()), 20.0);
    EXPECT_EQ(double(made.getSize().yVal()), 10.0);
}

} // namespace
