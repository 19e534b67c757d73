#include "events/PEvent.h"

#include "events/PWindowObject.h"

#include <windows.h>

namespace {

// The object behind a handle carried in lParam.
PWindowObject *objectOfHandle(LPARAM lParam)
{
    return PWindowObject::getWinPtr(PHHwnd(reinterpret_cast<HWND>(lParam)));
}

} // namespace

PEvent::PEvent(PWindowObject *window, unsigned int message, WPARAM wParam, LPARAM lParam)
    : window(window), message(message), wParam(wParam), lParam(lParam)
{
    const DWORD position = GetMessagePos();
    POINT cursor = {static_cast<LONG>(LOWORD(position)), static_cast<LONG>(HIWORD(position))};
    if (window)
        ScreenToClient(*window, &cursor);
    location = GPoint(cursor.x, cursor.y);
    time = static_cast<unsigned int>(GetMessageTime());
}

PEvent::PEvent(PEvent const &other) = default;

PEvent &PEvent::operator=(PEvent const &other)
{
    if (this != &other) {
        window = other.window;
        message = other.message;
        wParam = other.wParam;
        lParam = other.lParam;
        time = other.time;
        location = other.location;
    }
    return *this;
}

int PEvent::isKeyDown(int virtualKey) const
{
    return static_cast<short>(GetAsyncKeyState(virtualKey)) < 0;
}

void PEvent::locateFromLParam()
{
    location = GPoint(LOWORD(lParam), HIWORD(lParam));
}

void PEvent::synthesise(GPoint const &where, unsigned long when, int control, int shift, int left, int right,
                        int middle)
{
    wParam = (control ? mouseControlKey : 0) | (shift ? mouseShiftKey : 0) | (left ? mouseLeftButton : 0) |
             (right ? mouseRightButton : 0) | (middle ? mouseMiddleButton : 0);
    const unsigned int x = static_cast<unsigned int>(truncateCoord(where.getX())) & 0xFFFF;
    const unsigned int y = static_cast<unsigned int>(truncateCoord(where.getY())) & 0xFFFF;
    lParam = static_cast<long>(y << 16 | x);
    time = static_cast<unsigned int>(when);
    location = where;
}

// ---- PLocatorEvent ----

PLocatorEvent::PLocatorEvent(PWindowObject *window, unsigned int message, GPoint const &location, unsigned long time,
                             int control, int shift, int left, int right, int middle)
    : PEvent(window, message, 0, 0)
{
    synthesise(location, time, control, shift, left, right, middle);
}

PLocatorEvent::PLocatorEvent(PWindowObject *window, unsigned int message, WPARAM wParam, LPARAM lParam)
    : PEvent(window, message, wParam, lParam)
{
    locateFromLParam();
}

PLocatorEvent::PLocatorEvent(PEvent const &event) : PEvent(event)
{
}

// ---- PMouseEvent ----

PMouseEvent::PMouseEvent(PWindowObject *window, unsigned int message, GPoint const &location, unsigned long time,
                         int control, int shift, int left, int right, int middle)
    : PEvent(window, message, 0, 0)
{
    synthesise(location, time, control, shift, left, right, middle);
}

PMouseEvent::PMouseEvent(PWindowObject *window, unsigned int message, WPARAM wParam, LPARAM lParam)
    : PEvent(window, message, wParam, lParam)
{
    locateFromLParam();
}

PMouseEvent::PMouseEvent(PEvent const &event) : PEvent(event)
{
    locateFromLParam();
}

// ---- PKeyboardEvent ----

PKeyboardEvent::PKeyboardEvent(PWindowObject *window, unsigned int message, WPARAM wParam, LPARAM lParam)
    : PEvent(window, message, wParam, lParam)
{
}

PKeyboardEvent::PKeyboardEvent(PEvent const &event) : PEvent(event)
{
}

int PKeyboardEvent::isAltKeyDown() const
{
    return GetKeyState(VK_MENU) < 0;
}

int PKeyboardEvent::isShiftKeyDown() const
{
    return GetKeyState(VK_SHIFT) < 0;
}

int PKeyboardEvent::isControlKeyDown() const
{
    return GetKeyState(VK_CONTROL) < 0;
}

// ---- PCommandEvent ----

PCommandEvent::PCommandEvent(PWindowObject *window, unsigned int message, WPARAM wParam, LPARAM lParam)
    : PEvent(window, message, wParam, lParam)
{
}

PCommandEvent::PCommandEvent(PEvent const &event) : PEvent(event)
{
}

PWindowObject *PCommandEvent::getControl() const
{
    return objectOfHandle(getLParam());
}

// ---- PNotifyEvent ----

PNotifyEvent::PNotifyEvent(PWindowObject *window, unsigned int message, WPARAM wParam, LPARAM lParam)
    : PEvent(window, message, wParam, lParam)
{
}

PNotifyEvent::PNotifyEvent(PEvent const &event) : PEvent(event)
{
}

PWindowObject *PNotifyEvent::getControl() const
{
    return getLParam() ? objectOfHandle(getLParam()) : nullptr;
}

// ---- PScrollEvent ----

PScrollEvent::PScrollEvent(PWindowObject *window, unsigned int message, WPARAM wParam, LPARAM lParam)
    : PEvent(window, message, wParam, lParam)
{
}

PScrollEvent::PScrollEvent(PEvent const &event) : PEvent(event)
{
}

int PScrollEvent::getScrollPosRelative() const
{
    int bar = SB_HORZ;
    if (getMessage() == WM_VSCROLL)
        bar = SB_VERT;
    else if (getMessage() != WM_HSCROLL && getLParam() != 0)
        bar = SB_CTL;
    return GetScrollPos(getWindow() ? static_cast<HWND>(*getWindow()) : nullptr, bar);
}

int PScrollEvent::isHorizontal() const
{
    return getMessage() == WM_HSCROLL;
}

int PScrollEvent::isVertical() const
{
    return getMessage() == WM_VSCROLL;
}

PWindowObject *PScrollEvent::getControl() const
{
    return objectOfHandle(getLParam());
}
