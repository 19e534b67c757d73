#include "contexts/GDC.h"

namespace {

bool isPlatformMode(int mode)
{
    return mode >= loMetricMappingMode && mode <= anisotropicMappingMode;
}

} // namespace

GDC::GDC(HDC handle, GPoint &area) : area(area)
{
    dc = handle;
    initObjects();
    const int mode = GetMapMode(handle);
    // Assigned, not set: the handle's state is read and never written.
    mapMode = GMapMode(isPlatformMode(mode) ? static_cast<MappingMode>(mode) : textMappingMode);
    SIZE extent;
    POINT origin;
    if (GetViewportExtEx(handle, &extent))
        mapMode.setViewportExt(GPoint(extent.cx, extent.cy));
    if (GetViewportOrgEx(handle, &origin))
        mapMode.setViewportOrg(GPoint(origin.x, origin.y));
    if (GetWindowExtEx(handle, &extent))
        mapMode.setWindowExt(GPoint(extent.cx, extent.cy));
    if (GetWindowOrgEx(handle, &origin))
        mapMode.setWindowOrg(GPoint(origin.x, origin.y));
}

GPoint GDC::getDeviceArea()
{
    const MappingMode mode = mapMode.getMode();
    if (mode == isotropicMappingMode || mode == anisotropicMappingMode)
        return mapMode.getWindowExt();
    return area;
}
