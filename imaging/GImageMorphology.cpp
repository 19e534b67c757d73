// Morphology and thinning of GImage: neighbourhood rules on index bytes.
#include "imaging/GImage.h"

#include "foundation/PMemory.h"
#include "graphics/DibFormat.h"
#include "imaging/GImageRows.h"

#include <windows.h>

#include <emmintrin.h>

#include <cstdlib>
#include <cstring>

namespace {

int brightnessOf(GColor const &color) { return color.getR() + color.getG() + color.getB(); }

// Modes of morphology.
enum MorphMode { allEqual = 0, edgesEqual = 1, cornersEqual = 2, table3Mode = 3, table4Mode = 4 };

// morphTable3 by the word of neighbours equal to the centre, 32 entries a line.
const char *const morphTable3Rows[8] = {
    "00000100000011000100010011001100", // 0
    "01111111000011001111111111001100", // 32
    "01111111000011000100010000000000", // 64
    "01111111000011000100010000000000", // 96
    "01111111111111110100010011001100", // 128
    "11111111111111111111111111001100", // 160
    "01111111000011000100000000000000", // 192
    "01111111000001000100010000000000", // 224
};

// The words of neighbours differing from the centre at which morphTable4 holds 1.
const unsigned char morphTable4Words[] = {5, 12, 17, 24, 33, 34, 36, 48, 65, 66, 68, 129, 130, 132, 136, 160};

struct MorphTables {
    MorphTables()
    {
        for (unsigned int i = 0; i < 256; ++i) {
            table3[i] = morphTable3Rows[i / 32][i % 32] == '1';
            table4[i] = false;
        }
        for (unsigned char word : morphTable4Words)
            table4[word] = true;
    }
    bool table3[256];
    bool table4[256];
};

MorphTables const &morphTables()
{
    static const MorphTables tables;
    return tables;
}

// The mode test on a window w0 to w8, row by row, w4 the centre.
bool modeHolds(int mode, unsigned char const *w)
{
    const unsigned char c = w[4];
    // Neighbours in word order: bit 0 from w0 up to bit 7 from w8, w4 left out.
    static const int neighbours[8] = {0, 1, 2, 3, 5, 6, 7, 8};
    unsigned int same = 0;
    for (int bit = 0; bit < 8; ++bit)
        same |= (w[neighbours[bit]] == c ? 1u : 0u) << bit;
    switch (mode) {
    case allEqual: return same == 0xFF;
    case edgesEqual: return w[1] == c && w[3] == c && w[5] == c && w[7] == c;
    case cornersEqual: return w[0] == c && w[2] == c && w[6] == c && w[8] == c;
    case table3Mode: return !morphTables().table3[same];
    case table4Mode: return morphTables().table4[~same & 0xFF];
    default: return true;
    }
}

// The mode test and its writing for `count` positions of a row of index bytes, whose windows
// are centred on rows[1][1] onward; sixteen positions a step, the rest one by one.
void morphRow(int mode, unsigned char const *const rows[3], unsigned long count, unsigned char foregroundIndex,
              unsigned char backgroundIndex, int useBackground, unsigned char *out)
{
    unsigned long j = 0;
    const __m128i foreground = _mm_set1_epi8(static_cast<char>(foregroundIndex));
    const __m128i background = _mm_set1_epi8(static_cast<char>(backgroundIndex));
    const __m128i ones = _mm_set1_epi8(-1);
    for (; j + 16 <= count; j += 16) {
        __m128i w[9];
        for (unsigned int i = 0; i < 9; ++i)
            w[i] = _mm_loadu_si128(reinterpret_cast<__m128i const *>(rows[i / 3] + j + i % 3));
        // Per neighbour all ones where it equals the centre.
        __m128i same[9];
        for (unsigned int i = 0; i < 9; ++i)
            same[i] = _mm_cmpeq_epi8(w[i], w[4]);
        __m128i holds;
        if (mode == allEqual || mode == edgesEqual || mode == cornersEqual) {
            static const unsigned int tested[3][8] = {{0, 1, 2, 3, 5, 6, 7, 8}, {1, 3, 5, 7, 1, 3, 5, 7}, {0, 2, 6, 8, 0, 2, 6, 8}};
            holds = ones;
            for (unsigned int i : tested[mode])
                holds = _mm_and_si128(holds, same[i]);
        } else if (mode == table3Mode || mode == table4Mode) {
            // The neighbourhood words, then the table per position.
            static const unsigned int neighbours[8] = {0, 1, 2, 3, 5, 6, 7, 8};
            __m128i word = _mm_setzero_si128();
            for (unsigned int bit = 0; bit < 8; ++bit)
                word = _mm_or_si128(word, _mm_and_si128(same[neighbours[bit]], _mm_set1_epi8(static_cast<char>(1u << bit))));
            alignas(16) unsigned char words[16], tests[16];
            _mm_store_si128(reinterpret_cast<__m128i *>(words), word);
            for (unsigned int k = 0; k < 16; ++k)
                tests[k] = (mode == table3Mode ? !morphTables().table3[words[k]] : morphTables().table4[~words[k] & 0xFF]) ? 0xFF : 0;
            holds = _mm_load_si128(reinterpret_cast<__m128i const *>(tests));
        } else {
            holds = ones;
        }
        const __m128i otherwise = useBackground == 1 ? background : w[4];
        const __m128i result = _mm_or_si128(_mm_and_si128(holds, foreground), _mm_andnot_si128(holds, otherwise));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(out + j), result);
    }
    for (; j < count; ++j) {
        unsigned char window[9];
        for (unsigned int i = 0; i < 9; ++i)
            window[i] = rows[i / 3][j + i % 3];
        if (modeHolds(mode, window))
            out[j] = foregroundIndex;
        else
            out[j] = useBackground == 1 ? backgroundIndex : window[4];
    }
}

