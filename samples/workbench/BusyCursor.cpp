// BusyCursor.cpp - the window's own cursor is swapped for the stock hourglass.
#include "BusyCursor.h"

BusyCursor::BusyCursor(PWindow *window) : window(window), saved(cursorArrow)
{
    if (window) {
        saved = window->getCursor();
        window->setCursor(PCursor(cursorWait));
    }
}

BusyCursor::~BusyCursor()
{
    if (window)
        window->setCursor(saved);
}
