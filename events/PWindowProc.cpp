#include "events/PWindowProc.h"

#include "events/PAppInterface.h"
#include "events/PEvent.h"
#include "events/PWindowObject.h"
// WM_PAINT hands each window a painter, which only the dispatch may make.
#include "contexts/GPainter.h"
#include "graphics/GDevice.h"
// WM_SYSCOLORCHANGE refreshes the colour snapshot that every window background is made from.
#include "widgets/PSysColorManager.h"
// WM_MDIACTIVATE keeps the active child of the frame, which only the dispatch may set.
#include "windows/PFrame.h"
// A handle finds its object through the window registry that PWindow keeps.
#include "windows/PWindow.h"

#include <commctrl.h>
#include <shellapi.h>

#include <cstring>

// The window procedure and the routes of the dispatch table. A class rather than free
// functions so that it can be the friend of PRespond (only the dispatch reaches dropEvent),
// of PWindowObject (the default procedure) and of PWindow (the lookup that binds a window
// under construction).
class PDispatch {
public:
    static LRESULT windowProcedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
    static int dispatch(PEvent const &event);

private:
    enum RouteId : unsigned char {
        processRoute, // any message without a row of its own: processEvent
        nothingRoute,
        destroyRoute,
        moveRoute,
        sizeRoute,
        paintRoute,
        closeRoute,
        eraseRoute,
        broadcastRoute,
        sysColorRoute,
        setCursorRoute,
        childFirstRoute,
        notifyRoute,
        keyDownRoute,
        commandRoute,
        timerRoute,
        scrollRoute,
        mouseMoveRoute,
        mouseButtonRoute,
        mdiActivateRoute,
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
    static const RouteTable theTable;

    using ButtonHandler = int (PRespond::*)(unsigned short flags, GPoint const &position);
    static const ButtonHandler theButtonHandlers[WM_MBUTTONDBLCLK - WM_LBUTTONDOWN + 1];

    static int route(RouteId id, PWindowObject &window, PEvent const &event);
    static int claimOrProcess(PWindowObject &window, PEvent const &event, int handled);
    static int nothing(PWindowObject &window, PEvent const &event);
    static int destroy(PWindowObject &window, PEvent const &event);
    static int move(PWindowObject &window, PEvent const &event);
    static int size(PWindowObject &window, PEvent const &event);
    static int paint(PWindowObject &window, PEvent const &event);
    static int close(PWindowObject &window, PEvent const &event);
    static int eraseBackground(PWindowObject &window, PEvent const &event);
    static int timer(PWindowObject &window, PEvent const &event);
    static int broadcast(PWindowObject &window, PEvent const &event);
    static int sysColors(PWindowObject &window, PEvent const &event);
    static int setCursor(PWindowObject &window, PEvent const &event);
    static int childFirst(PWindowObject &window, PEvent const &event);
    static int notify(PWindowObject &window, PEvent const &event);
    static int keyDown(PWindowObject &window, PEvent const &event);
    static int command(PWindowObject &window, PEvent const &event);
    static int scroll(PWindowObject &window, PEvent const &event);
    static int mouseMove(PWindowObject &window, PEvent const &event);
    static int mouseButton(PWindowObject &window, PEvent const &event);
    static int mdiActivate(PWindowObject &window, PEvent const &event);
    static int dropFiles(PWindowObject &window, PEvent const &event);

