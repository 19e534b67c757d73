// Line screens of GImage: bars whose thickness follows the tone, sampled by area averages.
#include "imaging/GImage.h"

#include "foundation/PNumerics.h"
#include "graphics/DibFormat.h"

#include <windows.h>

#include <cmath>
#include <cstdlib>
#include <vector>

template <class Channel>
unsigned short GImage::areaAverage(float rowStart, float rowEnd, float columnStart, float columnEnd,
                                   unsigned short rowBits, unsigned short bytesPerPixel, Channel channel,
                                   unsigned short none)
{
    if (!header || !pixels)
        return 0;
    const unsigned long stride = ((static_cast<unsigned long>(rowBits) + 31) >> 5) * 4;
    const unsigned long size = header->biSizeImage;
    unsigned long sum = 0, count = 0;
    // The counters are 16 bits wide; a wrap ends the walk rather than starting it again.
    const unsigned short firstColumn = static_cast<unsigned short>(truncateToInt(columnStart));
    for (unsigned long r = static_cast<unsigned short>(truncateToInt(rowStart)); r < 0x10000 && r < rowEnd; ++r) {
        const unsigned long rowOffset = stride * r;
        if (rowOffset >= size)
            break;
        for (unsigned long c = firstColumn; c < 0x10000 && c < columnEnd; ++c) {
            // Samples past the buffer are not taken.
            const unsigned long offset = rowOffset + bytesPerPixel * c;
            if (offset >= size)
                break;
            sum += channel(entry(pixels[offset]));
            ++count;
        }
    }
    // Deliberate: the count is kept to 16 bits for both the test and the division.
    const unsigned short samples = static_cast<unsigned short>(count);
    return samples ? static_cast<unsigned short>(sum / samples) : none;
}

unsigned short GImage::getRGBAverage(float rowStart, float rowEnd, float columnStart, float columnEnd,
                                     unsigned short rowBits, unsigned short bytesPerPixel)
{
    return areaAverage(rowStart, rowEnd, columnStart, columnEnd, rowBits, bytesPerPixel,
                       [](GColor const &e) { return e.getR() + e.getG() + e.getB(); }, 765);
}

unsigned short GImage::getRAverage(float rowStart, float rowEnd, float columnStart, float columnEnd,
                                   unsigned short rowBits, unsigned short bytesPerPixel)
{
    return areaAverage(rowStart, rowEnd, columnStart, columnEnd, rowBits, bytesPerPixel,
                       [](GColor const &e) { return e.getR(); }, 255);
}

unsigned short GImage::getGAverage(float rowStart, float rowEnd, float columnStart, float columnEnd,
                                   unsigned short rowBits, unsigned short bytesPerPixel)
{
    return areaAverage(rowStart, rowEnd, columnStart, columnEnd, rowBits, bytesPerPixel,
                       [](GColor const &e) { return e.getG(); }, 255);
}

unsigned short GImage::getBAverage(float rowStart, float rowEnd, float columnStart, float columnEnd,
                                   unsigned short rowBits, unsigned short bytesPerPixel)
{
    return areaAverage(rowStart, rowEnd, columnStart, columnEnd, rowBits, bytesPerPixel,
                       [](GColor const &e) { return e.getB(); }, 255);
}

namespace {

const unsigned short smallestCell = 8;

// 0 for bars under 2, 1 for 2 and 3, 2 for 4 and more.
int thicknessClass(unsigned short t) { return t < 2 ? 0 : t < 4 ? 1 : 2; }

// The sampling grid of a picture and the output geometry of its screens.
struct ScreenLayout {
    float scale;
    unsigned short cell;
    float scaledHeight, scaledWidth;
    float stepY, stepX, pitch;
    unsigned short gridRows, gridColumns;
};

// Lays the rows of bars over a grid of thicknesses.
class BarRows {
public:
    BarRows(ScreenLayout const &layout, std::vector<unsigned short> const &thickness, PList<PImgDithSquare> &list)
        : layout(layout), thickness(thickness), list(list)
    {
    }

