// GBitmap.h - device-dependent bitmaps as shared values.
//
//   GBitmap  a platform bitmap shared between copies, from bits, resources or files
#pragma once

#include "foundation/GPoint.h"
#include "foundation/IConsoleApp.h"
#include "foundation/PString.h"
#include "foundation/TeskWinExport.h"
#include "graphics/GSharedHandle.h"

#include <windows.h>

// Empty until made or first loaded; once valid it keeps its platform bitmap. The location is
// where a device last drew this copy, and is not shared.
class TESKWIN_API GBitmap {
public:
    GBitmap();
    // CreateBitmap's form of a bitmap; null bits leave the pixels undefined.
    GBitmap(unsigned char const *bits, int width, int height, unsigned int planes, unsigned int bitsPerPixel);
    // A bitmap resource of the application.
    GBitmap(IConsoleApp *app, PString const &name);
    // Starts with its own location at (0, 0).
    GBitmap(GBitmap const &other);

    // Keeps this bitmap's location.
    GBitmap &operator=(GBitmap const &other);

    // 1 when the bitmap resource name of app was loaded into this empty bitmap, otherwise 0.
    int load(IConsoleApp *app, PString const &name);
    // The same with an integer resource; the low 16 bits of id count.
    int load(IConsoleApp *app, int id);
    // LoadImageA's load: with a null app and LR_LOADFROMFILE among flags, name is a file.
    int loadEx(IConsoleApp *app, char const *name, unsigned int flags);

    // Width and height in pixels; (0, 0) when empty.
    GPoint getSize() const;
    int isValid() const;

    operator HBITMAP() const { return shared.handle(); }
    HBITMAP getHandle() const { return shared.handle(); }

    GPoint getLocation() const { return location; }
    void setLocation(GPoint where) { location = where; }

    // 1 when both name the same platform bitmap.
    int operator==(GBitmap const &other) const;

protected:
    friend class GDevice;
    friend class GImage;
    friend class PImage; // the image-file layer wraps the bitmaps its engine renders

    // Takes handle and the duty to delete it.
    explicit GBitmap(HBITMAP handle);

private:
    int getBitmap(tagBITMAP *description) const;
    int loadFrom(HINSTANCE instance, char const *name, bool isResourceName, unsigned int flags);

    GSharedHandle<GBitmapBox> shared;
    GPoint location;
};
