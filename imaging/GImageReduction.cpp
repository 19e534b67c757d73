// Colour reduction of GImage: an adaptive palette from an octree over the channel bits.
#include "imaging/GImage.h"

#include "foundation/PMemory.h"
#include "graphics/DibFormat.h"
#include "imaging/GImageRows.h"

#include <windows.h>

#include <cstring>
#include <new>

namespace {

const int octreeLevels = 8;

struct OctreeNode {
    unsigned short isLeaf = 0;
    unsigned short level = 0;
    unsigned short colorIndex = 0;
    unsigned short childCount = 0;
    unsigned long pixelCount = 0;
    unsigned long sums[3] = {0, 0, 0};
    OctreeNode *nextReducible = nullptr;
    OctreeNode *children[8] = {};
};

// The child of a node at `level` that a colour descends into: bit 7 - level of each channel.
unsigned int childIndex(unsigned char const *colour, unsigned int level)
{
    const unsigned int s = 7 - level;
    return (((colour[0] >> s) & 1u) << 2) | (((colour[1] >> s) & 1u) << 1) | ((colour[2] >> s) & 1u);
}

// Nodes for one tree, taken from blocks and given back to a free list: a reduction frees
// subtrees that later pixels grow again, many times over a picture.
class NodePool {
public:
    NodePool() = default;
    ~NodePool()
    {
        while (blocks) {
            Block *next = blocks->next;
            delete blocks;
            blocks = next;
        }
    }
    NodePool(NodePool const &) = delete;
    NodePool &operator=(NodePool const &) = delete;

    // A fresh node, or null when memory ran out.
    OctreeNode *take()
    {
        OctreeNode *node = freeNodes;
        if (node) {
            freeNodes = node->nextReducible;
        } else {
            if (!blocks || used == nodesPerBlock) {
                Block *block = new (std::nothrow) Block;
                if (!block)
                    return nullptr;
                block->next = blocks;
                blocks = block;
                used = 0;
            }
            node = &blocks->nodes[used++];
        }
        *node = OctreeNode();
        return node;
    }

    void give(OctreeNode *node)
    {
        node->nextReducible = freeNodes;
        freeNodes = node;
    }

private:
    static const unsigned int nodesPerBlock = 1024;
    struct Block {
        Block *next;
        OctreeNode nodes[nodesPerBlock];
    };

    Block *blocks = nullptr;
    unsigned int used = 0;
    OctreeNode *freeNodes = nullptr;
};

class Octree {
public:
    explicit Octree(unsigned short maxColors)
        : reducibleLevel(maxColors == 8 ? 2 : maxColors == 16 ? 3 : 7), leafLevel(reducibleLevel + 1)
    {
    }
    Octree(Octree const &) = delete;
    Octree &operator=(Octree const &) = delete;

    // Adds a pixel; false when memory ran out. `reportedLeaves` takes the leaf count as it
    // stood before the deepest descent, so a reduction fires one pixel late.
    bool insert(unsigned char const *colour, unsigned long &reportedLeaves)
    {
        OctreeNode **at = &root;
        for (unsigned int level = 0;; ++level) {
            OctreeNode *node = *at;
            if (!node) {
                node = *at = pool.take();
                if (!node)
                    return false;
                node->level = static_cast<unsigned short>(level);
                if (leafLevel <= level) {
                    node->isLeaf = 1;
                    ++leafCount;
                }
            }
            ++node->pixelCount;
            for (int k = 0; k < 3; ++k)
                node->sums[k] += colour[k];
            if (node->isLeaf || level >= leafLevel)
                return true;
            const unsigned int index = childIndex(colour, level);
            if (!node->children[index] && ++node->childCount == 2) {
                node->nextReducible = reducible[level];
                reducible[level] = node;
            }
            reportedLeaves = leafCount;
            at = &node->children[index];
        }
    }

    // Folds the most recently registered node of the deepest occupied level into a leaf.
    void reduce()
    {
        int level = reducibleLevel;
        while (level >= 0 && !reducible[level])
            --level;
        if (level < 0)
            return;
        OctreeNode *node = reducible[level];
        reducible[level] = node->nextReducible;
        node->isLeaf = 1;
        // Deliberate: the children count as leaves, whatever lies beneath them.
        leafCount = static_cast<unsigned short>(leafCount + 1 - node->childCount);
        for (OctreeNode *&child : node->children) {
            deleteSubtree(child);
            child = nullptr;
        }
        if (node->level < reducibleLevel) {
            reducibleLevel = node->level;
            leafLevel = reducibleLevel + 1;
        }
    }

