// Geometry of GImage: rotation and scaling, both resampling into a new buffer.
#include "imaging/GImage.h"

#include "foundation/PMemory.h"
#include "foundation/PNumerics.h"
#include "graphics/DibFormat.h"
#include "imaging/GImageRows.h"

#include <windows.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

// A zero-filled buffer of `rows` rows of `stride` bytes, or null when it can't be had or its
// size doesn't fit the header's 32-bit field. An empty picture still gets a block of its own.
unsigned char *newRows(unsigned long stride, unsigned long rows)
{
    const unsigned long long size = static_cast<unsigned long long>(stride) * rows;
    if (size > 0xFFFFFFFFull)
        return nullptr;
    return static_cast<unsigned char *>(PGlobalAlloc(size ? static_cast<unsigned long>(size) : 1));
}

// One pixel of `bytes` bytes; the usual sizes copy without a library call.
inline void copyPixel(unsigned char *to, unsigned char const *from, unsigned long bytes)
{
    if (bytes == 1) {
        to[0] = from[0];
    } else if (bytes == 3) {
        to[0] = from[0];
        to[1] = from[1];
        to[2] = from[2];
    } else {
        std::memcpy(to, from, bytes);
    }
}

// Side of the square tiles a right-angle turn copies, so that both buffers stay in cache. Small:
// rows a power of two apart fall into the same cache sets, which a column walk of 64 overflows.
const unsigned long turnTile = 8;

// A square picture turned by a right angle within its own buffer, in cycles of four pixels
// taken tile by tile so that the four places of a tile stay in cache. Left: new row j, column k
// is old row n - 1 - k, column j; right the other way round. Row padding becomes zero, as in
// fresh rows.
void turnSquareInPlace(GImageRows const &rows, bool left)
{
    const unsigned long n = rows.columns(), bytes = rows.bytesPerPixel();
    auto at = [&](unsigned long row, unsigned long column) { return rows.row(row) + column * bytes; };
    for (unsigned long j0 = 0; j0 < n / 2; j0 += turnTile) {
        const unsigned long j1 = j0 + turnTile < n / 2 ? j0 + turnTile : n / 2;
        for (unsigned long k0 = 0; k0 < (n + 1) / 2; k0 += turnTile) {
            const unsigned long k1 = k0 + turnTile < (n + 1) / 2 ? k0 + turnTile : (n + 1) / 2;
            for (unsigned long j = j0; j < j1; ++j) {
                // The four places of the cycle for k = k0, and their steps as k grows.
                unsigned char *places[4] = {at(j, k0), at(n - 1 - k0, j), at(n - 1 - j, n - 1 - k0), at(k0, n - 1 - j)};
                const long stride = static_cast<long>(rows.rowBytes()), step = static_cast<long>(bytes);
                const long steps[4] = {step, -stride, -step, stride};
                for (unsigned long k = k0; k < k1; ++k) {
                    unsigned char first[4];
                    copyPixel(first, places[0], bytes);
                    if (left) {
                        copyPixel(places[0], places[1], bytes);
                        copyPixel(places[1], places[2], bytes);
                        copyPixel(places[2], places[3], bytes);
                        copyPixel(places[3], first, bytes);
                    } else {
                        copyPixel(places[0], places[3], bytes);
                        copyPixel(places[3], places[2], bytes);
                        copyPixel(places[2], places[1], bytes);
                        copyPixel(places[1], first, bytes);
                    }
                    for (int i = 0; i < 4; ++i)
                        places[i] += steps[i];
                }
            }
        }
    }
    for (unsigned long r = 0; r < n; ++r)
        std::memset(at(r, n), 0, rows.rowBytes() - n * bytes);
}

// Degrees to radians by 3.1415926 / 180, the factor the rotation is defined with.
const double radiansPerDegree = 0.017453292222222222;

// Sine and cosine this close to 0 count as 0, so that right angles turn cleanly.
float snapped(double value)
{
    const float narrow = static_cast<float>(value);
    return narrow > -0.0001f && narrow < 0.0001f ? 0.0f : narrow;
}

} // namespace

bool GImage::holdsWholeRows() const
{
    if (!header || !pixels || header->biWidth < 0 || header->biHeight < 0)
        return false;
    return static_cast<unsigned long long>(dibStride(*header)) * static_cast<unsigned long>(header->biHeight) <=
           header->biSizeImage;
}

void GImage::replacePixels(unsigned char *newPixels, unsigned long width, unsigned long height)
{
    header->biWidth = static_cast<LONG>(width);
    header->biHeight = static_cast<LONG>(height);
    header->biSizeImage = dibStride(*header) * height;
    PGlobalFree(pixels);
    pixels = newPixels;
}

