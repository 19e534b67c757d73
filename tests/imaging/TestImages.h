// TestImages.h - images of a chosen form for the tests, with the protected operations opened.
#pragma once

#include "TeskWin.h"
#include "support/GdiObjectCounter.h"
#include "support/ImportPatch.h"

#include <windows.h>

#include <vector>

class ProbeImage : public GImage {
public:
    using GImage::buildHistogram;
    using GImage::buildIntegrate;
    using GImage::getImageType;
    using GImage::getIndex;
    using GImage::getSubset;
    using GImage::pixelAddr;

    // width by height at 8 bits with the given palette (counted in biClrUsed), or at 24 bits
    // when the palette is empty; pixels zero.
    ProbeImage(long width, long height, std::vector<GColor> colors)
        : GImage(nullptr, makeHeader(width, height, colors), paletteOf(colors))
    {
        pixels = static_cast<unsigned char *>(PGlobalAlloc(header->biSizeImage));
    }

    BITMAPINFOHEADER &info() { return *getHeader(); }
    unsigned char *bytes() { return pixels; }
    unsigned long stride() const { return (header->biBitCount * header->biWidth + 31) / 32 * 4; }
    // The first byte of stored row r, column c.
    unsigned char *at(unsigned long r, unsigned long c)
    {
        return pixels + r * stride() + c * (header->biBitCount / 8);
    }

    static std::vector<GColor> greys(int n)
    {
        std::vector<GColor> colors;
        for (int i = 0; i < n; ++i)
            colors.emplace_back(i, i, i);
        return colors;
    }

private:
    static BITMAPINFOHEADER *makeHeader(long width, long height, std::vector<GColor> const &colors)
    {
        auto *h = static_cast<BITMAPINFOHEADER *>(PGlobalAlloc(sizeof(BITMAPINFOHEADER)));
        const WORD bits = colors.empty() ? 24 : 8;
        *h = BITMAPINFOHEADER{sizeof(BITMAPINFOHEADER), width, height, 1, bits, 0,
                              static_cast<DWORD>((bits * width + 31) / 32 * 4 * height), 0, 0,
                              static_cast<DWORD>(colors.size()), static_cast<DWORD>(colors.size())};
        return h;
    }

    static GPalette paletteOf(std::vector<GColor> colors)
    {
        return colors.empty() ? GPalette() : GPalette(static_cast<unsigned short>(colors.size()), colors.data());
    }
};

// Counts the screen contexts that the library takes with GetDC and gives back with ReleaseDC.
class ScreenDcCount {
public:
    ScreenDcCount()
        : getPatch("TeskWin.dll", "user32.dll", "GetDC", reinterpret_cast<void *>(&countedGetDC)),
          releasePatch("TeskWin.dll", "user32.dll", "ReleaseDC", reinterpret_cast<void *>(&countedReleaseDC))
    {
        current() = this;
    }
    ~ScreenDcCount() { current() = nullptr; }
    ScreenDcCount(ScreenDcCount const &) = delete;
    ScreenDcCount &operator=(ScreenDcCount const &) = delete;

    bool active() const { return getPatch.isActive() && releasePatch.isActive(); }
    int taken = 0;
    int released = 0;

private:
    static ScreenDcCount *&current()
    {
        static ScreenDcCount *instance = nullptr;
        return instance;
    }
    static HDC WINAPI countedGetDC(HWND window)
    {
        ++current()->taken;
        return current()->getPatch.originalAs<decltype(GetDC)>()(window);
    }
    static int WINAPI countedReleaseDC(HWND window, HDC dc)
    {
        ++current()->released;
        return current()->releasePatch.originalAs<decltype(ReleaseDC)>()(window, dc);
    }

    ImportPatch getPatch;
    ImportPatch releasePatch;
};
