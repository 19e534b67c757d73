// Operations.cpp - the table of image operations.
#include "Operations.h"

#include "WorkbenchIds.h"

#include <cstring>

namespace {

const GColor white(255, 255, 255);
const GColor black(0, 0, 0);

// Operations that return nothing cannot fail, once the picture has pixels.
int done(Picture &image) { return image.getHeader() ? GImage::resultOk : GImage::resultImpossible; }

const int weightedGrey = 1;

// The octree takes a true-colour pixel's bytes in their stored order (blue first) as red,
// green and blue, as the library's reduction does by design; handing it the bytes in the
// order red, green, blue gives a palette of the picture's own colours.
int octree(Picture &picture, unsigned short colours)
{
    picture.swapRedAndBlue();
    return picture.octreeReduction(colours);
}

// Weighted grey takes a true-colour pixel's first byte as red as well; its result is the same
// in every byte, so nothing needs to be put back.
int grey(Picture &picture)
{
    picture.swapRedAndBlue();
    picture.grayScale(weightedGrey);
    return done(picture);
}

// The filters take a 3 by 3 window: the size that the library's filters work with.
const unsigned char window = 3;
// Rank filter and convolution modes, and edge kernel families and directions.
enum { rankMedian = 4, rankDarkest = 5, rankBrightest = 6 };
enum { kernelGaussian = 12, kernelSharpen = 14 };
enum { familySobel = 2, directionNorth = 1, directionEast = 4, directionNorthWest = 0 };
enum { morphologyAllNeighbours = 0 };

const Operation operations[] = {
    {CM_GREY, "grey", "Grey scale", false, false, [](Picture &i) { return grey(i); }},
    {CM_BRIGHTER, "brighter", "Brighter by 20%", true, false, [](Picture &i) { i.adjust(20); return done(i); }},
    {CM_DARKER, "darker", "Darker by 20%", true, false, [](Picture &i) { i.adjust(-20); return done(i); }},
    {CM_EQUALISE, "equalise", "Histogram equalisation", false, false, [](Picture &i) { return i.histEqua(); }},
    {CM_FLATTEN, "flatten", "Histogram flattening", false, false, [](Picture &i) { return i.histFlatten(); }},
    {CM_STRETCH, "stretch", "Histogram stretch 20 to 235", false, false,
     [](Picture &i) { i.histStretch(20, 235); return done(i); }},
    {CM_TREE_EQUALISE, "tree-equalise", "Histogram tree equalisation", false, false, [](Picture &i) { return i.histTreeEqua(4); }},
    {CM_ROTATE_15, "rotate", "Rotate by 15 degrees", false, false, [](Picture &i) { return i.rotate(15, white, 1); }},
    {CM_ROTATE_90, "rotate90", "Rotate by 90 degrees", false, false, [](Picture &i) { return i.rotate(90, white, 0); }},
    {CM_HALF, "half", "Scale to half size", false, false, [](Picture &i) { return i.scale(0.5f, 0.5f, 1); }},
    {CM_DOUBLE, "double", "Scale to double size", false, false, [](Picture &i) { return i.scale(2, 2, 1); }},
    {CM_OCTREE_256, "octree256", "Octree reduction to 256 colours", false, false, [](Picture &i) { return octree(i, 256); }},
    {CM_OCTREE_16, "octree16", "Octree reduction to 16 colours", false, false, [](Picture &i) { return octree(i, 16); }},
    {CM_FIXED_16, "fixed16", "Fixed 16-colour palette", false, true, [](Picture &i) { return i.PLUT16Reduction(); }},
    {CM_FIXED_8, "fixed8", "Fixed 8-colour palette", false, true, [](Picture &i) { return i.PLUT8Reduction(); }},
    {CM_MEDIAN, "median", "Median filter", true, false, [](Picture &i) { return i.NLFilter(rankMedian, window); }},
    {CM_DARKEST, "darkest", "Darkest-neighbour filter", true, false, [](Picture &i) { return i.NLFilter(rankDarkest, window); }},
    {CM_BRIGHTEST, "brightest", "Brightest-neighbour filter", true, false,
     [](Picture &i) { return i.NLFilter(rankBrightest, window); }},
    {CM_SMOOTH, "smooth", "Gaussian smoothing", true, false, [](Picture &i) { return i.LFilter(kernelGaussian, window); }},
    {CM_SHARPEN, "sharpen", "Sharpening", true, false, [](Picture &i) { return i.LFilter(kernelSharpen, window); }},
    {CM_EMBOSS, "emboss", "Edge enhancement, north-west", true, false,
     [](Picture &i) { return i.edgeEnhance(familySobel, directionNorthWest, window); }},
    {CM_EDGES, "edges", "Sobel edge detection", true, false,
     [](Picture &i) { return i.edgeDetector(familySobel, directionNorth, directionEast, window); }},
    {CM_JITTER, "jitter", "Jitter", false, false, [](Picture &i) { return i.jitter(1); }},
    {CM_MOSAIC, "mosaic", "Mosaic of 8-pixel blocks", false, false, [](Picture &i) { return i.mosaic(8); }},
    {CM_BORDERS, "borders", "Region borders (morphology)", false, false,
     [](Picture &i) {
         // The rule compares palette indices; a true-colour picture gets its palette here first.
         const int reduced = i.isTrueColour() ? octree(i, 256) : GImage::resultOk;
         return reduced != GImage::resultOk ? reduced : i.morphology(morphologyAllNeighbours, white, black, 1);
     }},
    {CM_THINNING, "thinning", "Thinning on white", false, false, [](Picture &i) { return i.thinning(white); }},
};

} // namespace

Operation const *findOperation(unsigned short command)
{
    for (Operation const &operation : operations)
        if (operation.command == command)
            return &operation;
    return nullptr;
}

Operation const *findOperation(char const *name)
{
    for (Operation const &operation : operations)
        if (std::strcmp(operation.name, name) == 0)
            return &operation;
    return nullptr;
}

int runOperation(Operation const &operation, Picture &picture, std::function<void(int)> const &progress)
{
    if (operation.needsPalette && picture.isTrueColour())
        return resultNeedsPalette;
    // A palette picture may have its palette changed, which bands could not carry back.
    if (operation.banded && picture.isTrueColour())
        return picture.inBands(operation.apply, progress);
    progress(0);
    const int result = operation.apply(picture);
    progress(100);
    return result;
}

char const *operationMessage(int result)
{
    switch (result) {
    case GImage::resultOk:
        return "done";
    case GImage::resultNothingTraced:
        return "nothing was traced";
    case GImage::resultNoChainMemory:
    case GImage::resultNoMemory:
        return "there was not enough memory";
    case GImage::resultNotWritten:
        return "the file could not be written";
    case GImage::resultImpossible:
        return "this operation does not apply to this picture";
    case resultNeedsPalette:
        return "it works on pictures with a palette; reduce the colours first";
    default:
        return "the operation failed";
    }
}