int GImage::rotate(float degrees, GColor const &background, int interpolate)
{
    if (!header || !pixels)
        return resultImpossible;
    // An angle that is no number turns the picture nowhere.
    if (!std::isfinite(degrees))
        return resultImpossible;
    if (!holdsWholeRows())
        return resultImpossible;
    const GImageRows from(pixels, *header);
    const unsigned long bytes = from.bytesPerPixel();
    const unsigned long width = static_cast<unsigned long>(header->biWidth);
    const unsigned long height = static_cast<unsigned long>(header->biHeight);

    if (std::fabs(std::fabs(static_cast<double>(degrees)) - 90.0) < 0.5) {
        if (width == height && bytes >= 1 && bytes <= 4) {
            turnSquareInPlace(from, degrees > 0);
            header->biSizeImage = dibStride(*header) * height;
            modified = 1;
            return resultOk;
        }
        const unsigned long stride = dibStride(height, header->biBitCount);
        unsigned char *turned = newRows(stride, width);
        if (!turned)
            return resultNoMemory;
        const bool left = degrees > 0;
        for (unsigned long j0 = 0; j0 < width; j0 += turnTile) {
            const unsigned long j1 = j0 + turnTile < width ? j0 + turnTile : width;
            for (unsigned long k0 = 0; k0 < height; k0 += turnTile) {
                const unsigned long k1 = k0 + turnTile < height ? k0 + turnTile : height;
                for (unsigned long j = j0; j < j1; ++j) {
                    unsigned char *to = turned + j * stride + k0 * bytes;
                    // Left: new row j, column k is old row height - 1 - k, column j.
                    // Right: new row j, column k is old row k, column width - 1 - j.
                    for (unsigned long k = k0; k < k1; ++k, to += bytes)
                        copyPixel(to, left ? from.row(height - 1 - k) + j * bytes : from.row(k) + (width - 1 - j) * bytes,
                                  bytes);
                }
            }
        }
        replacePixels(turned, height, width);
        modified = 1;
        return resultOk;
    }

    // Deliberate: true colour, too, takes its background from the palette, at the index found.
    const unsigned char backgroundIndex = getIndex(background);
    const GColor backgroundColor = entry(backgroundIndex);

    // Whole turns come off by subtraction, which is exact where the angle's float can hold the
    // steps; fmod gives the same value and ends for any size of angle.
    if (degrees >= 360.0f)
        degrees = static_cast<float>(std::fmod(static_cast<double>(degrees), 360.0));
    const double radians = degrees * radiansPerDegree;
    const float cosine = snapped(std::cos(radians)), sine = snapped(std::sin(radians));

    const unsigned short w = static_cast<unsigned short>(width), h = static_cast<unsigned short>(height);
    const PCoord<short> centre(static_cast<short>(w >> 1), static_cast<short>(h >> 1));
    PCoord<short> corners[4] = {{0, 0},
                                {static_cast<short>(w - 1), 0},
                                {0, static_cast<short>(h - 1)},
                                {static_cast<short>(w - 1), static_cast<short>(h - 1)}};
    int lowX = 0x7FFF, highX = -0x8000, lowY = 0x7FFF, highY = -0x8000;
    for (PCoord<short> &corner : corners) {
        corner.rotate(degrees, centre);
        lowX = corner.xval() < lowX ? corner.xval() : lowX;
        highX = corner.xval() > highX ? corner.xval() : highX;
        lowY = corner.yval() < lowY ? corner.yval() : lowY;
        highY = corner.yval() > highY ? corner.yval() : highY;
    }
    const unsigned short newWidth = static_cast<unsigned short>(std::abs(highX - lowX + 1));
    const unsigned short newHeight = static_cast<unsigned short>(std::abs(highY - lowY + 1));
    const unsigned long stride = dibStride(newWidth, header->biBitCount);
    unsigned char *turned = newRows(stride, newHeight);
    if (!turned)
        return resultNoMemory;

    // The background as a pixel: the index, or red, green, blue.
    unsigned char fill[4] = {backgroundIndex, 0, 0, 0};
    if (bytes > 1) {
        fill[0] = backgroundColor.getR();
        fill[1] = backgroundColor.getG();
        fill[2] = backgroundColor.getB();
    }
    const unsigned long filled = bytes < 3 ? bytes : 3;

    // The products of each column's offset, rounded as the per-pixel products would be.
    std::vector<float> columnCos(newWidth), columnSin(newWidth);
    for (unsigned long c = 0; c < newWidth; ++c) {
        const float dx = static_cast<short>(c - (newWidth >> 1));
        columnCos[c] = dx * cosine;
        columnSin[c] = dx * sine;
    }
    const float halfW = static_cast<float>(w >> 1), halfH = static_cast<float>(h >> 1);
    for (unsigned long r = 0; r < newHeight; ++r) {
        const float dy = static_cast<short>(r - (newHeight >> 1));
        const float rowSin = dy * sine, rowCos = dy * cosine;
        unsigned char *to = turned + r * stride;
        for (unsigned long c = 0; c < newWidth; ++c, to += bytes) {
            const float sourceX = columnCos[c] + rowSin + halfW;
            const float sourceY = rowCos - columnSin[c] + halfH;
            // Truncation toward zero: a source just left of or above the picture still lands in it.
            const long ix = static_cast<long>(sourceX), iy = static_cast<long>(sourceY);
            if (ix < 0 || iy < 0 || ix >= w || iy >= h)
                copyPixel(to, fill, filled);
            else
                copyPixel(to, from.row(iy) + ix * bytes, bytes);
        }
    }
    // Deliberate: the interpolation weights are truncated fractions, always 0, so the flag
    // yields the upper-left sample as nearest sampling does.
    static_cast<void>(interpolate);

    replacePixels(turned, newWidth, newHeight);
    if (degrees != 0.0f)
        modified = 1;
    return resultOk;
}

