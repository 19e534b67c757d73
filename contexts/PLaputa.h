// PLaputa.h - overlays: drawing over what a device shows and taking it away again.
//
//   PGlyph         what an overlay looks like and where it is; the application supplies it
//   PLaputa        floats a glyph over the drawing: beforeDraw, draw, and later erase
//   PXorLaputa     draws in exclusive-or mode, so drawing twice restores the pixels
//   PBitmapLaputa  saves the pixels under the glyph and writes them back to erase
//
// The glyph must stay put between beforeDraw and erase: both overlays find the place to
// restore from the glyph's bounds at the time of erasing.
#pragma once

#include "foundation/GPoint.h"
#include "foundation/TeskWinExport.h"
#include "graphics/GBitmap.h"
#include "graphics/GRect.h"

class GDevice;

class TESKWIN_API PGlyph {
public:
    PGlyph() = default;
    PGlyph(PGlyph const &) = default;
    // Leaves the glyph as it is.
    PGlyph &operator=(PGlyph const &) { return *this; }
    virtual ~PGlyph() = default;

    // Where the glyph is, for the application that moves it; the library does not call these.
    virtual void setPosition(GPoint const &position) = 0;
    virtual GPoint getPosition() const = 0;
    // The bounding rectangle in the logical coordinates of the device it is drawn on.
    virtual GRect getBounds() = 0;
    virtual void draw(GDevice &device) = 0;
};

class TESKWIN_API PLaputa {
public:
    // glyph is not owned and must outlive the overlay.
    explicit PLaputa(PGlyph &glyph) : glyph(&glyph) {}
    virtual ~PLaputa() = default;

    virtual void beforeDraw(GDevice &device) = 0;
    virtual void draw(GDevice &device) = 0;
    virtual void erase(GDevice &device) = 0;

    PGlyph &getGlyph() { return *glyph; }

protected:
    PLaputa(PLaputa const &other) = default;
    // Does nothing: an overlay keeps its own glyph when assigned. Deliberate.
    PLaputa &operator=(PLaputa const &) { return *this; }

    PGlyph *glyph;
};

class TESKWIN_API PXorLaputa : public PLaputa {
public:
    explicit PXorLaputa(PGlyph &glyph) : PLaputa(glyph) {}
    PXorLaputa(PXorLaputa const &other) = default;
    PXorLaputa &operator=(PXorLaputa const &other) = default;
    ~PXorLaputa() override = default;

    // Saves nothing.
    void beforeDraw(GDevice &device) override;
    // Leaves the device in copy mode, whatever mode it was in.
    void draw(GDevice &device) override;
    // Draws again.
    void erase(GDevice &device) override;
};

class TESKWIN_API PBitmapLaputa : public PLaputa {
public:
    explicit PBitmapLaputa(PGlyph &glyph) : PLaputa(glyph), savedFlag(0) {}
    PBitmapLaputa(PBitmapLaputa const &other) = default;
    // Copies the saved pixels and keeps this overlay's glyph.
    PBitmapLaputa &operator=(PBitmapLaputa const &other) = default;
    ~PBitmapLaputa() override = default;

    // Copies the device's pixels under the glyph's bounds into a bitmap of their size.
    void beforeDraw(GDevice &device) override;
    // The glyph in the device's ordinary mode.
    void draw(GDevice &device) override;
    // Writes the saved pixels at the glyph's bounds; before any beforeDraw nothing is written.
    void erase(GDevice &device) override;

protected:
    GBitmap saved;
    // 1 once beforeDraw has run; nothing tests it.
    int savedFlag;
};
