// ReadBack.h - drawing into memory and reading the pixels back.
//
//   ExpectNoLeaks  a scope in which the library must delete every platform object it makes
//   PlatformPixels a platform memory device of a given size, or on a given bitmap, whose
//                  pixels the test reads back; made and deleted by the test, so not counted
//   colourBitmap   a device-dependent 32-bit bitmap
//   expectPixels   expects the colours of a list of pixels of a device or platform bitmap
//   ReadBack       a library memory device (GMemoryDevice or a class derived from it) on a
//                  32-bit bitmap of a given size and background, in a leak-checked scope
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <initializer_list>

#include "TeskWin.h"
#include "support/GdiObjectCounter.h"

// Declared first in a test (or as ReadBack's first member), so that it is destroyed after
// everything the test made.
class ExpectNoLeaks {
public:
    ~ExpectNoLeaks();

    GdiObjectCounter counter;
};

// Pixels of a bitmap as the platform reads them: of the given bitmap, or of a 32-bit one of
// its own, filled with the background.
class PlatformPixels {
public:
    explicit PlatformPixels(HBITMAP bitmap);
    PlatformPixels(int width, int height, COLORREF background);
    ~PlatformPixels();
    PlatformPixels(PlatformPixels const &) = delete;
    PlatformPixels &operator=(PlatformPixels const &) = delete;

    operator HDC() const { return dc; }
    COLORREF pixel(int x, int y) const { return GetPixel(dc, x, y); }
    // How many pixels of the bitmap have that colour.
    int countPixels(COLORREF colour) const;
    // Fills [left, right) by [top, bottom) with a brush of the test's own.
    void fill(int left, int top, int right, int bottom, COLORREF colour) const;

private:
    HDC dc;
    HBITMAP owned = nullptr;
    HGDIOBJ oldBitmap;
};

// A device-dependent bitmap of 32 bits a pixel, whatever the screen has.
inline GBitmap colourBitmap(int width, int height)
{
    return GBitmap(nullptr, width, height, 1, 32);
}

inline COLORREF pixelAt(GDevice const &device, int x, int y)
{
    return GetPixel(device.getDC(), x, y);
}
// Fills [left, right) by [top, bottom) of a device with a brush of the test's own.
void fillDevice(GDevice &device, int left, int top, int right, int bottom, COLORREF colour);
// How many pixels of the device's first width by height have that colour.
int countDevicePixels(GDevice const &device, int width, int height, COLORREF colour);

// A pixel a test expects: at (x, y), that colour.
struct PixelProbe {
    int x;
    int y;
    COLORREF colour;
};
// Expects each probe, naming the pixel that differs.
void expectPixels(GDevice const &device, std::initializer_list<PixelProbe> probes);
void expectPixels(PlatformPixels const &pixels, std::initializer_list<PixelProbe> probes);

template <class Device = GMemoryDevice>
class ReadBack {
public:
    explicit ReadBack(int width, int height, COLORREF background = RGB(255, 255, 255))
        : bitmap(colourBitmap(width, height)), device(screen, bitmap), width(width), height(height)
    {
        fillDevice(device, 0, 0, width, height, background);
    }

    COLORREF pixel(int x, int y) const { return pixelAt(device, x, y); }
    int countPixels(COLORREF colour) const { return countDevicePixels(device, width, height, colour); }
    void fill(int left, int top, int right, int bottom, COLORREF colour)
    {
        fillDevice(device, left, top, right, bottom, colour);
    }

    ExpectNoLeaks leaks;
    // The screen-compatible device the bitmap was made for, for further devices of the test.
    GMemoryDevice screen;
    GBitmap bitmap;
    Device device;

private:
    int width;
    int height;
};
