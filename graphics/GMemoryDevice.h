// GMemoryDevice.h - devices that draw into a bitmap.
//
//   GMemoryDevice      a GDevice on a memory handle compatible with another device, holding
//                      a share of the bitmap selected into it
//   GMonoMemoryDevice  a memory device for mask bitmaps, which always draws with a white pen
//
// A memory device takes no saved state: its destructor deselects the bitmap and deletes the
// handle. Copies share that handle and each deletes it, so a copy is for passing the device
// through a short scope, not for keeping. To make a device compatible with another memory
// device, pass that one as a GDevice &: given as itself, the copy constructor is chosen.
#pragma once

#include "foundation/GPoint.h"
#include "foundation/TeskWinExport.h"
#include "graphics/GBitmap.h"
#include "graphics/GDevice.h"

#include <windows.h>

class TESKWIN_API GMemoryDevice : public GDevice {
public:
    // Compatible with the screen.
    GMemoryDevice();
    explicit GMemoryDevice(GDevice &device);
    GMemoryDevice(GDevice &device, GBitmap &bitmap);
    GMemoryDevice(GMemoryDevice const &other) = default;
    GMemoryDevice &operator=(GMemoryDevice const &other) = default;
    ~GMemoryDevice() override;

    // The size of the bitmap; (0, 0) without one.
    GPoint getDeviceArea() override;

    // Selects back what the handle held before this device's bitmap, once; the bitmap that
    // left the handle, or 0 when nothing was selected by this device.
    HBITMAP RestoreOldBitmap();
    // White over the bitmap's full size.
    void clear();

protected:
    void SelectBitmapIntoDC(GBitmap &bitmap);

private:
    HBITMAP oldBitmap;
    GBitmap bitmap;
};

class TESKWIN_API GMonoMemoryDevice : public GMemoryDevice {
public:
    GMonoMemoryDevice(GDevice &device, GBitmap &bitmap);
    GMonoMemoryDevice(GMonoMemoryDevice const &other) = default;
    GMonoMemoryDevice &operator=(GMonoMemoryDevice const &other) = default;
    ~GMonoMemoryDevice() override = default;

    // Does nothing: a mask is drawn in white whatever pen a caller sets.
    void setPen(GPen const &pen) override;

private:
    GMonoMemoryDevice() = default;
};
