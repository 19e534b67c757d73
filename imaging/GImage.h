// GImage.h - the in-memory, device-independent image.
//
//   GImage  a 40-byte bitmap header, bottom-up pixel rows padded to 4 bytes, and a palette;
//           pixel access, sub-images, a platform bitmap, the .bmp writer and tone operations
//
// Two pixel forms are meant: 8 bits with a palette (one index byte) and 24 bits without one
// (three bytes). Operations work in stored rows, row 0 being the bottom of the picture;
// getPixel, setPixel and getSubImage take picture coordinates with y down. Operations that
// change the picture set the modified flag. Results: 0 success, 3 no memory, 5 file not
// written, 7 empty image or impossible argument; outline tracing adds 1 and 2.
#pragma once

#include "foundation/TeskWinExport.h"
#include "foundation/GColor.h"
#include "foundation/GPoint.h"
#include "foundation/PCoord.h"
#include "foundation/PList.h"
#include "foundation/POutlines.h"
#include "foundation/PString.h"
#include "graphics/GBitmap.h"
#include "graphics/GPalette.h"
#include "imaging/PImgDithSquare.h"

struct tagBITMAPINFOHEADER;
struct DibPicture;

class TESKWIN_API GImage {
public:
    // Results of the image operations. Outline tracing adds two: nothing found or the trace
    // abandoned, and no memory for the chain of a contour.
    enum Result {
        resultOk = 0,
        resultNothingTraced = 1,
        resultNoChainMemory = 2,
        resultNoMemory = 3,
        resultNotWritten = 5,
        resultImpossible = 7
    };

    GImage();
    // A zero-filled image; numColors 2, 16 and 256 give 1, 4 and 8 bits, any other value 0 bits.
    GImage(unsigned long width, unsigned long height, unsigned short numColors);
    // Adopts both blocks, which must come from PGlobalAlloc; copies the palette.
    GImage(unsigned char *pixels, tagBITMAPINFOHEADER *header, GPalette const &palette);
    // A deep copy, with the flags, scale and offsets.
    GImage(GImage const &other);
    // Replaces header, pixels and palette; the flags, scale and offsets of this image stay.
    GImage &operator=(GImage const &other);
    virtual ~GImage();

    // Reads a file; a plain image reads nothing and returns -1.
    virtual int load(PString const &fileName);
    // Writes a .bmp file: 0, or 5 when the image is empty or the file can't be written.
    virtual int write(PString const &fileName);
    // Palette entries in use: 0 for a true-colour image.
    virtual unsigned short numColors() const;
    // Washes colours out by `amount` of saturation; a palette can be restored afterwards.
    virtual void adjustBrightness(double amount);
    virtual void restoreBrightness();
    // Turns the picture counter-clockwise by degrees, filling the uncovered corners with the
    // background; within half a degree of a right angle the rows are transposed instead.
    virtual int rotate(float degrees, GColor const &background, int interpolate);
    // An adaptive palette of at most n colours from an octree; true colour becomes 8-bit.
    virtual int octreeReduction(unsigned short n);
    // The closed outline of the region at a picture point (y down) whose values lie from the
    // value there up to `range` above it; 8-bit palette images only.
    virtual int outlineTrace(PCoord<double> const &point, POutlines &outline, unsigned char range);

    unsigned short getWidth() const;
    unsigned short getHeight() const;
    unsigned short getWidthResolution() const;
    unsigned short getHeightResolution() const;
    tagBITMAPINFOHEADER *getHeader() { return header; }
    GPalette &palette() { return colorTable; }

    int isModified() const { return modified; }
    void setModified(int value) { modified = value; }
    int getSource() const { return source; }
    void setResolutionScale(double scale) { resolutionScale = scale; }
    double getResolutionScale() const { return resolutionScale; }
    void setOffset(double x, double y) { offsetX = x; offsetY = y; }
    void getOffset(double &x, double &y) const { x = offsetX; y = offsetY; }
    PCoord<int> convertToPixel(PCoord<double> const &point) const;

    // Picture coordinates, y first and growing downward.
    GColor getPixel(unsigned long y, unsigned long x);
    void setPixel(unsigned long y, unsigned long x, GColor const &color);
    // A new image of the picture between two corners, top-left first; null for none.
    GImage *getSubImage(GPoint const &topLeft, GPoint const &bottomRight);

