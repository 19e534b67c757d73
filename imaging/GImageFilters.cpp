// Neighbourhood filters of GImage: rank filters, convolutions, edge kernels, jitter and mosaic.
#include "imaging/GImage.h"

#include "foundation/PMemory.h"
#include "graphics/DibFormat.h"
#include "imaging/GImageRows.h"

#include <windows.h>

#include <emmintrin.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
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

// A 3 by 3 kernel run along three rows of bytes whose horizontal neighbours lie `step` bytes
// apart, sixteen positions at a time in 16-bit lanes. The divisor becomes a multiplication,
// (sum times multiplier) >> (16 + shift), chosen exact for every sum the kernel can make.
class RowKernel {
public:
    RowKernel(short const *kernel, int divisor) : divisor(divisor), lanes(false), multiplier(0), shift(0)
    {
        int reach = 0;
        bool negative = false;
        for (unsigned int i = 0; i < windowEntries; ++i) {
            weights[i] = kernel[i];
            reach += std::abs(kernel[i]) * 255;
            negative = negative || kernel[i] < 0;
        }
        if (reach > 32767 || divisor < 1)
            return;
        if (divisor == 1) {
            lanes = true;
            return;
        }
        // A kernel of positive weights makes sums from 0 to reach; the multiplication is exact
        // when reach times its excess over 2^(16 + shift) stays below 2^(16 + shift).
        for (int s = 15; s >= 0 && !negative && !lanes; --s) {
            const unsigned long long power = 1ull << (16 + s);
            const unsigned long long m = (power + divisor - 1) / divisor;
            if (m <= 0xFFFF && reach * (m * divisor - power) < power) {
                multiplier = static_cast<unsigned short>(m);
                shift = s;
                lanes = true;
            }
        }
    }

    // out[j] for positions j from 0 to count - 1, each the kernel's value over the window
    // whose centre is rows[1][j].
    void apply(unsigned char const *const rows[3], long step, unsigned long count, unsigned char *out) const
    {
        unsigned long j = 0;
        if (lanes) {
            Tap taps[windowEntries];
            unsigned int used = 0;
            for (unsigned int i = 0; i < windowEntries; ++i)
                if (weights[i] != 0)
                    taps[used++] = Tap{rows[i / 3] + (static_cast<long>(i % 3) - 1) * step, _mm_set1_epi16(weights[i])};
            const __m128i zero = _mm_setzero_si128();
            for (; j + 16 <= count; j += 16) {
                __m128i low = zero, high = zero;
                for (unsigned int t = 0; t < used; ++t) {
                    const __m128i v = _mm_loadu_si128(reinterpret_cast<__m128i const *>(taps[t].at + j));
                    low = _mm_add_epi16(low, _mm_mullo_epi16(_mm_unpacklo_epi8(v, zero), taps[t].weight));
                    high = _mm_add_epi16(high, _mm_mullo_epi16(_mm_unpackhi_epi8(v, zero), taps[t].weight));
                }
                // Saturation caps the magnitudes at 255.
                _mm_storeu_si128(reinterpret_cast<__m128i *>(out + j), _mm_packus_epi16(finish(low), finish(high)));
            }
        }
        for (; j < count; ++j) {
            unsigned char window[windowEntries];
            for (unsigned int i = 0; i < windowEntries; ++i)
                window[i] = rows[i / 3][static_cast<long>(j) + (static_cast<long>(i % 3) - 1) * step];
            out[j] = static_cast<unsigned char>(convolve(window, weights, windowEntries, divisor));
        }
    }

private:
    struct Tap {
        unsigned char const *at;
        __m128i weight;
    };

    // The divided magnitude of eight sums.
    __m128i finish(__m128i sums) const
    {
        if (divisor == 1)
            return _mm_max_epi16(sums, _mm_sub_epi16(_mm_setzero_si128(), sums));
        return _mm_srli_epi16(_mm_mulhi_epu16(sums, _mm_set1_epi16(static_cast<short>(multiplier))), shift);
    }

    short weights[windowEntries];
    int divisor;
    bool lanes;
    unsigned short multiplier;
    int shift;
};