// Whether a 9-bit neighbourhood may lose its centre, 32 entries a line.
const char *const thinTableRows[16] = {
    "00000000000000000001001101110011", // 0
    "00000000000000000011101100110011", // 32
    "00000000000000000000000011110011", // 64
    "00000000000000000000000000110011", // 96
    "00000000000000000000000011110011", // 128
    "00000000000000001011101111111111", // 160
    "00000000000000001000000011110011", // 192
    "00000000000000001011101111111111", // 224
    "00000000000000000000000000000000", // 256
    "00000000000000001011101100110011", // 288
    "00000000000000000000000000000000", // 320
    "00000000000000000000000000110011", // 352
    "00000000000000001000000011110011", // 384
    "00000000000000001011101111111111", // 416
    "00000000000000001000000011110011", // 448
    "00000000000000001011101111111111", // 480
};

struct ThinTable {
    ThinTable()
    {
        for (unsigned int i = 0; i < 512; ++i)
            deletable[i] = thinTableRows[i / 32][i % 32] == '1';
    }
    bool deletable[512];
};

ThinTable const &thinTable()
{
    static const ThinTable table;
    return table;
}

// The neighbours whose presence keeps a pixel in each sub-pass: above, below, left, right.
const unsigned int subPassMasks[4] = {0x80, 0x02, 0x20, 0x08};
const int maxRounds = 10;

} // namespace