    // A platform bitmap of the picture; the argument is not used.
    GBitmap makeBitmap(GPalette const *unused);
    operator GBitmap();
    // Header, rows and palette as the platform's DIB transfers take them.
    DibPicture dibPicture();

    // Tone. Modes of grayScale: 0 mean, 1 weighted, 2 largest channel.
    void grayScale(int mode);
    // Lightens (positive) or darkens (negative) every channel by percent.
    void adjust(int percent);
    int histEqua();
    int histFlatten();
    void histStretch(unsigned char low, unsigned char high);
    int histTreeEqua(unsigned char depth);

    // Geometry: nearest-below resampling to width times xFactor by height times yFactor.
    int scale(float xFactor, float yFactor, int interpolate);

    // Neighbourhood filters over 3 by 3 windows; border pixels keep their values.
    // Rank filters, modes: 4 median, 5 darkest, 6 brightest, 7 extreme nearer the mean.
    int NLFilter(int mode, unsigned char size);
    // Convolution, modes 8 to 16; any other mode sets each filtered value to size.
    int LFilter(int mode, unsigned char size);
    // Directional kernels: families 0, 1 and 2 (3 the same), directions 0 to 7.
    int edgeEnhance(int family, int direction, unsigned char size);
    // The magnitude of two directional responses.
    int edgeDetector(int family, int direction1, int direction2, unsigned char size);
    // Quantises every channel to a multiple of 8, with an offset of 8 times amount.
    int jitter(unsigned char amount);
    // Replaces square blocks of 2 to 63 pixels by their mean.
    int mosaic(unsigned short blockSize);

    // Fixed palettes of 16 and 8 colours chosen by tests on the channels; palette images only.
    int PLUT16Reduction();
    int PLUT8Reduction();

    // Line screens: rows of bars one cell apart whose thickness follows the tone, in output
    // units of `scale` per pixel; angle 0 or 180 only. Bars are added to the lists.
    void makeDitherSquares(unsigned short angle, unsigned short cell, float scale, int darkIsThick,
                           PList<PImgDithSquare> &squares);
    // Four screens, for the distance of red, blue and green below the strongest channel, and black.
    void makeDitherSquares(unsigned short angle, unsigned short cell, float scale, int invertBlack,
                           PList<PImgDithSquare> &list1, PList<PImgDithSquare> &list2, PList<PImgDithSquare> &list3,
                           PList<PImgDithSquare> &list4);

    // Writes the foreground index where a 3 by 3 rule holds on the index bytes (modes 0 to 4,
    // any other always); with useBackground 1 the background index elsewhere.
    int morphology(int mode, GColor const &foreground, GColor const &background, int useBackground);
    // Removes boundary pixels of the shapes on a background index, for at most ten rounds.
    int thinning(GColor const &background);

    // Every region's outline, band by band of `range` values above each index, skipping `skip`
    // indices after each band; the most frequent index is background. Outlines are added.
    int outlineTrace(unsigned char range, unsigned char skip, PList<POutlines> &outlines);

protected:
    // The start of a pixel in stored rows; no range check.
    unsigned char *pixelAddr(unsigned short row, unsigned short column);
    // 0 grey palette, 1 colour palette, 2 true colour.
    int getImageType();
    // The palette index nearest to a colour.
    unsigned char getIndex(GColor const &color);
    // The size by size window (size + 1 when even) around a stored position, row by row.
    void getSubset(unsigned short row, unsigned short column, int plane, unsigned short size, int imageType,
                   unsigned char *out);
    void getSubset(unsigned short row, unsigned short column, unsigned short size, int imageType, GColor *out);
    // Counts per index or byte value: an array from PGlobalAlloc, or null.
    unsigned long *buildHistogram();
    // Running sums of a histogram: an array from PGlobalAlloc, or null.
    unsigned long *buildIntegrate(unsigned long const *histogram);
    // The outline of the region of `image` at a picture point, retrying left of isolated pixels;
    // traced parts are remembered so that a region is delivered once.
    int traceOne(GImage *image, PCoord<double> const &point, POutlines &outline, unsigned char range);
    // One attempt from the region's left edge on the point's row.
    int traceSingleOutline(GImage *image, PCoord<double> const &point, POutlines &outline, unsigned char range);
    // Frees header and pixels, leaving the image empty.
    void release();

