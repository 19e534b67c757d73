// GPen.h - pens as shared values.
//
//   GLineStyle  the platform's pen styles (PS_...)
//   GPen        colour, width and style of a line, sharing one platform pen between copies
#pragma once

#include "foundation/GColor.h"
#include "foundation/TeskWinExport.h"
#include "graphics/GSharedHandle.h"

#include <windows.h>

// The platform's pen styles; bits above the low 16 are dropped when the pen is made.
enum GLineStyle : int {
    LineSolid = PS_SOLID,
    LineDash = PS_DASH,
    LineDot = PS_DOT,
    LineDashDot = PS_DASHDOT,
    LineDashDotDot = PS_DASHDOTDOT,
    LineNull = PS_NULL,
    LineInsideFrame = PS_INSIDEFRAME,
};

class TESKWIN_API GPen {
public:
    // The stock black pen, one unit wide.
    GPen();
    GPen(GColor const &color, int width, GLineStyle style);
    GPen(GPen const &other);
    virtual ~GPen();

    GPen &operator=(GPen const &other);

    // What the pen was made with; the platform is not asked.
    GColor getColor() const { return color; }
    int getWidth() const { return width; }
    GLineStyle getStyle() const { return style; }

    // The stock null pen, which draws nothing.
    static const GPen Null;

private:
    friend class GDevice;

    // Names handle without owning it; width and style stay unset.
    explicit GPen(HPEN handle);

    operator HPEN() const { return shared.handle(); }

    GSharedHandle<GHandleBox<HPEN>> shared;
    GColor color;
    int width;
    GLineStyle style;
};
