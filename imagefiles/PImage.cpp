#include "imagefiles/PImage.h"

#include "events/PWindowObject.h"
#include "foundation/FileUtilities.h"
#include "foundation/PGenericString.h"
#include "foundation/PMemory.h"
#include "foundation/PNumerics.h"
#include "foundation/PTemporaryFileServices.h"
#include "graphics/DibFormat.h"
#include "imagefiles/DrawBuffer.h"
#include "imagefiles/ImageEngine.h"

#include <windows.h>

#include <cstring>
#include <new>
#include <vector>

namespace {

namespace Engine = ImageEngine;

// The image operations save an image of source 1 through here.
bool saveLibraryImage(GImage &image, PString const &path, int &result)
{
    auto *libraryImage = dynamic_cast<PImage *>(&image);
    if (!libraryImage)
        return false;
    result = libraryImage->save(path, PImage::formatByExtension);
    return true;
}

// A DIB's colour entries follow its header; the rows follow the entries.
RGBQUAD const *entriesOf(BITMAPINFOHEADER const *dib) { return reinterpret_cast<RGBQUAD const *>(dib + 1); }

// Whether a path ends in an extension, compared without regard to case.
bool hasExtension(PString const &path, char const *extension)
{
    char const *text = path;
    char const *dot = std::strrchr(text, '.');
    return dot && !std::strpbrk(dot, "\\/") && lstrcmpiA(dot, extension) == 0;
}

const int shadowColours = 256;
const int expandedHeaderAndTable = sizeof(BITMAPINFOHEADER) + 256 * sizeof(RGBQUAD);
const LONG defaultPelsPerMeter = 2834;

} // namespace

PImage::PImage()
    : imageHandle(noHandle), imageWidth(resultNoHandle), imageHeight(resultNoHandle), bitsPerPixel(resultNoHandle),
      reducedImage(nullptr)
{
    librarySave = saveLibraryImage;
}

PImage::PImage(unsigned long handle) : PImage()
{
    imageHandle = handle;
    tagBITMAPINFOHEADER *dib = nullptr;
    readBack(dib);
    if (isValid())
        initGImage(dib);
    setCornerPoints();
}

PImage::PImage(PImage const &other) : PImage() { *this = other; }

PImage &PImage::operator=(PImage const &other)
{
    if (this == &other || !other.isValid())
        return *this;
    tagBITMAPINFOHEADER *dib = nullptr;
    Engine::Handle made = noHandle;
    if (Engine::dib(other.imageHandle, dib) != Engine::codeOk || Engine::createFromDib(dib, made) != Engine::codeOk) {
        decodeError(0);
        return *this;
    }
    // Deliberate: the previous handle of this image is not deleted.
    imageHandle = made;
    if (readBack(dib) < 0)
        return *this;
    imageWidth = other.imageWidth;
    imageHeight = other.imageHeight;
    bitsPerPixel = other.bitsPerPixel;
    if (other.reducedImage) {
        if (!reducedImage)
            reducedImage = new (std::nothrow) PImage;
        if (reducedImage)
            *reducedImage = *other.reducedImage;
    } else {
        delete reducedImage;
        reducedImage = nullptr;
    }
    for (int i = 0; i < 4; ++i)
        internalImagePoints[i] = other.internalImagePoints[i];
    if (initGImage(dib) < 0)
        Engine::deleteImage(imageHandle);
    return *this;
}

PImage::~PImage()
{
    if (isValid())
        Engine::deleteImage(imageHandle);
    delete reducedImage;
    release();
    dropBrightnessBackup();
}

int PImage::decodeError(int)
{
    const int code = Engine::topError();
    Engine::clearErrors();
    switch (code) {
    case 0: return 0;
    case -1000: return -1;
    case -2030: return -2;
    case -2475: return -3;
    case -3330: return -4;
    case -2031: return -6;
    case -2010:
    case -2100:
    case -2110:
    case -2391:
    case -2480: return -7;
    case -2394: return -8;
    case -2393: return -9;
    case -2005:
    case -2006: return -10;
    case 2100: return -11;
    case -3060: return -12;
    case -4016: return -15;
    case -4035: return -17;
    case -2113:
    case -4032:
    case -4033:
    case -4043: return -18;
    default: return code <= -3600 && code >= -3604 ? -7 : -19;
    }
}

bool PImage::isValidHandle(unsigned long handle) { return Engine::isValid(handle); }

int PImage::readBack(tagBITMAPINFOHEADER *&dib)
{
    if (Engine::dimensions(imageHandle, imageWidth, imageHeight, bitsPerPixel) != Engine::codeOk ||
        Engine::dib(imageHandle, dib) != Engine::codeOk)
        return decodeError(0);
    return 0;
}

