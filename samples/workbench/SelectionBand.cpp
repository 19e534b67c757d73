// SelectionBand.cpp - the band is drawn in exclusive-or, so drawing it twice erases it.
#include "SelectionBand.h"

SelectionBand::SelectionBand() = default;

SelectionBand::~SelectionBand() = default;

void SelectionBand::show(GDevice &device, GRect const &rect)
{
    hide(device);
    band = rect;
    drawBand(device);
    shown = true;
}

void SelectionBand::hide(GDevice &device)
{
    if (shown)
        drawBand(device);
    shown = false;
}

void SelectionBand::redraw(GDevice &device)
{
    if (shown)
        drawBand(device);
}

void SelectionBand::drawBand(GDevice &device)
{
    const GPen previous = device.getPen();
    device.setPen(GPen(GColor(255, 255, 255), 1, LineDot));
    device.setXOR(1);
    device.rectangle(band);
    device.setXOR(0);
    device.setPen(previous);
}
