#include "events/PWindowObject.h"

#include "events/PAppInterface.h"
#include "foundation/PNumerics.h"
// Translating a key needs the accelerator table, a resource of the widgets.
#include "widgets/PMenu.h"

#include <new>

namespace {

const int userDataIndex = GWLP_USERDATA;

// The platform's integer point of a logical one, truncated toward zero.
POINT truncated(GPoint const &point)
{
    return POINT{truncateCoord(point.getX()), truncateCoord(point.getY())};
}

// The target of a message; a null target is the null handle, which the platform refuses.
HWND handleOf(PWindowObject const *target)
{
    return target ? static_cast<HWND>(*target) : nullptr;
}

} // namespace

PPairDictionary<PHHwnd, PHashablePointer<PWindowObject>> PWindowObject::theWinTable;

PWindowObject::PWindowObject(PWindowObject *parent, PAppInterface *app)
    : defaultProc(nullptr), creationParam(0), eventLoopState(0), hwnd(nullptr), attachedChild(0),
      reservedFirst(0), autoCreate(1), isMDIChild(0), isMDIFrame(0), reservedSecond(0), app(app), id(0),
      parent(parent), tipText(nullptr), tipWindow(nullptr)
{
    if (!app && !parent) {
        MessageBoxA(nullptr,
                    "Windows constructed with no parent must\nexplicitly pass an application pointer.",
                    "Error", MB_TASKMODAL | MB_ICONHAND);
        ExitProcess(1);
    }
    if (!app)
        this->app = parent->app;
    if (parent)
        parent->addChild(this);
    if (!this->app)
        reportError(noApplicationError);
}

// The tip text is the one field not shared: each object deletes its own, so a copy owns a
// copy rather than a second claim on the same string.
PWindowObject::PWindowObject(PWindowObject const &other)
    : PError(other), PRespond(other), defaultProc(other.defaultProc), children(other.children),
      creationParam(other.creationParam), eventLoopState(other.eventLoopState), clientRect(other.clientRect),
      windowRect(other.windowRect), hwnd(other.hwnd), attachedChild(other.attachedChild),
      reservedFirst(other.reservedFirst), autoCreate(other.autoCreate), isMDIChild(other.isMDIChild),
      isMDIFrame(other.isMDIFrame), reservedSecond(other.reservedSecond), caption(other.caption),
      app(other.app), id(other.id), parent(other.parent),
      tipText(other.tipText ? new (std::nothrow) PString(*other.tipText) : nullptr), tipWindow(other.tipWindow)
{
}

PWindowObject &PWindowObject::operator=(PWindowObject const &other)
{
    if (this == &other)
        return *this;
    PError::operator=(other);
    defaultProc = other.defaultProc;
    children = other.children;
    creationParam = other.creationParam;
    eventLoopState = other.eventLoopState;
    clientRect = other.clientRect;
    windowRect = other.windowRect;
    hwnd = other.hwnd;
    attachedChild = other.attachedChild;
    reservedFirst = other.reservedFirst;
    autoCreate = other.autoCreate;
    isMDIChild = other.isMDIChild;
    isMDIFrame = other.isMDIFrame;
    reservedSecond = other.reservedSecond;
    caption = other.caption;
    app = other.app;
    id = other.id;
    parent = other.parent;
    if (other.tipText) {
        setTipText(*other.tipText);
    } else {
        delete tipText;
        tipText = nullptr;
    }
    tipWindow = other.tipWindow;
    return *this;
}

PWindowObject::~PWindowObject()
{
    if (app && app->getMainWindow() == this) {
        app->setMainWindow(nullptr);
        PostQuitMessage(app->getStatusCode());
    }
    defaultProc = nullptr;
    creationParam = 0;
    hwnd = nullptr;
    app = nullptr;
    parent = nullptr;
    delete tipText;
}

// ---- Handle registry ----

PWindowObject *PWindowObject::getWinPtr(PHHwnd const &handle)
{
    return reinterpret_cast<PWindowObject *>(GetWindowLongPtrA(handle, userDataIndex));
}

