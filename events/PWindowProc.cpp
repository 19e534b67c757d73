#include "events/PWindowProc.h"

#include "events/PAppInterface.h"
#include "events/PEvent.h"
#include "events/PWindowObject.h"
#include "windows/PWindow.h"

#include <commctrl.h>
#include <shellapi.h>

#include <cstring>

// The routes of the dispatch table. A class rather than free functions so that it can be
// PRespond's one friend: only the dispatch reaches dropEvent. It holds the lookup of
// handles, which binds a window under construction to its queued object and is private to
// PWindow, so that PGeneralProc, which PWindow trusts, hands it over.
class PDispatch {
public:
    using Lookup = PWindowObject *(*)(PHHwnd const &handle);

    explicit PDispatch(Lookup lookup) : lookup(lookup) {}
    int dispatch(PEvent const &event) const;
    // DefMDIChildProcA for an MDI child, else DefWindowProcA.
    static WNDPROC defaultProcedureOf(PWindowObject const &window)
    {
        return window.isMDIChild ? DefMDIChildProcA : DefWindowProcA;
    }

private:
    enum RouteId : unsigned char {
        processRoute, // any message without a row of its own
        nothingRoute,
        destroyRoute,
        moveRoute,
        sizeRoute,
        closeRoute,
        broadcastRoute,
        setCursorRoute,
        childFirstRoute,
        notifyRoute,
        keyDownRoute,
        commandRoute,
        timerRoute,
        hScrollRoute,
        vScrollRoute,
        mouseMoveRoute,
        mouseButtonRoute,
        dropFilesRoute,
        routeCount
    };

    // One byte per message number up to the last one with a row; those above go to
    // direct tests.
    enum { tableSize = WM_DROPFILES + 1 };
    struct RouteTable {
        unsigned char routeOf[tableSize];
        constexpr RouteTable();
    };
    using Route = int (PDispatch::*)(PWindowObject &window, PEvent const &event) const;
    static const RouteTable theTable;
    static const Route theRoutes[routeCount];

    using ButtonHandler = int (PRespond::*)(unsigned short flags, GPoint const &position);
    static const ButtonHandler theButtonHandlers[WM_MBUTTONDBLCLK - WM_LBUTTONDOWN + 1];

    int process(PWindowObject &window, PEvent const &event) const;
    static int claimOrProcess(PWindowObject &window, PEvent const &event, int handled);
    int nothing(PWindowObject &window, PEvent const &event) const;
    int destroy(PWindowObject &window, PEvent const &event) const;
    int move(PWindowObject &window, PEvent const &event) const;
    int size(PWindowObject &window, PEvent const &event) const;
    int close(PWindowObject &window, PEvent const &event) const;
    int timer(PWindowObject &window, PEvent const &event) const;
    int broadcast(PWindowObject &window, PEvent const &event) const;
    int setCursor(PWindowObject &window, PEvent const &event) const;
    int childFirst(PWindowObject &window, PEvent const &event) const;
    int notify(PWindowObject &window, PEvent const &event) const;
    int keyDown(PWindowObject &window, PEvent const &event) const;
    int command(PWindowObject &window, PEvent const &event) const;
    int scroll(PWindowObject &window, PEvent const &event) const;
    int mouseMove(PWindowObject &window, PEvent const &event) const;
    int mouseButton(PWindowObject &window, PEvent const &event) const;
    int dropFiles(PWindowObject &window, PEvent const &event) const;

    static void relayToTip(PWindowObject &window, PEvent const &event);
    PWindowObject *objectOf(HWND handle) const { return lookup(PHHwnd(handle)); }

    Lookup lookup;
};

constexpr PDispatch::RouteTable::RouteTable() : routeOf()
{
    routeOf[WM_CREATE] = nothingRoute;
    routeOf[WM_DESTROY] = destroyRoute;
    routeOf[WM_MOVE] = moveRoute;
    routeOf[WM_SIZE] = sizeRoute;
    routeOf[WM_CLOSE] = closeRoute;
    routeOf[WM_SYSCOLORCHANGE] = broadcastRoute;
    routeOf[WM_SETTINGCHANGE] = broadcastRoute;
    routeOf[WM_SETCURSOR] = setCursorRoute;
    routeOf[WM_DRAWITEM] = childFirstRoute;
    routeOf[WM_MEASUREITEM] = childFirstRoute;
    routeOf[WM_DELETEITEM] = childFirstRoute;
    routeOf[WM_VKEYTOITEM] = childFirstRoute;
    routeOf[WM_CHARTOITEM] = childFirstRoute;
    routeOf[WM_COMPAREITEM] = childFirstRoute;
    routeOf[WM_PARENTNOTIFY] = childFirstRoute;
    routeOf[WM_NOTIFY] = notifyRoute;
    routeOf[WM_KEYDOWN] = keyDownRoute;
    routeOf[WM_COMMAND] = commandRoute;
    routeOf[WM_TIMER] = timerRoute;
    routeOf[WM_HSCROLL] = hScrollRoute;
    routeOf[WM_VSCROLL] = vScrollRoute;
    routeOf[WM_MOUSEMOVE] = mouseMoveRoute;
    for (unsigned int message = WM_LBUTTONDOWN; message <= WM_MBUTTONDBLCLK; ++message)
        routeOf[message] = mouseButtonRoute;
    routeOf[WM_DROPFILES] = dropFilesRoute;
}

