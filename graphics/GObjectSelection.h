// GObjectSelection.h - selections into a device context that last for a scope.
//
//   GObjectSelection   selects a pen, brush, font, bitmap or region; selects back what it replaced
//   GPaletteSelection  selects a palette when asked to; selects back the palette it replaced
#pragma once

#include <windows.h>

class GObjectSelection {
public:
    GObjectSelection(HDC dc, HGDIOBJ object) : dc(dc), previous(SelectObject(dc, object)) {}
    ~GObjectSelection()
    {
        if (previous)
            SelectObject(dc, previous);
    }
    GObjectSelection(GObjectSelection const &) = delete;
    GObjectSelection &operator=(GObjectSelection const &) = delete;

private:
    HDC dc;
    HGDIOBJ previous;
};

// With select zero nothing is selected and nothing is undone.
class GPaletteSelection {
public:
    GPaletteSelection(HDC dc, HPALETTE palette, int select)
        : dc(dc), previous(select ? SelectPalette(dc, palette, FALSE) : nullptr)
    {
    }
    ~GPaletteSelection()
    {
        if (previous)
            SelectPalette(dc, previous, FALSE);
    }
    GPaletteSelection(GPaletteSelection const &) = delete;
    GPaletteSelection &operator=(GPaletteSelection const &) = delete;

private:
    HDC dc;
    HPALETTE previous;
};
