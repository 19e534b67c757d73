// GDC.h - a device on a handle that belongs to the caller.
//
//   GDC  adopts the handle's mapping state and never releases the handle
#pragma once

#include "foundation/GPoint.h"
#include "foundation/TeskWinExport.h"
#include "graphics/GDevice.h"

#include <windows.h>

class TESKWIN_API GDC : public GDevice {
public:
    // Reads the handle's mapping mode, extents and origins; writes nothing to it.
    GDC(HDC handle, GPoint &area);
    GDC(GDC const &other) = default;
    GDC &operator=(GDC const &other) = default;

    // The logical window's extent in the two scalable modes, else the area given.
    GPoint getDeviceArea() override;
    HDC getDC() const { return dc; }

private:
    GPoint area;
};
