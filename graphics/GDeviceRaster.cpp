#include "graphics/GDevice.h"
#include "graphics/DibFormat.h"
#include "graphics/GMemoryDevice.h"
#include "graphics/GObjectSelection.h"
#include "imaging/GImage.h"

#include <objidl.h>
#include <oleidl.h>

#include <cstdlib>
#include <utility>

namespace {

// A logical target rectangle as the platform takes it.
struct DeviceTarget {
    int x, y, width, height;
};

// Left and top stay where given, so reversed edges keep their size without moving the picture.
DeviceTarget deviceTarget(GDevice const &device, GRect const &target)
{
    long left = device.newTranslateX(target.lVal());
    long top = device.newTranslateY(target.tVal());
    long right = device.newTranslateX(target.rVal());
    long bottom = device.newTranslateY(target.bVal());
    return {int(left), int(top), int(std::labs(right - left)), int(std::labs(bottom - top))};
}

// Negative height: rows run top-down, as callers hand them over.
BITMAPINFO topDownHeader(int width, int height, int planes, int bitCount)
{
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = WORD(planes);
    info.bmiHeader.biBitCount = WORD(bitCount);
    return info;
}

// The section made from a header while its bits go to or come from the device; it takes no
// part in the transfer, and is deleted again.
class HeaderSection {
public:
    HeaderSection(HDC dc, BITMAPINFO const &info) : section(CreateDIBSection(dc, &info, DIB_RGB_COLORS, nullptr, nullptr, 0)) {}
    ~HeaderSection()
    {
        if (section)
            DeleteObject(section);
    }
    HeaderSection(HeaderSection const &) = delete;
    HeaderSection &operator=(HeaderSection const &) = delete;

private:
    HBITMAP section;
};

// Deliberate: the table that draw and zoomImage hand over takes 160 bytes a colour, more than it needs.
std::size_t imageBlockSize(DibPicture const &picture) { return 160u * picture.colors; }

} // namespace

void GDevice::draw(GImage &image, GPoint const &pos)
{
    const DibPicture picture = image.dibPicture();
    if (!dc || !picture.header || !picture.bits)
        return;
    // Deliberately not put back.
    SetBkMode(dc, TRANSPARENT);
    DibPaletteSelection selection(dc, *picture.palette);
    DibInfoBlock block(picture, imageBlockSize(picture));
    if (!block.get())
        return;
    int width = image.getWidth();
    int height = image.getHeight();
    SetDIBitsToDevice(dc, newTranslateX(pos.xVal()), newTranslateY(pos.yVal()), DWORD(width), DWORD(height), 0, 0,
                      0, UINT(height), picture.bits, block.get(), DIB_RGB_COLORS);
}

int GDevice::zoomImage(GImage &image, GRect source, GRect target, int rop)
{
    if (!dc)
        return -1;
    const DibPicture picture = image.dibPicture();
    if (!picture.header || !picture.bits)
        return 0;
    DibPaletteSelection selection(dc, *picture.palette);
    int mode = GetStretchBltMode(dc);
    SetStretchBltMode(dc, COLORONCOLOR);
    DeviceTarget to = deviceTarget(*this, target);
    int result = 0;
    {
        DibInfoBlock block(picture, imageBlockSize(picture));
        if (block.get())
            result = StretchDIBits(dc, to.x, to.y, to.width, to.height, truncateCoord(source.lVal()),
                                   truncateCoord(source.tVal()), std::abs(truncateCoord(source.width())),
                                   std::abs(truncateCoord(source.height())), picture.bits, block.get(),
                                   DIB_RGB_COLORS, DWORD(rop));
    }
    SetStretchBltMode(dc, mode);
    return result;
}

