// Thinning of GImage: boundary pixels of shapes are removed in directional sub-passes.
#include "imaging/GImage.h"

#include "foundation/PMemory.h"
#include "graphics/DibFormat.h"
#include "imaging/GImageRows.h"

#include <windows.h>

namespace {

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