    // How an image of source 1 is saved: set by the image-file layer above this one, which
    // knows the library-backed images. False when the image isn't one, so .bmp writing goes on.
    using LibrarySave = bool (*)(GImage &image, PString const &fileName, int &result);
    static LibrarySave librarySave;
    static constexpr int librarySource = 1;

    unsigned char *pixels;
    tagBITMAPINFOHEADER *header;
    GPalette colorTable;
    int modified;
    int source;
    double resolutionScale;
    double offsetX;
    double offsetY;

private:
    void copyPicture(GImage const &other);
    // Whether the buffer holds every row the header describes, so that any of them may be read.
    bool holdsWholeRows() const;
    // Makes a new buffer of width by height pixels at this bit count the picture; frees the old one.
    void replacePixels(unsigned char *newPixels, unsigned long width, unsigned long height);
    // The frame of the convolution filters: each inner position of each plane gets
    // f(window, entries) of its 3 by 3 neighbourhood, written into a copy of the picture.
    template <class F>
    int filterPlanes(unsigned char size, F const &f);
    // Gives the image a platform palette of its own, of at least `size` entries, the old ones
    // kept: neither a stock palette nor one shared with a copy is rewritten. False without memory.
    bool ownPalette(unsigned long size);
    // Maps every index through indexOf of its entry, then sets the first `count` entries.
    int reduceToFixedPalette(unsigned char (*indexOf)(GColor const &), GColor const *colours, unsigned short count);
    // Area averages over stored rows from rowStart and columns from columnStart while below the
    // ends, each byte taken as a palette index: the sum of red, green and blue, or one channel.
    // 765 or 255 when no sample is taken, 0 for an empty image.
    unsigned short getRGBAverage(float rowStart, float rowEnd, float columnStart, float columnEnd,
                                 unsigned short rowBits, unsigned short bytesPerPixel);
    unsigned short getRAverage(float rowStart, float rowEnd, float columnStart, float columnEnd,
                               unsigned short rowBits, unsigned short bytesPerPixel);
    unsigned short getGAverage(float rowStart, float rowEnd, float columnStart, float columnEnd,
                               unsigned short rowBits, unsigned short bytesPerPixel);
    unsigned short getBAverage(float rowStart, float rowEnd, float columnStart, float columnEnd,
                               unsigned short rowBits, unsigned short bytesPerPixel);
    template <class Channel>
    unsigned short areaAverage(float rowStart, float rowEnd, float columnStart, float columnEnd,
                               unsigned short rowBits, unsigned short bytesPerPixel, Channel channel,
                               unsigned short none);
    // The palette index of a colour, remembered for the colours seen before.
    class IndexCache;
    // Turns the picture grey and gives the running sums of its histogram, or null.
    unsigned long *buildGreyIntegrate();
    // Palette entry i, read in place; black past the colours the palette holds.
    GColor const &entry(unsigned int i) const
    {
        return i < static_cast<unsigned int>(colorTable.entryCount) ? colorTable.entries[i] : noColor;
    }
    static const GColor noColor;
    // Whether outlines can be traced: 8 bits a pixel, a palette and every row present.
    bool traceable() const;
    // The band a point's trace starts with; false on bad input, with the result in `result`.
    bool traceBand(GImage *image, PCoord<double> const &point, unsigned char range, unsigned char &low,
                   unsigned char &high, int &result);
    // Byte offset of a picture position, or -1 when the pixel's `bytes` lie outside the buffer.
    long long pictureOffset(unsigned long y, unsigned long x, unsigned int bytes) const;
    // The values a histogram, and the tables built from it, range over.
    unsigned int toneLevels() const;
    // Applies a table to every pixel: byte k becomes table[byte 0 as it stands by then].
    void mapPixels(unsigned char const *table);
    // Applies a table to every pixel: every byte becomes table[byte 0].
    void fillPixels(unsigned char const *table);
};
