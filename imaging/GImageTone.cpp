// Tone operations of GImage: wash-out, grey, lighten and darken, and the histogram family.
#include "imaging/GImage.h"

#include "foundation/PMemory.h"
#include "graphics/DibFormat.h"
#include "imaging/GImageRows.h"

#include <windows.h>

#include <cstdlib>
#include <new>

namespace {

// The rounded-up midpoint of two levels, as the equalisations place a level between them.
unsigned int midpoint(unsigned int sum)
{
    const double s = sum;
    return s * 0.5 > 0 ? static_cast<unsigned int>((s + 1.0) * 0.5) : static_cast<unsigned int>(s * 0.5 - 0.5);
}

unsigned char lowerOf(unsigned int value, unsigned int limit)
{
    return static_cast<unsigned char>(value < limit ? value : limit);
}

// The palette saved by the last palette wash-out of any image, for restoreBrightness.
GColor *savedBrightnessPalette = nullptr;
unsigned int savedBrightnessCount = 0;

// Takes saturation away by `amount`; greys step a third of the way to white.
void washOutColor(GHSVColor &c, double amount)
{
    double &s = c.getS(), &v = c.getV();
    const double h = c.getH();
    double take = amount;
    if (s < amount)
        take = s * 0.3333333333333333;
    s -= take;
    if (s <= 0)
        s = h == GHSVColor::Achromatic ? 0.0 : 0.01;
    if (v > 1.0)
        v = 1.0;
    else if (v < 0.0)
        v = 0.0;
    if (h < 0.0)
        v = (1.0 - v) * 0.3333333333333333 + v;
}

GColor washedOut(GColor const &color, double amount)
{
    GHSVColor hsv(color);
    washOutColor(hsv, amount);
    return GColor(hsv);
}

// Wash-outs of recently seen colours, held by a hash of the colour: a picture repeats its
// colours, and each wash-out costs two conversions through hue, saturation and value.
class WashOutCache {
public:
    explicit WashOutCache(double amount) : amount(amount)
    {
        for (unsigned long &key : keys)
            key = empty;
    }

    // Red, green, blue in the low three bytes, in and out.
    unsigned long operator()(unsigned long rgb)
    {
        const unsigned int slot = static_cast<unsigned int>((rgb * 2654435761u) >> (32 - slotBits));
        if (keys[slot] != rgb) {
            const GColor color = washedOut(GColor(rgb & 0xFF, (rgb >> 8) & 0xFF, (rgb >> 16) & 0xFF), amount);
            keys[slot] = rgb;
            values[slot] = color.getR() | (color.getG() << 8) | (static_cast<unsigned long>(color.getB()) << 16);
        }
        return values[slot];
    }

private:
    static const unsigned int slotBits = 12;
    static const unsigned long empty = 0xFFFFFFFFul; // no colour has a top byte

    double amount;
    unsigned long keys[1u << slotBits];
    unsigned long values[1u << slotBits];
};

// Grey levels of a true-colour triple, looked up by the sum that decides them.
struct GreyTables {
    GreyTables()
    {
        for (unsigned int sum = 0; sum < sizeof mean; ++sum)
            mean[sum] = lowerOf(roundHalfAway(sum * 0.3333333333333333), 255);
        for (unsigned int sum = 0; sum < sizeof weighted; ++sum)
            weighted[sum] = lowerOf(roundHalfAway(sum * 0.01), 255);
    }
    unsigned char mean[3 * 255 + 1];                  // by a + b + c
    unsigned char weighted[(30 + 59 + 11) * 255 + 1]; // by 30 a + 59 b + 11 c
};

GreyTables const &greyTables()
{
    static const GreyTables tables;
    return tables;
}

// A byte table over every value a pixel byte can hold; values past `levels` keep their value.
struct LevelTable {
    explicit LevelTable(unsigned int levels)
    {
        for (unsigned int v = 0; v < 256; ++v)
            map[v] = static_cast<unsigned char>(v);
        count = levels < 256 ? levels : 256;
    }
    unsigned char map[256];
    unsigned int count;
};

// Equalisation by recursive bisection of the cumulative histogram.
struct HistTreeNode {
    unsigned char low;
    unsigned char high;
    HistTreeNode *left;
    HistTreeNode *right;
};

struct HistTree {
    HistTreeNode *root;
    unsigned char depth;
    unsigned long const *integrate;
    unsigned short colorCount;
};

class HistTreeBuilder {
public:
    explicit HistTreeBuilder(HistTree &tree) : tree(tree), failed(0) {}
    ~HistTreeBuilder() { release(tree.root); }