// min(255, the rounding rule on the root of a squared plus b squared), eight at a time. The
// sums are whole and below 2^24, so their float roots round to the same integers.
void magnitudes(unsigned char const *a, unsigned char const *b, unsigned long count, unsigned char *out)
{
    unsigned long j = 0;
    const __m128i zero = _mm_setzero_si128();
    const __m128 half = _mm_set1_ps(0.5f);
    for (; j + 8 <= count; j += 8) {
        const __m128i va = _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<__m128i const *>(a + j)), zero);
        const __m128i vb = _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<__m128i const *>(b + j)), zero);
        const __m128i pairsLow = _mm_unpacklo_epi16(va, vb), pairsHigh = _mm_unpackhi_epi16(va, vb);
        auto rounded = [&](__m128i pairs) {
            const __m128 root = _mm_sqrt_ps(_mm_cvtepi32_ps(_mm_madd_epi16(pairs, pairs)));
            return _mm_cvttps_epi32(_mm_add_ps(root, half));
        };
        const __m128i words = _mm_packs_epi32(rounded(pairsLow), rounded(pairsHigh));
        _mm_storel_epi64(reinterpret_cast<__m128i *>(out + j), _mm_packus_epi16(words, zero));
    }
    for (; j < count; ++j)
        out[j] = capped(roundHalfAway(std::sqrt(static_cast<double>(a[j] * a[j] + b[j] * b[j]))));
}

// What the convolution filters compute: a value per window for the general frame, and rows of
// values for the frame that works in place (apply's arguments; `scratch` holds 2 times count).
class ConstantFilter {
public:
    explicit ConstantFilter(int value) : value(value) {}
    int operator()(unsigned char const *, unsigned int) const { return value; }
    void apply(unsigned char const *const *, long, unsigned long count, unsigned char *out, unsigned char *) const
    {
        std::memset(out, value, count);
    }

private:
    int value;
};

class KernelFilter {
public:
    KernelFilter(short const *kernel, int divisor) : kernel(kernel), divisor(divisor), rows(kernel, divisor) {}
    int operator()(unsigned char const *window, unsigned int entries) const
    {
        return convolve(window, kernel, entries, divisor);
    }
    void apply(unsigned char const *const *window, long step, unsigned long count, unsigned char *out,
               unsigned char *) const
    {
        rows.apply(window, step, count, out);
    }

private:
    short const *kernel;
    int divisor;
    RowKernel rows;
};

class MagnitudeFilter {
public:
    MagnitudeFilter(short const *first, short const *second)
        : first(first), second(second), firstRows(first, 1), secondRows(second, 1)
    {
    }
    int operator()(unsigned char const *window, unsigned int entries) const
    {
        const double a = convolve(window, first, entries, 1), b = convolve(window, second, entries, 1);
        return int(capped(roundHalfAway(std::sqrt(a * a + b * b))));
    }
    void apply(unsigned char const *const *window, long step, unsigned long count, unsigned char *out,
               unsigned char *scratch) const
    {
        firstRows.apply(window, step, count, scratch);
        secondRows.apply(window, step, count, scratch + count);
        magnitudes(scratch, scratch + count, count, out);
    }

private:
    short const *first;
    short const *second;
    RowKernel firstRows;
    RowKernel secondRows;
};

} // namespace

// The nearest palette index of a colour by getIndex's rule, without its search per colour.
// Past entry 0 the measure ignores the target's blue, so the best of entries 1 onward depends
// on red and green alone: it is found once per red and green met. Exact matches are looked up
// among the entries of the same red and green, lowest index first.
class GImage::IndexCache {
public:
    explicit IndexCache(GImage &image) : image(image), colors(image.numColors())
    {
        const unsigned int held = static_cast<unsigned int>(image.colorTable.entryCount);
        // Entries the palette lacks read as black; of those only the first can be chosen.
        considered = held < colors ? held + 1 : colors;
        for (short &first : firstOfPair)
            first = none;
        for (unsigned int i = considered; i-- > 0;) {
            GColor const &e = image.entry(i);
            short &first = firstOfPair[e.getR() | (e.getG() << 8)];
            nextOfPair[i] = first;
            first = static_cast<short>(i);
        }
        for (unsigned long &best : bestOfRest)
            best = unknown;
    }