const PDispatch::RouteTable PDispatch::theTable;

const PDispatch::Route PDispatch::theRoutes[routeCount] = {
    &PDispatch::process,    &PDispatch::nothing,     &PDispatch::destroy,    &PDispatch::move,
    &PDispatch::size,       &PDispatch::close,       &PDispatch::broadcast,  &PDispatch::setCursor,
    &PDispatch::childFirst, &PDispatch::notify,      &PDispatch::keyDown,    &PDispatch::command,
    &PDispatch::timer,      &PDispatch::scroll,      &PDispatch::scroll,     &PDispatch::mouseMove,
    &PDispatch::mouseButton, &PDispatch::dropFiles,
};

// In message order, from WM_LBUTTONDOWN to WM_MBUTTONDBLCLK.
const PDispatch::ButtonHandler PDispatch::theButtonHandlers[] = {
    &PRespond::mouseLDownEvent, &PRespond::mouseLUpEvent, &PRespond::mouseLDClickEvent,
    &PRespond::mouseRDownEvent, &PRespond::mouseRUpEvent, &PRespond::mouseRDClickEvent,
    &PRespond::mouseMDownEvent, &PRespond::mouseMUpEvent, &PRespond::mouseMDClickEvent,
};

int PDispatch::dispatch(PEvent const &event) const
{
    PWindowObject *window = event.getWindow();
    if (!window)
        return 1;
    const unsigned int message = event.getMessage();
    if (message < tableSize)
        return (this->*theRoutes[theTable.routeOf[message]])(*window, event);
    if (message == WM_HOTKEY) {
        // A hot key belongs to the application, whichever window it arrives at.
        PAppInterface *app = window->getApp();
        return app ? app->hotKeyEvent(event) : 0;
    }
    return window->processEvent(event);
}

int PDispatch::process(PWindowObject &window, PEvent const &event) const
{
    return window.processEvent(event);
}

int PDispatch::claimOrProcess(PWindowObject &window, PEvent const &event, int handled)
{
    return handled ? 1 : window.processEvent(event);
}

// Set-up belongs to setupWindow, after CreateWindowExA has returned.
int PDispatch::nothing(PWindowObject &, PEvent const &) const
{
    return 0;
}

int PDispatch::destroy(PWindowObject &window, PEvent const &event) const
{
    return claimOrProcess(window, event, window.destroyEvent(event));
}

namespace {

// lParam's halves read as signed 16-bit values, as WM_MOVE and WM_SIZE carry them.
GPoint signedPoint(long lParam)
{
    return GPoint(static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam)));
}

} // namespace

int PDispatch::move(PWindowObject &window, PEvent const &event) const
{
    return claimOrProcess(window, event, window.moveEvent(signedPoint(event.getLParam())));
}

int PDispatch::size(PWindowObject &window, PEvent const &event) const
{
    return claimOrProcess(window, event, window.resizeEvent(signedPoint(event.getLParam())));
}

int PDispatch::close(PWindowObject &window, PEvent const &event) const
{
    return claimOrProcess(window, event, window.closeEvent(event));
}

int PDispatch::timer(PWindowObject &window, PEvent const &event) const
{
    return claimOrProcess(window, event, window.timerEvent());
}

// Children see only processEvent, with an event of their own, not a further dispatch.
int PDispatch::broadcast(PWindowObject &window, PEvent const &event) const
{
    PList<PWindowObject *> const &children = window.getChildren();
    const unsigned int count = children.length();
    for (unsigned int index = 0; index < count; ++index) {
        PWindowObject *child = children[index];
        child->processEvent(PEvent(child, event.getMessage(), event.getWParam(), event.getLParam()));
    }
    return window.processEvent(event);
}

// Tells the window that the cursor has left, and lets the default procedure set the cursor.
int PDispatch::setCursor(PWindowObject &, PEvent const &event) const
{
    HWND underCursor = reinterpret_cast<HWND>(event.getWParam());
    if (underCursor != gLastWindow) {
        if (gLastWindow && IsWindow(gLastWindow))
            PostMessageA(gLastWindow, PM_WINDOWLEFT, 0, 0);
        gLastWindow = underCursor;
    }
    return 0;
}

int PDispatch::childFirst(PWindowObject &window, PEvent const &event) const
{
    long result = 0;
    if (window.processChildEvent(event, &result))
        return result;
    return window.processEvent(event);
}

