// PImgDithSquare.h - one bar of a line screen made from an image.
//
//   PImgDithSquare  where a bar starts, its thickness and length, and its direction of travel
#pragma once

#include "foundation/PCoord.h"
#include "foundation/TeskWinExport.h"

class TESKWIN_API PImgDithSquare {
public:
    PImgDithSquare() : origin(0, 0), thickness(0), length(0), forward(1) {}
    PImgDithSquare(PCoord<unsigned short> const &origin, unsigned short thickness, unsigned short length,
                   unsigned char forward)
        : origin(origin), thickness(thickness), length(length), forward(forward)
    {
    }
    virtual ~PImgDithSquare() = default;

    // x along the row, y across it; with travel right to left the origin is the bar's right end.
    PCoord<unsigned short> origin;
    unsigned short thickness;
    unsigned short length;
    unsigned char forward; // 1 left to right, 0 right to left
};