    unsigned char operator()(unsigned char r, unsigned char g, unsigned char b)
    {
        if (colors == 0)
            return 0;
        const unsigned int pair = r | (g << 8);
        for (short i = firstOfPair[pair]; i != none; i = nextOfPair[i])
            if (image.entry(i).getB() == b)
                return static_cast<unsigned char>(i);
        GColor const &first = image.entry(0);
        const long measure0 = square(first.getR() - r) + square(first.getG() - g) + square(first.getB() - b);
        unsigned long &best = bestOfRest[pair];
        if (best == unknown)
            best = bestPastFirst(r, g);
        // Ties go to the lower index, entry 0 first.
        return static_cast<long>(best >> 8) < measure0 ? static_cast<unsigned char>(best) : 0;
    }

private:
    static const short none = -1;
    static const unsigned long unknown = 0xFFFFFFFFul; // above any measure times 256

    static long square(int d) { return static_cast<long>(d) * d; }

    // The smallest measure of entries 1 onward, times 256, plus its lowest index; above every
    // measure when there is no such entry.
    unsigned long bestPastFirst(int r, int g) const
    {
        unsigned long best = unknown;
        for (unsigned int i = 1; i < considered; ++i) {
            GColor const &e = image.entry(i);
            // Deliberate: past entry 0 the blue term measures against the target's red.
            const unsigned long measure =
                static_cast<unsigned long>(square(e.getR() - r) + square(e.getG() - g) + square(e.getB() - r));
            if (measure < (best >> 8))
                best = measure << 8 | i;
        }
        return best;
    }

    GImage &image;
    unsigned int colors;
    unsigned int considered;
    short firstOfPair[65536];
    short nextOfPair[256];
    unsigned long bestOfRest[65536];
};

bool GImage::filtersInPlace()
{
    const unsigned long bytes = header->biBitCount >> 3;
    return getImageType() == trueColour ? bytes == 3 : bytes == 1;
}

template <class F>
int GImage::filterPlanesInPlace(F const &f)
{
    const GImageRows rows(pixels, *header);
    const int kind = getImageType();
    const unsigned long width = rows.columns(), inner = width > 2 ? width - 2 : 0;
    const unsigned long planes = kind == trueColour ? 0 : kind == colourPalette ? 3 : 1;
    // Two saved rows, two rows of the filter's scratch, and per palette plane three rows of
    // channel values and one of results.
    const unsigned long rowBytes = rows.rowBytes() > 3 * width ? rows.rowBytes() : 3 * width;
    ScratchRows scratch(4 + 4 * planes, rowBytes);
    std::unique_ptr<IndexCache> indices(planes ? new (std::nothrow) IndexCache(*this) : nullptr);
    if (!scratch.ok() || (planes && !indices))
        return resultNoMemory;
    unsigned char *const filterScratch = scratch.row(2);

    unsigned char channel[3][256], greyIndex[256];
    for (unsigned int i = 0; i < 256; ++i) {
        channel[0][i] = entry(i).getR();
        channel[1][i] = entry(i).getG();
        channel[2][i] = entry(i).getB();
        const unsigned char v = static_cast<unsigned char>(i);
        greyIndex[i] = kind == greyPalette ? (*indices)(v, v, v) : 0;
    }

    bool greyRamp = kind == greyPalette;
    for (unsigned int i = 0; i < 256 && greyRamp; ++i)
        greyRamp = channel[0][i] == i && greyIndex[i] == i;
    unsigned char *planeRows[3][3];
    for (unsigned long p = 0; p < planes; ++p)
        for (unsigned long k = 0; k < 3; ++k)
            planeRows[p][k] = scratch.row(4 + 4 * p + k);
    bool primed = false;
    if (rows.count() >= 3 && inner > 0)
        forEachInnerRow(rows, scratch.row(0), [&](unsigned char const *const window[3], unsigned char *target) {
            if (kind == trueColour) {
                // Each byte is filtered on its own, its neighbours one pixel apart.
                unsigned char const *const centres[3] = {window[0] + 3, window[1] + 3, window[2] + 3};
                f.apply(centres, 3, 3 * inner, target + 3, filterScratch);
                return;
            }
            if (greyRamp) {
                // Indices are their greys and each grey its own index: the bytes are filtered as they stand.
                unsigned char const *const centres[3] = {window[0] + 1, window[1] + 1, window[2] + 1};
                f.apply(centres, 1, inner, target + 1, filterScratch);
                return;
            }
            // Channel values of the three rows per plane; the two lower ones come from the row before.
            unsigned char *results[3] = {};
            for (unsigned long p = 0; p < planes; ++p) {
                unsigned char const *lut = channel[kind == colourPalette ? p : 0];
                unsigned char **values = planeRows[p];
                if (primed)
                    std::rotate(values, values + 1, values + 3);
                for (unsigned long k = primed ? 2 : 0; k < 3; ++k)
                    for (unsigned long x = 0; x < width; ++x)
                        values[k][x] = lut[window[k][x]];
                unsigned char const *const centres[3] = {values[0] + 1, values[1] + 1, values[2] + 1};
                results[p] = scratch.row(4 + 4 * p + 3);
                f.apply(centres, 1, inner, results[p], filterScratch);
            }
            primed = true;
            if (kind == greyPalette)
                for (unsigned long x = 0; x < inner; ++x)
                    target[1 + x] = greyIndex[results[0][x]];
            else
                for (unsigned long x = 0; x < inner; ++x)
                    target[1 + x] = (*indices)(results[0][x], results[1][x], results[2][x]);
        });
    modified = 1;
    return resultOk;
}