    // Rows from firstY by steps of one cell; with `limited` they stop at `limit` too.
    void build(long firstY, bool limited, long limit)
    {
        const float rowPitch = layout.scale * layout.stepY;
        if (IS_ZERO(static_cast<double>(rowPitch), 1e-09) || layout.gridRows == 0 || layout.gridColumns == 0)
            return;
        unsigned char forward = 1;
        for (long y = firstY; y < layout.scaledHeight - (layout.cell >> 1) && (!limited || y < limit);
             y += layout.cell, forward = !forward) {
            unsigned long gridRow = static_cast<unsigned short>(truncateToInt(y / rowPitch));
            // A row past the grid's last reads the last.
            if (gridRow >= layout.gridRows)
                gridRow = layout.gridRows - 1u;
            const unsigned long base = gridRow * layout.gridColumns;
            if (forward)
                forwardRow(y, base);
            else
                backwardRow(y, base);
        }
    }

private:
    long columnX(unsigned long c) const { return truncateToInt(c * layout.pitch + 0.5f); }

    // A class 2 bar is centred on the row: its origin lies at the edge it starts from.
    static PImgDithSquare startBar(long x, long y, unsigned short t, unsigned char forward)
    {
        long at = y;
        if (thicknessClass(t) == 2)
            at = forward ? y - (t >> 1) : y + (t >> 1);
        return PImgDithSquare(PCoord<unsigned short>(static_cast<unsigned short>(x), static_cast<unsigned short>(at)),
                              t, 0, forward);
    }

    static bool splits(unsigned short present, unsigned short next)
    {
        const int a = thicknessClass(present), b = thicknessClass(next);
        return a != b || (a == 2 && std::abs(static_cast<int>(next) - static_cast<int>(present)) > 1);
    }

    void finish(PImgDithSquare &bar, long length, bool last)
    {
        bar.length = static_cast<unsigned short>(length);
        if (!last || length > 2)
            list.add(bar);
    }

    void forwardRow(long y, unsigned long base)
    {
        PImgDithSquare bar = startBar(0, y, thickness[base], 1);
        long barX = 0;
        for (unsigned long c = 1; c < layout.gridColumns; ++c) {
            const long x = columnX(c);
            const unsigned short t = thickness[base + c];
            if (splits(bar.thickness, t)) {
                finish(bar, x - barX, false);
                bar = startBar(x, y, t, 1);
                barX = x;
            }
        }
        finish(bar, truncateToInt(layout.scaledWidth - barX), true);
    }

    void backwardRow(long y, unsigned long base)
    {
        long barX = truncateToInt(layout.scaledWidth);
        PImgDithSquare bar = startBar(barX, y, thickness[base + layout.gridColumns - 1], 0);
        for (long c = static_cast<long>(layout.gridColumns) - 2; c >= 0; --c) {
            const long x = columnX(static_cast<unsigned long>(c));
            const unsigned short t = thickness[base + static_cast<unsigned long>(c)];
            if (splits(bar.thickness, t)) {
                finish(bar, barX - x, false);
                bar = startBar(x, y, t, 0);
                barX = x;
            }
        }
        finish(bar, barX, true);
    }

    ScreenLayout const &layout;
    std::vector<unsigned short> const &thickness;
    PList<PImgDithSquare> &list;
};

// The common prelude: false when nothing is to be made.
bool layOut(BITMAPINFOHEADER const *header, unsigned short angle, unsigned short cell, float scale,
            ScreenLayout &layout)
{
    // A negative or unbounded scale makes no screen.
    if (!header || !(scale >= 0.0f) || !std::isfinite(scale) || (angle != 0 && angle != 180))
        return false;
    layout.scale = scale;
    layout.cell = cell < smallestCell ? smallestCell : cell;
    layout.scaledHeight = header->biHeight * scale;
    layout.scaledWidth = header->biWidth * scale;
    if (IS_ZERO(static_cast<double>(scale), 1e-09) || layout.cell < scale) {
        layout.stepY = layout.stepX = 1.0f;
    } else {
        layout.stepY = layout.cell / scale;
        layout.stepX = layout.stepY >= 2.0f ? 2.0f : layout.stepY;
    }
    layout.pitch = layout.stepX * scale;
    layout.gridRows = static_cast<unsigned short>(truncateToInt(header->biHeight / layout.stepY));
    layout.gridColumns = static_cast<unsigned short>(truncateToInt(header->biWidth / layout.stepX));
    return true;
}

} // namespace

