// DeviceProbes.h - devices for the device tests.
//
//   HandlelessDevice  a device that never gets a handle, of a given area
//   HandleDevice      a device on a handle the test owns, saving its state as GDC would
//   ProbeDevice       a memory device on a bitmap, showing its protected state
#pragma once

#include <windows.h>

#include "TeskWin.h"

class HandlelessDevice : public GDevice {
public:
    explicit HandlelessDevice(GPoint area = GPoint(200, 200)) : area(area) {}
    GPoint getDeviceArea() override { return area; }
    GDeviceMapMode reduced() const { return deviceMapMode; }

private:
    GPoint area;
};

class HandleDevice : public GDevice {
public:
    explicit HandleDevice(HDC handle, GPoint area = GPoint(100, 100)) : area(area)
    {
        dc = handle;
        initObjects();
    }
    GPoint getDeviceArea() override { return area; }
    int saved() const { return savedState; }

private:
    GPoint area;
};

class ProbeDevice : public GMemoryDevice {
public:
    ProbeDevice(GDevice &screen, GBitmap &bitmap) : GMemoryDevice(screen, bitmap) {}
    GDeviceMapMode reduced() const { return deviceMapMode; }
    TEXTMETRICA &metrics() { return textMetrics; }
};