    HistTreeNode *buildNode(HistTreeNode *node, unsigned char low, unsigned char high, int level)
    {
        if (!node && !(node = leaf(low, high)))
            return nullptr;
        if (high - low > 2) {
            const unsigned char split = splitPoint(low, high);
            const int last = tree.depth - 1;
            if (level > last)
                return node;
            if (level == last) {
                node->left = leaf(low, split);
                node->right = leaf(split + 1, high);
                return node;
            }
            node->left = buildNode(node->left, low, split, level + 1);
            node->right = buildNode(node->right, split + 1, high, level + 1);
        }
        return node;
    }

    // The level at the rounded-up middle of the leaf that holds v.
    unsigned char mapValue(unsigned int v) const
    {
        HistTreeNode const *node = tree.root;
        while (node->left && node->right)
            node = v <= node->left->high ? node->left : node->right;
        return lowerOf(midpoint(node->low + node->high), tree.colorCount - 1u);
    }

    int hasFailed() const { return failed; }

private:
    HistTreeNode *leaf(unsigned char low, unsigned char high)
    {
        HistTreeNode *node = new (std::nothrow) HistTreeNode{low, high, nullptr, nullptr};
        if (!node)
            failed = 1;
        return node;
    }

    // The k between low and high where the cumulative count is nearest the middle of the two.
    // Wide arithmetic, so that no count can overflow the doubling.
    unsigned char splitPoint(unsigned char low, unsigned char high) const
    {
        unsigned long const *sums = tree.integrate;
        const long long ends = static_cast<long long>(sums[high]) + sums[low];
        unsigned char best = low + 1;
        long long bestMeasure = llabs(2LL * sums[best] - ends);
        for (unsigned int k = low + 2u; k < high; ++k) {
            const long long measure = llabs(2LL * sums[k] - ends);
            if (measure < bestMeasure) {
                bestMeasure = measure;
                best = static_cast<unsigned char>(k);
            }
        }
        return best;
    }

    static void release(HistTreeNode *node)
    {
        if (!node)
            return;
        release(node->left);
        release(node->right);
        delete node;
    }

    HistTree &tree;
    int failed;
};

} // namespace

unsigned int GImage::toneLevels() const
{
    const unsigned int n = numColors();
    return n ? n : 256;
}

void GImage::mapPixels(unsigned char const *table)
{
    const GImageRows rows(pixels, *header);
    const unsigned long bytes = rows.bytesPerPixel();
    if (bytes == 1) {
        rows.forEachPixel([table](unsigned char *p) { p[0] = table[p[0]]; });
        return;
    }
    rows.forEachPixel([table, bytes](unsigned char *p) {
        for (unsigned long k = 0; k < bytes; ++k)
            p[k] = table[p[0]];
    });
}

void GImage::fillPixels(unsigned char const *table)
{
    const GImageRows rows(pixels, *header);
    const unsigned long bytes = rows.bytesPerPixel();
    if (bytes == 1) {
        rows.forEachPixel([table](unsigned char *p) { p[0] = table[p[0]]; });
        return;
    }
    rows.forEachPixel([table, bytes](unsigned char *p) {
        const unsigned char value = table[p[0]];
        for (unsigned long k = 0; k < bytes; ++k)
            p[k] = value;
    });
}

void GImage::adjustBrightness(double amount)
{
    if (!header || !pixels)
        return;
    const unsigned int n = numColors();
    if (n == 0) {
        // Deliberate: a flat run of triples across row padding; nothing is kept to undo it.
        WashOutCache washed(amount);
        forEachTriple(pixels, header->biSizeImage, [&washed](unsigned char *p) {
            const unsigned long rgb = washed(p[0] | (p[1] << 8) | (static_cast<unsigned long>(p[2]) << 16));
            p[0] = static_cast<unsigned char>(rgb);
            p[1] = static_cast<unsigned char>(rgb >> 8);
            p[2] = static_cast<unsigned char>(rgb >> 16);
        });
        return;
    }
    delete[] savedBrightnessPalette;
    savedBrightnessPalette = new (std::nothrow) GColor[n];
    savedBrightnessCount = savedBrightnessPalette ? n : 0;
    for (unsigned int i = 0; i < savedBrightnessCount; ++i)
        savedBrightnessPalette[i] = entry(i);
    for (unsigned int i = 0; i < n; ++i)
        colorTable.setEntry(static_cast<int>(i), washedOut(entry(i), amount));
}

