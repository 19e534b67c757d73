#include "imaging/GImage.h"

#include "foundation/PFile.h"
#include "foundation/PMemory.h"
#include "graphics/DibFormat.h"
#include "imaging/GImageRows.h"

#include <windows.h>

#include <cstring>

namespace {

unsigned short bitCountFor(unsigned short numColors)
{
    switch (numColors) {
    case 2: return 1;
    case 16: return 4;
    case 256: return 8;
    default: return 0;
    }
}

BITMAPINFOHEADER *copyHeader(BITMAPINFOHEADER const &from)
{
    auto *to = static_cast<BITMAPINFOHEADER *>(PGlobalAlloc(sizeof(BITMAPINFOHEADER)));
    if (to)
        *to = from;
    return to;
}

int writeAll(PFile &file, void const *block, unsigned long size)
{
    // The file only reads the block.
    return size == 0 || file.write(const_cast<void *>(block), static_cast<long>(size)) == static_cast<long>(size);
}

} // namespace

const GColor GImage::noColor;

GImage::GImage()
    : pixels(nullptr), header(nullptr), modified(0), source(0), resolutionScale(1.0), offsetX(0.0), offsetY(0.0)
{
}

GImage::GImage(unsigned long width, unsigned long height, unsigned short numColors) : GImage()
{
    header = static_cast<BITMAPINFOHEADER *>(PGlobalAlloc(sizeof(BITMAPINFOHEADER)));
    if (!header)
        return;
    header->biSize = sizeof(BITMAPINFOHEADER);
    header->biWidth = static_cast<LONG>(width);
    header->biHeight = static_cast<LONG>(height);
    header->biPlanes = 1;
    header->biBitCount = bitCountFor(numColors);
    header->biCompression = BI_RGB;
    header->biSizeImage = dibStride(*header) * height;
    header->biClrUsed = numColors;
    header->biClrImportant = numColors;
    pixels = static_cast<unsigned char *>(PGlobalAlloc(header->biSizeImage));
}

GImage::GImage(unsigned char *pixels, tagBITMAPINFOHEADER *header, GPalette const &palette)
    : pixels(pixels), header(header), colorTable(palette), modified(0), source(0), resolutionScale(1.0),
      offsetX(0.0), offsetY(0.0)
{
}

GImage::GImage(GImage const &other)
    : pixels(nullptr), header(nullptr), colorTable(other.colorTable), modified(other.modified),
      source(other.source), resolutionScale(other.resolutionScale), offsetX(other.offsetX), offsetY(other.offsetY)
{
    copyPicture(other);
}

GImage &GImage::operator=(GImage const &other)
{
    if (this != &other) {
        release();
        copyPicture(other);
        colorTable = other.colorTable;
    }
    return *this;
}

GImage::~GImage() { release(); }

// Copies the other image's header and pixels into this empty one.
void GImage::copyPicture(GImage const &other)
{
    if (!other.header)
        return;
    header = copyHeader(*other.header);
    if (!header || !other.pixels)
        return;
    pixels = static_cast<unsigned char *>(PGlobalAlloc(header->biSizeImage));
    if (pixels)
        std::memcpy(pixels, other.pixels, header->biSizeImage);
}

void GImage::release()
{
    if (pixels)
        PGlobalFree(pixels);
    if (header)
        PGlobalFree(header);
    pixels = nullptr;
    header = nullptr;
}

int GImage::load(PString const &) { return -1; }

unsigned short GImage::getWidth() const { return header ? static_cast<unsigned short>(header->biWidth) : 0; }
unsigned short GImage::getHeight() const { return header ? static_cast<unsigned short>(header->biHeight) : 0; }

unsigned short GImage::getWidthResolution() const
{
    return header ? static_cast<unsigned short>(header->biXPelsPerMeter) : 0;
}

unsigned short GImage::getHeightResolution() const
{
    return header ? static_cast<unsigned short>(header->biYPelsPerMeter) : 0;
}

PCoord<int> GImage::convertToPixel(PCoord<double> const &point) const
{
    return PCoord<int>(truncateToInt(point.xval() / resolutionScale - offsetX),
                       truncateToInt(point.yval() / resolutionScale - offsetY));
}