template <class F>
int GImage::filterPlanes(unsigned char size, F const &f)
{
    if (!header || !pixels || !holdsWholeRows())
        return resultImpossible;
    if (size == windowSide && filtersInPlace())
        return filterPlanesInPlace(f);
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
        return filterPlanes(size, ConstantFilter(size));
    Kernel const &kernel = linearKernels[mode - firstLinearMode];
    return filterPlanes(size, KernelFilter(kernel.weights, kernel.divisor));
}

int GImage::edgeEnhance(int family, int direction, unsigned char size)
{
    short const *kernel = edgeKernel(family, direction);
    if (!kernel)
        return filterPlanes(size, ConstantFilter(size));
    return filterPlanes(size, KernelFilter(kernel, 1));
}

int GImage::edgeDetector(int family, int direction1, int direction2, unsigned char size)
{
    short const *first = edgeKernel(family, direction1);
    short const *second = edgeKernel(family, direction2);
    // A family or direction the table lacks yields size, as in edgeEnhance.
    if (!first || !second)
        return filterPlanes(size, ConstantFilter(size));
    return filterPlanes(size, MagnitudeFilter(first, second));
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

// The three ranks the filters take among the nine keys of a window.
enum class Rank { lowest, middle, highest };

inline __m128i lower(__m128i a, __m128i b) { return _mm_min_epi16(a, b); }
inline __m128i higher(__m128i a, __m128i b) { return _mm_max_epi16(a, b); }
inline short lower(short a, short b) { return a < b ? a : b; }
inline short higher(short a, short b) { return a > b ? a : b; }
// Sixteen unsigned bytes, ranked as such.
struct ByteLanes {
    __m128i v;
};
inline ByteLanes lower(ByteLanes a, ByteLanes b) { return {_mm_min_epu8(a.v, b.v)}; }
inline ByteLanes higher(ByteLanes a, ByteLanes b) { return {_mm_max_epu8(a.v, b.v)}; }
inline unsigned char lower(unsigned char a, unsigned char b) { return a < b ? a : b; }
inline unsigned char higher(unsigned char a, unsigned char b) { return a > b ? a : b; }

template <class T>
void order(T &a, T &b)
{
    const T low = lower(a, b);
    b = higher(a, b);
    a = low;
}

// A rank of nine keys, by one key or by lanes of them; the middle comes from a network of 19
// exchanges, so that it needs no branch.
template <class T>
T rankOfNine(Rank rank, T *k)
{
    if (rank != Rank::middle) {
        T best = k[0];
        for (unsigned int i = 1; i < windowEntries; ++i)
            best = rank == Rank::lowest ? lower(best, k[i]) : higher(best, k[i]);
        return best;
    }
    order(k[1], k[2]), order(k[4], k[5]), order(k[7], k[8]);
    order(k[0], k[1]), order(k[3], k[4]), order(k[6], k[7]);
    order(k[1], k[2]), order(k[4], k[5]), order(k[7], k[8]);
    order(k[0], k[3]), order(k[5], k[8]), order(k[4], k[7]);
    order(k[3], k[6]), order(k[1], k[4]), order(k[2], k[5]);
    order(k[4], k[7]), order(k[4], k[2]), order(k[6], k[4]);
    order(k[4], k[2]);
    return k[4];
}

// Keys pack a brightness above the place in the window, 0 to 8 row by row: sorting them sorts
// by brightness and keeps the window's order among equals, as the stable sort does.
const int placeBits = 4;
const unsigned int placeMask = (1u << placeBits) - 1;

// For each of `count` positions, the byte that a rank takes among the nine around it; rows
// start one column left of the first position.
void byteRankRow(Rank rank, unsigned char const *const rows[3], unsigned long count, unsigned char *chosen)
{
    unsigned long j = 0;
    for (; j + 16 <= count; j += 16) {
        ByteLanes k[windowEntries];
        for (unsigned int i = 0; i < windowEntries; ++i)
            k[i].v = _mm_loadu_si128(reinterpret_cast<__m128i const *>(rows[i / 3] + j + i % 3));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(chosen + j), rankOfNine(rank, k).v);
    }
    for (; j < count; ++j) {
        unsigned char k[windowEntries];
        for (unsigned int i = 0; i < windowEntries; ++i)
            k[i] = rows[i / 3][j + i % 3];
        chosen[j] = rankOfNine(rank, k);
    }
}