void GImage::makeDitherSquares(unsigned short angle, unsigned short cell, float scale, int darkIsThick,
                               PList<PImgDithSquare> &squares)
{
    ScreenLayout layout;
    if (!pixels || !layOut(header, angle, cell, scale, layout))
        return;
    const unsigned long cells = static_cast<unsigned long>(layout.gridRows) * layout.gridColumns;
    std::vector<unsigned short> levels(cells), thickness(cells);
    const unsigned short rowBits = static_cast<unsigned short>(header->biWidth * header->biBitCount);
    const unsigned short bytes = static_cast<unsigned short>(header->biBitCount >> 3);
    unsigned short minLevel = 765, maxLevel = 0;
    for (unsigned long r = 0; r < layout.gridRows; ++r)
        for (unsigned long c = 0; c < layout.gridColumns; ++c) {
            const float top = r * layout.stepY, left = c * layout.stepX;
            const unsigned short level =
                getRGBAverage(top, top + layout.stepY, left, left + layout.stepX, rowBits, bytes);
            levels[r * layout.gridColumns + c] = level;
            maxLevel = level > maxLevel ? level : maxLevel;
            minLevel = level < minLevel ? level : minLevel;
        }
    float k, b;
    if (minLevel != maxLevel || layout.gridRows == 0) {
        k = static_cast<float>(layout.cell) / static_cast<float>(minLevel - maxLevel);
        b = maxLevel * k;
    } else {
        // A flat dark picture gets full bars, a flat light one none; 384 halves 0 to 765.
        k = 0.0f;
        b = maxLevel < 384 ? -static_cast<float>(layout.cell) : 0.0f;
    }
    for (unsigned long i = 0; i < cells; ++i)
        thickness[i] = static_cast<unsigned short>(darkIsThick ? truncateToInt(levels[i] * k - b)
                                                               : truncateToInt(-(levels[i] * k)));
    BarRows(layout, thickness, squares).build(layout.cell >> 1, false, 0);
}

void GImage::makeDitherSquares(unsigned short angle, unsigned short cell, float scale, int invertBlack,
                               PList<PImgDithSquare> &list1, PList<PImgDithSquare> &list2,
                               PList<PImgDithSquare> &list3, PList<PImgDithSquare> &list4)
{
    ScreenLayout layout;
    if (!pixels || !layOut(header, angle, cell, scale, layout))
        return;
    const unsigned long cells = static_cast<unsigned long>(layout.gridRows) * layout.gridColumns;
    std::vector<unsigned short> grids[4];
    for (auto &grid : grids)
        grid.resize(cells + 1);
    const unsigned short rowBits = static_cast<unsigned short>(header->biWidth * header->biBitCount);
    const unsigned short bytes = static_cast<unsigned short>(header->biBitCount >> 3);
    for (unsigned long r = 0; r < layout.gridRows; ++r)
        for (unsigned long c = 0; c < layout.gridColumns; ++c) {
            const float top = r * layout.stepY, bottom = top + layout.stepY;
            const float left = c * layout.stepX, right = left + layout.stepX;
            const int red = getRAverage(top, bottom, left, right, rowBits, bytes);
            const int green = getGAverage(top, bottom, left, right, rowBits, bytes);
            const int blue = getBAverage(top, bottom, left, right, rowBits, bytes);
            const int m = red > green ? (red > blue ? red : blue) : (green > blue ? green : blue);
            const int levels[4] = {m - red, m - blue, m - green, invertBlack == 0 ? m : 255 - m};
            for (int g = 0; g < 4; ++g)
                grids[g][r * layout.gridColumns + c] = static_cast<unsigned short>(levels[g] * layout.cell / 255);
        }
    // The four screens start half a cell, three quarters, one and one and a quarter down.
    const long limit = truncateToInt(scale * layout.stepY * layout.gridRows);
    PList<PImgDithSquare> *lists[4] = {&list1, &list2, &list3, &list4};
    const long startFactors[4] = {4, 6, 8, 10};
    for (int g = 0; g < 4; ++g)
        BarRows(layout, grids[g], *lists[g]).build((layout.cell * startFactors[g]) >> 3, true, limit);
}
