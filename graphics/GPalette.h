// GPalette.h - logical palettes as shared values.
//
//   GPalette  a platform palette shared between copies, with each copy's own list of colours
#pragma once

#include "foundation/GColor.h"
#include "foundation/TeskWinExport.h"
#include "graphics/GSharedHandle.h"

#include <windows.h>

// The platform palette is shared; the colour list is not, so a copy remembers the colours
// it was made with even after another copy changes an entry.
class TESKWIN_API GPalette {
public:
    // The stock default palette and its colours.
    GPalette();
    // A new palette of the first n colours.
    GPalette(unsigned short n, GColor *const colours);
    GPalette(GPalette const &other);
    virtual ~GPalette();

    GPalette &operator=(GPalette const &other);

    // This copy's colour at i; black outside the list.
    GColor getEntry(unsigned short i) const;
    GColor operator[](int i) const;
    // Changes entry i of the platform palette, which every copy shares, and of this copy's list.
    void setEntry(int i, GColor const &color);
    // The number of entries of the platform palette, as the platform reports it.
    int getNumEntries() const;

private:
    friend class GDevice;
    friend class GImage;

    operator HPALETTE() const { return shared.handle(); }

    void copyEntries(GPalette const &other);

    GSharedHandle<GHandleBox<HPALETTE>> shared;
    int entryCount;
    GColor *entries;
};
