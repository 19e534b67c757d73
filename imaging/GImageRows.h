// GImageRows.h - how the pixel loops of the image operations walk a buffer.
//
//   GImageRows       row pointers over the stored rows that a buffer holds whole
//   forEachTriple    the flat run of byte triples that some tone operations walk
//   ScratchRows      a few rows of working space for the operations that work in place
//   forEachInnerRow  the inner rows of a 3 by 3 neighbourhood operation done in place
//
// Loops go row by row from a row pointer, so that the inner loop over the columns is a
// plain pointer walk that the compiler can vectorise.
#pragma once

#include "foundation/PMemory.h"
#include "graphics/DibFormat.h"

#include <windows.h>

#include <cstring>
#include <utility>

class GImageRows {
public:
    // Rows past the end of biSizeImage, and everything of a buffer with zero-width rows,
    // are left out, so that a walk never leaves the buffer.
    GImageRows(unsigned char *pixels, BITMAPINFOHEADER const &header)
        : first(pixels), stride(dibStride(header)), width(0), step(header.biBitCount >> 3), rows(0)
    {
        if (!pixels || stride == 0 || header.biHeight <= 0 || header.biWidth <= 0)
            return;
        const unsigned long held = header.biSizeImage / stride;
        rows = static_cast<unsigned long>(header.biHeight) < held ? header.biHeight : held;
        width = header.biWidth;
    }

    unsigned long count() const { return rows; }
    unsigned long columns() const { return width; }
    // Bytes per pixel: 0 for 1- and 4-bit pictures, whose every position is the row's first byte.
    unsigned long bytesPerPixel() const { return step; }
    unsigned long rowBytes() const { return stride; }
    unsigned char *row(unsigned long index) const { return first + index * stride; }

    // f(unsigned char *row) for each stored row, bottom first.
    template <class F>
    void forEachRow(F &&f) const
    {
        unsigned char *at = first;
        for (unsigned long r = 0; r < rows; ++r, at += stride)
            f(at);
    }

    // f(unsigned char *pixel) for each column of each stored row; padding is not visited.
    template <class F>
    void forEachPixel(F &&f) const
    {
        const unsigned long n = width, by = step;
        forEachRow([&](unsigned char *at) {
            for (unsigned long x = 0; x < n; ++x, at += by)
                f(at);
        });
    }

private:
    unsigned char *first;
    unsigned long stride;
    unsigned long width;
    unsigned long step;
    unsigned long rows;
};

// f(unsigned char *triple) for the whole triples of a buffer taken as one flat run from its
// start: rows are ignored, so padding bytes are taken as pixel bytes and triples straddle rows.
template <class F>
void forEachTriple(unsigned char *pixels, unsigned long size, F &&f)
{
    if (!pixels)
        return;
    unsigned char *const end = pixels + size / 3 * 3;
    for (unsigned char *at = pixels; at != end; at += 3)
        f(at);
}

// Working rows of an operation done in place, from PGlobalAlloc, freed with the scope.
class ScratchRows {
public:
    ScratchRows(unsigned long count, unsigned long bytes)
        : block(PGlobalAlloc(count * bytes > 0 ? count * bytes : 1)), bytes(bytes)
    {
    }
    bool ok() const { return block.get() != nullptr; }
    unsigned char *row(unsigned long i) const { return static_cast<unsigned char *>(block.get()) + i * bytes; }

private:
    DibGlobalBlock block;
    unsigned long bytes;
};

// The inner rows of a picture of three rows or more, filtered in place, bottom first:
// f(window, row) gets the rows below, at and above stored row r as they stood before the
// filter, and the picture's row r to write. `saved` holds two rows of the picture.
template <class F>
void forEachInnerRow(GImageRows const &rows, unsigned char *saved, F &&f)
{
    const unsigned long stride = rows.rowBytes();
    unsigned char *previous = saved, *current = saved + stride;
    std::memcpy(previous, rows.row(0), stride);
    for (unsigned long r = 1; r + 1 < rows.count(); ++r) {
        std::memcpy(current, rows.row(r), stride);
        unsigned char const *const window[3] = {previous, current, rows.row(r + 1)};
        f(window, rows.row(r));
        std::swap(previous, current);
    }
}
