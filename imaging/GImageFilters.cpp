// Neighbourhood filters of GImage: rank filters, convolutions, edge kernels, jitter and mosaic.
#include "imaging/GImage.h"

#include "foundation/PMemory.h"
#include "graphics/DibFormat.h"
#include "imaging/GImageRows.h"

#include <windows.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

// Every filter reads a 3 by 3 window, whatever its size argument says.
const unsigned int windowSide = 3;
const unsigned int windowEntries = windowSide * windowSide;

// Modes of NLFilter.
enum RankMode { rankMedian = 4, rankMinimum = 5, rankMaximum = 6, rankNearerExtreme = 7 };

// Image kinds of getImageType.
enum ImageKind { greyPalette = 0, colourPalette = 1, trueColour = 2 };

struct Kernel {
    short weights[windowEntries];
    int divisor;
};

// LFilter's kernels, modes 8 to 16.
const int firstLinearMode = 8;
const Kernel linearKernels[] = {
    {{1, 1, 1, 1, 1, 1, 1, 1, 1}, 9},          {{1, 1, 1, 1, 2, 1, 1, 1, 1}, 10},
    {{1, 1, 1, 1, 4, 1, 1, 1, 1}, 12},         {{1, 1, 1, 1, 12, 1, 1, 1, 1}, 20},
    {{1, 2, 1, 2, 4, 2, 1, 2, 1}, 16},         {{-1, -1, -1, -1, 9, -1, -1, -1, -1}, 1},
    {{0, -1, 0, -1, 5, -1, 0, -1, 0}, 1},      {{1, -2, 1, -2, 5, -2, 1, -2, 1}, 1},
    {{0, -1, 0, -1, 20, -1, 0, -1, 0}, 1},
};
const int linearModes = sizeof linearKernels / sizeof linearKernels[0];

// Edge kernels by family (0, 1, 2; 3 is 2) and direction 0 to 7; divisor 1.
const short edgeKernels[3][8][windowEntries] = {
    {{1, 1, 1, 1, -2, -1, 1, -1, -1},
     {1, 1, 1, 1, -2, 1, -1, -1, -1},
     {1, 1, 1, -1, -2, 1, -1, -1, 1},
     {1, 1, -1, 1, -2, -1, 1, 1, -1},
     {-1, 1, 1, -1, -2, 1, -1, 1, 1},
     {1, -1, -1, 1, -2, -1, 1, 1, 1},
     {-1, -1, -1, 1, -2, 1, 1, 1, 1},
     {-1, -1, 1, -1, -2, 1, 1, 1, 1}},
    {{1, 1, 0, 1, 1, -1, 0, -1, -1},
     {1, 1, 1, 0, 1, 0, -1, -1, -1},
     {0, 1, 1, -1, 1, 1, -1, -1, 0},
     {1, 0, -1, 1, 1, -1, 1, 0, -1},
     {-1, 0, 1, -1, 1, 1, -1, 0, 1},
     {0, -1, -1, 1, 1, -1, 1, 1, 0},
     {-1, -1, -1, 0, 1, 0, 1, 1, 1},
     {-1, -1, 0, -1, 1, 1, 0, 1, 1}},
    {{2, 1, 0, 1, 0, -1, 0, -1, -2},
     {1, 2, 1, 0, 0, 0, -1, -2, -1},
     {0, 1, 2, -1, 0, 1, -2, -1, 0},
     {1, 0, -1, 2, 0, -2, 1, 0, -1},
     {-1, 0, 1, -2, 0, 2, -1, 0, 1},
     {0, -1, -2, 1, 0, -1, 2, 1, 0},
     {-1, -2, -1, 0, 0, 0, 1, 2, 1},
     {-2, -1, 0, -1, 0, 1, 0, 1, 2}},
};

// The kernel of an edge family and direction, or null for one the table lacks.
short const *edgeKernel(int family, int direction)
{
    if (family < 0 || family > 3 || direction < 0 || direction > 7)
        return nullptr;
    return edgeKernels[family == 3 ? 2 : family][direction];
}

// The sum of the first `entries` products, divided, folded to its magnitude and capped at 255.
// Entries past the kernel's nine weigh nothing.
int convolve(unsigned char const *window, short const *kernel, unsigned int entries, int divisor)
{
    const unsigned int used = entries < windowEntries ? entries : windowEntries;
    int sum = 0;
    for (unsigned int i = 0; i < used; ++i)
        sum += window[i] * kernel[i];
    if (sum * divisor == 0)
        return 0;
    // Deliberate: negative responses fold to their magnitude rather than clip to 0.
    const int value = std::abs(sum / divisor);
    return value < 255 ? value : 255;
}

unsigned char capped(int value) { return static_cast<unsigned char>(value < 255 ? value : 255); }

// A block from PGlobalAlloc of `count` elements, at least the window's nine, zero-filled.
template <class T>
T *windowBlock(unsigned int count)
{
    return static_cast<T *>(PGlobalAlloc((count > windowEntries ? count : windowEntries) * sizeof(T)));
}

} // namespace

// The nearest palette index of each colour met, in a direct-mapped table: pictures repeat colours.
class GImage::IndexCache {
public:
    explicit IndexCache(GImage &image) : image(image)
    {
        for (unsigned long &key : keys)
            key = empty;
    }