int GImage::thinning(GColor const &background)
{
    if (numColors() == 0 || !holdsWholeRows())
        return resultImpossible;
    const GImageRows rows(pixels, *header);
    const unsigned long width = rows.columns(), height = rows.count();
    // Earlier neighbourhood words of the row above, one per column.
    const unsigned long entries = rows.rowBytes() > width ? rows.rowBytes() : width;
    auto *words = static_cast<unsigned char *>(PGlobalAlloc(entries ? entries : 1));
    if (!words)
        return resultNoMemory;
    DibGlobalBlock wordsBlock(words);
    const unsigned char b = getIndex(background);
    const unsigned long step = rows.bytesPerPixel();
    auto pixel = [&](unsigned long x, unsigned long y) -> unsigned char & { return rows.row(y)[x * step]; };
    auto set = [&](unsigned long x, unsigned long y) { return pixel(x, y) != b ? 1u : 0u; };
    bool const *deletable = thinTable().deletable;

    if (width > 0 && height > 0) {
        // Deliberate: the last column's word is seeded with the index itself, once.
        words[width - 1] = b;
        for (int round = 0; round < maxRounds; ++round) {
            unsigned long deleted = 0;
            for (unsigned int mask : subPassMasks) {
                auto test = [&](unsigned int p, unsigned long x, unsigned long y) {
                    if ((p & mask) == 0 && deletable[p]) {
                        ++deleted;
                        pixel(x, y) = b;
                    }
                };
                unsigned int p = set(0, 0);
                for (unsigned long x = 0; x + 1 < width; ++x) {
                    p = ((p & 0xDB) << 1) | set(x + 1, 0);
                    words[x] = static_cast<unsigned char>(p);
                }
                for (unsigned long y = 0; y + 1 < height; ++y) {
                    p = ((words[0] & 9u) << 3) | set(0, y + 1);
                    for (unsigned long x = 0; x + 1 < width; ++x) {
                        const unsigned int q = words[x];
                        p = ((((q & 9u) << 2) | (p & 0xDB)) << 1) | set(x + 1, y + 1);
                        words[x] = static_cast<unsigned char>(p);
                        test(p, x, y);
                    }
                    p = (p & 0xDB) << 1;
                    test(p, width - 1, y);
                }
                for (unsigned long x = 0; x < width; ++x) {
                    const unsigned int q = words[x];
                    p = (((q & 9u) << 2) | (p & 0xDB)) << 1;
                    test(p, x, height - 1);
                }
            }
            if (deleted == 0)
                break;
        }
    }
    modified = 1;
    return resultOk;
}

int GImage::morphology(int mode, GColor const &foreground, GColor const &background, int useBackground)
{
    if (!header || !pixels)
        return resultImpossible;
    // True colour is reduced to 256 colours first, and stays so.
    if (numColors() == 0 && octreeReduction(256) != resultOk)
        return resultNoMemory;
    if (!holdsWholeRows())
        return resultImpossible;
    const unsigned char foregroundIndex = getIndex(foreground);
    unsigned char backgroundIndex = getIndex(background);
    if (useBackground != 0 && entry(foregroundIndex) == entry(backgroundIndex)) {
        // The entry whose channel sum lies farthest from the foreground's keeps the two apart.
        const int s = brightnessOf(entry(foregroundIndex));
        int farthest = 0;
        for (unsigned int i = 0; i < numColors(); ++i) {
            const int distance = std::abs(brightnessOf(entry(i)) - s);
            if (distance > farthest) {
                farthest = distance;
                backgroundIndex = static_cast<unsigned char>(i);
            }
        }
    }

    const GImageRows rows(pixels, *header);
    const unsigned long bytes = rows.bytesPerPixel();
    if (bytes == 1) {
        // Index bytes are tested sixteen at a time, in place, with the rows around saved.
        ScratchRows saved(2, rows.rowBytes());
        if (!saved.ok())
            return resultNoMemory;
        if (rows.columns() >= 3)
            forEachInnerRow(rows, saved.row(0), [&](unsigned char const *const window[3], unsigned char *target) {
                morphRow(mode, window, rows.columns() - 2, foregroundIndex, backgroundIndex, useBackground, target + 1);
            });
        modified = 1;
        return resultOk;
    }
    auto *copy = static_cast<unsigned char *>(PGlobalAlloc(header->biSizeImage ? header->biSizeImage : 1));
    if (!copy)
        return resultNoMemory;
    std::memcpy(copy, pixels, header->biSizeImage);
    const GImageRows out(copy, *header);
    unsigned char window[9];
    for (unsigned long r = 1; r + 1 < rows.count(); ++r) {
        for (unsigned long c = 1; c + 1 < rows.columns(); ++c) {
            getSubset(static_cast<unsigned short>(r), static_cast<unsigned short>(c), -1, 3, 0, window);
            unsigned char *to = out.row(r) + c * bytes;
            if (modeHolds(mode, window))
                *to = foregroundIndex;
            else if (useBackground == 1)
                *to = backgroundIndex;
        }
    }
    PGlobalFree(pixels);
    pixels = copy;
    modified = 1;
    return resultOk;
}