void PWindowObject::addWinPtr(PWindowObject *object, HWND handle)
{
    SetWindowLongPtrA(handle, userDataIndex, reinterpret_cast<LONG_PTR>(object));
}

PWindowObject *PWindowObject::findWinPtr(PHHwnd const &handle)
{
    return getWinPtr(handle);
}

int PWindowObject::isValidWindow() const
{
    return hwnd != nullptr && IsWindow(hwnd) && getWinPtr(hwnd) != nullptr;
}

// ---- Tree ----

void PWindowObject::addChild(PWindowObject *child)
{
    children.add(child);
}

void PWindowObject::removeChild(PWindowObject *child)
{
    const int index = indexOf(child);
    if (index >= 0)
        children.remove(index);
}

int PWindowObject::indexOf(PWindowObject *child) const
{
    return children.find(child);
}

PWindowObject *PWindowObject::at(int index)
{
    return children(static_cast<unsigned int>(index));
}

void PWindowObject::setParent(PWindowObject *newParent)
{
    if (parent)
        parent->removeChild(this);
    if (newParent) {
        SetParent(hwnd, *newParent);
        newParent->addChild(this);
    } else {
        SetParent(hwnd, nullptr);
    }
    parent = newParent;
}

PWindowObject *PWindowObject::childWithId(int wanted)
{
    for (PWindowObject *child : children)
        if (child->getId() == wanted)
            return child;
    return nullptr;
}

PWindowObject *PWindowObject::getFirstChild()
{
    return children.length() == 0 ? nullptr : at(0);
}

PWindowObject *PWindowObject::getLastChild()
{
    // The index equal to the count wraps to the first child. Deliberate.
    return children.length() == 0 ? nullptr : at(static_cast<int>(children.length()));
}

int PWindowObject::createChildren()
{
    for (unsigned int index = 0; index < children.length(); ++index) {
        PWindowObject *child = children(index);
        const bool failed = child->autoCreate && !child->create();
        // A minimised window shows its text under the icon; writing it back redraws it there.
        if (child->isValidWindow() && IsIconic(*child)) {
            const int length = GetWindowTextLengthA(*child);
            PString text(length, ' ');
            GetWindowTextA(*child, text, length + 1);
            text.resize();
            SetWindowTextA(*child, static_cast<char const *>(text));
        }
        if (failed)
            return 0;
    }
    return 1;
}

// ---- Lifecycle ----

void PWindowObject::setupWindow()
{
    if (!createChildren())
        reportError(childrenError);
}

void PWindowObject::resize()
{
}

int PWindowObject::registerWindow()
{
    WNDCLASSA windowClass = {};
    if (GetClassInfoA(nullptr, getClassName(), &windowClass))
        return 1;
    HINSTANCE instance = app ? static_cast<IConsoleApp *>(app)->getInstance() : nullptr;
    if (GetClassInfoA(instance, getClassName(), &windowClass))
        return 1;
    getWindowClass(windowClass);
    const ATOM atom = RegisterClassA(&windowClass);
    if (!atom)
        reportError(registerClassError);
    return atom;
}

int PWindowObject::canClose()
{
    for (PWindowObject *child : children)
        if (child->isValidWindow() && !child->canClose())
            return 0;
    return 1;
}

int PWindowObject::closeWindow()
{
    const int mayClose = app && app->getMainWindow() == this ? app->canExit() : canClose();
    if (mayClose)
        shutDownWindow();
    return mayClose;
}

int PWindowObject::closeEvent(PEvent const &)
{
    closeWindow();
    return 1;
}

void PWindowObject::shutDownWindow()
{
    while (children.length() != 0) {
        // From the head one step back wraps to the last child.
        children.first();
        children.prev();
        PWindowObject *child = children.curElement();
        children.remove(-1);
        if (child)
            child->shutDownWindow();
    }
    if (parent)
        parent->removeChild(this);
    destroy();
    deleteWindow(this);
}

void PWindowObject::destroy()
{
    if (!isValidWindow())
        return;
    if (isMDIChild)
        SendMessageA(GetParent(hwnd), WM_MDIDESTROY, reinterpret_cast<WPARAM>(static_cast<HWND>(hwnd)), 0);
    else
        DestroyWindow(hwnd);
}

