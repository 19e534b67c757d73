#include "graphics/DibFormat.h"

#include "foundation/PMemory.h"

#include <climits>
#include <cstdlib>

unsigned long dibStride(long long width, long long bits)
{
    const long long rowBits = width * bits;
    if (width < 0 || bits < 0 || rowBits > 0x7FFFFFFFLL * 8)
        return 0;
    const long long stride = ((rowBits + 31) >> 5) * 4;
    return stride > 0x7FFFFFFFLL ? 0 : static_cast<unsigned long>(stride);
}

long long dibSize(long long width, long long rows, long long bits)
{
    if (width < 0 || rows < 0)
        return -1;
    return ((width * bits + 31) >> 5) * 4 * rows;
}

int truncateToInt(double x)
{
    if (x > INT_MIN && x < INT_MAX)
        return static_cast<int>(x);
    return x >= INT_MAX ? INT_MAX : x <= INT_MIN ? INT_MIN : 0;
}

int roundHalfAway(double x) { return truncateToInt(x > 0 ? x + 0.5 : x - 0.5); }

DibGlobalBlock::~DibGlobalBlock()
{
    if (block)
        PGlobalFree(block);
}

DibInfoBlock::DibInfoBlock(BITMAPINFOHEADER const &header, GPalette const &palette, unsigned short colors,
                           std::size_t reserve)
{
    std::size_t size = sizeof(BITMAPINFOHEADER) + colors * sizeof(RGBQUAD);
    if (size < reserve)
        size = reserve;
    block = static_cast<BITMAPINFO *>(std::malloc(size));
    if (!block)
        return;
    block->bmiHeader = header;
    // Entries the palette lacks read as black.
    for (unsigned short i = 0; i < colors; ++i) {
        const GColor color = palette[i];
        block->bmiColors[i] = RGBQUAD{color.getB(), color.getG(), color.getR(), 0};
    }
}

DibInfoBlock::~DibInfoBlock() { std::free(block); }

DibPaletteSelection::DibPaletteSelection(HDC dc, HPALETTE palette)
    : dc(dc), previous(palette ? SelectPalette(dc, palette, FALSE) : nullptr)
{
    if (palette)
        RealizePalette(dc);
}

DibPaletteSelection::~DibPaletteSelection()
{
    if (previous)
        SelectPalette(dc, previous, FALSE);
}
