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
    int sum = 0;
    if (entries >= windowEntries) {
        // The usual case, a loop of known length.
        for (unsigned int i = 0; i < windowEntries; ++i)
            sum += window[i] * kernel[i];
    } else {
        for (unsigned int i = 0; i < entries; ++i)
            sum += window[i] * kernel[i];
    }
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
                    unsigned char *w = window;
                    if (kind == trueColour) {
                        for (unsigned long dr = 0; dr < windowSide; ++dr, w += windowSide) {
                            unsigned char const *at = rows.row(r - 1 + dr) + (c - 1) * bytes + p;
                            w[0] = at[0];
                            w[1] = at[bytes];
                            w[2] = at[2 * bytes];
                        }
                    } else {
                        unsigned char const *lut = channel[kind == colourPalette ? p : 0];
                        for (unsigned long dr = 0; dr < windowSide; ++dr, w += windowSide) {
                            unsigned char const *at = rows.row(r - 1 + dr) + c - 1;
                            w[0] = lut[at[0]];
                            w[1] = lut[at[1]];
                            w[2] = lut[at[2]];
                        }
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

namespace {

// The sort order of the rank filters: ascending by red plus green plus blue.
int brightness(GColor const &color) { return color.getR() + color.getG() + color.getB(); }

// Orders the first `count` colours by brightness, keeping the order of equals: keys and
// positions packed in one word are sorted, then the colours are put in that order.
void sortByBrightness(GColor *colors, unsigned int count, unsigned long *keys, GColor *sorted)
{
    for (unsigned int i = 0; i < count; ++i) {
        const unsigned long key = (static_cast<unsigned long>(brightness(colors[i])) << 16) | i;
        unsigned int j = i;
        for (; j > 0 && keys[j - 1] > key; --j)
            keys[j] = keys[j - 1];
        keys[j] = key;
    }
    for (unsigned int i = 0; i < count; ++i)
        sorted[i] = colors[keys[i] & 0xFFFF];
    for (unsigned int i = 0; i < count; ++i)
        colors[i] = sorted[i];
}

// The extreme of a sorted window nearer to its mean, the mean taken in wrapping 8-bit sums.
GColor nearerExtreme(GColor const *sorted, unsigned int count)
{
    unsigned char r = 0, g = 0, b = 0;
    for (unsigned int i = 0; i < count; ++i) {
        r = static_cast<unsigned char>(r + sorted[i].getR());
        g = static_cast<unsigned char>(g + sorted[i].getG());
        b = static_cast<unsigned char>(b + sorted[i].getB());
    }
    // Deliberate: the sums wrap at 256 before they are divided.
    const int mr = r / count, mg = g / count, mb = b / count;
    auto distance = [&](GColor const &c) {
        return static_cast<unsigned short>(std::abs(mr - c.getR()) + std::abs(mg - c.getG()) + std::abs(mb - c.getB()));
    };
    GColor const &first = sorted[0], &last = sorted[count - 1];
    return distance(first) < distance(last) ? first : last;
}

GColor rankChoice(int mode, GColor *window, unsigned int count, unsigned long *keys, GColor *sorted)
{
    sortByBrightness(window, count, keys, sorted);
    switch (mode) {
    case rankMedian: return window[count / 2];
    case rankMinimum: return window[0];
    case rankMaximum: return window[count - 1];
    case rankNearerExtreme: return nearerExtreme(window, count);
    default: return GColor();
    }
}

} // namespace

int GImage::NLFilter(int mode, unsigned char size)
{
    if (!header || !pixels || !holdsWholeRows())
        return resultImpossible;
    const unsigned int entries = static_cast<unsigned int>(size) * size;
    // A window of no entries still has its first to choose.
    const unsigned int count = entries ? entries : 1;
    auto *copy = static_cast<unsigned char *>(PGlobalAlloc(header->biSizeImage ? header->biSizeImage : 1));
    const unsigned int held = entries > windowEntries ? entries : windowEntries;
    GColor *window = new (std::nothrow) GColor[2 * held];
    auto *keys = static_cast<unsigned long *>(PGlobalAlloc(held * sizeof(unsigned long)));
    IndexCache *indices = new (std::nothrow) IndexCache(*this);
    if (!copy || !window || !keys || !indices) {
        PGlobalFree(copy);
        delete[] window;
        PGlobalFree(keys);
        delete indices;
        return resultNoMemory;
    }
    // The second half of the block takes each sort's result.
    GColor *sorted = window + held;
    std::memcpy(copy, pixels, header->biSizeImage);

    const GImageRows rows(pixels, *header);
    const GImageRows out(copy, *header);
    const int kind = getImageType();
    const unsigned long bytes = rows.bytesPerPixel();
    const unsigned long channels = bytes < 3 ? bytes : 3;
    const unsigned long half = size >> 1;
    const bool inside = half >= 1 && (kind == trueColour ? bytes >= 3 : bytes == 1);

    for (unsigned long r = half; r + half < rows.count(); ++r) {
        unsigned char *to = out.row(r) + half * bytes;
        for (unsigned long c = half; c + half < rows.columns(); ++c, to += bytes) {
            if (inside) {
                GColor *w = window;
                for (unsigned long dr = 0; dr < windowSide; ++dr) {
                    unsigned char const *at = rows.row(r - 1 + dr) + (c - 1) * bytes;
                    for (unsigned long dc = 0; dc < windowSide; ++dc, at += bytes)
                        *w++ = kind == trueColour ? GColor(at[0], at[1], at[2]) : entry(*at);
                }
            } else {
                getSubset(static_cast<unsigned short>(r), static_cast<unsigned short>(c), windowSide, kind, window);
            }
            const GColor choice = rankChoice(mode, window, count, keys, sorted);
            if (kind != trueColour) {
                to[0] = (*indices)(choice.getR(), choice.getG(), choice.getB());
            } else {
                const unsigned char rgb[3] = {choice.getR(), choice.getG(), choice.getB()};
                std::memcpy(to, rgb, channels);
            }
        }
    }
    PGlobalFree(pixels);
    pixels = copy;
    delete[] window;
    PGlobalFree(keys);
    delete indices;
    modified = 1;
    return resultOk;
}

namespace {

const unsigned int jitterTableSize = 1024;

// Noise tables, drawn from the runtime's unseeded rand on every call.
struct JitterTables {
    int offsets[jitterTableSize];
    double randomX[jitterTableSize];
    double randomY[jitterTableSize];

    void fill()
    {
        for (double &x : randomX)
            x = (std::rand() % 1024) * 0.0009765625;
        for (double &y : randomY)
            y = (std::rand() % 1024) * 0.0009765625;
        for (int &offset : offsets)
            offset = static_cast<int>((std::rand() % 1024) * 0.0009765625 * 1024.0);
    }
};

// The quantiser of one channel. Every table value is below 1, so the noise, a truncated
// table value, is 0 at every position and the result depends on the channel alone.
unsigned char jittered(unsigned int c, unsigned int amount)
{
    if (amount == 0)
        return static_cast<unsigned char>(c & 0xF8);
    if (c >= 248)
        return static_cast<unsigned char>(c);
    const int noiseX = 0, noiseY = 0;
    if (static_cast<int>(c % 8) <= static_cast<int>(noiseX * 9.0))
        c += 8;
    const int t = (static_cast<int>(noiseY * (2.0 * amount) + 0.5) - static_cast<int>(amount)) * 8 + static_cast<int>(c);
    if (t >= 0 && t <= 255)
        c = static_cast<unsigned int>(t);
    return static_cast<unsigned char>(c & 0xF8);
}

} // namespace

int GImage::jitter(unsigned char amount)
{
    if (!header || !pixels || !holdsWholeRows())
        return resultImpossible;
    auto *tables = static_cast<JitterTables *>(PGlobalAlloc(sizeof(JitterTables)));
    if (!tables)
        return resultNoMemory;
    tables->fill();
    PGlobalFree(tables);

    unsigned char channel[256];
    for (unsigned int v = 0; v < 256; ++v)
        channel[v] = jittered(v, amount);
    const int kind = getImageType();
    const GImageRows rows(pixels, *header);
    const unsigned long bytes = rows.bytesPerPixel();
    if (kind == trueColour) {
        const unsigned long channels = bytes < 3 ? bytes : 3;
        rows.forEachPixel([&](unsigned char *p) {
            for (unsigned long k = 0; k < channels; ++k)
                p[k] = channel[p[k]];
        });
    } else {
        // A palette picture's result depends on its index alone.
        unsigned char mapped[256];
        for (unsigned int i = 0; i < 256; ++i) {
            GColor const &e = entry(i);
            const unsigned char r = channel[e.getR()];
            mapped[i] = kind == greyPalette ? getIndex(GColor(r, r, r))
                                            : getIndex(GColor(r, channel[e.getG()], channel[e.getB()]));
        }
        rows.forEachPixel([&](unsigned char *p) { p[0] = mapped[p[0]]; });
    }
    modified = 1;
    return resultOk;
}

int GImage::mosaic(unsigned short blockSize)
{
    if (!header || !pixels || !holdsWholeRows())
        return resultImpossible;
    const unsigned long side = blockSize < 2 ? 2 : blockSize > 63 ? 63 : blockSize;
    const double area = static_cast<double>(side * side);
    const int kind = getImageType();
    const GImageRows rows(pixels, *header);
    const unsigned long bytes = rows.bytesPerPixel();
    const unsigned long channels = kind == trueColour ? (bytes < 3 ? bytes : 3) : 0;
    IndexCache *indices = new (std::nothrow) IndexCache(*this);
    if (!indices)
        return resultNoMemory;

    for (unsigned long top = 0; top + side <= rows.count(); top += side) {
        for (unsigned long left = 0; left + side <= rows.columns(); left += side) {
            unsigned long sums[3] = {0, 0, 0};
            for (unsigned long r = top; r < top + side; ++r) {
                unsigned char const *at = rows.row(r) + left * bytes;
                for (unsigned long c = 0; c < side; ++c, at += bytes) {
                    if (kind == trueColour) {
                        for (unsigned long k = 0; k < channels; ++k)
                            sums[k] += at[k];
                    } else {
                        GColor const &e = entry(*at);
                        sums[0] += e.getR();
                        sums[1] += e.getG();
                        sums[2] += e.getB();
                    }
                }
            }
            unsigned char means[3];
            for (int k = 0; k < 3; ++k)
                means[k] = capped(roundHalfAway(sums[k] / area));
            if (kind == greyPalette)
                means[0] = (*indices)(means[0], means[0], means[0]);
            else if (kind == colourPalette)
                means[0] = (*indices)(means[0], means[1], means[2]);
            const unsigned long written = kind == trueColour ? channels : 1;
            for (unsigned long r = top; r < top + side; ++r) {
                unsigned char *at = rows.row(r) + left * bytes;
                for (unsigned long c = 0; c < side; ++c, at += bytes)
                    std::memcpy(at, means, written);
            }
        }
    }
    delete indices;
    modified = 1;
    return resultOk;
}
