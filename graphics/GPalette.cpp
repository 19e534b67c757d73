#include "graphics/GPalette.h"

#include "foundation/PMemory.h"

#include <cstddef>

namespace {

// The colour list of a palette of count entries, or null when memory runs out.
GColor *newEntries(int count)
{
    return count > 0 ? new (std::nothrow) GColor[count] : nullptr;
}

} // namespace

GPalette::GPalette()
    : shared(GHandleBox<HPALETTE>::make(static_cast<HPALETTE>(GetStockObject(DEFAULT_PALETTE)), 0)),
      entryCount(0), entries(nullptr)
{
    const int count = getNumEntries();
    PALETTEENTRY *platformEntries = count > 0 ? new (std::nothrow) PALETTEENTRY[count] : nullptr;
    entries = newEntries(count);
    if (platformEntries && entries) {
        entryCount = static_cast<int>(GetPaletteEntries(shared.handle(), 0, count, platformEntries));
        for (int i = 0; i < entryCount; ++i)
            entries[i] = GColor(platformEntries[i].peRed, platformEntries[i].peGreen, platformEntries[i].peBlue);
    }
    delete[] platformEntries;
}

GPalette::GPalette(unsigned short n, GColor *const colours) : entryCount(0), entries(nullptr)
{
    if (!colours)
        n = 0;
    const unsigned int size = offsetof(LOGPALETTE, palPalEntry) + n * sizeof(PALETTEENTRY);
    LOGPALETTE *description = static_cast<LOGPALETTE *>(PLocalAlloc(size));
    if (description) {
        description->palVersion = 0x300;
        description->palNumEntries = n;
        PALETTEENTRY *slots = description->palPalEntry;
        for (unsigned int i = 0; i < n; ++i)
            slots[i] = PALETTEENTRY{colours[i].getR(), colours[i].getG(), colours[i].getB(), 0};
    }
    shared.reset(GHandleBox<HPALETTE>::make(description ? CreatePalette(description) : nullptr, 1));
    PLocalFree(description);

    entries = newEntries(n);
    if (entries) {
        entryCount = n;
        for (int i = 0; i < entryCount; ++i)
            entries[i] = colours[i];
    }
}

GPalette::GPalette(GPalette const &other) : shared(other.shared), entryCount(0), entries(nullptr)
{
    copyEntries(other);
}

GPalette::~GPalette()
{
    delete[] entries;
}

GPalette &GPalette::operator=(GPalette const &other)
{
    if (this != &other) {
        shared = other.shared;
        copyEntries(other);
    }
    return *this;
}

void GPalette::copyEntries(GPalette const &other)
{
    delete[] entries;
    entries = newEntries(other.entryCount);
    entryCount = entries ? other.entryCount : 0;
    for (int i = 0; i < entryCount; ++i)
        entries[i] = other.entries[i];
}

GColor GPalette::getEntry(unsigned short i) const
{
    return i < entryCount ? entries[i] : GColor();
}

GColor GPalette::operator[](int i) const
{
    return i >= 0 && i < entryCount ? entries[i] : GColor();
}

void GPalette::setEntry(int i, GColor const &color)
{
    PALETTEENTRY entry = color;
    SetPaletteEntries(shared.handle(), static_cast<UINT>(i), 1, &entry);
    if (i >= 0 && i < entryCount)
        entries[i] = color;
}

int GPalette::getNumEntries() const
{
    WORD count = 0;
    GetObjectA(shared.handle(), sizeof count, &count);
    return count;
}
