// PRectangle.h - a rectangle at any angle.
//
//   PRectangle  a base between two points and a height; the upper corners are derived
#pragma once

#include "foundation/GPoint.h"
#include "foundation/PFFloat.h"
#include "foundation/TeskWinExport.h"

class GContext;

// The upper corners are stale after a setter until recalculate or draw runs.
class TESKWIN_API PRectangle {
public:
    PRectangle(GPoint const &lowerLeft, GPoint const &lowerRight, PFFloat const &height);
    PRectangle(PRectangle const &other) = default;
    PRectangle &operator=(PRectangle const &other) = default;

    void setBase(GPoint const &lowerLeft, GPoint const &lowerRight);
    void setHeight(PFFloat const &height);

    GPoint lowerLeft() const { return lowerLeftCorner; }
    GPoint lowerRight() const { return lowerRightCorner; }
    GPoint upperLeft() const { return upperLeftCorner; }
    GPoint upperRight() const { return upperRightCorner; }

    // The upper corners from the base turned a quarter turn, at the height's distance.
    void recalculate();
    // Recalculates, then the outline from the lower left round through the device's
    // moveTo and lineTo, with its current pen; nothing is filled.
    void draw(GContext &context);

private:
    GPoint lowerLeftCorner;
    GPoint lowerRightCorner;
    GPoint upperLeftCorner;
    GPoint upperRightCorner;
    PFFloat height;
};
