// POutlines.h - a traced outline.
//
//   POutlines  a closed polygon of whole-number points, with the byte value of the region it bounds
#pragma once

#include "foundation/TeskWinExport.h"
#include "foundation/PCoord.h"
#include "foundation/PList.h"

class TESKWIN_API POutlines {
public:
    POutlines();
    POutlines(unsigned char value, PList<PCoord<double>> const &points);
    POutlines(POutlines const &other);
    POutlines &operator=(POutlines const &other);
    virtual ~POutlines();

    unsigned char getValue() const { return value; }
    // The polygon's corners in order; a closed outline repeats its first point last.
    PList<PCoord<double>> const &getPoints() const { return points; }

private:
    unsigned char value;
    PList<PCoord<double>> points;
};
