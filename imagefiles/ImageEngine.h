// ImageEngine.h - the imaging engine that PImage and PPicture stand on (library-internal).
//
//   ImageEngine          opaque image handles over packed DIBs: files through the platform's
//                        imaging component and the library's own .bmp code, resolution,
//                        palettes, depth, colour reduction, resizing, rendering, an error stack
//   ImageEngine::Code    the engine's own error codes, which PImage::decodeError maps
//   ImageEngine::Format  the format numbers of save
//
// Every image is held as one packed DIB: a 40-byte header, 2, 16 or 256 colour entries for
// 1, 4 and 8 bits (none for 24), then bottom-up rows padded to 4 bytes, in a block from
// PGlobalAlloc. Every operation returns 0 or a negative code; a failure is also pushed on the
// error stack, which topError reads and clearErrors empties. Files, dimensions and blocks are
// capped so that no input can make the engine allocate without bound. Single-threaded, like
// the windows; COM is started on the calling thread when first needed.
#pragma once

#include "foundation/TeskWinExport.h"

#include <windows.h>

namespace ImageEngine {

using Handle = unsigned long;
constexpr Handle noHandle = 0xffffffffUL;

enum Code : int {
    codeOk = 0,
    codeEmptyFile = -500,         // a file or buffer of no bytes
    codeNoMemory = -1000,
    codeNotAnImage = -2005,       // no decoder takes the bytes
    codeUnknownFormat = -2006,    // a format number save doesn't know
    codeCorrupt = -2010,          // the decoder refused the contents
    codeBadDepth = -2100,         // a DIB of a depth or compression the engine doesn't hold
    codeTruncated = -2110,        // the data ends before the header says
    codeNoScanner = -2113,        // no acquisition device
    codeCannotOpen = -2030,
    codeCannotRead = -2031,
    codeCannotWrite = -2475,
    codePaletteMismatch = -3060,
    codeInvalidHandle = -3330,
    codeBadArgument = -4016,
    codeTooLarge = -4035          // beyond the engine's caps on dimensions or bytes
};

// Format numbers of save. 0 chooses by the path's extension (.bmp when there is none or it is
// unknown), like the library's .bmp writer; gif takes palette images only.
enum Format : int {
    formatByExtension = 0,
    formatBmp = 1,
    formatPng = 2,                // lossless at every depth: the brightness backup
    formatJpeg = 3,
    formatTiff = 4,
    formatGif = 14,
    formatPicture = 33            // a self-contained file for picture streams (PNG)
};

// The load option that keeps a file's palette (value 1); with 0 every file loads as 24 bits.
constexpr int optionKeepPalette = 0x29;

// Depth promotion modes: nibble images (4 bits) become bytes; 1-bit images are left alone.
constexpr int promoteNibbles = 2;

// The caps on what is decoded or made.
constexpr long maxSide = 32767;
constexpr unsigned long long maxPixels = 1ULL << 26;
constexpr unsigned long long maxFileBytes = 256ULL << 20;

// The horizontal and vertical values, in pixels per metre; the units go back as read.
struct Resolution {
    long horizontal;
    long horizontalUnit;
    long vertical;
    long verticalUnit;
    long reserved;
};

void setLoadOption(int option, int value);
int loadFile(char const *path, Handle &image);
int loadMemory(void const *buffer, long size, Handle &image);
int deleteImage(Handle image);
bool isValid(Handle image);
// A new image of a copy of a packed DIB, in any depth of 1, 4, 8, 24 or 32 bits, uncompressed.
int createFromDib(BITMAPINFOHEADER const *dib, Handle &image);
// A new image of a platform bitmap: 24 bits, or the bitmap's own depth up to 8 bits.
int createFromBitmap(HBITMAP bitmap, Handle &image);
int dimensions(Handle image, int &width, int &height, int &bitsPerPixel);
// The image's own DIB, valid until the image changes or goes.
int dib(Handle image, BITMAPINFOHEADER *&packed);
// Bytes of the whole packed DIB.
unsigned long dibBytes(BITMAPINFOHEADER const &header);
int getResolution(Handle image, Resolution &resolution);
int setResolution(Handle image, Resolution const &resolution);
// count colours of 0x00RRGGBB; count must be the image's number of entries.
int replacePalette(Handle image, unsigned long const *colours, int count);
int save(Handle image, char const *path, int format);
int promoteDepth(Handle image, int mode);
// An adaptive palette of at most `colours` entries (the octree of the image operations).
int reduceOptimised(Handle image, int colours);
// A fixed table: 16 colours when at least 16 are asked for, otherwise 8.
int reduceFixed(Handle image, int colours);
// Nearest-neighbour resampling to width by height.
int resize(Handle image, int width, int height);
// A screen-compatible bitmap of width by height, and a palette of the image's entries when
// palette is non-null (null for a true-colour image). The caller deletes both.
int render(Handle image, int width, int height, HBITMAP &bitmap, HPALETTE *palette);
int setDisplayRect(Handle image, RECT const *rect);
// The image into its display rectangle, or at (0, 0) in its own size when none was set.
int paint(Handle image, HDC dc);
// A bitmap at (0, 0) of dc through a palette (null for none).
int paintBitmap(HDC dc, HBITMAP bitmap, HPALETTE palette);
// There is no acquisition device: always codeNoScanner.
int acquireFromScanner(HWND window, Handle &image);

int topError();
void clearErrors();
// Pushes a code as a failing operation would; exported for the tests of the error table.
TESKWIN_API void pushError(int code);

} // namespace ImageEngine