void GImage::restoreBrightness()
{
    if (!savedBrightnessPalette)
        return;
    // The slot is shared by all images: another image restores it with its own entry count.
    const unsigned int n = numColors();
    GColor *colors = savedBrightnessPalette;
    GColor *padded = nullptr;
    if (n > savedBrightnessCount) {
        padded = new (std::nothrow) GColor[n];
        if (!padded)
            return;
        for (unsigned int i = 0; i < savedBrightnessCount; ++i)
            padded[i] = savedBrightnessPalette[i];
        colors = padded;
    }
    colorTable = GPalette(static_cast<unsigned short>(n), colors);
    delete[] padded;
    delete[] savedBrightnessPalette;
    savedBrightnessPalette = nullptr;
    savedBrightnessCount = 0;
}

void GImage::grayScale(int mode)
{
    if (!header || !pixels)
        return;
    modified = 1;
    if (mode < 0 || mode > 2)
        return;
    if (numColors() != 0) {
        const unsigned int n = numColors();
        for (unsigned int i = 0; i < n; ++i) {
            const GColor e = entry(i);
            const int a = e.getR(), b = e.getG(), c = e.getB();
            unsigned char grey;
            if (mode == 0)
                grey = lowerOf(roundHalfAway(static_cast<float>((a + b + c) * 0.3333333333333333)), 255);
            else if (mode == 1)
                grey = lowerOf(roundHalfAway((30 * a + 59 * b + 11 * c) * 0.01), 255);
            else
                grey = static_cast<unsigned char>(a > b ? (a > c ? a : c) : (b > c ? b : c));
            colorTable.setEntry(static_cast<int>(i), GColor(grey, grey, grey));
        }
        return;
    }
    // A flat run of triples, across row padding; a last partial triple is left as it is.
    GreyTables const &tables = greyTables();
    auto fill = [](unsigned char *p, unsigned char grey) { p[0] = p[1] = p[2] = grey; };
    if (mode == 0)
        forEachTriple(pixels, header->biSizeImage,
                      [&](unsigned char *p) { fill(p, tables.mean[p[0] + p[1] + p[2]]); });
    else if (mode == 1)
        forEachTriple(pixels, header->biSizeImage,
                      [&](unsigned char *p) { fill(p, tables.weighted[30 * p[0] + 59 * p[1] + 11 * p[2]]); });
    else
        forEachTriple(pixels, header->biSizeImage, [&](unsigned char *p) {
            // Two plain maxima, which compile without branches.
            const unsigned char ab = p[0] > p[1] ? p[0] : p[1];
            fill(p, ab > p[2] ? ab : p[2]);
        });
}

void GImage::adjust(int percent)
{
    if (!header || !pixels || percent == 0)
        return;
    modified = 1;
    const float f = static_cast<float>(percent * 0.01);
    auto clampToByte = [](float v) {
        return static_cast<unsigned char>(v < 0.0f ? 0.0f : v > 255.0f ? 255.0f : v);
    };
    if (numColors() != 0) {
        const unsigned int n = numColors();
        auto channel = [&](int c) {
            return clampToByte(static_cast<float>(c + static_cast<float>(c * f)));
        };
        for (unsigned int i = 0; i < n; ++i) {
            const GColor e = entry(i);
            colorTable.setEntry(static_cast<int>(i), GColor(channel(e.getR()), channel(e.getG()), channel(e.getB())));
        }
        return;
    }
    unsigned char table[256];
    for (int c = 0; c < 256; ++c)
        table[c] = clampToByte(static_cast<float>(c * (f + 1.0)));
    const GImageRows rows(pixels, *header);
    if (rows.bytesPerPixel() < 3)
        return;
    rows.forEachPixel([&table](unsigned char *p) {
        p[0] = table[p[0]];
        p[1] = table[p[1]];
        p[2] = table[p[2]];
    });
}

unsigned long *GImage::buildHistogram()
{
    if (!header || !pixels)
        return nullptr;
    const unsigned int n = toneLevels();
    auto *histogram = static_cast<unsigned long *>(PGlobalAlloc(n * sizeof(unsigned long)));
    if (!histogram)
        return nullptr;
    // Counted over all 256 byte values; values the image has no level for are left out.
    unsigned long counts[256] = {};
    GImageRows(pixels, *header).forEachPixel([&counts](unsigned char *p) { ++counts[p[0]]; });
    for (unsigned int v = 0; v < n && v < 256; ++v)
        histogram[v] = counts[v];
    return histogram;
}

unsigned long *GImage::buildIntegrate(unsigned long const *histogram)
{
    if (!header || !pixels || !histogram)
        return nullptr;
    const unsigned int n = toneLevels();
    auto *sums = static_cast<unsigned long *>(PGlobalAlloc(n * sizeof(unsigned long)));
    if (!sums)
        return nullptr;
    unsigned long total = 0;
    for (unsigned int i = 0; i < n; ++i)
        sums[i] = total += histogram[i];
    return sums;
}

