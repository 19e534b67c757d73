// The GDevice operations on engine images, kept with the image files so that the graphics
// layer below needs no image-file header.
#include "graphics/GDevice.h"
#include "graphics/DibFormat.h"
#include "imagefiles/ImageEngine.h"
#include "imagefiles/PImage.h"

#include <cmath>

namespace {

// The printer path enlarges a bitmap this many times around its own centre.
const double printerEnlargement = 5.0;

void paintThroughEngine(HDC dc, PImage &image, RECT const &rect)
{
    const unsigned long handle = image.getImageHandle();
    if (!PImage::isValidHandle(handle))
        return;
    ImageEngine::setDisplayRect(handle, &rect);
    ImageEngine::paint(handle, dc);
}

} // namespace

void GDevice::draw(PImage &image, GPoint const &pos)
{
    const int left = truncateToInt(pos.xVal()), top = truncateToInt(pos.yVal());
    paintThroughEngine(dc, image, RECT{left, top, left + image.getWidth(), top + image.getHeight()});
}

void GDevice::zoomImage(PImage &image, GRect const &target)
{
    paintThroughEngine(dc, image, deviceTargetRect(target));
}

int GDevice::stretchImage(PImage &, GBitmap &bitmap, GRect const &source, GRect const &target)
{
    return stretchImage(bitmap, source, target, SRCCOPY);
}

void GDevice::drawOnPrinter(GBitmap &bitmap, GPoint const &pos, GPoint const &size, int rop)
{
    PImage image;
    image.load(bitmap);
    const GRect source(GPoint(0, 0), size);
    const long width = truncateToInt(size.xVal()), height = truncateToInt(size.yVal());
    const double logicalX = std::fabs(newTranslateXinv(width) - newTranslateXinv(0));
    const double logicalY = std::fabs(newTranslateYinv(height) - newTranslateYinv(0));
    const double bigX = logicalX * printerEnlargement, bigY = logicalY * printerEnlargement;
    const GPoint a(pos.xVal() + logicalX * 0.5 - bigX * 0.5, pos.yVal() + logicalY * 0.5 - bigY * 0.5);
    const GPoint b(a.xVal() + bigX, a.yVal() + bigY);
    zoomImage(static_cast<GImage &>(image), source, GRect(a, b), rop);
}