// For each of `count` positions, the key that a rank takes among the nine around it; key
// rows start one column left of the first position.
void rankRow(Rank rank, short const *const keys[3], unsigned long count, short *chosen)
{
    unsigned long j = 0;
    for (; j + 8 <= count; j += 8) {
        __m128i k[windowEntries];
        for (unsigned int i = 0; i < windowEntries; ++i)
            k[i] = _mm_or_si128(_mm_loadu_si128(reinterpret_cast<__m128i const *>(keys[i / 3] + j + i % 3)),
                                _mm_set1_epi16(static_cast<short>(i)));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(chosen + j), rankOfNine(rank, k));
    }
    for (; j < count; ++j) {
        short k[windowEntries];
        for (unsigned int i = 0; i < windowEntries; ++i)
            k[i] = static_cast<short>(keys[i / 3][j + i % 3] | i);
        chosen[j] = rankOfNine(rank, k);
    }
}

} // namespace

int GImage::rankInPlace(int mode)
{
    const GImageRows rows(pixels, *header);
    const bool palette = getImageType() != trueColour;
    const unsigned long width = rows.columns(), bytes = rows.bytesPerPixel(), inner = width > 2 ? width - 2 : 0;
    // Two saved rows, three rows of keys and two of chosen keys.
    const unsigned long rowBytes = rows.rowBytes() > 2 * width ? rows.rowBytes() : 2 * width;
    ScratchRows scratch(7, rowBytes);
    std::unique_ptr<IndexCache> indices(palette ? new (std::nothrow) IndexCache(*this) : nullptr);
    if (!scratch.ok() || (palette && !indices))
        return resultNoMemory;
    auto keyRow = [&](unsigned long i) { return reinterpret_cast<short *>(scratch.row(2 + i)); };
    short *keys[3] = {keyRow(0), keyRow(1), keyRow(2)};
    short *const chosen = keyRow(3), *const last = keyRow(4);

    // A palette picture's keys and results depend on the index alone.
    short keyOf[256];
    unsigned char mapped[256];
    for (unsigned int i = 0; i < 256 && palette; ++i) {
        GColor const &e = entry(i);
        keyOf[i] = static_cast<short>(brightness(e) << placeBits);
        mapped[i] = (*indices)(e.getR(), e.getG(), e.getB());
    }
    auto fillKeys = [&](unsigned char const *row, short *to) {
        if (palette)
            for (unsigned long x = 0; x < width; ++x)
                to[x] = keyOf[row[x]];
        else
            for (unsigned long x = 0; x < width; ++x, row += 3)
                to[x] = static_cast<short>((row[0] + row[1] + row[2]) << placeBits);
    };
    auto colourAt = [&](unsigned char const *at) { return palette ? entry(*at) : GColor(at[0], at[1], at[2]); };
    // For each place in the window, 0 to 8 row by row, the pixel at that place around the
    // first position of a row: the pixel a key names lies j pixels further.
    auto placesOf = [&](unsigned char const *const window[3], unsigned char const **first) {
        for (unsigned int i = 0; i < windowEntries; ++i)
            first[i] = window[i / 3] + (i % 3) * bytes;
    };
    auto copyTriple = [](unsigned char *to, unsigned char const *from) {
        to[0] = from[0];
        to[1] = from[1];
        to[2] = from[2];
    };

    const Rank rank = mode == rankMinimum ? Rank::lowest : mode == rankMaximum ? Rank::highest : Rank::middle;
    // A palette whose brightness rises with the index, as a grey ramp's does, orders a window
    // as its index bytes do; equal bytes are equal colours, so that the ranks can be taken on
    // the bytes themselves.
    bool rising = palette && (mode == rankMedian || mode == rankMinimum || mode == rankMaximum);
    bool identity = true;
    for (unsigned int i = 0; i < 256 && rising; ++i) {
        rising = i == 0 || keyOf[i] > keyOf[i - 1];
        identity = identity && mapped[i] == i;
    }
    if (rising) {
        if (rows.count() >= 3 && inner > 0)
            forEachInnerRow(rows, scratch.row(0), [&](unsigned char const *const window[3], unsigned char *target) {
                byteRankRow(rank, window, inner, target + 1);
                for (unsigned long j = 1; j <= inner && !identity; ++j)
                    target[j] = mapped[target[j]];
            });
        modified = 1;
        return resultOk;
    }

    if (rows.count() >= 3 && inner > 0) {
        fillKeys(rows.row(0), keys[0]);
        fillKeys(rows.row(1), keys[1]);
    }
    const GColor none;
    const unsigned char noneIndex = palette ? (*indices)(none.getR(), none.getG(), none.getB()) : 0;
    if (rows.count() >= 3 && inner > 0)
        forEachInnerRow(rows, scratch.row(0), [&](unsigned char const *const window[3], unsigned char *target) {
            fillKeys(window[2], keys[2]);
            unsigned char *to = target + bytes;
            if (mode == rankMedian || mode == rankMinimum || mode == rankMaximum) {
                rankRow(rank, keys, inner, chosen);
                unsigned char const *first[windowEntries];
                placesOf(window, first);
                if (palette)
                    for (unsigned long j = 0; j < inner; ++j)
                        to[j] = mapped[first[chosen[j] & placeMask][j]];
                else {
                    // Four bytes a pixel but for the last: the fourth lands on the next inner
                    // pixel, written again in its turn, and is read from within the row, as
                    // only the last position's window reaches the row's last column.
                    unsigned long j = 0;
                    for (; j + 1 < inner; ++j, to += 3)
                        std::memcpy(to, first[chosen[j] & placeMask] + 3 * j, 4);
                    copyTriple(to, first[chosen[j] & placeMask] + 3 * j);
                }
            } else if (mode == rankNearerExtreme) {
                rankRow(Rank::lowest, keys, inner, chosen);
                rankRow(Rank::highest, keys, inner, last);
                for (unsigned long j = 0; j < inner; ++j, to += bytes) {
                    // The window with its darkest first and brightest last: the wrapped sums and
                    // the two ends are all that count.
                    GColor ends[windowEntries];
                    for (unsigned int i = 0; i < windowEntries; ++i)
                        ends[i] = colourAt(window[i / 3] + (j + i % 3) * bytes);
                    const unsigned int low = chosen[j] & placeMask;
                    unsigned int high = last[j] & placeMask;
                    std::swap(ends[0], ends[low]);
                    high = high == 0 ? low : high;
                    std::swap(ends[windowEntries - 1], ends[high]);
                    const GColor choice = nearerExtreme(ends, windowEntries);
                    if (palette) {
                        to[0] = (*indices)(choice.getR(), choice.getG(), choice.getB());
                    } else {
                        to[0] = choice.getR();
                        to[1] = choice.getG();
                        to[2] = choice.getB();
                    }
                }
            } else {
                for (unsigned long j = 0; j < inner; ++j, to += bytes) {
                    if (palette) {
                        to[0] = noneIndex;
                    } else {
                        to[0] = to[1] = to[2] = 0;
                    }
                }
            }
            std::swap(keys[0], keys[1]);
            std::swap(keys[1], keys[2]);
        });
    modified = 1;
    return resultOk;
}

int GImage::NLFilter(int mode, unsigned char size)
{
    if (!header || !pixels || !holdsWholeRows())
        return resultImpossible;
    if (size == windowSide && filtersInPlace())
        return rankInPlace(mode);
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
