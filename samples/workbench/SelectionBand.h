// SelectionBand.h - the rubber band of a selection, drawn over the picture and taken away
// again without repainting what lies beneath.
//
//   RubberBand     the glyph: a dotted rectangle in the logical coordinates of a device
//   SelectionBand  floats the rubber band over a device in exclusive-or mode
#pragma once

#include <TeskWin.h>

class RubberBand : public PGlyph {
public:
    void setPosition(GPoint const &position) override;
    GPoint getPosition() const override;
    GRect getBounds() override { return rect; }
    void draw(GDevice &device) override;

    void setRect(GRect const &bounds) { rect = bounds; }

private:
    GRect rect;
};

class SelectionBand {
public:
    SelectionBand();
    SelectionBand(SelectionBand const &) = delete;
    SelectionBand &operator=(SelectionBand const &) = delete;
    ~SelectionBand();

    // Moves the band to rect: the band shown before is erased first.
    void show(GDevice &device, GRect const &rect);
    // Erases the band, if shown.
    void hide(GDevice &device);
    // Draws the band again where a repaint has just wiped it.
    void redraw(GDevice &device);
    // Forgets the band without erasing it, where a repaint of everything is coming.
    void forget() { shown = false; }
    bool isShown() const { return shown; }

private:
    RubberBand band;
    PXorLaputa overlay;
    bool shown = false;
};