    static void relayToTip(PWindowObject &window, PEvent const &event);
    // The object of a handle, binding a window under construction to its queued object.
    static PWindowObject *objectOf(HWND handle) { return PWindow::getWinPtr(PHHwnd(handle)); }
    // isValidWindow() for the object just read from hwnd. When the object holds that very
    // handle, two of its three tests are answered already: the platform is calling this
    // window's procedure, so the window exists, and its binding was read a moment ago.
    static bool isLiveTarget(PWindowObject const &window, HWND hwnd)
    {
        return static_cast<HWND>(window.hwnd) == hwnd || window.isValidWindow();
    }
    // DefMDIChildProcA for an MDI child, else DefWindowProcA.
    static WNDPROC defaultProcedureOf(PWindowObject const &window)
    {
        return window.isMDIChild ? DefMDIChildProcA : DefWindowProcA;
    }
};

constexpr PDispatch::RouteTable::RouteTable() : routeOf()
{
    routeOf[WM_CREATE] = nothingRoute;
    routeOf[WM_DESTROY] = destroyRoute;
    routeOf[WM_MOVE] = moveRoute;
    routeOf[WM_SIZE] = sizeRoute;
    routeOf[WM_PAINT] = paintRoute;
    routeOf[WM_CLOSE] = closeRoute;
    routeOf[WM_ERASEBKGND] = eraseRoute;
    routeOf[WM_SYSCOLORCHANGE] = sysColorRoute;
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
    routeOf[WM_HSCROLL] = scrollRoute;
    routeOf[WM_VSCROLL] = scrollRoute;
    routeOf[WM_MOUSEMOVE] = mouseMoveRoute;
    for (unsigned int message = WM_LBUTTONDOWN; message <= WM_MBUTTONDBLCLK; ++message)
        routeOf[message] = mouseButtonRoute;
    routeOf[WM_MDIACTIVATE] = mdiActivateRoute;
    routeOf[WM_DROPFILES] = dropFilesRoute;
}

const PDispatch::RouteTable PDispatch::theTable;

// In message order, from WM_LBUTTONDOWN to WM_MBUTTONDBLCLK.
const PDispatch::ButtonHandler PDispatch::theButtonHandlers[] = {
    &PRespond::mouseLDownEvent, &PRespond::mouseLUpEvent, &PRespond::mouseLDClickEvent,
    &PRespond::mouseRDownEvent, &PRespond::mouseRUpEvent, &PRespond::mouseRDClickEvent,
    &PRespond::mouseMDownEvent, &PRespond::mouseMUpEvent, &PRespond::mouseMDClickEvent,
};

int PDispatch::dispatch(PEvent const &event)
{
    PWindowObject *window = event.getWindow();
    if (!window)
        return 1;
    const unsigned int message = event.getMessage();
    if (message < tableSize)
        return route(static_cast<RouteId>(theTable.routeOf[message]), *window, event);
    if (message == WM_HOTKEY) {
        // A hot key belongs to the application, whichever window it arrives at.
        PAppInterface *app = window->getApp();
        return app ? app->hotKeyEvent(event) : 0;
    }
    return window->processEvent(event);
}

// A dense switch: the compiler makes it a jump table.
int PDispatch::route(RouteId id, PWindowObject &window, PEvent const &event)
{
    switch (id) {
    case nothingRoute: return nothing(window, event);
    case destroyRoute: return destroy(window, event);
    case moveRoute: return move(window, event);
    case sizeRoute: return size(window, event);
    case paintRoute: return paint(window, event);
    case closeRoute: return close(window, event);
    case eraseRoute: return eraseBackground(window, event);
    case broadcastRoute: return broadcast(window, event);
    case sysColorRoute: return sysColors(window, event);
    case setCursorRoute: return setCursor(window, event);
    case childFirstRoute: return childFirst(window, event);
    case notifyRoute: return notify(window, event);
    case keyDownRoute: return keyDown(window, event);
    case commandRoute: return command(window, event);
    case timerRoute: return timer(window, event);
    case scrollRoute: return scroll(window, event);
    case mouseMoveRoute: return mouseMove(window, event);
    case mouseButtonRoute: return mouseButton(window, event);
    case mdiActivateRoute: return mdiActivate(window, event);
    case dropFilesRoute: return dropFiles(window, event);
    case processRoute:
    case routeCount: break;
    }
    return window.processEvent(event);
}

int PDispatch::claimOrProcess(PWindowObject &window, PEvent const &event, int handled)
{
    return handled ? 1 : window.processEvent(event);
}

// Set-up belongs to setupWindow, after CreateWindowExA has returned.
int PDispatch::nothing(PWindowObject &, PEvent const &)
{
    return 0;
}

int PDispatch::destroy(PWindowObject &window, PEvent const &event)
{
    return claimOrProcess(window, event, window.destroyEvent(event));
}

namespace {

// lParam's halves read as signed 16-bit values, as WM_MOVE and WM_SIZE carry them.
GPoint signedPoint(LPARAM lParam)
{
    return GPoint(static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam)));
}

} // namespace

