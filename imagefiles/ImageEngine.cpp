#include "imagefiles/ImageEngine.h"

#include "foundation/PFile.h"
#include "foundation/PMemory.h"
#include "graphics/DibFormat.h"
#include "imagefiles/EngineDib.h"
#include "imagefiles/WicCodec.h"
#include "imaging/GImage.h"

#include <cstring>
#include <map>
#include <new>
#include <vector>

namespace ImageEngine {

namespace {

struct Image {
    EngineDib dib;
    RECT display;
    bool hasDisplay;
    Resolution resolution;
};

// The handle table; handles are never reused, so a stale one stays invalid.
std::map<Handle, Image> &images()
{
    static std::map<Handle, Image> table;
    return table;
}
Handle lastHandle = 0;

std::vector<int> &errorStack()
{
    static std::vector<int> stack;
    return stack;
}

bool keepPalette = true;

int fail(int code)
{
    if (code != codeOk)
        pushError(code);
    return code;
}

Image *find(Handle image)
{
    auto found = images().find(image);
    return found == images().end() ? nullptr : &found->second;
}

int adopt(EngineDib &&dib, Handle &image)
{
    if (lastHandle + 1 == noHandle)
        return fail(codeNoMemory);
    Image made{static_cast<EngineDib &&>(dib), RECT{}, false, Resolution{}};
    made.resolution = Resolution{LONG(made.dib.header()->biXPelsPerMeter), 1, LONG(made.dib.header()->biYPelsPerMeter), 1, 0};
    images().emplace(++lastHandle, static_cast<Image &&>(made));
    image = lastHandle;
    return codeOk;
}

// Replaces an image's DIB, keeping its resolution and display rectangle.
void replace(Image &image, EngineDib &&dib)
{
    dib.header()->biXPelsPerMeter = image.resolution.horizontal;
    dib.header()->biYPelsPerMeter = image.resolution.vertical;
    image.dib = static_cast<EngineDib &&>(dib);
}

// A path as the imaging component takes it.
std::vector<wchar_t> widePath(char const *path)
{
    const int length = MultiByteToWideChar(CP_ACP, 0, path, -1, nullptr, 0);
    std::vector<wchar_t> wide(static_cast<std::size_t>(length > 0 ? length : 1), L'\0');
    if (length > 0)
        MultiByteToWideChar(CP_ACP, 0, path, -1, wide.data(), length);
    return wide;
}

// The file's size and first bytes, within the cap; the decoder reads the rest itself.
int readHead(char const *path, unsigned char (&head)[signatureBytes], unsigned long &headSize)
{
    PFile file;
    if (!path || !*path || !file.open(PString(path), PFile::readAccess, PFile::shareRead, PFile::openExisting))
        return codeCannotOpen;
    const long end = file.seek(0, PFile::fromEnd);
    if (end < 0 || file.seek(0, PFile::fromStart) != 0)
        return codeCannotRead;
    if (end == 0)
        return codeEmptyFile;
    if (static_cast<unsigned long long>(end) > maxFileBytes)
        return codeTooLarge;
    headSize = static_cast<unsigned long>(file.read(head, signatureBytes));
    return codeOk;
}

// The .bmp files of the engine: a file header, then the packed DIB as it stands.
int writeBmp(EngineDib const &dib, char const *path)
{
    PFile file;
    if (!file.open(PString(path), PFile::writeAccess, PFile::shareNone, PFile::createAlways))
        return codeCannotOpen;
    const unsigned long packed = dib.totalBytes();
    const unsigned long offBits = packed - dib.header()->biSizeImage;
    unsigned char fileHeader[14] = {'B', 'M'};
    putLE32(fileHeader + 2, 14 + packed);
    putLE32(fileHeader + 10, 14 + offBits);
    if (file.write(fileHeader, sizeof fileHeader) != long(sizeof fileHeader) ||
        file.write(dib.header(), long(packed)) != long(packed))
        return codeCannotWrite;
    return codeOk;
}

int formatByPath(char const *path)
{
    char const *dot = std::strrchr(path, '.');
    if (!dot || std::strpbrk(dot, "\\/"))
        return formatBmp;
    struct Known {
        char const *extension;
        int format;
    };
    static const Known known[] = {{".png", formatPng}, {".jpg", formatJpeg}, {".jpeg", formatJpeg},
                                  {".tif", formatTiff}, {".tiff", formatTiff}, {".gif", formatGif}};
    for (Known const &k : known)
        if (lstrcmpiA(dot, k.extension) == 0)
            return k.format;
    return formatBmp;
}

// Colour reductions run on the image operations: a GImage made of the DIB at one byte per
// pixel or three, and the reduced picture read back as an 8-bit DIB.
class ReductionImage : public GImage {
public:
    int fill(EngineDib const &dib)
    {
        EngineDib bytes;
        const int made = dib.asBytes(bytes);
        if (made != codeOk)
            return made;
        header = static_cast<BITMAPINFOHEADER *>(PGlobalAlloc(sizeof(BITMAPINFOHEADER)));
        pixels = static_cast<unsigned char *>(PGlobalAlloc(bytes.header()->biSizeImage));
        if (!header || !pixels)
            return codeNoMemory;
        *header = *bytes.header();
        std::memcpy(pixels, bytes.bits(), bytes.header()->biSizeImage);
        const unsigned int count = EngineDib::colourCount(bytes.depth());
        if (count) {
            std::vector<GColor> colours(count);
            for (unsigned int i = 0; i < count; ++i) {
                RGBQUAD const &q = bytes.colours()[i];
                colours[i] = GColor(q.rgbRed, q.rgbGreen, q.rgbBlue);
            }
            colorTable = GPalette(static_cast<unsigned short>(count), colours.data());
        }
        return codeOk;
    }
    int result(EngineDib &out)
    {
        const int made = EngineDib::make(header->biWidth, header->biHeight, 8, out);
        if (made != codeOk)
            return made;
        const unsigned long used = header->biClrUsed < 256 ? header->biClrUsed : 256;
        for (unsigned long i = 0; i < used; ++i) {
            const GColor c = colorTable.getEntry(static_cast<unsigned short>(i));
            out.colours()[i] = RGBQUAD{c.getB(), c.getG(), c.getR(), 0};
        }
        std::memcpy(out.bits(), pixels, out.header()->biSizeImage);
        return codeOk;
    }
};

int reduce(Handle handle, bool optimised, int colours)
{
    Image *image = find(handle);
    if (!image)
        return fail(codeInvalidHandle);
    if (colours < 2 || colours > 256)
        return fail(codeBadArgument);
    ReductionImage work;
    int done = work.fill(image->dib);
    if (done != codeOk)
        return fail(done);
    if (optimised) {
        if (work.octreeReduction(static_cast<unsigned short>(colours)) != GImage::resultOk)
            return fail(codeNoMemory);
    } else {
        // The fixed tables take palette images: true colour is brought to 256 entries first.
        if (work.numColors() == 0 && work.octreeReduction(256) != GImage::resultOk)
            return fail(codeNoMemory);
        const int reduced = colours >= 16 ? work.PLUT16Reduction() : work.PLUT8Reduction();
        if (reduced != GImage::resultOk)
            return fail(codeNoMemory);
    }
    EngineDib out;
    done = work.result(out);
    if (done != codeOk)
        return fail(done);
    replace(*image, static_cast<EngineDib &&>(out));
    return codeOk;
}

// The DIB's header and table as BITMAPINFO for the platform's transfers.
BITMAPINFO const *info(EngineDib const &dib) { return reinterpret_cast<BITMAPINFO const *>(dib.header()); }

} // namespace

void pushError(int code)
{
    // Callers that never clear the stack (pictures) must not make it grow without bound.
    const std::size_t depth = 64;
    std::vector<int> &stack = errorStack();
    if (stack.size() == depth)
        stack.erase(stack.begin());
    stack.push_back(code);
}

int topError() { return errorStack().empty() ? codeOk : errorStack().back(); }

void clearErrors() { errorStack().clear(); }

void setLoadOption(int option, int value)
{
    if (option == optionKeepPalette)
        keepPalette = value != 0;
    else
        pushError(codeBadArgument);
}

int loadMemory(void const *buffer, long size, Handle &image)
{
    if (!buffer || size < 0)
        return fail(codeBadArgument);
    if (size == 0)
        return fail(codeEmptyFile);
    EngineDib dib;
    const int done = wicDecode(buffer, static_cast<unsigned long>(size), keepPalette, dib);
    if (done != codeOk)
        return fail(done);
    return fail(adopt(static_cast<EngineDib &&>(dib), image));
}

int loadFile(char const *path, Handle &image)
{
    unsigned char head[signatureBytes] = {};
    unsigned long headSize = 0;
    const int read = readHead(path, head, headSize);
    if (read != codeOk)
        return fail(read);
    // A file that shrinks or vanishes from here on fails in the decoder.
    EngineDib dib;
    const int done = wicDecodeFile(widePath(path).data(), head, headSize, keepPalette, dib);
    if (done != codeOk)
        return fail(done);
    return fail(adopt(static_cast<EngineDib &&>(dib), image));
}

int deleteImage(Handle image) { return images().erase(image) ? codeOk : fail(codeInvalidHandle); }

bool isValid(Handle image) { return find(image) != nullptr; }

unsigned long dibBytes(BITMAPINFOHEADER const &header)
{
    return sizeof(BITMAPINFOHEADER) + EngineDib::colourCount(header.biBitCount) * sizeof(RGBQUAD) + header.biSizeImage;
}

int createFromDib(BITMAPINFOHEADER const *packed, Handle &image)
{
    if (!packed)
        return fail(codeBadArgument);
    // The caller vouches for a whole DIB: its size is what the header says it is.
    const unsigned long long bytes = packed->biSize + 256ULL * sizeof(RGBQUAD) +
                                     static_cast<unsigned long long>(dibStride(packed->biWidth, packed->biBitCount)) *
                                         (packed->biHeight < 0 ? -static_cast<long long>(packed->biHeight) : packed->biHeight);
    EngineDib dib;
    const int done = EngineDib::copyOf(packed, bytes, dib);
    if (done != codeOk)
        return fail(done);
    return fail(adopt(static_cast<EngineDib &&>(dib), image));
}

int createFromBitmap(HBITMAP bitmap, Handle &image)
{
    BITMAP description;
    if (!bitmap || GetObjectA(bitmap, sizeof description, &description) != sizeof description)
        return fail(codeBadArgument);
    const int depth = description.bmBitsPixel == 1 ? 1 : 24;
    EngineDib dib;
    int done = EngineDib::make(description.bmWidth, description.bmHeight, depth, dib);
    if (done != codeOk)
        return fail(done);
    HDC screen = GetDC(nullptr);
    // GetDIBits fills the header's table for a palette depth.
    const int lines = GetDIBits(screen, bitmap, 0, UINT(dib.height()), dib.bits(),
                                reinterpret_cast<BITMAPINFO *>(dib.header()), DIB_RGB_COLORS);
    ReleaseDC(nullptr, screen);
    if (lines != dib.height())
        return fail(codeCorrupt);
    dib.header()->biClrUsed = dib.header()->biClrImportant = EngineDib::colourCount(depth);
    return fail(adopt(static_cast<EngineDib &&>(dib), image));
}

int dimensions(Handle handle, int &width, int &height, int &bitsPerPixel)
{
    Image *image = find(handle);
    if (!image)
        return fail(codeInvalidHandle);
    width = image->dib.width();
    height = image->dib.height();
    bitsPerPixel = image->dib.depth();
    return codeOk;
}

int dib(Handle handle, BITMAPINFOHEADER *&packed)
{
    Image *image = find(handle);
    if (!image)
        return fail(codeInvalidHandle);
    packed = image->dib.header();
    return codeOk;
}

int getResolution(Handle handle, Resolution &resolution)
{
    Image *image = find(handle);
    if (!image)
        return fail(codeInvalidHandle);
    resolution = image->resolution;
    return codeOk;
}

int setResolution(Handle handle, Resolution const &resolution)
{
    Image *image = find(handle);
    if (!image)
        return fail(codeInvalidHandle);
    if (resolution.horizontal < 0 || resolution.vertical < 0)
        return fail(codeBadArgument);
    image->resolution.horizontal = resolution.horizontal;
    image->resolution.vertical = resolution.vertical;
    image->dib.header()->biXPelsPerMeter = resolution.horizontal;
    image->dib.header()->biYPelsPerMeter = resolution.vertical;
    return codeOk;
}

int replacePalette(Handle handle, unsigned long const *colours, int count)
{
    Image *image = find(handle);
    if (!image)
        return fail(codeInvalidHandle);
    if (!colours || count <= 0 || static_cast<unsigned int>(count) != EngineDib::colourCount(image->dib.depth()))
        return fail(codePaletteMismatch);
    for (int i = 0; i < count; ++i)
        image->dib.colours()[i] = RGBQUAD{BYTE(colours[i]), BYTE(colours[i] >> 8), BYTE(colours[i] >> 16), 0};
    return codeOk;
}

int save(Handle handle, char const *path, int format)
{
    Image *image = find(handle);
    if (!image)
        return fail(codeInvalidHandle);
    if (!path || !*path)
        return fail(codeCannotOpen);
    if (format == formatByExtension)
        format = formatByPath(path);
    WicContainer container;
    switch (format) {
    case formatBmp: return fail(writeBmp(image->dib, path));
    case formatPng:
    case formatPicture: container = WicContainer::png; break;
    case formatJpeg: container = WicContainer::jpeg; break;
    case formatTiff: container = WicContainer::tiff; break;
    case formatGif:
        if (!EngineDib::colourCount(image->dib.depth()))
            return fail(codeBadDepth);
        container = WicContainer::gif;
        break;
    default: return fail(codeUnknownFormat);
    }
    return fail(wicEncode(image->dib, container, widePath(path).data()));
}

int promoteDepth(Handle handle, int mode)
{
    Image *image = find(handle);
    if (!image)
        return fail(codeInvalidHandle);
    if (mode != promoteNibbles)
        return fail(codeBadArgument);
    if (image->dib.depth() != 4)
        return codeOk;
    EngineDib bytes;
    const int done = image->dib.asBytes(bytes);
    if (done != codeOk)
        return fail(done);
    replace(*image, static_cast<EngineDib &&>(bytes));
    return codeOk;
}

int reduceOptimised(Handle image, int colours) { return reduce(image, true, colours); }

int reduceFixed(Handle image, int colours) { return reduce(image, false, colours); }

int resize(Handle handle, int width, int height)
{
    Image *image = find(handle);
    if (!image)
        return fail(codeInvalidHandle);
    EngineDib const &from = image->dib;
    EngineDib to;
    int done = EngineDib::make(width, height, from.depth(), to);
    if (done != codeOk)
        return fail(done);
    std::memcpy(to.colours(), from.colours(), EngineDib::colourCount(from.depth()) * sizeof(RGBQUAD));
    // Nearest below: the source column of each target column, computed once.
    std::vector<long> columns(static_cast<std::size_t>(width));
    for (int x = 0; x < width; ++x)
        columns[x] = static_cast<long>(static_cast<long long>(x) * from.width() / width);
    const int bits = from.depth();
    for (int r = 0; r < height; ++r) {
        const long sourceRow = static_cast<long>(static_cast<long long>(r) * from.height() / height);
        unsigned char const *in = from.row(sourceRow);
        unsigned char *out = to.row(r);
        if (bits == 24) {
            for (int x = 0; x < width; ++x)
                std::memcpy(out + 3 * x, in + 3 * columns[x], 3);
        } else if (bits == 8) {
            for (int x = 0; x < width; ++x)
                out[x] = in[columns[x]];
        } else {
            for (int x = 0; x < width; ++x) {
                const unsigned long v = from.pixel(sourceRow, columns[x]);
                if (bits == 1)
                    out[x >> 3] |= static_cast<unsigned char>(v << (7 - (x & 7)));
                else
                    out[x >> 1] |= static_cast<unsigned char>(v << ((x & 1) ? 0 : 4));
            }
        }
    }
    replace(*image, static_cast<EngineDib &&>(to));
    return codeOk;
}

int render(Handle handle, int width, int height, HBITMAP &bitmap, HPALETTE *palette)
{
    bitmap = nullptr;
    if (palette)
        *palette = nullptr;
    Image *image = find(handle);
    if (!image)
        return fail(codeInvalidHandle);
    if (width <= 0 || height <= 0 || width > maxSide || height > maxSide)
        return fail(codeBadArgument);
    EngineDib const &dib = image->dib;
    HDC screen = GetDC(nullptr);
    HDC memory = CreateCompatibleDC(screen);
    bitmap = CreateCompatibleBitmap(screen, width, height);
    ReleaseDC(nullptr, screen);
    if (!memory || !bitmap) {
        if (memory)
            DeleteDC(memory);
        if (bitmap)
            DeleteObject(bitmap);
        bitmap = nullptr;
        return fail(codeNoMemory);
    }
    HGDIOBJ previous = SelectObject(memory, bitmap);
    SetStretchBltMode(memory, COLORONCOLOR);
    StretchDIBits(memory, 0, 0, width, height, 0, 0, dib.width(), dib.height(), dib.bits(), info(dib), DIB_RGB_COLORS,
                  SRCCOPY);
    SelectObject(memory, previous);
    DeleteDC(memory);
    const unsigned int count = EngineDib::colourCount(dib.depth());
    if (palette && count) {
        std::vector<unsigned char> block(sizeof(LOGPALETTE) + count * sizeof(PALETTEENTRY));
        auto *logical = reinterpret_cast<LOGPALETTE *>(block.data());
        logical->palVersion = 0x300;
        logical->palNumEntries = static_cast<WORD>(count);
        for (unsigned int i = 0; i < count; ++i) {
            RGBQUAD const &q = dib.colours()[i];
            logical->palPalEntry[i] = PALETTEENTRY{q.rgbRed, q.rgbGreen, q.rgbBlue, 0};
        }
        *palette = CreatePalette(logical);
    }
    return codeOk;
}

int setDisplayRect(Handle handle, RECT const *rect)
{
    Image *image = find(handle);
    if (!image)
        return fail(codeInvalidHandle);
    if (!rect)
        return fail(codeBadArgument);
    image->display = *rect;
    image->hasDisplay = true;
    return codeOk;
}

int paint(Handle handle, HDC dc)
{
    Image *image = find(handle);
    if (!image)
        return fail(codeInvalidHandle);
    EngineDib const &dib = image->dib;
    const RECT to = image->hasDisplay ? image->display : RECT{0, 0, dib.width(), dib.height()};
    const int mode = SetStretchBltMode(dc, COLORONCOLOR);
    const int lines = StretchDIBits(dc, to.left, to.top, to.right - to.left, to.bottom - to.top, 0, 0, dib.width(),
                                    dib.height(), dib.bits(), info(dib), DIB_RGB_COLORS, SRCCOPY);
    SetStretchBltMode(dc, mode);
    return lines == 0 || lines == static_cast<int>(GDI_ERROR) ? fail(codeBadArgument) : codeOk;
}

int paintBitmap(HDC dc, HBITMAP bitmap, HPALETTE palette)
{
    BITMAP description;
    if (!dc || !bitmap || GetObjectA(bitmap, sizeof description, &description) != sizeof description)
        return fail(codeBadArgument);
    DibPaletteSelection selection(dc, palette);
    HDC memory = CreateCompatibleDC(dc);
    if (!memory)
        return fail(codeNoMemory);
    HGDIOBJ previous = SelectObject(memory, bitmap);
    const BOOL done = BitBlt(dc, 0, 0, description.bmWidth, description.bmHeight, memory, 0, 0, SRCCOPY);
    SelectObject(memory, previous);
    DeleteDC(memory);
    return done ? codeOk : fail(codeBadArgument);
}

int acquireFromScanner(HWND, Handle &)
{
    // No acquisition device is supported: the call fails as a missing scanner would.
    return fail(codeNoScanner);
}

} // namespace ImageEngine
