// GMapMode.h - how logical coordinates reach the device.
//
//   MappingMode     the platform's modes 1 to 8, and the library's own scaledMappingMode
//   GMapMode        the stated mapping: a mode, two origins and two extents
//   GDeviceMapMode  its reduced form: one scale and two integer offsets, applied to every vertex
//
// In the platform's modes the platform maps and the reduced form is the identity. In
// scaledMappingMode the platform stays in MM_TEXT and the library turns each double into a
// device integer itself, so that logical coordinates keep their precision to the last step.
#pragma once

#include "foundation/TeskWinExport.h"
#include "foundation/GPoint.h"
#include "foundation/PNumerics.h"
#include "graphics/GRect.h"

#include <cmath>

enum MappingMode : int {
    scaledMappingMode = -2,
    textMappingMode = 1,
    loMetricMappingMode = 2,
    hiMetricMappingMode = 3,
    loEnglishMappingMode = 4,
    hiEnglishMappingMode = 5,
    twipsMappingMode = 6,
    isotropicMappingMode = 7,
    anisotropicMappingMode = 8
};

class TESKWIN_API GMapMode {
public:
    GMapMode(enum MappingMode mode = textMappingMode) : mode(mode) {}
    GMapMode(GMapMode const &other) = default;
    GMapMode &operator=(GMapMode const &other) = default;
    virtual ~GMapMode() = default;

    // Each stores the value and returns the previous one.
    GPoint setWindowOrg(GPoint const &point);
    GPoint setViewportOrg(GPoint const &point);
    GPoint setWindowExt(GPoint const &point);
    GPoint setViewportExt(GPoint const &point);

    enum MappingMode getMode() const { return mode; }
    GPoint getWindowOrg() const { return windowOrg; }
    GPoint getViewportOrg() const { return viewportOrg; }
    GPoint getWindowExt() const { return windowExt; }
    GPoint getViewportExt() const { return viewportExt; }

    // The stored origins and extents, whatever the mode; the results stay floating.
    GPoint deviceToLogical(GPoint const &p) const;
    GPoint logicalToDevice(GPoint const &p) const;
    // Corner by corner; the result is not normalised.
    GRect deviceToLogical(GRect const &r) const;
    GRect logicalToDevice(GRect const &r) const;

private:
    enum MappingMode mode;
    GPoint windowOrg;
    GPoint viewportOrg;
    GPoint windowExt;
    GPoint viewportExt;
};

// Default-constructed, the identity.
struct GDeviceMapMode {
    double scale = 1.0;
    int offsetX = 0;
    int offsetY = 0;

    // scale * x + offset, truncated: a coordinate may land one unit from the exact point,
    // since the offset was truncated too.
    static int translateX(GDeviceMapMode const &m, double const &x)
    {
        return truncateCoord(m.scale * x + m.offsetX);
    }
    static int translateY(GDeviceMapMode const &m, double const &y)
    {
        return truncateCoord(m.scale * y + m.offsetY);
    }
    // A scale within 1e-9 of zero acts as 1, so there is no division by zero.
    static double translateXinv(GDeviceMapMode const &m, int const &x)
    {
        return unscale(m, wrappingDifference(x, m.offsetX));
    }
    static double translateYinv(GDeviceMapMode const &m, int const &y)
    {
        return unscale(m, wrappingDifference(y, m.offsetY));
    }

    // Scales within an absolute 1e-13, offsets exactly.
    bool operator==(GDeviceMapMode const &other) const
    {
        return std::fabs(scale - other.scale) < 1e-13 && offsetX == other.offsetX &&
               offsetY == other.offsetY;
    }

private:
    // The 32-bit difference, wrapping as the machine's subtraction does.
    static int wrappingDifference(int a, int b)
    {
        return static_cast<int>(static_cast<unsigned>(a) - static_cast<unsigned>(b));
    }
    static double unscale(GDeviceMapMode const &m, int d)
    {
        return IS_ZERO(m.scale, 1e-9) ? d : d / m.scale;
    }
};
