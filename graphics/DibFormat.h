// DibFormat.h - the device-independent bitmap format in one place, for the library's own use.
//
//   dibStride, dibSize      bytes of a padded row and of a run of rows
//   putLE16 .. getLE32      little-endian fields of the .bmp file layout
//   roundHalfAway           the image operations' rounding rule, held within int
//   truncateToInt           truncation toward zero, held within int
//   DibPicture              an image's header, rows and palette as the platform's transfers take them
//   DibGlobalBlock          a block from PGlobalAlloc freed at the end of a scope
//   DibInfoBlock            a header followed by a palette's blue, green, red table
//   DibPaletteSelection     selects and realises a palette; selects back the one it replaced
#pragma once

#include "graphics/GPalette.h"

#include <windows.h>

#include <cstddef>

// (width times bits plus 31) / 32 words of 4 bytes; 0 for a negative width or one past 31 bits.
unsigned long dibStride(long long width, long long bits);
inline unsigned long dibStride(BITMAPINFOHEADER const &header)
{
    return dibStride(header.biWidth, header.biBitCount);
}
// Bytes of `rows` padded rows; -1 when width or rows is negative.
long long dibSize(long long width, long long rows, long long bits);

inline void putLE16(unsigned char *at, unsigned int value)
{
    at[0] = static_cast<unsigned char>(value);
    at[1] = static_cast<unsigned char>(value >> 8);
}
inline void putLE32(unsigned char *at, unsigned long value)
{
    putLE16(at, value & 0xFFFF);
    putLE16(at + 2, (value >> 16) & 0xFFFF);
}
inline unsigned int getLE16(unsigned char const *at) { return at[0] | (at[1] << 8); }
inline unsigned long getLE32(unsigned char const *at)
{
    return getLE16(at) | (static_cast<unsigned long>(getLE16(at + 2)) << 16);
}

// Greater than 0: truncation of x + 0.5; otherwise of x - 0.5. Out of int's range the nearest
// end; NaN gives 0.
int roundHalfAway(double x);
// Out of int's range the nearest end; NaN gives 0.
int truncateToInt(double x);

// What the platform's DIB transfers need of an image; nothing is owned.
struct DibPicture {
    BITMAPINFOHEADER const *header;
    void const *bits;
    GPalette const *palette;
    unsigned short colors; // palette entries in the table, numColors()
};

class DibGlobalBlock {
public:
    explicit DibGlobalBlock(void *block) : block(block) {}
    ~DibGlobalBlock();
    DibGlobalBlock(DibGlobalBlock const &) = delete;
    DibGlobalBlock &operator=(DibGlobalBlock const &) = delete;

    void *get() const { return block; }
    // Hands the block on: the scope no longer frees it.
    void *release()
    {
        void *kept = block;
        block = nullptr;
        return kept;
    }

private:
    void *block;
};

// A BITMAPINFO of a copy of the header and `colors` entries in blue, green, red order, the
// fourth byte 0. `reserve` bytes are taken at least; null get() when memory can't be had.
class DibInfoBlock {
public:
    DibInfoBlock(BITMAPINFOHEADER const &header, GPalette const &palette, unsigned short colors,
                 std::size_t reserve = 0);
    explicit DibInfoBlock(DibPicture const &picture, std::size_t reserve = 0)
        : DibInfoBlock(*picture.header, *picture.palette, picture.colors, reserve)
    {
    }
    ~DibInfoBlock();
    DibInfoBlock(DibInfoBlock const &) = delete;
    DibInfoBlock &operator=(DibInfoBlock const &) = delete;

    BITMAPINFO const *get() const { return block; }
    RGBQUAD const *table() const { return block ? block->bmiColors : nullptr; }

private:
    BITMAPINFO *block;
};

// A null palette selects nothing and restores nothing.
class DibPaletteSelection {
public:
    DibPaletteSelection(HDC dc, HPALETTE palette);
    ~DibPaletteSelection();
    DibPaletteSelection(DibPaletteSelection const &) = delete;
    DibPaletteSelection &operator=(DibPaletteSelection const &) = delete;

private:
    HDC dc;
    HPALETTE previous;
};