void PWindowObject::deleteWindow(PWindowObject *window)
{
    if (!window)
        return;
    switch (window->eventLoopState) {
    case 0:
        addWinPtr(nullptr, window->hwnd);
        delete window;
        break;
    case 1:
        // The loop deletes its object when it ends.
        window->stopEventLoop();
        break;
    default:
        break;
    }
}

int PWindowObject::destroyEvent(PEvent const &)
{
    if (app && app->getMainWindow() == this)
        PostQuitMessage(app->getStatusCode());
    return 1;
}

// ---- Messages from children ----

int PWindowObject::processChildEvent(PEvent const &event, LRESULT *result)
{
    *result = 0;
    const WPARAM wParam = event.getWParam();
    const LPARAM lParam = event.getLParam();
    const unsigned int message = event.getMessage();
    switch (message) {
    case WM_DRAWITEM:
    case WM_MEASUREITEM:
    case WM_DELETEITEM:
    case WM_COMPAREITEM: {
        // A zero id is a menu item, which has no object.
        HWND item = wParam ? GetDlgItem(hwnd, static_cast<int>(wParam)) : nullptr;
        PWindowObject *child = item ? findWinPtr(PHHwnd(item)) : nullptr;
        if (!child)
            return 0;
        if (message == WM_DRAWITEM)
            child->drawItem(reinterpret_cast<DRAWITEMSTRUCT *>(lParam));
        else if (message == WM_MEASUREITEM)
            child->measureItem(reinterpret_cast<MEASUREITEMSTRUCT *>(lParam));
        else if (message == WM_DELETEITEM)
            child->deleteItem(reinterpret_cast<DELETEITEMSTRUCT *>(lParam));
        *result = message == WM_COMPAREITEM ? child->compareItem(reinterpret_cast<COMPAREITEMSTRUCT *>(lParam)) : 1;
        return 1;
    }
    case WM_VKEYTOITEM:
    case WM_CHARTOITEM: {
        PWindowObject *child = lParam ? findWinPtr(PHHwnd(reinterpret_cast<HWND>(lParam))) : nullptr;
        if (!child)
            return 0;
        const unsigned int key = LOWORD(wParam), caret = HIWORD(wParam);
        *result = message == WM_VKEYTOITEM ? child->vKeyToItem(key, caret) : child->charToItem(key, caret);
        return 1;
    }
    case WM_NOTIFY: {
        NMHDR const *header = reinterpret_cast<NMHDR const *>(lParam);
        PWindowObject *child = header && header->hwndFrom ? findWinPtr(PHHwnd(header->hwndFrom)) : nullptr;
        return child ? child->onChildNotify(header->code, result) : 0;
    }
    case WM_COMMAND: {
        PWindowObject *child = lParam ? findWinPtr(PHHwnd(reinterpret_cast<HWND>(lParam))) : nullptr;
        if (!child)
            return 0;
        *result = 0;
        return child->onChildCommand(HIWORD(wParam));
    }
    case WM_PARENTNOTIFY:
        onParentNotify(wParam, lParam);
        *result = 0;
        return 1;
    default:
        return 0;
    }
}

int PWindowObject::hScrollEvent(unsigned int, int)
{
    return 0;
}

int PWindowObject::vScrollEvent(unsigned int, int)
{
    return 0;
}

void PWindowObject::afterDispatchHandler()
{
}

void PWindowObject::beforeDispatchHandler()
{
}

int PWindowObject::onChildCommand(unsigned int)
{
    return 0;
}

int PWindowObject::onChildNotify(unsigned int, LRESULT *)
{
    return 0;
}

void PWindowObject::onParentNotify(WPARAM, LPARAM)
{
}

void PWindowObject::drawItem(tagDRAWITEMSTRUCT *)
{
}

void PWindowObject::measureItem(tagMEASUREITEMSTRUCT *)
{
}

void PWindowObject::deleteItem(tagDELETEITEMSTRUCT *)
{
}

int PWindowObject::vKeyToItem(unsigned int, unsigned int)
{
    return -1;
}

