#include "imagefiles/EngineDib.h"

#include "foundation/PMemory.h"
#include "graphics/DibFormat.h"
#include "imagefiles/ImageEngine.h"

#include <cstring>

EngineDib::~EngineDib()
{
    if (block)
        PGlobalFree(block);
}

EngineDib &EngineDib::operator=(EngineDib &&other) noexcept
{
    if (this != &other) {
        if (block)
            PGlobalFree(block);
        block = other.block;
        other.block = nullptr;
    }
    return *this;
}

unsigned int EngineDib::colourCount(int bits) { return bits <= 8 && bits > 0 ? 1u << bits : 0u; }

bool EngineDib::heldDepth(int bits) { return bits == 1 || bits == 4 || bits == 8 || bits == 24; }

unsigned char *EngineDib::bits() const
{
    return block + sizeof(BITMAPINFOHEADER) + colourCount(depth()) * sizeof(RGBQUAD);
}

unsigned long EngineDib::stride() const { return dibStride(width(), depth()); }

unsigned long EngineDib::totalBytes() const { return ImageEngine::dibBytes(*header()); }

int EngineDib::make(long width, long height, int bits, EngineDib &out)
{
    using namespace ImageEngine;
    if (!heldDepth(bits))
        return codeBadDepth;
    if (width <= 0 || height <= 0)
        return codeBadArgument;
    if (width > maxSide || height > maxSide ||
        static_cast<unsigned long long>(width) * static_cast<unsigned long long>(height) > maxPixels)
        return codeTooLarge;
    const unsigned long rowBytes = dibStride(width, bits);
    const unsigned long long size = sizeof(BITMAPINFOHEADER) + colourCount(bits) * sizeof(RGBQUAD) +
                                    static_cast<unsigned long long>(rowBytes) * static_cast<unsigned long long>(height);
    auto *made = static_cast<unsigned char *>(PGlobalAlloc(static_cast<unsigned long>(size)));
    if (!made)
        return codeNoMemory;
    EngineDib dib;
    dib.block = made;
    BITMAPINFOHEADER &h = *dib.header();
    h.biSize = sizeof(BITMAPINFOHEADER);
    h.biWidth = width;
    h.biHeight = height;
    h.biPlanes = 1;
    h.biBitCount = static_cast<WORD>(bits);
    h.biCompression = BI_RGB;
    h.biSizeImage = static_cast<DWORD>(static_cast<unsigned long long>(rowBytes) * height);
    h.biClrUsed = colourCount(bits);
    h.biClrImportant = h.biClrUsed;
    out = static_cast<EngineDib &&>(dib);
    return codeOk;
}

int EngineDib::copyOf(BITMAPINFOHEADER const *packed, unsigned long long bytes, EngineDib &out)
{
    using namespace ImageEngine;
    if (!packed || bytes < sizeof(BITMAPINFOHEADER))
        return codeTruncated;
    BITMAPINFOHEADER h;
    std::memcpy(&h, packed, sizeof h);
    if (h.biSize < sizeof(BITMAPINFOHEADER) || h.biSize > bytes || h.biCompression != BI_RGB || h.biPlanes != 1)
        return codeBadDepth;
    const int bits = h.biBitCount;
    if (!heldDepth(bits) && bits != 32)
        return codeBadDepth;
    // Top-down DIBs (negative height) are stored the other way round.
    const bool topDown = h.biHeight < 0;
    const long long rows = topDown ? -static_cast<long long>(h.biHeight) : h.biHeight;
    if (rows > maxSide)
        return codeTooLarge;
    const unsigned int full = colourCount(bits);
    const unsigned long long used = bits <= 8 ? (h.biClrUsed ? h.biClrUsed : full) : h.biClrUsed;
    if (bits <= 8 && used > full)
        return codeBadDepth;
    const unsigned long long tableBytes = used * sizeof(RGBQUAD);
    const unsigned long inStride = dibStride(h.biWidth, bits);
    const unsigned long long need = h.biSize + tableBytes + inStride * static_cast<unsigned long long>(rows);
    if (need > bytes)
        return codeTruncated;
    EngineDib dib;
    const int made = make(h.biWidth, static_cast<long>(rows), bits == 32 ? 24 : bits, dib);
    if (made != codeOk)
        return made;
    dib.header()->biXPelsPerMeter = h.biXPelsPerMeter;
    dib.header()->biYPelsPerMeter = h.biYPelsPerMeter;
    auto const *source = reinterpret_cast<unsigned char const *>(packed);
    if (bits <= 8)
        std::memcpy(dib.colours(), source + h.biSize, static_cast<std::size_t>(tableBytes));
    unsigned char const *inRows = source + h.biSize + tableBytes;
    const unsigned long outStride = dib.stride();
    for (long long r = 0; r < rows; ++r) {
        unsigned char const *from = inRows + (topDown ? rows - 1 - r : r) * inStride;
        unsigned char *to = dib.row(static_cast<long>(r));
        if (bits != 32) {
            std::memcpy(to, from, outStride);
            continue;
        }
        // 32 bits: the fourth byte is dropped.
        for (long x = 0; x < h.biWidth; ++x, from += 4, to += 3) {
            to[0] = from[0];
            to[1] = from[1];
            to[2] = from[2];
        }
    }
    out = static_cast<EngineDib &&>(dib);
    return codeOk;
}

unsigned long EngineDib::pixel(long r, long x) const
{
    unsigned char const *at = row(r);
    switch (depth()) {
    case 1: return (at[x >> 3] >> (7 - (x & 7))) & 1;
    case 4: return (at[x >> 1] >> ((x & 1) ? 0 : 4)) & 0xF;
    case 8: return at[x];
    default:
        at += x * 3;
        return at[0] | (at[1] << 8) | (static_cast<unsigned long>(at[2]) << 16);
    }
}

int EngineDib::asBytes(EngineDib &out) const
{
    const int bits = depth() == 24 ? 24 : 8;
    const int made = make(width(), height(), bits, out);
    if (made != ImageEngine::codeOk)
        return made;
    out.header()->biXPelsPerMeter = header()->biXPelsPerMeter;
    out.header()->biYPelsPerMeter = header()->biYPelsPerMeter;
    if (depth() == bits) {
        std::memcpy(out.header() + 1, header() + 1, totalBytes() - sizeof(BITMAPINFOHEADER));
        return ImageEngine::codeOk;
    }
    std::memcpy(out.colours(), colours(), colourCount(depth()) * sizeof(RGBQUAD));
    for (long r = 0; r < height(); ++r) {
        unsigned char *to = out.row(r);
        for (long x = 0; x < width(); ++x)
            to[x] = static_cast<unsigned char>(pixel(r, x));
    }
    return ImageEngine::codeOk;
}