void GDevice::draw(GBitmap &bitmap, GPoint const &pos, int rop)
{
    if (!dc)
        return;
    GPoint location(newTranslateX(pos.xVal()), newTranslateY(pos.yVal()));
    // The location is stored even for an invalid bitmap.
    bitmap.setLocation(location);
    if (!bitmap.isValid())
        return;
    GMemoryDevice memory(*this, bitmap);
    if (!memory.getDC())
        return;
    GPoint size = bitmap.getSize();
    if (getDeviceCaps().getDeviceType() == rasterPrinterDevice) {
        drawOnPrinter(bitmap, pos, size, rop);
        return;
    }
    // The bitmap's extent in the platform's current logical units.
    POINT origin{0, 0};
    POINT extent{truncateCoord(size.xVal()), truncateCoord(size.yVal())};
    DPtoLP(dc, &origin, 1);
    DPtoLP(dc, &extent, 1);
    StretchBlt(dc, truncateCoord(location.xVal()), truncateCoord(location.yVal()), extent.x - origin.x,
               extent.y - origin.y, memory, 0, 0, truncateCoord(size.xVal()), truncateCoord(size.yVal()), DWORD(rop));
}

RECT GDevice::deviceTargetRect(GRect const &target) const
{
    const DeviceTarget to = deviceTarget(*this, target);
    return RECT{to.x, to.y, to.x + to.width, to.y + to.height};
}

int GDevice::stretchImage(GBitmap &bitmap, GRect const &source, GRect const &target, int rop)
{
    if (!dc)
        return -1;
    GMemoryDevice memory(*this, bitmap);
    if (!memory.getDC())
        return 0;
    return stretchImage(static_cast<GDevice &>(memory), source, target, rop);
}

int GDevice::stretchImage(GDevice &device, GRect const &source, GRect const &target, int rop)
{
    if (!dc)
        return -1;
    if (!device.getDC())
        return 0;
    DeviceTarget to = deviceTarget(*this, target);
    // Deliberately left in colour-on-colour mode afterwards.
    SetStretchBltMode(dc, COLORONCOLOR);
    return StretchBlt(dc, to.x, to.y, to.width, to.height, device, truncateCoord(source.lVal()),
                      truncateCoord(source.tVal()), truncateCoord(source.width()), truncateCoord(source.height()),
                      DWORD(rop));
}

int GDevice::stretchImage(GImage &, GBitmap &bitmap, GRect const &source, GRect const &target)
{
    return stretchImage(bitmap, source, target, SRCCOPY);
}

void GDevice::patternBlt(GRect const &rect, unsigned long rop)
{
    PatBlt(dc, truncateCoord(rect.lVal()), truncateCoord(rect.tVal()), truncateCoord(rect.width()),
           truncateCoord(rect.height()), rop);
}

void GDevice::bitBlt(GRect const &target, GDevice &source, GPoint const &from, int rop)
{
    DeviceTarget to = deviceTarget(*this, target);
    BitBlt(dc, to.x, to.y, to.width, to.height, source, source.newTranslateX(from.xVal()),
           source.newTranslateY(from.yVal()), DWORD(rop));
}

// Where the mask is 1 the passes give ((D xor S) and 1) xor S = D; where 0, (0 xor S) = S.
void GDevice::transBlt(GPoint const &to, GDevice &source, GPoint const &, GColor const &transparent)
{
    int x = newTranslateX(to.xVal());
    int y = newTranslateY(to.yVal());
    // White and black are what a one-bit mask expands to.
    COLORREF oldBack = SetBkColor(dc, RGB(255, 255, 255));
    COLORREF oldText = SetTextColor(dc, RGB(0, 0, 0));
    GPoint area = source.getDeviceArea();
    int w = truncateCoord(area.xVal());
    int h = truncateCoord(area.yVal());
    {
        GBitmap maskBitmap(nullptr, w, h, 1, 1);
        GMemoryDevice mask(*this, maskBitmap);
        // Copying colour to one bit makes the background colour 1: the mask is 1 where transparent.
        // The source keeps this background colour, deliberately.
        SetBkColor(source, transparent);
        BitBlt(mask, 0, 0, w, h, source, 0, 0, SRCCOPY);
        BitBlt(dc, x, y, w, h, source, 0, 0, SRCINVERT);
        BitBlt(dc, x, y, w, h, mask, 0, 0, SRCAND);
        BitBlt(dc, x, y, w, h, source, 0, 0, SRCINVERT);
    }
    SetBkColor(dc, oldBack);
    SetTextColor(dc, oldText);
}

