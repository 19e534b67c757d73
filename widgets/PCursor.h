// PCursor.h - cursors and icons as values.
//
//   cursorType     the platform's stock cursor ids
//   CursorHandle   the record that copies of a PCursor share
//   PCursor        a stock cursor, or one loaded from the application's resources
//   IconHandle     the record that copies of a PIcon share
//   PIcon          the stock application icon, or one loaded from the resources
//
// Copies share one handle; the last copy destroys it only if it came from the resources.
#pragma once

#include "foundation/PString.h"
#include "foundation/TeskWinExport.h"
#include "graphics/GSharedHandle.h"

#include <windows.h>

class PAppInterface;
class PWindow;

enum cursorType {
    cursorArrow = 0x7F00,
    cursorIBeam = 0x7F01,
    cursorWait = 0x7F02,
    cursorCross = 0x7F03,
    cursorUpArrow = 0x7F04,
    cursorSizeNWSE = 0x7F82,
    cursorSizeNESW = 0x7F83,
    cursorSizeWE = 0x7F84,
    cursorSizeNS = 0x7F85,
    cursorSizeAll = 0x7F86,
    cursorNo = 0x7F88,
    cursorHand = 0x7F89,
    cursorAppStarting = 0x7F8A
};

struct CursorHandle {
    using Handle = HCURSOR;

    HCURSOR handle;
    int owned;

    ~CursorHandle();
};

class TESKWIN_API PCursor {
public:
    PCursor(cursorType type);
    // Owned even when the load failed, which leaves a null handle.
    PCursor(PString const &name, PAppInterface *app);
    PCursor(PCursor const &other);
    PCursor &operator=(PCursor const &other);
    ~PCursor();

    int operator==(PCursor const &other) const;
    int operator!=(PCursor const &other) const;

private:
    friend class PWindow;
    operator HICON() const;

    GSharedHandle<CursorHandle> shared;
};

struct IconHandle {
    using Handle = HICON;

    HICON handle;
    int owned;

    ~IconHandle();
};

class TESKWIN_API PIcon {
public:
    PIcon();
    PIcon(PString const &name, PAppInterface *app);
    PIcon(PIcon const &other);
    PIcon &operator=(PIcon const &other);
    ~PIcon();

private:
    friend class PWindow;
    operator HICON() const;

    GSharedHandle<IconHandle> shared;
};