int PDispatch::notify(PWindowObject &window, PEvent const &event) const
{
    long result = 0;
    if (window.processChildEvent(event, &result))
        return result;
    NMHDR const *header = reinterpret_cast<NMHDR const *>(event.getLParam());
    if (!header)
        return window.processEvent(event);
    if (header->code == TTN_NEEDTEXTA) {
        // The tooltips of this library name their tool by its window handle.
        PWindowObject *tool = objectOf(reinterpret_cast<HWND>(header->idFrom));
        if (tool) {
            NMTTDISPINFOA *request = reinterpret_cast<NMTTDISPINFOA *>(event.getLParam());
            // strncpy's rule: zeros after the text, and text of 80 bytes or more stays
            // unterminated. Deliberate.
            const PString text = tool->getTipText();
            const std::size_t length = strnlen(text, sizeof request->szText);
            std::memcpy(request->szText, static_cast<char const *>(text), length);
            std::memset(request->szText + length, 0, sizeof request->szText - length);
        }
        return 0;
    }
    if (header->code == TTN_SHOW) {
        if (PWindowObject *tip = objectOf(header->hwndFrom))
            tip->onTopOff(nullptr);
    }
    return window.processEvent(event);
}

int PDispatch::keyDown(PWindowObject &window, PEvent const &event) const
{
    PAppInterface *app = window.getApp();
    if (window.isMouseCaptured() && app && app->capturedKeyEvent(event))
        return 1;
    return window.processEvent(event);
}

// A menu or accelerator command has lParam 0; a control's notification names the control.
// A notification that nobody claims also falls to processCommandEvent.
int PDispatch::command(PWindowObject &window, PEvent const &event) const
{
    long result = 0;
    if (window.processChildEvent(event, &result))
        return result;
    if (event.getLParam() == 0) {
        if (window.commandEvent(PCommandEvent(event)))
            return 1;
    } else {
        if (window.notifyEvent(PNotifyEvent(event)))
            return 1;
        if (window.processNotificationEvent(event))
            return 1;
    }
    if (window.processCommandEvent(event))
        return 1;
    return window.processEvent(event);
}

// A scroll-bar control gets its own messages, which the platform sends to its parent: it is
// told first, and the parent is asked all the same, whatever the control answered.
int PDispatch::scroll(PWindowObject &window, PEvent const &event) const
{
    const PScrollEvent scrollEvent(event);
    const bool horizontal = scrollEvent.isHorizontal();
    const unsigned int code = scrollEvent.getScrollCode();
    const int position = scrollEvent.getScrollPos();
    HWND controlHandle = reinterpret_cast<HWND>(event.getLParam());
    if (PWindowObject *control = controlHandle ? objectOf(controlHandle) : nullptr) {
        control->scrollEvent(scrollEvent);
        if (horizontal)
            control->hScrollEvent(code, position);
        else
            control->vScrollEvent(code, position);
    }
    if (window.scrollEvent(scrollEvent))
        return 1;
    if (horizontal ? window.hScrollEvent(code, position) : window.vScrollEvent(code, position))
        return 1;
    return window.processEvent(event);
}

void PDispatch::relayToTip(PWindowObject &window, PEvent const &event)
{
    PWindowObject *tip = window.getTipWindow();
    if (!tip || window.getTipText().isEmpty())
        return;
    MSG relayed = {};
    relayed.hwnd = window;
    relayed.message = event.getMessage();
    relayed.wParam = event.getWParam();
    relayed.lParam = event.getLParam();
    SendMessageA(*tip, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&relayed));
}

// The general mouseEvent can swallow the specific handler. A mouse move cannot be claimed:
// processEvent always runs after it.
int PDispatch::mouseMove(PWindowObject &window, PEvent const &event) const
{
    relayToTip(window, event);
    const PMouseEvent mouse(event);
    if (window.mouseEvent(mouse))
        return 1;
    window.mouseMoveEvent(mouse.getLocation(), static_cast<unsigned short>(event.getWParam()));
    return window.processEvent(event);
}

int PDispatch::mouseButton(PWindowObject &window, PEvent const &event) const
{
    relayToTip(window, event);
    const PMouseEvent mouse(event);
    if (window.mouseEvent(mouse))
        return 1;
    const ButtonHandler handler = theButtonHandlers[event.getMessage() - WM_LBUTTONDOWN];
    if ((window.*handler)(static_cast<unsigned short>(event.getWParam()), mouse.getLocation()))
        return 1;
    return window.processEvent(event);
}

// Releasing the drop is the handler's duty.
int PDispatch::dropFiles(PWindowObject &window, PEvent const &event) const
{
    HDROP drop = reinterpret_cast<HDROP>(event.getWParam());
    const int count = static_cast<int>(DragQueryFileA(drop, 0xFFFFFFFF, nullptr, 0));
    PRespond &respond = window;
    if (respond.dropEvent(drop, count))
        return 1;
    return window.processEvent(event);
}

LRESULT CALLBACK PWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    PWindowObject *object = PWindow::getWinPtr(PHHwnd(hwnd));
    if (!object || !object->isValidWindow())
        return DefWindowProcA(hwnd, message, wParam, lParam);
    // Chosen before the dispatch, which may end with the object deleted.
    const WNDPROC defaultProcedure = PDispatch::defaultProcedureOf(*object);
    const int result = PGeneralProc(PEvent(object, message, wParam, lParam));
    if (result)
        return result;
    return defaultProcedure(hwnd, message, wParam, lParam);
}

int PGeneralProc(PEvent const &event)
{
    return PDispatch(&PWindow::getWinPtr).dispatch(event);
}
