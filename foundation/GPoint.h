// GPoint.h - the logical point of all drawing.
//
//   GPoint  a PTPoint<PFFloat> that starts at (0, 0) and converts to a device POINT
#pragma once

#include "foundation/TeskWinExport.h"
#include "foundation/PFFloat.h"
#include "foundation/PTPoint.h"

struct tagPOINT;

class TESKWIN_API GPoint : public PTPoint<PFFloat> {
public:
    GPoint() : PTPoint<PFFloat>(0.0, 0.0) {}
    GPoint(PFFloat x, PFFloat y) : PTPoint<PFFloat>(x, y) {}
    GPoint(GPoint const &other) = default;
    GPoint(PTPoint<PFFloat> const &other) : PTPoint<PFFloat>(other) {}
    ~GPoint() override = default;

    GPoint &operator=(GPoint const &other) = default;

    void set(PFFloat const &newX, PFFloat const &newY) { x = newX; y = newY; }
    PFFloat getX() const { return x; }
    PFFloat getY() const { return y; }

    // The nearest integer device coordinates.
    operator tagPOINT() const;

    static const GPoint Zero;
};