    unsigned char operator()(unsigned char r, unsigned char g, unsigned char b)
    {
        const unsigned long rgb = r | (g << 8) | (static_cast<unsigned long>(b) << 16);
        const unsigned int slot = static_cast<unsigned int>((rgb * 2654435761u) >> (32 - slotBits)) & (slots - 1);
        if (keys[slot] != rgb) {
            keys[slot] = rgb;
            values[slot] = image.getIndex(GColor(r, g, b));
        }
        return values[slot];
    }

private:
    static const unsigned int slotBits = 12;
    static const unsigned int slots = 1u << slotBits;
    static const unsigned long empty = 0xFFFFFFFFul; // no colour has a top byte

    GImage &image;
    unsigned long keys[slots];
    unsigned char values[slots];
};

template <class F>
int GImage::filterPlanes(unsigned char size, F const &f)
{
    if (!header || !pixels || !holdsWholeRows())
        return resultImpossible;
    const unsigned int entries = static_cast<unsigned int>(size) * size;
    auto *copy = static_cast<unsigned char *>(PGlobalAlloc(header->biSizeImage ? header->biSizeImage : 1));
    unsigned char *window = windowBlock<unsigned char>(entries);
    IndexCache *indices = new (std::nothrow) IndexCache(*this);
    if (!copy || !window || !indices) {
        PGlobalFree(copy);
        PGlobalFree(window);
        delete indices;
        return resultNoMemory;
    }
    std::memcpy(copy, pixels, header->biSizeImage);

    const GImageRows rows(pixels, *header);
    const GImageRows out(copy, *header);
    const int kind = getImageType();
    const unsigned long bytes = rows.bytesPerPixel();
    const unsigned long planes = kind == trueColour ? (bytes < 3 ? bytes : 3) : kind == colourPalette ? 3 : 1;
    const unsigned long half = size >> 1;
    // Palette planes read through the entries: type 0 always the red, type 1 the plane's channel.
    unsigned char channel[3][256];
    for (unsigned int i = 0; i < 256; ++i) {
        channel[0][i] = entry(i).getR();
        channel[1][i] = entry(i).getG();
        channel[2][i] = entry(i).getB();
    }
    // A window around a position of a margin under 1 may leave the picture; it is read safely.
    const bool inside = half >= 1 && (kind == trueColour ? bytes >= 3 : bytes == 1);

    for (unsigned long r = half; r + half < rows.count(); ++r) {
        unsigned char *to = out.row(r) + half * bytes;
        for (unsigned long c = half; c + half < rows.columns(); ++c, to += bytes) {
            int values[3] = {0, 0, 0};
            for (unsigned long p = 0; p < planes; ++p) {
                if (inside) {
                    const unsigned long plane = kind == trueColour ? p : 0;
                    unsigned char const *lut = channel[kind == colourPalette ? p : 0];
                    unsigned char *w = window;
                    for (unsigned long dr = 0; dr < windowSide; ++dr) {
                        unsigned char const *at = rows.row(r - 1 + dr) + (c - 1) * bytes + plane;
                        for (unsigned long dc = 0; dc < windowSide; ++dc, at += bytes)
                            *w++ = kind == trueColour ? *at : lut[*at];
                    }
                } else {
                    getSubset(static_cast<unsigned short>(r), static_cast<unsigned short>(c),
                              static_cast<int>(kind == greyPalette ? 0 : p), windowSide, kind, window);
                }
                values[p] = f(window, entries);
            }
            if (kind == trueColour) {
                for (unsigned long p = 0; p < planes; ++p)
                    to[p] = static_cast<unsigned char>(values[p]);
            } else {
                const unsigned char v0 = static_cast<unsigned char>(values[0]);
                to[0] = kind == greyPalette ? (*indices)(v0, v0, v0)
                                            : (*indices)(v0, static_cast<unsigned char>(values[1]),
                                                         static_cast<unsigned char>(values[2]));
            }
        }
    }
    PGlobalFree(pixels);
    pixels = copy;
    PGlobalFree(window);
    delete indices;
    modified = 1;
    return resultOk;
}

int GImage::LFilter(int mode, unsigned char size)
{
    if (mode < firstLinearMode || mode >= firstLinearMode + linearModes)
        return filterPlanes(size, [size](unsigned char const *, unsigned int) { return int(size); });
    Kernel const &kernel = linearKernels[mode - firstLinearMode];
    return filterPlanes(size, [&kernel](unsigned char const *window, unsigned int entries) {
        return convolve(window, kernel.weights, entries, kernel.divisor);
    });
}

int GImage::edgeEnhance(int family, int direction, unsigned char size)
{
    short const *kernel = edgeKernel(family, direction);
    if (!kernel)
        return filterPlanes(size, [size](unsigned char const *, unsigned int) { return int(size); });
    return filterPlanes(size, [kernel](unsigned char const *window, unsigned int entries) {
        return convolve(window, kernel, entries, 1);
    });
}

int GImage::edgeDetector(int family, int direction1, int direction2, unsigned char size)
{
    short const *first = edgeKernel(family, direction1);
    short const *second = edgeKernel(family, direction2);
    // A family or direction the table lacks yields size, as in edgeEnhance.
    if (!first || !second)
        return filterPlanes(size, [size](unsigned char const *, unsigned int) { return int(size); });
    return filterPlanes(size, [first, second](unsigned char const *window, unsigned int entries) {
        const double a = convolve(window, first, entries, 1), b = convolve(window, second, entries, 1);
        return int(capped(roundHalfAway(std::sqrt(a * a + b * b))));
    });
}