int PWindowObject::charToItem(unsigned int, unsigned int)
{
    return -1;
}

int PWindowObject::compareItem(tagCOMPAREITEMSTRUCT *)
{
    return 0;
}

int PWindowObject::getId()
{
    return id;
}

HWND PWindowObject::getClientHWND()
{
    return nullptr;
}

int PWindowObject::isAutoPan()
{
    return 0;
}

int PWindowObject::isMDIChildrenMaximized()
{
    return 0;
}

// ---- Coordinates ----

GPoint PWindowObject::screenToClient(GPoint const &point)
{
    POINT platformPoint = truncated(point);
    ScreenToClient(hwnd, &platformPoint);
    return GPoint(platformPoint.x, platformPoint.y);
}

GPoint PWindowObject::clientToScreen(GPoint const &point)
{
    POINT platformPoint = truncated(point);
    ClientToScreen(hwnd, &platformPoint);
    return GPoint(platformPoint.x, platformPoint.y);
}

GPoint PWindowObject::mapWindowPoint(PWindowObject *from, PWindowObject *to, GPoint const &point)
{
    if (!from && !to)
        return point;
    POINT platformPoint = {tesk::round(point.getX()), tesk::round(point.getY())};
    if (from)
        MapWindowPoints(*from, nullptr, &platformPoint, 1); // to is ignored here. Deliberate.
    else
        MapWindowPoints(nullptr, *to, &platformPoint, 1);
    return GPoint(platformPoint.x, platformPoint.y);
}

int PWindowObject::setCursorPosition(GPoint const &point)
{
    const POINT platformPoint = truncated(point);
    return SetCursorPos(platformPoint.x, platformPoint.y);
}

int PWindowObject::isIn(GPoint const &point)
{
    if (!isValidWindow())
        return 0;
    RECT client;
    GetClientRect(hwnd, &client);
    return PtInRect(&client, static_cast<POINT>(point));
}

GRect PWindowObject::getClientArea()
{
    RECT rect = {};
    if (isValidWindow())
        GetClientRect(hwnd, &rect);
    return GRect(rect);
}

GRect PWindowObject::getWindowSize()
{
    RECT rect = {};
    if (isValidWindow())
        GetWindowRect(hwnd, &rect);
    return GRect(rect);
}

int PWindowObject::getWindowPlacement(GRect *rect, int *showCommand)
{
    if (!isValidWindow())
        return 0;
    WINDOWPLACEMENT placement = {};
    placement.length = sizeof(WINDOWPLACEMENT);
    GetWindowPlacement(hwnd, &placement);
    *rect = GRect(placement.rcNormalPosition);
    *showCommand = static_cast<int>(placement.showCmd);
    return 1;
}

int PWindowObject::isMaximized()
{
    GRect rect;
    int showCommand = 0;
    getWindowPlacement(&rect, &showCommand);
    return showCommand == SW_SHOWMAXIMIZED;
}

int PWindowObject::isMinimized()
{
    GRect rect;
    int showCommand = 0;
    getWindowPlacement(&rect, &showCommand);
    return showCommand == SW_SHOWMINIMIZED;
}

// ---- Appearance and input ----

void PWindowObject::setCaption(PString const &text)
{
    caption = text;
    if (isValidWindow())
        SetWindowTextA(hwnd, caption);
}

void PWindowObject::show(int command)
{
    if (isValidWindow())
        ShowWindow(hwnd, command);
    else if (app)
        app->showMainWindow(command);
}

void PWindowObject::hide()
{
    if (isValidWindow())
        ShowWindow(hwnd, SW_HIDE);
}

int PWindowObject::isVisible()
{
    return isValidWindow() ? IsWindowVisible(hwnd) : 0;
}

void PWindowObject::enable()
{
    EnableWindow(hwnd, TRUE);
}

void PWindowObject::disable()
{
    EnableWindow(hwnd, FALSE);
}

int PWindowObject::isEnabled()
{
    return IsWindowEnabled(hwnd) ? 1 : 0;
}

void PWindowObject::setFocus(PWindowObject *window)
{
    // The test is on the receiver; window itself is not tested. Deliberate.
    if (window && isValidWindow())
        SetFocus(*window);
}