    // Gives every colour node its mean and the next index, depth first by child index.
    void assignPalette(GPalette &palette) { assign(root, palette); }

    // The index of a colour's node. A colour that leaves the tree follows its first child.
    unsigned short lookup(unsigned char const *colour) const
    {
        OctreeNode const *node = root;
        while (node && !node->isLeaf) {
            OctreeNode const *next = node->children[childIndex(colour, node->level)];
            for (int i = 0; !next && i < 8; ++i)
                next = node->children[i];
            if (!next)
                break;
            node = next;
        }
        return node ? node->colorIndex : 0;
    }

    // The number of colour nodes assignPalette will find.
    unsigned long colours() const { return count(root); }

private:
    void deleteSubtree(OctreeNode *node)
    {
        if (!node)
            return;
        for (OctreeNode *child : node->children)
            deleteSubtree(child);
        pool.give(node);
    }

    unsigned long count(OctreeNode const *node) const
    {
        if (!node)
            return 0;
        if (node->isLeaf || node->level == leafLevel)
            return 1;
        unsigned long total = 0;
        for (OctreeNode const *child : node->children)
            total += count(child);
        return total;
    }

    void assign(OctreeNode *node, GPalette &palette)
    {
        if (!node)
            return;
        if (!node->isLeaf && node->level != leafLevel) {
            for (OctreeNode *child : node->children)
                assign(child, palette);
            return;
        }
        unsigned char mean[3] = {0, 0, 0};
        if (node->pixelCount)
            for (int k = 0; k < 3; ++k)
                mean[k] = static_cast<unsigned char>(roundHalfAway(static_cast<double>(node->sums[k]) / node->pixelCount));
        palette.setEntry(static_cast<int>(nextIndex), GColor(mean[0], mean[1], mean[2]));
        node->colorIndex = static_cast<unsigned short>(nextIndex++);
        node->isLeaf = 1;
    }

    NodePool pool;
    OctreeNode *root = nullptr;
    int reducibleLevel;
    unsigned int leafLevel;
    unsigned short leafCount = 0; // wraps as the 16-bit count it is
    unsigned long nextIndex = 0;
    OctreeNode *reducible[octreeLevels] = {};
};

} // namespace

bool GImage::ownPalette(unsigned long size)
{
    if (static_cast<unsigned long>(colorTable.entryCount) > size)
        size = colorTable.entryCount;
    size = size > 0xFFFF ? 0xFFFF : size;
    GColor *colours = new (std::nothrow) GColor[size ? size : 1];
    if (!colours)
        return false;
    for (unsigned long i = 0; i < size; ++i)
        colours[i] = entry(static_cast<unsigned int>(i));
    colorTable = GPalette(static_cast<unsigned short>(size), colours);
    delete[] colours;
    return true;
}

int GImage::octreeReduction(unsigned short n)
{
    if (!header || !pixels || !holdsWholeRows())
        return resultImpossible;
    const GImageRows rows(pixels, *header);
    const unsigned long bytes = rows.bytesPerPixel();
    const bool trueColour = numColors() == 0;
    // A true-colour pixel needs its three bytes.
    if (trueColour && bytes < 3)
        return resultImpossible;
    Octree *tree = new (std::nothrow) Octree(n);
    if (!tree)
        return resultNoMemory;

    unsigned long reportedLeaves = 0;
    bool fitted = true;
    rows.forEachRow([&](unsigned char *row) {
        unsigned char const *at = row;
        for (unsigned long x = 0; fitted && x < rows.columns(); ++x, at += bytes) {
            unsigned char colour[3];
            if (trueColour) {
                std::memcpy(colour, at, 3);
            } else {
                GColor const &e = entry(*at);
                colour[0] = e.getR();
                colour[1] = e.getG();
                colour[2] = e.getB();
            }
            fitted = tree->insert(colour, reportedLeaves);
            if (reportedLeaves > n)
                tree->reduce();
        }
    });
    if (!fitted) {
        delete tree;
        return resultNoMemory;
    }

    // The palette receives the colours, so it must have room for them all.
    const unsigned long colours = tree->colours();
    if (!ownPalette(n > colours ? n : colours)) {
        delete tree;
        return resultNoMemory;
    }
    tree->assignPalette(colorTable);

    if (trueColour) {
        // Deliberate: biSizeImage keeps the 24-bit size; the buffer is made that large, so that a
        // walk over the recorded size stays inside it.
        const unsigned long stride = dibStride(header->biWidth, 8);
        unsigned char *indices = static_cast<unsigned char *>(PGlobalAlloc(header->biSizeImage ? header->biSizeImage : 1));
        if (!indices) {
            delete tree;
            return resultNoMemory;
        }
        for (unsigned long r = 0; r < rows.count(); ++r) {
            unsigned char const *at = rows.row(r);
            unsigned char *to = indices + r * stride;
            for (unsigned long x = 0; x < rows.columns(); ++x, at += 3)
                to[x] = static_cast<unsigned char>(tree->lookup(at));
        }
        header->biBitCount = 8;
        PGlobalFree(pixels);
        pixels = indices;
    } else {
        // Deliberate: the old index is read through the new palette.
        unsigned char mapped[256];
        for (unsigned int i = 0; i < 256; ++i) {
            GColor const &e = entry(i);
            const unsigned char colour[3] = {e.getR(), e.getG(), e.getB()};
            mapped[i] = static_cast<unsigned char>(tree->lookup(colour));
        }
        rows.forEachPixel([&](unsigned char *p) { p[0] = mapped[p[0]]; });
    }
    header->biClrUsed = n;
    header->biClrImportant = n;
    delete tree;
    modified = 1;
    return resultOk;
}