unsigned short GImage::numColors() const
{
    if (!header)
        return 0;
    unsigned int bits;
    if (header->biSize == sizeof(BITMAPCOREHEADER)) {
        // The old core layout keeps its bit count at offset 10.
        WORD coreBits;
        std::memcpy(&coreBits, reinterpret_cast<unsigned char const *>(header) + 10, sizeof coreBits);
        bits = coreBits;
    } else {
        if (header->biClrUsed != 0)
            return static_cast<unsigned short>(header->biClrUsed);
        bits = header->biBitCount;
    }
    switch (bits) {
    case 1: return 2;
    case 4: return 16;
    case 8: return 256;
    default: return 0;
    }
}

unsigned char *GImage::pixelAddr(unsigned short row, unsigned short column)
{
    if (!header || !pixels)
        return nullptr;
    return pixels + dibStride(*header) * row + ((column * header->biBitCount) >> 3);
}

long long GImage::pictureOffset(unsigned long y, unsigned long x, unsigned int bytes) const
{
    // Deliberate: the bounds are tested with "greater than", so y equal to the height and x equal
    // to the width pass; such positions are then read only where they still lie in the buffer.
    if (y > static_cast<unsigned long>(header->biHeight) || x > static_cast<unsigned long>(header->biWidth))
        return -1;
    const long long offset = static_cast<long long>(dibStride(*header)) *
                                 (static_cast<long long>(header->biHeight) - static_cast<long long>(y) - 1) +
                             static_cast<long long>(x) * (header->biBitCount >> 3);
    if (offset < 0 || offset + bytes > header->biSizeImage)
        return -1;
    return offset;
}

GColor GImage::getPixel(unsigned long y, unsigned long x)
{
    if (!pixels || !header)
        return GColor();
    const int indexed = numColors() != 0;
    const long long offset = pictureOffset(y, x, indexed ? 1 : 3);
    if (offset < 0)
        return GColor();
    unsigned char const *at = pixels + offset;
    if (indexed)
        return entry(at[0]);
    // Deliberate: only this reader takes byte 2 as red; everything else takes byte 0 as red.
    return GColor(at[2], at[1], at[0]);
}

void GImage::setPixel(unsigned long y, unsigned long x, GColor const &color)
{
    if (!pixels || !header)
        return;
    const int indexed = numColors() != 0;
    const long long offset = pictureOffset(y, x, indexed ? 1 : 3);
    if (offset < 0)
        return;
    unsigned char *at = pixels + offset;
    if (indexed) {
        at[0] = getIndex(color);
        return;
    }
    at[0] = color.getR();
    at[1] = color.getG();
    at[2] = color.getB();
}

unsigned char GImage::getIndex(GColor const &color)
{
    const unsigned int n = numColors();
    if (n == 0)
        return 0;
    // Entries the palette lacks read as black; of those only the first can be chosen, since
    // ties go to the lower index.
    const unsigned int held = static_cast<unsigned int>(colorTable.entryCount);
    const unsigned int considered = held < n ? held + 1 : n;

    for (unsigned int i = 0; i < considered; ++i)
        if (entry(i) == color)
            return static_cast<unsigned char>(i);
    const int r = color.getR(), g = color.getG(), b = color.getB();
    auto square = [](int d) { return d * d; };
    // The measures are whole numbers, so comparing them as integers orders them as doubles would.
    int best = square(entry(0).getR() - r) + square(entry(0).getG() - g) + square(entry(0).getB() - b);
    unsigned int bestIndex = 0;
    for (unsigned int i = 1; i < considered; ++i) {
        GColor const &e = entry(i);
        // Deliberate: past entry 0 the blue term measures against the target's red.
        const int measure = square(e.getR() - r) + square(e.getG() - g) + square(e.getB() - r);
        if (measure < best) {
            best = measure;
            bestIndex = i;
        }
    }
    return static_cast<unsigned char>(bestIndex);
}

