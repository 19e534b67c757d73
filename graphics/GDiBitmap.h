// GDiBitmap.h - an image filled from a .bmp file or from a device bitmap.
//
//   GDiBitmap  a GImage whose file reader always yields one byte per pixel
//
// Results of the readers: 0 success, 1 a depth this reader doesn't take, 2 not a .bmp file,
// 3 no memory, 4 the file ended early, 6 the palette could not be built. After any result
// but 0 the image is left empty.
#pragma once

#include "foundation/TeskWinExport.h"
#include "graphics/GBitmap.h"
// A device-independent bitmap is an image with its own reader, so it stands on the image class.
#include "imaging/GImage.h"

struct tagRGBQUAD;

class TESKWIN_API GDiBitmap : public GImage {
public:
    GDiBitmap() = default;
    GDiBitmap(GDiBitmap const &other) = default;
    GDiBitmap &operator=(GDiBitmap const &other) = default;

    // Reads a .bmp file of 1, 4 or 8 bits (or any depth with a colour count) as 8-bit indices.
    int load(PString const &fileName) override;
    // Reads the bits of a device bitmap of at most 8 bits per pixel, in its own depth.
    int load(GBitmap const &bitmap);

protected:
    // Makes the palette from numColors() entries of blue, green, red, reserved; 0 when there are none.
    int createPalette(tagRGBQUAD *quads);

private:
    int fail(int result);
};