namespace {

// Channels as fractions of 255.
struct Unit {
    explicit Unit(GColor const &c)
        : r(c.getR() * 0.00392156862745098), g(c.getG() * 0.00392156862745098), b(c.getB() * 0.00392156862745098)
    {
    }
    double r, g, b;
};

unsigned char plut16Index(GColor const &color)
{
    const Unit u(color);
    return static_cast<unsigned char>((u.r + u.g + u.b > 1.5 ? 8 : 0) | ((u.b - u.r) + u.g > 0.5 ? 4 : 0) |
                                      ((u.r - u.g) + u.b > 0.5 ? 2 : 0) | ((u.g + u.r) - u.b > 0.5 ? 1 : 0));
}

// Deliberate: red takes bit 1 and blue bit 4, against the table, so pure red and blue swap.
unsigned char plut8Index(GColor const &color)
{
    const Unit u(color);
    return static_cast<unsigned char>((u.r >= 0.5 ? 1 : 0) | (u.g >= 0.5 ? 2 : 0) | (u.b >= 0.5 ? 4 : 0));
}

const GColor plut16Palette[16] = {{0, 0, 0},       {127, 127, 0},   {127, 0, 127},   {255, 0, 0},
                                  {0, 127, 127},   {0, 255, 0},     {0, 0, 255},     {127, 127, 127},
                                  {127, 127, 127}, {255, 255, 0},   {255, 0, 255},   {255, 127, 127},
                                  {0, 255, 255},   {127, 255, 127}, {127, 127, 255}, {255, 255, 255}};

const GColor plut8Palette[8] = {{0, 0, 0},     {0, 0, 255},   {0, 255, 0},   {0, 255, 255},
                                {255, 0, 0},   {255, 0, 255}, {255, 255, 0}, {255, 255, 255}};

} // namespace

int GImage::reduceToFixedPalette(unsigned char (*indexOf)(GColor const &), GColor const *colours,
                                 unsigned short count)
{
    if (!header || !pixels || !holdsWholeRows())
        return resultImpossible;
    // Deliberate: true colour is refused with 3 and left as it is; the conversion is never made.
    if (numColors() == 0)
        return resultNoMemory;
    unsigned char mapped[256];
    for (unsigned int i = 0; i < 256; ++i)
        mapped[i] = indexOf(entry(i));
    if (!ownPalette(count))
        return resultNoMemory;
    GImageRows(pixels, *header).forEachPixel([&](unsigned char *p) { p[0] = mapped[p[0]]; });
    for (unsigned short i = 0; i < count; ++i)
        colorTable.setEntry(i, colours[i]);
    header->biClrUsed = count;
    header->biClrImportant = count;
    modified = 1;
    return resultOk;
}

int GImage::PLUT16Reduction() { return reduceToFixedPalette(plut16Index, plut16Palette, 16); }

int GImage::PLUT8Reduction() { return reduceToFixedPalette(plut8Index, plut8Palette, 8); }