int GImage::scale(float xFactor, float yFactor, int interpolate)
{
    if (!header || !pixels || IS_ZERO(static_cast<double>(xFactor), 1e-09) ||
        IS_ZERO(static_cast<double>(yFactor), 1e-09))
        return resultImpossible;
    // A negative or unbounded factor would sample before the picture or nowhere.
    if (!(xFactor > 0.0f) || !(yFactor > 0.0f) || !std::isfinite(xFactor) || !std::isfinite(yFactor))
        return resultImpossible;
    if (!holdsWholeRows())
        return resultImpossible;
    const GImageRows from(pixels, *header);
    const unsigned long bytes = from.bytesPerPixel();
    const unsigned long width = static_cast<unsigned long>(header->biWidth);
    const unsigned long height = static_cast<unsigned long>(header->biHeight);

    const float wide = static_cast<float>(header->biWidth) * xFactor;
    const float high = static_cast<float>(header->biHeight) * yFactor;
    // The new sides keep their low 16 bits; a float past 64 bits has none left.
    auto lowBits = [](float side) {
        return static_cast<unsigned short>(side < 18446744073709551616.0f ? static_cast<unsigned long long>(side) : 0);
    };
    const unsigned short newWidth = lowBits(wide), newHeight = lowBits(high);
    const unsigned long stride = dibStride(newWidth, header->biBitCount);
    // A picture that doesn't grow is scaled within its own buffer: every pixel is written at or
    // before the place it is read from, and after every place read before it.
    const bool inPlace = xFactor <= 1.0f && yFactor <= 1.0f;
    unsigned char *scaled = inPlace ? pixels : newRows(stride, newHeight);
    if (!scaled)
        return resultNoMemory;

    // Source columns, once; float division may round a last column up to the width, which
    // then reads the last one.
    std::vector<unsigned long> sourceColumn(newWidth);
    for (unsigned long c = 0; c < newWidth; ++c) {
        const unsigned long ix = static_cast<unsigned long>(static_cast<float>(c) / xFactor);
        sourceColumn[c] = (ix < width ? ix : width - 1) * bytes;
    }
    for (unsigned long r = 0; r < newHeight && height > 0; ++r) {
        unsigned long iy = static_cast<unsigned long>(static_cast<float>(r) / yFactor);
        if (iy >= height)
            iy = height - 1;
        unsigned char const *row = from.row(iy);
        unsigned char *to = scaled + r * stride;
        if (bytes == 1)
            for (unsigned long c = 0; c < newWidth; ++c)
                to[c] = row[sourceColumn[c]];
        else if (bytes == 3)
            for (unsigned long c = 0; c < newWidth; ++c, to += 3)
                copyPixel(to, row + sourceColumn[c], 3);
        else
            for (unsigned long c = 0; c < newWidth; ++c, to += bytes)
                copyPixel(to, row + sourceColumn[c], bytes);
        if (inPlace)
            std::memset(scaled + r * stride + newWidth * bytes, 0, stride - newWidth * bytes);
    }
    // Deliberate: the interpolation weights are truncated fractions, always 0, so the flag
    // yields the nearest-below sample either way.
    static_cast<void>(interpolate);

    if (inPlace) {
        header->biWidth = static_cast<LONG>(newWidth);
        header->biHeight = static_cast<LONG>(newHeight);
        header->biSizeImage = stride * newHeight;
        // The buffer gives back what it no longer holds, where the heap can.
        if (void *smaller = PGlobalReAlloc(pixels, header->biSizeImage ? header->biSizeImage : 1))
            pixels = static_cast<unsigned char *>(smaller);
    } else {
        replacePixels(scaled, newWidth, newHeight);
    }
    modified = 1;
    return resultOk;
}