PWindowObject *PWindowObject::getFocus()
{
    return getWinPtr(PHHwnd(GetFocus()));
}

void PWindowObject::moveWindow(GPoint const &position, GPoint const &size)
{
    if (isValidWindow()) {
        const POINT where = truncated(position), extent = truncated(size);
        MoveWindow(hwnd, where.x, where.y, extent.x, extent.y, TRUE);
    }
}

void PWindowObject::moveWindow(GPoint const &position)
{
    if (isValidWindow()) {
        const POINT where = truncated(position);
        SetWindowPos(hwnd, nullptr, where.x, where.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    }
}

void PWindowObject::sizeWindow(GPoint const &size)
{
    if (isValidWindow()) {
        const POINT extent = truncated(size);
        SetWindowPos(hwnd, nullptr, 0, 0, extent.x, extent.y, SWP_NOMOVE | SWP_NOZORDER);
    }
}

void PWindowObject::onTopOff(PWindowObject *after)
{
    if (isValidWindow())
        SetWindowPos(hwnd, after ? static_cast<HWND>(*after) : HWND_TOPMOST, 0, 0, 0, 0,
                     SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
}

void PWindowObject::makeForeground()
{
    if (isValidWindow())
        SetForegroundWindow(hwnd);
}

void PWindowObject::bringToTop()
{
    if (isValidWindow())
        BringWindowToTop(hwnd);
}

void PWindowObject::setMouseCapture()
{
    if (isValidWindow())
        SetCapture(hwnd);
}

void PWindowObject::releaseMouseCapture()
{
    ReleaseCapture();
}

int PWindowObject::isMouseCaptured() const
{
    return GetCapture() == hwnd;
}

void PWindowObject::setTipText(PString const &text)
{
    if (!tipText)
        tipText = new (std::nothrow) PString(text);
    else
        *tipText = text;
}

PString PWindowObject::getTipText() const
{
    return tipText ? *tipText : PString();
}

// ---- Event loop ----

void PWindowObject::eventLoop()
{
    eventLoopState = 1;
    while (!eventLoopOnce()) {
    }
    eventLoopState = 3;
    setExiting();
    addWinPtr(nullptr, hwnd);
    delete this;
}

void PWindowObject::yield()
{
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 1, QS_ALLINPUT);
}

int PWindowObject::eventLoopOnce()
{
    yield();
    MSG msg;
    if (!PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
        if (app)
            app->idleAction();
        return 0;
    }
    if (msg.message == WM_QUIT) {
        setStatusCode(static_cast<int>(msg.wParam));
        return 1;
    }
    if (app && app->getAccelerators() && TranslateAcceleratorA(hwnd, *app->getAccelerators(), &msg))
        return 0;
    TranslateMessage(&msg);
    DispatchMessageA(&msg);
    return 0;
}

void PWindowObject::stopEventLoop()
{
    if (eventLoopState != 1)
        return;
    eventLoopState = 2;
    if (app) {
        app->setMainWindow(nullptr);
        PostQuitMessage(app->getStatusCode());
    } else {
        PostQuitMessage(0);
    }
}

// ---- Sending ----

void PWindowObject::sendEvent(PWindowObject *target, PEvent const &event)
{
    if (isValidWindow())
        SendMessageA(handleOf(target), event.getMessage(), event.getWParam(), event.getLParam());
}

void PWindowObject::postEvent(PWindowObject *target, PEvent const &event)
{
    if (isValidWindow())
        PostMessageA(handleOf(target), event.getMessage(), event.getWParam(), event.getLParam());
}

void PWindowObject::sendCommandEvent(PWindowObject *target, unsigned short commandId, LPARAM lParam)
{
    if (isValidWindow())
        SendMessageA(handleOf(target), WM_COMMAND, commandId, lParam);
}

void PWindowObject::postCommandEvent(PWindowObject *target, unsigned short commandId, LPARAM lParam)
{
    if (isValidWindow())
        PostMessageA(handleOf(target), WM_COMMAND, commandId, lParam);
}