void PImage::setCornerPoints()
{
    const double right = imageWidth - 1, bottom = imageHeight - 1;
    internalImagePoints[0] = PCoord<double>(0, 0);
    internalImagePoints[1] = PCoord<double>(right, 0);
    internalImagePoints[2] = PCoord<double>(0, bottom);
    internalImagePoints[3] = PCoord<double>(right, bottom);
}

void PImage::dropBrightnessBackup()
{
    if (brightnessTempFile.isEmpty())
        return;
    DeleteFileA(brightnessTempFile);
    brightnessTempFile = PString();
}

void PImage::setInternalImagePoints(PCoord<double> *points)
{
    if (!points)
        return;
    for (int i = 0; i < 4; ++i)
        internalImagePoints[i] = points[i];
}

int PImage::setImageHandle(unsigned long handle)
{
    if (!isValidHandle(handle))
        return resultBadHandle;
    const unsigned long oldHandle = imageHandle;
    const int oldWidth = imageWidth, oldHeight = imageHeight, oldBits = bitsPerPixel;
    imageHandle = handle;
    tagBITMAPINFOHEADER *dib = nullptr;
    int result = readBack(dib);
    if (result >= 0)
        result = initGImage(dib);
    if (result < 0) {
        // initGImage may have moved the picture to a handle of its own.
        Engine::deleteImage(imageHandle);
        imageHandle = oldHandle;
        imageWidth = oldWidth;
        imageHeight = oldHeight;
        bitsPerPixel = oldBits;
        return result;
    }
    setCornerPoints();
    if (oldHandle != imageHandle && isValidHandle(oldHandle))
        Engine::deleteImage(oldHandle);
    delete reducedImage;
    reducedImage = nullptr;
    dropBrightnessBackup();
    return 0;
}

int PImage::load(PString const &path)
{
    Engine::setLoadOption(Engine::optionKeepPalette, 1);
    Engine::Handle handle = noHandle;
    if (Engine::loadFile(PGenericString(path), handle) != Engine::codeOk)
        return decodeError(0);
    return setImageHandle(handle);
}

int PImage::load(void *buffer, int size)
{
    Engine::setLoadOption(Engine::optionKeepPalette, 1);
    Engine::Handle handle = noHandle;
    if (Engine::loadMemory(buffer, size, handle) != Engine::codeOk)
        return decodeError(0);
    return setImageHandle(handle);
}

int PImage::load(GBitmap const &bitmap)
{
    if (isValid())
        Engine::deleteImage(imageHandle);
    Engine::Handle handle = noHandle;
    if (Engine::createFromBitmap(bitmap.getHandle(), handle) != Engine::codeOk)
        return decodeError(0);
    return setImageHandle(handle);
}

int PImage::expandToBytes(tagBITMAPINFOHEADER *&dib)
{
    const unsigned long stride = dibStride(dib->biWidth, 8);
    const unsigned long sizeImage = stride * static_cast<unsigned long>(dib->biHeight);
    DibGlobalBlock block(PGlobalAlloc(sizeImage + expandedHeaderAndTable));
    if (!block.get())
        return resultNoDib;
    auto *header = static_cast<BITMAPINFOHEADER *>(block.get());
    *header = *dib;
    header->biPlanes = 1;
    header->biBitCount = 8;
    header->biCompression = BI_RGB;
    header->biXPelsPerMeter = defaultPelsPerMeter;
    header->biYPelsPerMeter = defaultPelsPerMeter;
    header->biClrUsed = 256;
    header->biClrImportant = 256;
    header->biSizeImage = sizeImage;
    const unsigned short entries = numColors();
    std::memcpy(header + 1, entriesOf(dib), entries * sizeof(RGBQUAD));
    unsigned char const *from = reinterpret_cast<unsigned char const *>(entriesOf(dib) + entries);
    unsigned char *to = static_cast<unsigned char *>(block.get()) + expandedHeaderAndTable;
    const unsigned long fromStride = dibStride(*dib);
    const bool oneBit = dib->biBitCount == 1;
    for (LONG row = 0; row < dib->biHeight; ++row, from += fromStride, to += stride) {
        // Top bit first for 1 bit, high nibble first for 4; the row's padding stays zero.
        for (LONG x = 0; x < dib->biWidth; ++x)
            to[x] = oneBit ? (from[x >> 3] >> (7 - (x & 7))) & 1 : (from[x >> 1] >> ((x & 1) ? 0 : 4)) & 0xF;
    }
    Engine::deleteImage(imageHandle);
    imageHandle = noHandle;
    Engine::Handle made = noHandle;
    if (Engine::createFromDib(header, made) != Engine::codeOk)
        return decodeError(0);
    imageHandle = made;
    return readBack(dib);
}

