#include "imagefiles/DrawBuffer.h"

#include "foundation/PMemory.h"
#include "imagefiles/ImageEngine.h"

#include <cmath>
#include <new>

namespace {

// A projective map of the unit square onto a quadrilateral, and its inverse.
struct Projection {
    double m[3][3];

    // Corners in the order (0,0), (1,0), (1,1), (0,1) of the square.
    static Projection ofSquare(double const x[4], double const y[4])
    {
        const double dx1 = x[1] - x[2], dx2 = x[3] - x[2], dx3 = x[0] - x[1] + x[2] - x[3];
        const double dy1 = y[1] - y[2], dy2 = y[3] - y[2], dy3 = y[0] - y[1] + y[2] - y[3];
        double g = 0, h = 0;
        const double det = dx1 * dy2 - dx2 * dy1;
        if ((dx3 != 0 || dy3 != 0) && det != 0) {
            g = (dx3 * dy2 - dx2 * dy3) / det;
            h = (dx1 * dy3 - dx3 * dy1) / det;
        }
        return Projection{{{x[1] - x[0] + g * x[1], x[3] - x[0] + h * x[3], x[0]},
                           {y[1] - y[0] + g * y[1], y[3] - y[0] + h * y[3], y[0]},
                           {g, h, 1}}};
    }

    // False for a map that collapses the square.
    bool inverse(Projection &out) const
    {
        const double (&a)[3][3] = m;
        const double c00 = a[1][1] * a[2][2] - a[1][2] * a[2][1];
        const double c01 = a[1][2] * a[2][0] - a[1][0] * a[2][2];
        const double c02 = a[1][0] * a[2][1] - a[1][1] * a[2][0];
        const double det = a[0][0] * c00 + a[0][1] * c01 + a[0][2] * c02;
        if (std::fabs(det) < 1e-12)
            return false;
        out.m[0][0] = c00 / det;
        out.m[0][1] = (a[0][2] * a[2][1] - a[0][1] * a[2][2]) / det;
        out.m[0][2] = (a[0][1] * a[1][2] - a[0][2] * a[1][1]) / det;
        out.m[1][0] = c01 / det;
        out.m[1][1] = (a[0][0] * a[2][2] - a[0][2] * a[2][0]) / det;
        out.m[1][2] = (a[0][2] * a[1][0] - a[0][0] * a[1][2]) / det;
        out.m[2][0] = c02 / det;
        out.m[2][1] = (a[0][1] * a[2][0] - a[0][0] * a[2][1]) / det;
        out.m[2][2] = (a[0][0] * a[1][1] - a[0][1] * a[1][0]) / det;
        return true;
    }
};

unsigned long blend(unsigned long a, unsigned long b, double t)
{
    unsigned long out = 0;
    for (int shift = 0; shift < 32; shift += 8) {
        const double ca = (a >> shift) & 0xFF, cb = (b >> shift) & 0xFF;
        out |= static_cast<unsigned long>(ca + (cb - ca) * t + 0.5) << shift;
    }
    return out;
}

} // namespace

DrawBuffer *DrawBuffer::Build(int width, int height, unsigned long fill)
{
    using namespace ImageEngine;
    if (width <= 0 || height <= 0 || width > maxSide || height > maxSide ||
        static_cast<unsigned long long>(width) * static_cast<unsigned long long>(height) > maxPixels)
        return nullptr;
    auto *pixels = static_cast<unsigned long *>(PGlobalAlloc(static_cast<unsigned long>(width) * height * 4));
    if (!pixels)
        return nullptr;
    if (fill)
        for (long long i = 0, n = static_cast<long long>(width) * height; i < n; ++i)
            pixels[i] = fill;
    DrawBuffer *buffer = new (std::nothrow) DrawBuffer(width, height, pixels);
    if (!buffer)
        PGlobalFree(pixels);
    return buffer;
}

void DrawBuffer::Destroy(DrawBuffer *buffer) { delete buffer; }

DrawBuffer::~DrawBuffer() { PGlobalFree(pixels); }

