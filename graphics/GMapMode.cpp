#include "graphics/GMapMode.h"

namespace {

GPoint replace(GPoint &field, GPoint const &value)
{
    const GPoint previous = field;
    field = value;
    return previous;
}

} // namespace

GPoint GMapMode::setWindowOrg(GPoint const &point)
{
    return replace(windowOrg, point);
}

GPoint GMapMode::setViewportOrg(GPoint const &point)
{
    return replace(viewportOrg, point);
}

GPoint GMapMode::setWindowExt(GPoint const &point)
{
    return replace(windowExt, point);
}

GPoint GMapMode::setViewportExt(GPoint const &point)
{
    return replace(viewportExt, point);
}

// The ratio of the extents is formed first, then multiplied.
GPoint GMapMode::deviceToLogical(GPoint const &p) const
{
    return (p - viewportOrg) * (windowExt / viewportExt) + windowOrg;
}

GPoint GMapMode::logicalToDevice(GPoint const &p) const
{
    return (p - windowOrg) * (viewportExt / windowExt) + viewportOrg;
}

GRect GMapMode::deviceToLogical(GRect const &r) const
{
    return GRect(deviceToLogical(GPoint(r.lVal(), r.tVal())), deviceToLogical(GPoint(r.rVal(), r.bVal())));
}

GRect GMapMode::logicalToDevice(GRect const &r) const
{
    return GRect(logicalToDevice(GPoint(r.lVal(), r.tVal())), logicalToDevice(GPoint(r.rVal(), r.bVal())));
}
