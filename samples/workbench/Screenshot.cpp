// Screenshot.cpp - copies the whole window into a memory device, then into a picture.
#include "Screenshot.h"

#include "Picture.h"

int saveScreenshot(PWindowObject &window, PString const &path)
{
    const GRect placement = window.getWindowSize();
    const int width = static_cast<int>(placement.width()), height = static_cast<int>(placement.height());
    Picture shot = Picture::trueColour(width, height);
    if (shot.isEmpty())
        return GImage::resultNotWritten;
    GContext screen(&window, GCWindow);
    GBitmap bitmap = screen.createCompatibleBitmap(height, width);
    GMemoryDevice memory(screen, bitmap);
    memory.bitBlt(GRect(0, 0, width, height), screen, GPoint(0, 0), SRCCOPY);
    if (!shot.readDevice(memory))
        return GImage::resultNotWritten;
    return shot.write(path);
}