int DrawBuffer::warp(DrawBuffer *target, _DRAWPOINT const *quad, int sampling, int edges) const
{
    if (!target || !quad || sampling != samplingBilinear || edges != edgesKeepTarget)
        return -1;
    // Square order: top-left, top-right, bottom-right, bottom-left.
    const double x[4] = {double(quad[0].x), double(quad[1].x), double(quad[3].x), double(quad[2].x)};
    const double y[4] = {double(quad[0].y), double(quad[1].y), double(quad[3].y), double(quad[2].y)};
    Projection back;
    if (!Projection::ofSquare(x, y).inverse(back))
        return 0;
    const double maxU = columns - 1, maxV = rows - 1;
    for (int ty = 0; ty < target->rows; ++ty) {
        unsigned long *out = target->row(ty);
        for (int tx = 0; tx < target->columns; ++tx) {
            const double w = back.m[2][0] * tx + back.m[2][1] * ty + back.m[2][2];
            if (w == 0)
                continue;
            const double u = (back.m[0][0] * tx + back.m[0][1] * ty + back.m[0][2]) / w;
            const double v = (back.m[1][0] * tx + back.m[1][1] * ty + back.m[1][2]) / w;
            // A little slack keeps the quadrilateral's own edge pixels.
            if (!(u >= -1e-9 && u <= 1 + 1e-9 && v >= -1e-9 && v <= 1 + 1e-9))
                continue;
            const double sx = std::fmin(std::fmax(u, 0.0), 1.0) * maxU;
            const double sy = std::fmin(std::fmax(v, 0.0), 1.0) * maxV;
            const int x0 = static_cast<int>(sx), y0 = static_cast<int>(sy);
            const int x1 = x0 + 1 < columns ? x0 + 1 : x0, y1 = y0 + 1 < rows ? y0 + 1 : y0;
            const double fx = sx - x0, fy = sy - y0;
            const unsigned long top = blend(row(y0)[x0], row(y0)[x1], fx);
            const unsigned long bottom = blend(row(y1)[x0], row(y1)[x1], fx);
            out[tx] = blend(top, bottom, fy);
        }
    }
    return 0;
}

namespace {

BITMAPINFOHEADER topDownHeader(int width, int height)
{
    BITMAPINFOHEADER header = {};
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = -height;
    header.biPlanes = 1;
    header.biBitCount = 32;
    header.biCompression = BI_RGB;
    return header;
}

} // namespace

DrawBuffer *bitmapToBuffer(HBITMAP bitmap)
{
    BITMAP description;
    if (!bitmap || GetObjectA(bitmap, sizeof description, &description) != sizeof description)
        return nullptr;
    DrawBuffer *buffer = DrawBuffer::Build(description.bmWidth, description.bmHeight, 0);
    if (!buffer)
        return nullptr;
    BITMAPINFOHEADER header = topDownHeader(buffer->width(), buffer->height());
    HDC screen = GetDC(nullptr);
    const int lines = GetDIBits(screen, bitmap, 0, UINT(buffer->height()), buffer->row(0),
                                reinterpret_cast<BITMAPINFO *>(&header), DIB_RGB_COLORS);
    ReleaseDC(nullptr, screen);
    if (lines != buffer->height()) {
        DrawBuffer::Destroy(buffer);
        return nullptr;
    }
    return buffer;
}

HBITMAP bufferToBitmap(DrawBuffer const *buffer)
{
    if (!buffer)
        return nullptr;
    HDC screen = GetDC(nullptr);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, buffer->width(), buffer->height());
    BITMAPINFOHEADER header = topDownHeader(buffer->width(), buffer->height());
    if (bitmap && SetDIBits(screen, bitmap, 0, UINT(buffer->height()), buffer->row(0),
                            reinterpret_cast<BITMAPINFO *>(&header), DIB_RGB_COLORS) != buffer->height()) {
        DeleteObject(bitmap);
        bitmap = nullptr;
    }
    ReleaseDC(nullptr, screen);
    return bitmap;
}