int GImage::getImageType()
{
    const unsigned int n = numColors();
    if (n == 0)
        return 2;
    for (unsigned int i = 0; i < n; ++i) {
        const GColor e = entry(i);
        if (e.getR() != e.getG() || e.getG() != e.getB())
            return 1;
    }
    return 0;
}

namespace {

// Reads the window of a subset: stored rows and columns from centre - size / 2 to centre + size / 2,
// in 16-bit unsigned arithmetic, row after row. The first value of a row is read at the window's
// first pixel, each next one `advance` bytes on; read(pixel) takes `bytes` bytes there. Positions
// outside the buffer's rows yield Out() rather than stray reads.
template <class Out, class Read>
void readWindow(GImageRows const &rows, unsigned short row, unsigned short column, unsigned short size,
                unsigned long advance, unsigned long bytes, Out *out, Read read)
{
    const unsigned short half = size >> 1;
    const unsigned int rowLow = static_cast<unsigned short>(row - half);
    const unsigned int rowHigh = static_cast<unsigned short>(row + half);
    const unsigned int columnLow = static_cast<unsigned short>(column - half);
    const unsigned int columnHigh = static_cast<unsigned short>(column + half);
    if (rowHigh < rowLow || columnHigh < columnLow)
        return;
    const unsigned long count = columnHigh - columnLow + 1;
    const unsigned long first = columnLow * rows.bytesPerPixel();
    // The leading columns whose bytes lie inside a row; the rest lie past its end.
    unsigned long inside = 0;
    if (first + bytes <= rows.rowBytes()) {
        const unsigned long room = advance ? (rows.rowBytes() - first - bytes) / advance + 1 : count;
        inside = room < count ? room : count;
    }
    for (unsigned int r = rowLow; r <= rowHigh; ++r) {
        unsigned long done = 0;
        if (r < rows.count()) {
            unsigned char const *at = rows.row(r) + first;
            for (; done < inside; ++done, at += advance)
                *out++ = read(at);
        }
        for (; done < count; ++done)
            *out++ = Out();
    }
}

} // namespace

void GImage::getSubset(unsigned short row, unsigned short column, int plane, unsigned short size, int imageType,
                       unsigned char *out)
{
    if (!header || !pixels)
        return;
    const GImageRows rows(pixels, *header);
    const unsigned long step = rows.bytesPerPixel();
    if (plane < 0) {
        // Raw bytes: from the window's first pixel, one byte per column whatever the pixel form.
        readWindow(rows, row, column, size, 1, 1, out, [](unsigned char const *p) { return *p; });
    } else if (imageType == 0) {
        readWindow(rows, row, column, size, step, 1, out,
                   [this](unsigned char const *p) { return entry(*p).getR(); });
    } else if (imageType == 1 && plane <= 2) {
        readWindow(rows, row, column, size, step, 1, out, [this, plane](unsigned char const *p) {
            const GColor e = entry(*p);
            return plane == 0 ? e.getR() : plane == 1 ? e.getG() : e.getB();
        });
    } else if (imageType == 2) {
        readWindow(rows, row, column, size, step, static_cast<unsigned long>(plane) + 1, out,
                   [plane](unsigned char const *p) { return p[plane]; });
    }
}

void GImage::getSubset(unsigned short row, unsigned short column, unsigned short size, int imageType, GColor *out)
{
    if (!header || !pixels)
        return;
    const GImageRows rows(pixels, *header);
    const unsigned long step = rows.bytesPerPixel();
    if (imageType == 0 || imageType == 1)
        readWindow(rows, row, column, size, step, 1, out, [this](unsigned char const *p) { return entry(*p); });
    else if (imageType == 2)
        readWindow(rows, row, column, size, step, 3, out,
                   [](unsigned char const *p) { return GColor(p[0], p[1], p[2]); });
}