void GDevice::drawDIBits(void *bits, int width, int height, int planes, int bitCount)
{
    if (!bits || !width || !height)
        return;
    BITMAPINFO info = topDownHeader(width, height, planes, bitCount);
    HeaderSection section(dc, info);
    StretchDIBits(dc, 0, 0, width, height, 0, 0, width, height, bits, &info, DIB_RGB_COLORS, SRCCOPY);
}

void GDevice::drawDIBitsEx(void *bits, int x, int y, int width, int height, int planes, int bitCount)
{
    if (!bits || !width || !height)
        return;
    BITMAPINFO info = topDownHeader(width, height, planes, bitCount);
    HeaderSection section(dc, info);
    StretchDIBits(dc, newTranslateX(x), newTranslateY(y), width, height, 0, 0, width, height, bits, &info,
                  DIB_RGB_COLORS, SRCCOPY);
}

int GDevice::getDIBits(void *bits, int width, int height, int planes, int bitCount)
{
    if (!bits || !width || !height)
        return 0;
    BITMAPINFO info = topDownHeader(width, height, planes, bitCount);
    HeaderSection section(dc, info);
    return GetDIBits(dc, HBITMAP(GetCurrentObject(dc, OBJ_BITMAP)), 0, UINT(height), bits, &info, DIB_RGB_COLORS);
}

int GDevice::drawEnhMetafile(HENHMETAFILE handle, GRect const &rect)
{
    int w = truncateCoord(rect.width());
    int h = truncateCoord(rect.height());
    ENHMETAHEADER header{};
    GetEnhMetaFileHeader(handle, 100, &header);
    int mw = header.rclBounds.right - header.rclBounds.left;
    int mh = header.rclBounds.bottom - header.rclBounds.top;
    if (mw <= 0 || mh <= 0 || w <= 0 || h <= 0)
        return 0;
    RECT r{truncateCoord(rect.lVal()), truncateCoord(rect.tVal()), truncateCoord(rect.rVal()),
           truncateCoord(rect.bVal())};
    float W = float(w);
    float H = float(h);
    float ratio = (float(mh) / float(mw)) / (H / W);
    // The centred edges start from 0, not from the rectangle's own edge: deliberate.
    if (ratio > 1.0f) {
        float newW = W / ratio;
        r.left = int((W - newW) * 0.5f);
        r.right = int((newW + W) * 0.5f);
    } else {
        r.top = int((H - H * ratio) * 0.5f);
        r.bottom = int((ratio + 1.0f) * H * 0.5f);
    }
    if (!PlayEnhMetaFile(dc, handle, &r))
        return int(GetLastError());
    return 0;
}

long GDevice::draw(IViewObject *object, tagFORMATETC *format, GRect &rect)
{
    if (!object)
        return E_POINTER;
    RECTL bounds{newTranslateX(rect.lVal()), newTranslateY(rect.tVal()), newTranslateX(rect.rVal()),
                 newTranslateY(rect.bVal())};
    if (bounds.left > bounds.right)
        std::swap(bounds.left, bounds.right);
    if (bounds.top > bounds.bottom)
        std::swap(bounds.top, bounds.bottom);
    return object->Draw(format->dwAspect, -1, nullptr, nullptr, nullptr, dc, &bounds, nullptr, nullptr, 0);
}

GBitmap GDevice::createCompatibleBitmap(int height, int width)
{
    return GBitmap(CreateCompatibleBitmap(dc, width, height));
}
