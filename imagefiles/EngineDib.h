// EngineDib.h - the engine's packed DIBs (library-internal).
//
//   EngineDib    one packed DIB in a block from PGlobalAlloc: header, full colour table, rows
//
// The engine holds 1, 4, 8 and 24 bits only, always with 2, 16 or 256 entries for the
// palette depths, so the rows start at a place the depth alone gives.
#pragma once

#include <windows.h>

class EngineDib {
public:
    EngineDib() : block(nullptr) {}
    ~EngineDib();
    EngineDib(EngineDib &&other) noexcept : block(other.block) { other.block = nullptr; }
    EngineDib &operator=(EngineDib &&other) noexcept;
    EngineDib(EngineDib const &) = delete;
    EngineDib &operator=(EngineDib const &) = delete;

    // Entries for a depth: 2, 16, 256, or 0 for true colour.
    static unsigned int colourCount(int bits);
    // Whether the engine holds this depth.
    static bool heldDepth(int bits);
    // A zeroed DIB, or a negative code (too large, no memory, bad depth).
    static int make(long width, long height, int bits, EngineDib &out);
    // A canonical copy of any uncompressed DIB of 1, 4, 8, 24 or 32 bits, read within `bytes`.
    static int copyOf(BITMAPINFOHEADER const *packed, unsigned long long bytes, EngineDib &out);

    bool empty() const { return block == nullptr; }
    BITMAPINFOHEADER *header() const { return reinterpret_cast<BITMAPINFOHEADER *>(block); }
    RGBQUAD *colours() const { return reinterpret_cast<RGBQUAD *>(block + sizeof(BITMAPINFOHEADER)); }
    unsigned char *bits() const;
    long width() const { return header()->biWidth; }
    long height() const { return header()->biHeight; }
    int depth() const { return header()->biBitCount; }
    unsigned long stride() const;
    // Stored row r, 0 being the bottom one.
    unsigned char *row(long r) const { return bits() + static_cast<unsigned long long>(r) * stride(); }
    unsigned long totalBytes() const;

    // The palette index or, at 24 bits, 0x00RRGGBB of a pixel in stored rows.
    unsigned long pixel(long r, long x) const;
    // The same DIB at 8 bits (palette depths) or as it is (24 bits); a negative code on failure.
    int asBytes(EngineDib &out) const;

private:
    unsigned char *block;
};
