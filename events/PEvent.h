// PEvent.h - a window message as an event.
//
//   PEvent          the message words of one message, its time and the cursor position
//   PLocatorEvent   a mouse-style view whose position may come from the cursor
//   PMouseEvent     a mouse-style view whose position always comes from lParam
//   PKeyboardEvent  the keyboard message layout
//   PCommandEvent   a menu or accelerator command
//   PNotifyEvent    a control's notification through WM_COMMAND
//   PScrollEvent    a scroll message from a window's bar or a scroll-bar control
//
// The records are thin views: none adds a field to PEvent, and each accessor reads the
// stored message words when it is called.
#pragma once

#include "foundation/GPoint.h"
#include "foundation/TeskWinExport.h"

#include <windows.h>

class PWindowObject;

// The key and button bits of a mouse message's wParam.
enum PMouseFlags {
    mouseLeftButton = 0x01,
    mouseRightButton = 0x02,
    mouseShiftKey = 0x04,
    mouseControlKey = 0x08,
    mouseMiddleButton = 0x10
};

// The message words are WPARAM and LPARAM: on 32-bit Windows exactly unsigned int and long,
// and wide enough on 64-bit for the handles and pointers that messages carry.
class TESKWIN_API PEvent {
public:
    // Also captures the cursor position of the message, in window's client coordinates
    // (screen coordinates for a null window), and the message time.
    PEvent(PWindowObject *window, unsigned int message, WPARAM wParam, LPARAM lParam);
    PEvent(PEvent const &other);
    PEvent &operator=(PEvent const &other);

    PWindowObject *getWindow() const { return window; }
    unsigned int getMessage() const { return message; }
    WPARAM getWParam() const { return wParam; }
    LPARAM getLParam() const { return lParam; }
    unsigned int getTime() const { return time; }
    GPoint getLocation() const { return location; }
    unsigned int getCommandId() const { return wParam & 0xFFFF; }

    // The key's state at this instant, not at the time of the message.
    int isKeyDown(int virtualKey) const;

protected:
    void setWParam(WPARAM value) { wParam = value; }
    void setMessage(unsigned int value) { message = value; }
    void setLParam(LPARAM value) { lParam = value; }
    void setMLocation(GPoint const &value) { location = value; }

    // Takes the location from lParam's halves, read unsigned.
    void locateFromLParam();
    // Fills the message words as a mouse message with these keys and buttons would carry them.
    void synthesise(GPoint const &where, unsigned long when, int control, int shift, int left, int right,
                    int middle);

private:
    PWindowObject *window;
    unsigned int message;
    WPARAM wParam;
    LPARAM lParam;
    unsigned int time;
    GPoint location;
};

// The same constructors and flag tests as PMouseEvent; built from a PEvent it keeps the
// cursor position that the event captured.
class TESKWIN_API PLocatorEvent : public PEvent {
public:
    PLocatorEvent(PWindowObject *window, unsigned int message, GPoint const &location, unsigned long time,
                  int control, int shift, int left, int right, int middle);
    PLocatorEvent(PWindowObject *window, unsigned int message, WPARAM wParam, LPARAM lParam);
    PLocatorEvent(PEvent const &event);

    // Each returns the masked bit itself (8 for the control key), not 0 or 1.
    unsigned int isLeftButtonDown() const { return getWParam() & mouseLeftButton; }
    unsigned int isRightButtonDown() const { return getWParam() & mouseRightButton; }
    unsigned int isShiftKeyDown() const { return getWParam() & mouseShiftKey; }
    unsigned int isControlKeyDown() const { return getWParam() & mouseControlKey; }
    unsigned int isMiddleButtonDown() const { return getWParam() & mouseMiddleButton; }

};

// Its location always comes from lParam, read as unsigned halves: a point left of or above
// the client area during capture arrives near 65535. Deliberate.
class TESKWIN_API PMouseEvent : public PEvent {
public:
    PMouseEvent(PWindowObject *window, unsigned int message, GPoint const &location, unsigned long time,
                int control, int shift, int left, int right, int middle);
    PMouseEvent(PWindowObject *window, unsigned int message, WPARAM wParam, LPARAM lParam);
    PMouseEvent(PEvent const &event);

    unsigned int isLeftButtonDown() const { return getWParam() & mouseLeftButton; }
    unsigned int isRightButtonDown() const { return getWParam() & mouseRightButton; }
    unsigned int isShiftKeyDown() const { return getWParam() & mouseShiftKey; }
    unsigned int isControlKeyDown() const { return getWParam() & mouseControlKey; }
    unsigned int isMiddleButtonDown() const { return getWParam() & mouseMiddleButton; }
};

class TESKWIN_API PKeyboardEvent : public PEvent {
public:
    PKeyboardEvent(PWindowObject *window, unsigned int message, WPARAM wParam, LPARAM lParam);
    PKeyboardEvent(PEvent const &event);

    unsigned char getChar() const { return static_cast<unsigned char>(getWParam()); }
    unsigned int getVirtualKey() const { return getWParam(); }
    unsigned short getRepeatCount() const { return static_cast<unsigned short>(getLParam()); }
    unsigned char getScanCode() const { return static_cast<unsigned char>(getLParam() >> 16); }
    long isExtendedKey() const { return getLParam() & 0x1000000; }
    long wasKeyDown() const { return getLParam() & 0x40000000; }
    int isBeingPressed() const { return getLParam() >= 0; }

    // The modifiers as they stood when the message was sent (GetKeyState), unlike
    // PEvent::isKeyDown, which asks for this instant. Deliberate.
    int isAltKeyDown() const;
    int isShiftKeyDown() const;
    int isControlKeyDown() const;
};

class TESKWIN_API PCommandEvent : public PEvent {
public:
    PCommandEvent(PWindowObject *window, unsigned int message, WPARAM wParam, LPARAM lParam);
    PCommandEvent(PEvent const &event);

    unsigned short getCommandId() const { return static_cast<unsigned short>(getWParam()); }
    // The object of the handle in lParam, or null.
    PWindowObject *getControl() const;
};

class TESKWIN_API PNotifyEvent : public PEvent {
public:
    PNotifyEvent(PWindowObject *window, unsigned int message, WPARAM wParam, LPARAM lParam);
    PNotifyEvent(PEvent const &event);

    unsigned int getMessageId() const { return getWParam() >> 16; }
    unsigned int getControlId() const { return getWParam() & 0xFFFF; }
    // Null for an lParam of 0, without asking the platform.
    PWindowObject *getControl() const;
};

class TESKWIN_API PScrollEvent : public PEvent {
public:
    PScrollEvent(PWindowObject *window, unsigned int message, WPARAM wParam, LPARAM lParam);
    PScrollEvent(PEvent const &event);

    unsigned int getScrollCode() const { return getWParam() & 0xFFFF; }
    short getScrollPos() const { return static_cast<short>(getWParam() >> 16); }
    // Despite the name, the absolute position read now from the event's own window; for a
    // control's message that window is expected to be the control itself.
    int getScrollPosRelative() const;
    int isHorizontal() const;
    int isVertical() const;
    int isControl() const { return getLParam() != 0; }
    PWindowObject *getControl() const;
};