int GImage::histEqua()
{
    if (!header || !pixels)
        return resultImpossible;
    if (getImageType() != 0)
        grayScale(0);
    unsigned long *histogram = buildHistogram();
    if (!histogram)
        return resultNoMemory;
    DibGlobalBlock histogramBlock(histogram);
    const unsigned int n = toneLevels();

    unsigned long total = 0;
    for (unsigned int i = 0; i < n; ++i)
        total += histogram[i];
    const unsigned long average = total / n;

    // Each value's level range [L, R]; a value that spans levels goes to their midpoint Z.
    LevelTable mapped(n);
    unsigned long level = 0, accumulated = 0;
    const unsigned long top = n - 1;
    for (unsigned int i = 0; i < n; ++i) {
        const unsigned long left = level < top ? level : top;
        accumulated += histogram[i];
        if (accumulated > average) {
            if (average == 0) {
                // The level would climb without end: it saturates, and the count never falls.
                level = top;
            } else {
                const unsigned long steps = (accumulated - 1) / average;
                accumulated -= steps * average;
                level += steps;
            }
        }
        const unsigned long right = level < top ? level : top;
        if (i < mapped.count) {
            const unsigned char l = static_cast<unsigned char>(left), r = static_cast<unsigned char>(right);
            mapped.map[i] = l == r ? l : lowerOf(midpoint(l + r), top);
        }
    }
    fillPixels(mapped.map);
    modified = 1;
    return resultOk;
}

unsigned long *GImage::buildGreyIntegrate()
{
    if (getImageType() != 0)
        grayScale(0);
    unsigned long *histogram = buildHistogram();
    if (!histogram)
        return nullptr;
    unsigned long *integrate = buildIntegrate(histogram);
    PGlobalFree(histogram);
    return integrate;
}

int GImage::histFlatten()
{
    if (!header || !pixels)
        return resultImpossible;
    unsigned long *integrate = buildGreyIntegrate();
    if (!integrate)
        return resultNoMemory;
    DibGlobalBlock integrateBlock(integrate);
    const unsigned int n = toneLevels();
    const double area = static_cast<double>(static_cast<unsigned long>(header->biWidth) *
                                            static_cast<unsigned long>(header->biHeight));
    if (area == 0)
        return resultImpossible;
    LevelTable mapped(n);
    for (unsigned int i = 0; i < mapped.count; ++i)
        mapped.map[i] = lowerOf(roundHalfAway(integrate[i] / area * n), n - 1);
    // Deliberate: bytes 1 and 2 take the table of byte 0 as already mapped, so they are mapped twice.
    mapPixels(mapped.map);
    modified = 1;
    return resultOk;
}

void GImage::histStretch(unsigned char low, unsigned char high)
{
    if (!header || !pixels)
        return;
    if (getImageType() != 0)
        grayScale(0);
    const unsigned int n = toneLevels();
    const GImageRows rows(pixels, *header);
    unsigned char lo = static_cast<unsigned char>(n - 1), hi = 0;
    rows.forEachPixel([&](unsigned char *p) {
        if (p[0] < lo)
            lo = p[0];
        if (p[0] > hi)
            hi = p[0];
    });
    const float k = lo < hi ? static_cast<float>(static_cast<double>(high - low) / (hi - lo)) : 1.0f;
    unsigned char table[256];
    for (int v = 0; v < 256; ++v) {
        const float d = (v - lo) * k;
        const float shifted = low + d;
        // Deliberate: the negative branch adds `low` where a plain rounding would subtract it.
        const int result = shifted > 0 ? static_cast<int>(shifted + 0.5) : -static_cast<int>(0.5 - d + low);
        const unsigned short wide = static_cast<unsigned short>(result);
        table[v] = wide > high ? high : wide < low ? low : static_cast<unsigned char>(wide);
    }
    fillPixels(table);
    if (low != 0 || high != n)
        modified = 1;
}

int GImage::histTreeEqua(unsigned char depth)
{
    if (!header || !pixels)
        return resultImpossible;
    unsigned long *integrate = buildGreyIntegrate();
    if (!integrate)
        return resultNoMemory;
    DibGlobalBlock integrateBlock(integrate);
    const unsigned int n = toneLevels();

    HistTree tree{nullptr, depth, integrate, static_cast<unsigned short>(n)};
    HistTreeBuilder builder(tree);
    tree.root = builder.buildNode(nullptr, 0, static_cast<unsigned char>(n - 1), 0);
    if (!tree.root || builder.hasFailed())
        return resultNoMemory;
    unsigned char table[256];
    for (unsigned int v = 0; v < 256; ++v)
        table[v] = builder.mapValue(v);
    // Deliberate: as in histFlatten, bytes 1 and 2 are mapped twice.
    mapPixels(table);
    modified = 1;
    return resultOk;
}