int PDispatch::move(PWindowObject &window, PEvent const &event)
{
    return claimOrProcess(window, event, window.moveEvent(signedPoint(event.getLParam())));
}

int PDispatch::size(PWindowObject &window, PEvent const &event)
{
    return claimOrProcess(window, event, window.resizeEvent(signedPoint(event.getLParam())));
}

// The painter ends its paint when this returns, before an unclaimed message reaches the
// default procedure.
int PDispatch::paint(PWindowObject &window, PEvent const &)
{
    RECT update;
    if (!GetUpdateRect(window, &update, TRUE))
        return 0;
    GPainter painter(&window);
    GRect area(update.left, update.top, update.right, update.bottom);
    return window.paintEvent(painter, area);
}

int PDispatch::close(PWindowObject &window, PEvent const &event)
{
    return claimOrProcess(window, event, window.closeEvent(event));
}

int PDispatch::timer(PWindowObject &window, PEvent const &event)
{
    return claimOrProcess(window, event, window.timerEvent());
}

namespace {

// The device context that WM_ERASEBKGND hands over; its state comes back when this goes.
class BackgroundDevice : public GDevice {
public:
    explicit BackgroundDevice(HDC handle)
    {
        dc = handle;
        initObjects();
    }
    GPoint getDeviceArea() override { return GPoint(); }
};

} // namespace

// processEvent may take the erasing over, but only with exactly 1. Otherwise the update
// rectangle, one unit larger to the right and below, is filled with the window's background
// and no outline; an update region no more than 1 unit wide or high is left to the default
// procedure. Only a PWindow has a background: any other window gets the default procedure.
int PDispatch::eraseBackground(PWindowObject &window, PEvent const &event)
{
    if (window.processEvent(event) == 1)
        return 1;
    RECT update;
    if (!GetUpdateRect(window, &update, TRUE))
        return 1;
    if (update.right - update.left <= 1 || update.bottom - update.top <= 1)
        return 0;
    PWindow *withBackground = dynamic_cast<PWindow *>(&window);
    if (!withBackground)
        return 0;
    const GRect area(update.left, update.top, update.right + 1.0, update.bottom + 1.0);
    BackgroundDevice device(reinterpret_cast<HDC>(event.getWParam()));
    device.setPen(GPen::Null);
    device.setBrush(withBackground->getBackground());
    Rectangle(device, truncateCoord(area.lVal()), truncateCoord(area.tVal()), truncateCoord(area.rVal()),
              truncateCoord(area.bVal()));
    return 1;
}

// Children see only processEvent, with an event of their own, not a further dispatch.
int PDispatch::broadcast(PWindowObject &window, PEvent const &event)
{
    PList<PWindowObject *> const &children = window.getChildren();
    const unsigned int count = children.length();
    for (unsigned int index = 0; index < count; ++index) {
        PWindowObject *child = children[index];
        child->processEvent(PEvent(child, event.getMessage(), event.getWParam(), event.getLParam()));
    }
    return window.processEvent(event);
}

// The window takes the new 3-D face colour as its background, whatever it had; its
// children, reached by the broadcast alone, keep theirs. Only a PWindow has a background.
int PDispatch::sysColors(PWindowObject &window, PEvent const &event)
{
    PSysColorManager::instance();
    PSysColorManager::update();
    if (PWindow *withBackground = dynamic_cast<PWindow *>(&window))
        withBackground->setBackground(GBrush(PSysColorManager::getFace3D()));
    return broadcast(window, event);
}

