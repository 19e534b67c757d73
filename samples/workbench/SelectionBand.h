// SelectionBand.h - the rubber band of a selection, drawn over the picture and taken away
// again without repainting what lies beneath.
//
//   SelectionBand  a dotted rectangle in the logical coordinates of a device
#pragma once

#include <TeskWin.h>

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
    void drawBand(GDevice &device);

    GRect band;
    bool shown = false;
};
