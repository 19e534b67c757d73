// PBezier.h - a cubic Bezier curve flattened into a polyline.
//
//   PBezier  four control points; getPolyline appends points along the curve
#pragma once

#include "foundation/PCoord.h"
#include "foundation/TeskWinExport.h"

#include <list>

class TESKWIN_API PBezier {
public:
    // The start, two control points and the end, as in an array of four.
    explicit PBezier(PCoord<double> const points[4]);

    // Appends a polyline that starts at the curve's start, ends at its end and stays within
    // tolerance of the curve. Non-finite control points give the chord alone.
    void getPolyline(double tolerance, std::list<PCoord<double>> &polyline) const;

private:
    PCoord<double> control[4];
};
