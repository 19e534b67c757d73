// TestImages.h - images of a chosen form for the tests, with the protected operations opened.
#pragma once

#include "TeskWin.h"

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
