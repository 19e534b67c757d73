#include "graphics/GDiBitmap.h"

#include "foundation/PFile.h"
#include "foundation/PMemory.h"
#include "graphics/DibFormat.h"

#include <windows.h>

#include <cstring>
#include <new>

namespace {

const int resultOk = 0;
const int resultNoColorTable = 1;
const int resultNotBmp = 2;
const int resultNoMemory = 3;
const int resultTruncated = 4;
const int resultNoPalette = 6;

// A picture is never made larger, in 8-bit pixels, than this many times its file: a .bmp of
// 1 bit per pixel is the most that a file can grow by. Larger claims are headers that lie.
const unsigned long long maxGrowth = 8;

// The length of an open file, leaving its position at the start; 0 for a file not open.
unsigned long long fileLength(PFile &file)
{
    const long end = file.seek(0, PFile::fromEnd);
    file.seek(0, PFile::fromStart);
    return end > 0 ? static_cast<unsigned long long>(end) : 0;
}

// Spreads 1- or 4-bit rows into one byte per pixel, each stored row then padded with zeros.
int unpackRows(PFile &file, unsigned char *out, BITMAPINFOHEADER const &header, unsigned int depth)
{
    const unsigned long width = static_cast<unsigned long>(header.biWidth);
    const unsigned long fileStride = static_cast<unsigned long>(dibSize(header.biWidth, 1, depth));
    const unsigned long pad = static_cast<unsigned long>(dibSize(header.biWidth, 1, 8)) - width;
    auto *row = static_cast<unsigned char *>(PGlobalAlloc(fileStride ? fileStride : 1));
    if (!row)
        return resultNoMemory;
    const unsigned int perByte = 8 / depth, mask = (1u << depth) - 1;
    for (long r = 0; r < header.biHeight; ++r) {
        if (file.read(row, static_cast<long>(fileStride)) < static_cast<long>(fileStride)) {
            PGlobalFree(row);
            return resultTruncated;
        }
        unsigned char const *in = row;
        for (unsigned long x = 0; x < width; ++in)
            for (unsigned int k = 0; k < perByte && x < width; ++k, ++x)
                *out++ = static_cast<unsigned char>((*in >> (8 - depth * (k + 1))) & mask);
        std::memset(out, 0, pad);
        out += pad;
    }
    PGlobalFree(row);
    return resultOk;
}

} // namespace

int GDiBitmap::fail(int result)
{
    release();
    return result;
}

int GDiBitmap::createPalette(tagRGBQUAD *quads)
{
    const unsigned int n = numColors();
    if (n == 0)
        return 0;
    GColor *colors = new (std::nothrow) GColor[n];
    if (!colors)
        return 0;
    for (unsigned int i = 0; i < n; ++i)
        colors[i] = GColor(quads[i].rgbRed, quads[i].rgbGreen, quads[i].rgbBlue);
    colorTable = GPalette(static_cast<unsigned short>(n), colors);
    delete[] colors;
    return 1;
}

