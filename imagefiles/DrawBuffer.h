// DrawBuffer.h - pixel buffers that pictures are warped in (library-internal).
//
//   _DRAWPOINT      a whole-number point of a warp's quadrilateral
//   DrawBuffer      a top-down buffer of 32-bit pixels (blue, green, red, spare)
//   bitmapToBuffer  a platform bitmap's pixels as a buffer
//   bufferToBitmap  a buffer as a new platform bitmap
#pragma once

#include <windows.h>

struct _DRAWPOINT {
    long x;
    long y;
};

class DrawBuffer {
public:
    // The only sampling and edge rule warp takes: bilinear sampling, and pixels outside the
    // quadrilateral keep the target's value.
    static constexpr int samplingBilinear = 2;
    static constexpr int edgesKeepTarget = 2;

    // A buffer of width by height pixels of the value fill, or null (no memory, bad size).
    static DrawBuffer *Build(int width, int height, unsigned long fill);
    static void Destroy(DrawBuffer *buffer);

    // Maps this whole picture onto the quadrilateral of target given by top-left, top-right,
    // bottom-left and bottom-right, through the projective map of the corners. 0, or -1 for
    // rules other than the above.
    int warp(DrawBuffer *target, _DRAWPOINT const *quad, int sampling, int edges) const;

    int width() const { return columns; }
    int height() const { return rows; }
    unsigned long *row(int y) const { return pixels + static_cast<long long>(y) * columns; }

private:
    DrawBuffer(int columns, int rows, unsigned long *pixels) : columns(columns), rows(rows), pixels(pixels) {}
    ~DrawBuffer();

    int columns;
    int rows;
    unsigned long *pixels;
};

DrawBuffer *bitmapToBuffer(HBITMAP bitmap);
// A screen-compatible bitmap owned by the caller, or null.
HBITMAP bufferToBitmap(DrawBuffer const *buffer);
