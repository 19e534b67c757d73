#include "graphics/GMemoryDevice.h"

GMemoryDevice::GMemoryDevice() : oldBitmap(nullptr)
{
    dc = CreateCompatibleDC(nullptr);
}

GMemoryDevice::GMemoryDevice(GDevice &device) : oldBitmap(nullptr)
{
    dc = CreateCompatibleDC(device.getDC());
}

GMemoryDevice::GMemoryDevice(GDevice &device, GBitmap &bitmap) : oldBitmap(nullptr), bitmap(bitmap)
{
    dc = CreateCompatibleDC(device.getDC());
    SelectBitmapIntoDC(bitmap);
}

GMemoryDevice::~GMemoryDevice()
{
    // The bitmap leaves the handle before it goes; the member's share keeps it alive till then.
    if (dc) {
        RestoreOldBitmap();
        DeleteDC(dc);
        dc = nullptr;
    }
}

GPoint GMemoryDevice::getDeviceArea()
{
    return bitmap.getSize();
}

void GMemoryDevice::SelectBitmapIntoDC(GBitmap &newBitmap)
{
    bitmap = newBitmap;
    oldBitmap = static_cast<HBITMAP>(SelectObject(dc, HBITMAP(bitmap)));
}

HBITMAP GMemoryDevice::RestoreOldBitmap()
{
    if (!oldBitmap)
        return nullptr;
    HBITMAP left = static_cast<HBITMAP>(SelectObject(dc, oldBitmap));
    oldBitmap = nullptr;
    return left;
}

void GMemoryDevice::clear()
{
    if (!bitmap.isValid())
        return;
    const GPoint size = bitmap.getSize();
    PatBlt(dc, 0, 0, truncateCoord(size.xVal()), truncateCoord(size.yVal()), WHITENESS);
}

GMonoMemoryDevice::GMonoMemoryDevice(GDevice &device, GBitmap &bitmap) : GMemoryDevice(device, bitmap)
{
    GDevice::setPen(GPen(GColor::White, 0, LineSolid));
}

void GMonoMemoryDevice::setPen(GPen const &)
{
}