GImage *GImage::getSubImage(GPoint const &topLeft, GPoint const &bottomRight)
{
    if (!header)
        return nullptr;
    const GImageRows rows(pixels, *header);
    // A picture whose rows the buffer doesn't hold whole has nothing to cut.
    if (rows.count() == 0 || rows.count() < static_cast<unsigned long>(header->biHeight))
        return nullptr;
    auto clamp = [](double v, long high) {
        const int whole = truncateToInt(v);
        return whole < 0 ? 0 : whole > high ? static_cast<int>(high) : whole;
    };
    const int x0 = clamp(topLeft.getX(), header->biWidth - 1);
    const int y0 = clamp(topLeft.getY(), header->biHeight - 1);
    const int x1 = clamp(bottomRight.getX(), header->biWidth - 1);
    const int y1 = clamp(bottomRight.getY(), header->biHeight - 1);
    // The one-pixel selection at the origin counts as no selection.
    if (x0 == 0 && y0 == 0 && x1 == 0 && y1 == 0)
        return nullptr;
    // Corners out of order select nothing.
    if (x1 < x0 || y1 < y0)
        return nullptr;

    BITMAPINFOHEADER *part = copyHeader(*header);
    if (!part)
        return nullptr;
    part->biWidth = x1 - x0 + 1;
    part->biHeight = y1 - y0 + 1;
    part->biSizeImage = dibStride(*part) * part->biHeight;
    auto *partPixels = static_cast<unsigned char *>(PGlobalAlloc(part->biSizeImage));
    if (!partPixels) {
        PGlobalFree(part);
        return nullptr;
    }
    const GImageRows partRows(partPixels, *part);
    const unsigned long rowBytes = (static_cast<unsigned long>(part->biWidth) * header->biBitCount) >> 3;
    const unsigned long skip = (static_cast<unsigned long>(x0) * header->biBitCount) >> 3;
    for (long i = 0; i < part->biHeight; ++i)
        std::memcpy(partRows.row(part->biHeight - i - 1), rows.row(header->biHeight - y0 - i - 1) + skip, rowBytes);
    GImage *result = new (std::nothrow) GImage(partPixels, part, colorTable);
    if (!result) {
        PGlobalFree(partPixels);
        PGlobalFree(part);
    }
    return result;
}

GBitmap GImage::makeBitmap(GPalette const *)
{
    if (!header || !pixels)
        return GBitmap();
    DibInfoBlock block(dibPicture());
    if (!block.get())
        return GBitmap();
    HDC dc = GetDC(nullptr);
    HBITMAP bitmap;
    {
        DibPaletteSelection selection(dc, colorTable);
        bitmap = CreateDIBitmap(dc, header, CBM_INIT, pixels, block.get(), DIB_RGB_COLORS);
    }
    ReleaseDC(nullptr, dc);
    return GBitmap(bitmap);
}

DibPicture GImage::dibPicture() { return DibPicture{header, pixels, &colorTable, numColors()}; }

GImage::operator GBitmap() { return makeBitmap(nullptr); }

GImage::LibrarySave GImage::librarySave = nullptr;

int GImage::write(PString const &fileName)
{
    int saved = resultOk;
    if (source == librarySource && librarySave && librarySave(*this, fileName, saved))
        return saved;
    if (!header || !pixels)
        return resultNotWritten;
    PFile file;
    if (!file.open(fileName, PFile::writeAccess, PFile::shareNone, PFile::createAlways))
        return resultNotWritten;
    const unsigned int n = numColors();
    const unsigned short paletteBytes = static_cast<unsigned short>(n * 4);

    unsigned char fileHeader[14] = {'B', 'M'};
    // Deliberate: the recorded size leaves the pixels out unless the palette, too, is non-empty,
    // so a true-colour file records 54.
    unsigned long recorded = header->biSize + paletteBytes + 14;
    if (header->biSizeImage && header->biSize && paletteBytes)
        recorded += header->biSizeImage;
    putLE32(fileHeader + 2, recorded);
    putLE32(fileHeader + 10, header->biSize + 14 + paletteBytes);
    if (!writeAll(file, fileHeader, sizeof fileHeader) || !writeAll(file, header, sizeof(BITMAPINFOHEADER)))
        return resultNotWritten;

    if (paletteBytes) {
        DibInfoBlock block(dibPicture());
        if (!block.get() || !writeAll(file, block.table(), paletteBytes))
            return resultNotWritten;
    }
    return writeAll(file, pixels, header->biSizeImage) ? resultOk : resultNotWritten;
}
