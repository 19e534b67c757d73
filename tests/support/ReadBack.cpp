#include "support/ReadBack.h"

ExpectNoLeaks::~ExpectNoLeaks()
{
    EXPECT_EQ(counter.live(), 0) << "platform objects the library made and never deleted";
    EXPECT_TRUE(counter.eachDeletedOnce()) << "a platform object deleted twice, or one not the library's";
}

PlatformPixels::PlatformPixels(HBITMAP bitmap) : dc(CreateCompatibleDC(nullptr)), oldBitmap(SelectObject(dc, bitmap))
{
}

PlatformPixels::PlatformPixels(int width, int height, COLORREF background)
    : dc(CreateCompatibleDC(nullptr)), owned(CreateBitmap(width, height, 1, 32, nullptr)),
      oldBitmap(SelectObject(dc, owned))
{
    fill(0, 0, width, height, background);
}

PlatformPixels::~PlatformPixels()
{
    SelectObject(dc, oldBitmap);
    if (owned)
        DeleteObject(owned);
    DeleteDC(dc);
}

int PlatformPixels::countPixels(COLORREF colour) const
{
    BITMAP shape{};
    GetObjectA(GetCurrentObject(dc, OBJ_BITMAP), sizeof shape, &shape);
    int count = 0;
    for (int y = 0; y < shape.bmHeight; ++y)
        for (int x = 0; x < shape.bmWidth; ++x)
            count += GetPixel(dc, x, y) == colour;
    return count;
}

void PlatformPixels::fill(int left, int top, int right, int bottom, COLORREF colour) const
{
    HBRUSH brush = CreateSolidBrush(colour);
    const RECT area{left, top, right, bottom};
    FillRect(dc, &area, brush);
    DeleteObject(brush);
}

void fillDevice(GDevice &device, int left, int top, int right, int bottom, COLORREF colour)
{
    HBRUSH brush = CreateSolidBrush(colour);
    const RECT area{left, top, right, bottom};
    FillRect(device.getDC(), &area, brush);
    DeleteObject(brush);
}

int countDevicePixels(GDevice const &device, int width, int height, COLORREF colour)
{
    int count = 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            count += GetPixel(device.getDC(), x, y) == colour;
    return count;
}

namespace {

template <class Read>
void expectEach(Read const &read, std::initializer_list<PixelProbe> probes)
{
    for (PixelProbe const &probe : probes)
        EXPECT_EQ(read(probe.x, probe.y), probe.colour) << "pixel (" << probe.x << ", " << probe.y << ")";
}

} // namespace

void expectPixels(GDevice const &device, std::initializer_list<PixelProbe> probes)
{
    expectEach([&](int x, int y) { return pixelAt(device, x, y); }, probes);
}

void expectPixels(PlatformPixels const &pixels, std::initializer_list<PixelProbe> probes)
{
    expectEach([&](int x, int y) { return pixels.pixel(x, y); }, probes);
}