int GDiBitmap::load(PString const &fileName)
{
    // A reload starts from an empty image rather than abandoning the old blocks.
    release();
    PFile file;
    // A failed open shows as the failed read that follows.
    file.open(fileName, PFile::readAccess, PFile::shareRead | PFile::shareWrite, PFile::openExisting);
    const unsigned long long length = fileLength(file);

    unsigned char fileHeader[14];
    if (file.read(fileHeader, sizeof fileHeader) < static_cast<long>(sizeof fileHeader))
        return fail(resultTruncated);
    if (fileHeader[0] != 'B' || fileHeader[1] != 'M')
        return fail(resultNotBmp);
    const unsigned long fileSize = getLE32(fileHeader + 2);
    const unsigned long pixelOffset = getLE32(fileHeader + 10);

    header = static_cast<BITMAPINFOHEADER *>(PGlobalAlloc(sizeof(BITMAPINFOHEADER)));
    if (!header)
        return fail(resultNoMemory);
    if (file.read(header, sizeof(BITMAPINFOHEADER)) < static_cast<long>(sizeof(BITMAPINFOHEADER)))
        return fail(resultTruncated);
    const unsigned int n = numColors();
    if (n == 0)
        return fail(resultNoColorTable);

    // Whatever the file's depth, the image holds one byte per pixel.
    const bool core = header->biSize == sizeof(BITMAPCOREHEADER);
    unsigned int depth;
    if (core) {
        unsigned char const *raw = reinterpret_cast<unsigned char const *>(header);
        const unsigned int width = getLE16(raw + 4), height = getLE16(raw + 6);
        depth = getLE16(raw + 10);
        *header = BITMAPINFOHEADER{sizeof(BITMAPINFOHEADER), static_cast<LONG>(width), static_cast<LONG>(height),
                                   1, 8, 0, 0, 0, 0, n, n};
        // Back to just behind the 12 bytes of the core header.
        file.seek(static_cast<long>(sizeof(BITMAPCOREHEADER)) - static_cast<long>(sizeof(BITMAPINFOHEADER)),
                  PFile::fromCurrent);
    } else {
        depth = header->biBitCount;
        header->biPlanes = 1;
        header->biBitCount = 8;
    }

    const long long computed = dibSize(header->biWidth, header->biHeight, 8);
    if (computed < 0 || computed > 0xFFFFFFFFLL)
        return fail(resultNoMemory);
    header->biSizeImage = static_cast<DWORD>(computed);
    // An empty picture takes its buffer size from the file header instead.
    const unsigned long size = header->biSizeImage ? header->biSizeImage : fileSize - pixelOffset;

    // The colour table: as many entries as the 8-bit header now counts, short reads left zero.
    const unsigned int entries = numColors();
    auto *quads = static_cast<RGBQUAD *>(PGlobalAlloc(entries * sizeof(RGBQUAD)));
    if (!quads)
        return fail(resultNoMemory);
    if (core) {
        unsigned char *bytes = reinterpret_cast<unsigned char *>(quads);
        file.read(bytes, static_cast<long>(entries * 3));
        for (unsigned int i = entries; i-- > 0;)
            quads[i] = RGBQUAD{bytes[3 * i], bytes[3 * i + 1], bytes[3 * i + 2], 0};
    } else {
        file.read(quads, static_cast<long>(entries * sizeof(RGBQUAD)));
    }
    const int madePalette = createPalette(quads);
    PGlobalFree(quads);
    if (!madePalette)
        return fail(resultNoPalette);

    if (pixelOffset != 0)
        file.seek(static_cast<long>(pixelOffset), PFile::fromStart);
    const long position = file.seek(0, PFile::fromCurrent);
    const unsigned long long available =
        position >= 0 && static_cast<unsigned long long>(position) < length ? length - position : 0;

    // Pixels the file can't hold are found before the buffer for them is taken.
    const bool packed = depth == 1 || depth == 4;
    const bool whole = depth == 8 || depth == 24;
    if (packed && static_cast<unsigned long long>(dibSize(header->biWidth, header->biHeight, depth)) > available)
        return fail(resultTruncated);
    if (whole && size > available)
        return fail(resultTruncated);
    if (size > maxGrowth * length)
        return fail(resultNoMemory);

    pixels = static_cast<unsigned char *>(PGlobalAlloc(size));
    if (!pixels)
        return fail(resultNoMemory);
    if (packed) {
        const int unpacked = unpackRows(file, pixels, *header, depth);
        if (unpacked != resultOk)
            return fail(unpacked);
    } else if (whole) {
        // A 24-bit file reaches here only with a colour count, and its bytes are taken as indices.
        if (file.read(pixels, static_cast<long>(size)) < static_cast<long>(size))
            return fail(resultTruncated);
    }
    source = 4;
    return resultOk;
}

int GDiBitmap::load(GBitmap const &bitmap)
{
    release();
    BITMAP info = {};
    GetObjectA(bitmap.getHandle(), sizeof info, &info);
    unsigned short bits = static_cast<unsigned short>(info.bmPlanes * info.bmBitsPixel);
    if (bits == 3)
        bits = 4;
    if (bits == 16 || bits > 8)
        return resultNoColorTable;

    header = static_cast<BITMAPINFOHEADER *>(PGlobalAlloc(sizeof(BITMAPINFOHEADER)));
    if (!header)
        return fail(resultNoMemory);
    *header = BITMAPINFOHEADER{sizeof(BITMAPINFOHEADER), info.bmWidth, info.bmHeight, 1, bits, 0, 0, 0, 0, 0, 0};
    const unsigned int tableSize = bits == 1 ? 2 : bits == 4 ? 16 : 256;
    auto *block = static_cast<BITMAPINFO *>(PGlobalAlloc(sizeof(BITMAPINFOHEADER) + tableSize * sizeof(RGBQUAD)));
    if (!block)
        return fail(resultNoMemory);
    block->bmiHeader = *header;

    HDC dc = GetDC(nullptr);
    const UINT lines = static_cast<unsigned short>(header->biHeight);
    // With no buffer the platform completes the header.
    GetDIBits(dc, bitmap.getHandle(), 0, lines, nullptr, block, DIB_RGB_COLORS);
    *header = block->bmiHeader;
    const unsigned long rowsSize = dibStride(*header) * lines;
    if (header->biSizeImage == 0)
        header->biSizeImage = static_cast<DWORD>(dibSize(info.bmWidth, info.bmHeight, bits));
    // The buffer holds whatever the platform will write, even if it reported less.
    pixels = static_cast<unsigned char *>(
        PGlobalAlloc(header->biSizeImage > rowsSize ? header->biSizeImage : rowsSize));
    int result = resultNoMemory;
    if (pixels && GetDIBits(dc, bitmap.getHandle(), 0, lines, pixels, block, DIB_RGB_COLORS) != 0)
        result = resultOk;
    ReleaseDC(nullptr, dc);
    PGlobalFree(block);
    return result == resultOk ? result : fail(result);
}
