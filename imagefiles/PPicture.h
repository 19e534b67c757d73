// PPicture.h - pictures held by the imaging engine, without pixel access.
//
//   PPicture  loads, shows, saves and streams an engine image; the stream form is a 32-bit
//             little-endian length and then a whole image file
//
// Copies share their inner record (see operator=): only one of them may be destroyed.
#pragma once

#include "foundation/PStream.h"
#include "foundation/PString.h"
#include "foundation/TeskWinExport.h"

#include <windows.h>

struct PictureImpl;

class TESKWIN_API PPicture {
public:
    enum Status { statusOk = 0, statusLoadFailed = 1 };
    enum Codes : int {
        // The engine's code after which a failed load sets statusLoadFailed: a file of no bytes.
        emptyFileCode = -500,
        // The format of save that reduces true colour to 256 colours first (GIF).
        formatPaletteOnly = 14
    };
    // colorReduction's methods.
    enum ReductionMethod { reduceFixedTable = 1, reduceOptimised = 2 };

    PPicture();
    PPicture(PPicture const &) = delete;
    ~PPicture();
    // Deliberately shares the other's inner record; this one's earlier record is dropped.
    PPicture &operator=(PPicture const &other);

    // 0, -1 for a .wpg path (refused before the engine sees it), or the engine's own code.
    int load(PString const &path);
    // 0, or -1 when there is no picture or the engine fails.
    int save(PString const &path, int format);
    // Replaces the picture by one from the stream form; failures leave it empty.
    void read(PStream &stream);
    // The stream form; a length of 0 when the picture couldn't be written.
    void write(PStream &stream);
    // Paints the picture at (0, 0) of dc in width by height.
    void showPicture(HDC dc, int width, int height);
    // 0 and 0 without a picture.
    void getDimension(int &width, int &height);
    // 1 when the engine reduced, 0 otherwise (and for an unknown method).
    int colorReduction(int method, int colors);
    // A bitmap owned by the caller, or null.
    HBITMAP makeBitmap(int width, int height);
    HBITMAP makeBitmap();
    // 0, or -1 when the bitmap couldn't be taken.
    int createFromBitmap(HBITMAP bitmap);
    bool isValid();
    int getStatus();

private:
    PictureImpl *impl;
};