int PImage::initGImage(tagBITMAPINFOHEADER *dib)
{
    if (!dib)
        return resultNoDib;
    if (bitsPerPixel != dib->biBitCount)
        bitsPerPixel = dib->biBitCount;
    if (!isValid())
        return resultBadHandle;
    if (bitsPerPixel == 1 || bitsPerPixel == 4) {
        if (Engine::promoteDepth(imageHandle, Engine::promoteNibbles) != Engine::codeOk)
            return decodeError(0);
        const int read = readBack(dib);
        if (read < 0)
            return read;
    }
    if (bitsPerPixel == 1 || bitsPerPixel == 4) {
        const int expanded = expandToBytes(dib);
        if (expanded < 0)
            return expanded;
        bitsPerPixel = dib->biBitCount;
    }
    auto *copy = static_cast<BITMAPINFOHEADER *>(PGlobalAlloc(sizeof(BITMAPINFOHEADER)));
    if (!copy)
        return resultNoDib;
    *copy = *dib;
    if (header)
        PGlobalFree(header);
    header = copy;

    const unsigned short n = numColors();
    std::vector<GColor> colours(n ? n : 256);
    if (n == 0) {
        // A fixed 3-3-2 table for true colour.
        for (int i = 0; i < 256; ++i)
            colours[i] = GColor(static_cast<unsigned char>(MulDiv(i >> 5, 3643, 100)),
                                static_cast<unsigned char>(MulDiv((i >> 2) & 7, 3643, 100)),
                                static_cast<unsigned char>((i & 3) * 85));
    } else {
        RGBQUAD const *entries = entriesOf(dib);
        for (unsigned short i = 0; i < n; ++i)
            colours[i] = GColor(entries[i].rgbRed, entries[i].rgbGreen, entries[i].rgbBlue);
    }
    colorTable = GPalette(static_cast<unsigned short>(colours.size()), colours.data());

    if (pixels)
        PGlobalFree(pixels);
    pixels = static_cast<unsigned char *>(PGlobalAlloc(dib->biSizeImage));
    if (!pixels)
        return resultNoDib;
    std::memcpy(pixels, entriesOf(dib) + n, dib->biSizeImage);
    modified = 0;
    source = librarySource;
    return 0;
}

unsigned short PImage::numColors() const
{
    if (!isValid())
        return static_cast<unsigned short>(resultNoHandle);
    switch (bitsPerPixel) {
    case 1: return 2;
    case 4: return 16;
    case 8: return 256;
    default: return 0;
    }
}

int PImage::makeBitmap(GBitmap *bitmap, GPoint const &size)
{
    if (!isValid())
        return resultNoHandle;
    int width = truncateToInt(size.xVal()), height = truncateToInt(size.yVal());
    if (size.xVal() == 0.0 && size.yVal() == 0.0) {
        width = getWidth();
        height = getHeight();
    }
    HBITMAP made = nullptr;
    if (Engine::render(imageHandle, width, height, made, nullptr) != Engine::codeOk)
        return decodeError(0);
    *bitmap = GBitmap(made);
    return 0;
}

int PImage::setPalette(GPalette const &palette)
{
    if (!isValid())
        return resultNoHandle;
    const unsigned short n = numColors();
    if (n == 0 || n != palette.getNumEntries())
        return resultPaletteMismatch;
    std::vector<unsigned long> entries(n);
    for (unsigned short i = 0; i < n; ++i) {
        const GColor c = palette.getEntry(i);
        entries[i] = c.getB() | (c.getG() << 8) | (static_cast<unsigned long>(c.getR()) << 16);
    }
    if (Engine::replacePalette(imageHandle, entries.data(), n) != Engine::codeOk)
        return decodeError(0);
    return 0;
}

int PImage::save(PString const &path, int format)
{
    if (!isValid())
        return resultNoHandle;
    // Only these two formats keep a safety copy of the file they replace.
    const PString backup = path + ".bak";
    bool backedUp = false;
    if ((hasExtension(path, ".tif") || hasExtension(path, ".dcx")) && fileExists(path)) {
        fileCopy(path, backup, 1);
        DeleteFileA(path);
        backedUp = true;
    }
    if (Engine::save(imageHandle, PGenericString(path), format) != Engine::codeOk) {
        if (backedUp && fileExists(backup)) {
            fileCopy(backup, path, 1);
            DeleteFileA(backup);
        }
        return decodeError(0);
    }
    if (backedUp && fileExists(backup))
        DeleteFileA(backup);
    return 0;
}