// Tells the window that the cursor has left, and lets the default procedure set the cursor.
int PDispatch::setCursor(PWindowObject &, PEvent const &event)
{
    HWND underCursor = reinterpret_cast<HWND>(event.getWParam());
    if (underCursor != gLastWindow) {
        if (gLastWindow && IsWindow(gLastWindow))
            PostMessageA(gLastWindow, PM_WINDOWLEFT, 0, 0);
        gLastWindow = underCursor;
    }
    return 0;
}

int PDispatch::childFirst(PWindowObject &window, PEvent const &event)
{
    LRESULT result = 0;
    if (window.processChildEvent(event, &result))
        return result;
    return window.processEvent(event);
}

int PDispatch::notify(PWindowObject &window, PEvent const &event)
{
    LRESULT result = 0;
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

int PDispatch::keyDown(PWindowObject &window, PEvent const &event)
{
    PAppInterface *app = window.getApp();
    if (window.isMouseCaptured() && app && app->capturedKeyEvent(event))
        return 1;
    return window.processEvent(event);
}

// A menu or accelerator command has lParam 0; a control's notification names the control.
// A notification that nobody claims also falls to processCommandEvent.
int PDispatch::command(PWindowObject &window, PEvent const &event)
{
    LRESULT result = 0;
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
int PDispatch::scroll(PWindowObject &window, PEvent const &event)
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
int PDispatch::mouseMove(PWindowObject &window, PEvent const &event)
{
    relayToTip(window, event);
    const PMouseEvent mouse(event);
    if (window.mouseEvent(mouse))
        return 1;
    window.mouseMoveEvent(mouse.getLocation(), static_cast<unsigned short>(event.getWParam()));
    return window.processEvent(event);
}

int PDispatch::mouseButton(PWindowObject &window, PEvent const &event)
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

// An MDI child gains or loses activation; its frame keeps the active child. A child whose
// frame cannot be found swallows the message. The default procedure runs otherwise, unless
// the child's own handler has closed it.
int PDispatch::mdiActivate(PWindowObject &window, PEvent const &event)
{
    HWND child = window;
    HWND client = GetParent(child);
    HWND frameHandle = client ? GetParent(client) : nullptr;
    PWindowObject *framed = frameHandle ? objectOf(frameHandle) : nullptr;
    PFrame *frame = dynamic_cast<PFrame *>(window.getParent());
    if (!framed || !frame || !client || !frameHandle)
        return 1;
    if (event.getLParam() == reinterpret_cast<LPARAM>(child)) {
        frame->activateChild(dynamic_cast<PWindow *>(&window));
        window.mdiActivate();
    } else {
        frame->activateChild(nullptr);
        frame->activeChild = nullptr;
        window.mdiDeactivate();
    }
    if (IsWindow(child) && PWindowObject::getWinPtr(PHHwnd(child)) == &window)
        window.processEvent(event);
    return 0;
}

// Releasing the drop is the handler's duty.
int PDispatch::dropFiles(PWindowObject &window, PEvent const &event)
{
    HDROP drop = reinterpret_cast<HDROP>(event.getWParam());
    const int count = static_cast<int>(DragQueryFileA(drop, 0xFFFFFFFF, nullptr, 0));
    PRespond &respond = window;
    if (respond.dropEvent(drop, count))
        return 1;
    return window.processEvent(event);
}

LRESULT PDispatch::windowProcedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    PWindowObject *object = objectOf(hwnd);
    if (!object || !isLiveTarget(*object, hwnd))
        return DefWindowProcA(hwnd, message, wParam, lParam);
    // Chosen before the dispatch, which may end with the object deleted.
    const WNDPROC defaultProcedure = defaultProcedureOf(*object);
    const int result = dispatch(PEvent(object, message, wParam, lParam));
    if (result)
        return result;
    return defaultProcedure(hwnd, message, wParam, lParam);
}

LRESULT CALLBACK PWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    return PDispatch::windowProcedure(hwnd, message, wParam, lParam);
}

int PGeneralProc(PEvent const &event)
{
    return PDispatch::dispatch(event);
}
