#include "contexts/PLaputa.h"

#include "graphics/GDevice.h"
#include "graphics/GMemoryDevice.h"

void PXorLaputa::beforeDraw(GDevice &)
{
}

void PXorLaputa::draw(GDevice &device)
{
    device.setXOR(1);
    glyph->draw(device);
    device.setXOR(0);
}

void PXorLaputa::erase(GDevice &device)
{
    draw(device);
}

void PBitmapLaputa::beforeDraw(GDevice &device)
{
    const GRect bounds = glyph->getBounds();
    const int width = truncateCoord(device.lengthLogicalToDevice(bounds.width()));
    const int height = truncateCoord(device.lengthLogicalToDevice(bounds.height()));
    savedFlag = 1;
    // The platform answers a zero size with a 1-by-1 bitmap: an area with nothing in it is
    // kept as an empty bitmap instead, which erase leaves alone.
    if (width == 0 || height == 0) {
        saved = GBitmap();
        return;
    }
    saved = device.createCompatibleBitmap(height, width);
    GMemoryDevice memory(device, saved);
    // The memory device takes the rectangle's logical space, so that the copy is a plain
    // transfer of the rectangle.
    memory.setWindow(bounds.lVal(), bounds.rVal(), bounds.bVal(), bounds.tVal());
    memory.bitBlt(bounds, device, GPoint(bounds.lVal(), bounds.tVal()), SRCCOPY);
}

void PBitmapLaputa::draw(GDevice &device)
{
    glyph->draw(device);
}

void PBitmapLaputa::erase(GDevice &device)
{
    const GRect bounds = glyph->getBounds();
    device.draw(saved, GPoint(bounds.lVal(), bounds.tVal()), SRCCOPY);
}