int PImage::warp(PCoord<double> *points)
{
    if (!isValid())
        return resultNoHandle;
    if (!points)
        return resultImpossible;
    tagBITMAPINFOHEADER *dib = nullptr;
    HBITMAP rendered = nullptr;
    if (Engine::dib(imageHandle, dib) != Engine::codeOk ||
        Engine::render(imageHandle, dib->biWidth, dib->biHeight, rendered, nullptr) != Engine::codeOk)
        return decodeError(0);
    DrawBuffer *source = bitmapToBuffer(rendered);
    DeleteObject(rendered);
    if (!source)
        return resultNoMemory;
    double minX = points[0].xval(), minY = points[0].yval(), maxX = minX, maxY = minY;
    for (int i = 1; i < 4; ++i) {
        minX = points[i].xval() < minX ? points[i].xval() : minX;
        minY = points[i].yval() < minY ? points[i].yval() : minY;
        maxX = points[i].xval() > maxX ? points[i].xval() : maxX;
        maxY = points[i].yval() > maxY ? points[i].yval() : maxY;
    }
    DrawBuffer *target = DrawBuffer::Build(truncateToInt(maxX - minX + 1), truncateToInt(maxY - minY + 1), 0);
    if (!target) {
        DrawBuffer::Destroy(source);
        return resultNoMemory;
    }
    _DRAWPOINT quad[4];
    for (int i = 0; i < 4; ++i) {
        points[i].xval() -= minX;
        points[i].yval() -= minY;
        quad[i] = _DRAWPOINT{truncateToInt(points[i].xval()), truncateToInt(points[i].yval())};
    }
    source->warp(target, quad, DrawBuffer::samplingBilinear, DrawBuffer::edgesKeepTarget);
    HBITMAP warped = bufferToBitmap(target);
    DrawBuffer::Destroy(target);
    DrawBuffer::Destroy(source);
    if (!warped)
        return resultNoMemory;

    Engine::deleteImage(imageHandle);
    imageHandle = noHandle;
    Engine::Handle made = noHandle;
    const int created = Engine::createFromBitmap(warped, made);
    DeleteObject(warped);
    if (created != Engine::codeOk)
        return decodeError(0);
    imageHandle = made;
    const int read = readBack(dib);
    if (read < 0)
        return read;
    const int result = initGImage(dib);
    if (result < 0)
        return result;
    modified = 1;
    return 0;
}

int PImage::outlineTrace(PCoord<double> const &point, POutlines &outline, unsigned char range)
{
    if (!isValid())
        return resultNoHandle;
    if (point.xval() < 0 || point.xval() > imageWidth - 1 || point.yval() < 0 || point.yval() > imageHeight - 1)
        return resultImpossible;
    if (numColors() == 0 && !reducedImage) {
        const int made = makeShadow();
        if (made < 0) {
            // A half-made shadow would be traced next time: it goes.
            delete reducedImage;
            reducedImage = nullptr;
            return made;
        }
    }
    GImage *traced = numColors() == 0 ? static_cast<GImage *>(reducedImage) : this;
    return traceSingleOutline(traced, point, outline, range) == resultOk ? 0 : -1;
}

int PImage::makeShadow()
{
    reducedImage = new (std::nothrow) PImage;
    if (!reducedImage)
        return resultNoDib;
    tagBITMAPINFOHEADER *dib = nullptr;
    Engine::Handle shadow = noHandle;
    if (Engine::dib(imageHandle, dib) != Engine::codeOk || Engine::createFromDib(dib, shadow) != Engine::codeOk)
        return decodeError(0);
    reducedImage->imageHandle = shadow;
    if (Engine::reduceOptimised(shadow, shadowColours) != Engine::codeOk)
        return decodeError(0);
    tagBITMAPINFOHEADER *shadowDib = nullptr;
    int result = reducedImage->readBack(shadowDib);
    // The shadow needs pixels of its own to be traced.
    if (result >= 0)
        result = reducedImage->initGImage(shadowDib);
    if (result >= 0)
        result = readBack(dib);
    if (result >= 0)
        result = initGImage(dib);
    return result < 0 ? result : 0;
}

int PImage::octreeReduction(unsigned short n)
{
    if (!isValid())
        return resultNoHandle;
    if (Engine::reduceOptimised(imageHandle, n) != Engine::codeOk)
        return decodeError(0);
    tagBITMAPINFOHEADER *dib = nullptr;
    const int read = readBack(dib);
    if (read < 0)
        return read;
    const int result = initGImage(dib);
    return result < 0 ? result : 0;
}

