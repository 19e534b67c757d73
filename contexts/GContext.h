// GContext.h - a drawing device bound to a window or to the screen.
//
//   GContextStyle         which handle a context acquires: client area, whole window, screen
//   GContext              acquires its handle at construction and releases it when destroyed;
//                         joins a window's scroller to the viewport origin
//   getTrueTypeFontNames  the font families of the screen
#pragma once

#include "foundation/PList.h"
#include "foundation/PString.h"
#include "foundation/TeskWinExport.h"
#include "graphics/GDevice.h"

#include <windows.h>

class PWindowObject;

enum GContextStyle : int {
    GCClient = 0,
    GCWindow = 1,
    GCScreen = 2
};

class TESKWIN_API GContext : public GDevice {
public:
    // A null window takes the screen whatever the style; GCScreen forgets the window. Any
    // style other than GCWindow and GCScreen is the client area.
    GContext(PWindowObject *window, GContextStyle style);
    GContext(GContext const &other) = default;
    GContext &operator=(GContext const &other) = default;
    ~GContext() override;

    // Width and height of the window's client area; (0, 0) on the screen or a window gone.
    GPoint getDeviceArea() override;
    // Fills the client area with the window's background.
    virtual void clearWindow();

    // Moves the viewport origin by the scroll offset of the window's scroller, starting each
    // time from the stored mapping: an end does not undo a begin. Deliberate.
    void beginScrollerView();
    void endScrollerView();
    // Device units, as they stand.
    void exclude(GRect rect);

    const PWindowObject *getWindow() const { return window; }

protected:
    // For GPainter, which acquires its own handle.
    GContext();
    HDC getDC() const { return dc; }

    int noRelease;
    PWindowObject *window;

private:
    // A handle of the caller's, never released.
    explicit GContext(HDC const &handle);
    // The scroll offset added to the stored viewport origin: sign -1 to begin, +1 to end.
    void shiftViewport(int sign);
};

TESKWIN_API void getTrueTypeFontNames(PList<PString> &names);
