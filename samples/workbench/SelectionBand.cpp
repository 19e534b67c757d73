// SelectionBand.cpp - the band floats in exclusive-or, so drawing it twice erases it.
#include "SelectionBand.h"

void RubberBand::setPosition(GPoint const &position)
{
    rect = GRect(position.getX(), position.getY(), position.getX() + rect.width(), position.getY() + rect.height());
}

GPoint RubberBand::getPosition() const { return GPoint(rect.lVal(), rect.tVal()); }

void RubberBand::draw(GDevice &device)
{
    const GPen previous = device.getPen();
    device.setPen(GPen(GColor(255, 255, 255), 1, LineDot));
    device.rectangle(rect);
    device.setPen(previous);
}

SelectionBand::SelectionBand() : overlay(band) {}

SelectionBand::~SelectionBand() = default;

void SelectionBand::show(GDevice &device, GRect const &rect)
{
    hide(device);
    band.setRect(rect);
    overlay.beforeDraw(device);
    overlay.draw(device);
    shown = true;
}

void SelectionBand::hide(GDevice &device)
{
    if (shown)
        overlay.erase(device);
    shown = false;
}

void SelectionBand::redraw(GDevice &device)
{
    if (shown) {
        overlay.beforeDraw(device);
        overlay.draw(device);
    }
}