void PImage::adjustBrightness(double amount)
{
    if (!isValid())
        return;
    const bool trueColour = numColors() == 0;
    if (trueColour) {
        dropBrightnessBackup();
        PTemporaryFileServices::reserveTempFile(brightnessTempFile);
        save(brightnessTempFile, formatPng);
    }
    GImage::adjustBrightness(amount);
    if (!trueColour || !header || !pixels)
        return;
    // The engine takes the washed-out picture as a new image.
    Engine::deleteImage(imageHandle);
    imageHandle = noHandle;
    DibGlobalBlock block(PGlobalAlloc(sizeof(BITMAPINFOHEADER) + header->biSizeImage));
    if (!block.get())
        return;
    std::memcpy(block.get(), header, sizeof(BITMAPINFOHEADER));
    std::memcpy(static_cast<BITMAPINFOHEADER *>(block.get()) + 1, pixels, header->biSizeImage);
    Engine::Handle made = noHandle;
    if (Engine::createFromDib(static_cast<BITMAPINFOHEADER *>(block.get()), made) == Engine::codeOk)
        imageHandle = made;
    else
        decodeError(0);
}

void PImage::restoreBrightness()
{
    if (!brightnessTempFile.isEmpty())
        load(brightnessTempFile);
    else
        GImage::restoreBrightness();
}

int PImage::scale(double factor)
{
    imageWidth = truncateToInt(imageWidth * factor);
    imageHeight = truncateToInt(imageHeight * factor);
    if (Engine::resize(imageHandle, imageWidth, imageHeight) != Engine::codeOk) {
        decodeError(0);
        return 0;
    }
    GImage::scale(static_cast<float>(factor), static_cast<float>(factor), 1);
    Engine::Resolution resolution;
    if (Engine::getResolution(imageHandle, resolution) != Engine::codeOk) {
        decodeError(0);
        return 0;
    }
    resolution.horizontal = truncateToInt(resolution.horizontal * factor);
    resolution.vertical = truncateToInt(resolution.vertical * factor);
    if (Engine::setResolution(imageHandle, resolution) != Engine::codeOk) {
        decodeError(0);
        return 0;
    }
    if (header) {
        header->biXPelsPerMeter = truncateToInt(header->biXPelsPerMeter * factor);
        header->biYPelsPerMeter = truncateToInt(header->biYPelsPerMeter * factor);
    }
    for (PCoord<double> &p : internalImagePoints) {
        p.xval() *= factor;
        p.yval() *= factor;
    }
    return 1;
}

bool PImage::resizeByResolution(double xFactor, double yFactor)
{
    if (IS_ZERO(xFactor, 1e-09) || IS_ZERO(yFactor, 1e-09) || !isValid())
        return false;
    Engine::Resolution resolution;
    if (Engine::getResolution(imageHandle, resolution) != Engine::codeOk) {
        decodeError(0);
        return false;
    }
    if (resolution.horizontal == 0 || resolution.vertical == 0)
        return false;
    resolution.horizontal = truncateToInt(resolution.horizontal / xFactor);
    resolution.vertical = truncateToInt(resolution.vertical / yFactor);
    const bool written = Engine::setResolution(imageHandle, resolution) == Engine::codeOk;
    if (!written)
        decodeError(0);
    if (header) {
        header->biXPelsPerMeter = truncateToInt(header->biXPelsPerMeter / xFactor);
        header->biYPelsPerMeter = truncateToInt(header->biYPelsPerMeter / yFactor);
    }
    return written;
}

bool PImage::resizeByDimension(double xFactor, double yFactor)
{
    if (IS_ZERO(xFactor, 1e-09) || IS_ZERO(yFactor, 1e-09))
        return false;
    const int width = truncateToInt(imageWidth * xFactor), height = truncateToInt(imageHeight * yFactor);
    if (Engine::resize(imageHandle, width, height) != Engine::codeOk) {
        decodeError(0);
        return false;
    }
    // A resize by the engine brings the image side in line, like every change of the picture.
    tagBITMAPINFOHEADER *dib = nullptr;
    return readBack(dib) >= 0 && initGImage(dib) >= 0;
}

bool PImage::resizeResolutionScale(double xFactor, double yFactor)
{
    return resizeByResolution(xFactor, yFactor) || resizeByDimension(xFactor, yFactor);
}

int scanAcquireImage(PWindowObject *window, PImage *image)
{
    Engine::Handle handle = PImage::noHandle;
    if (Engine::acquireFromScanner(window ? static_cast<HWND>(*window) : nullptr, handle) != Engine::codeOk)
        return PImage::decodeError(0);
    image->setImageHandle(handle);
    return 0;
}
