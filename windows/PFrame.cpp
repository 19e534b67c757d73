#include "windows/PFrame.h"

#include "events/PAppInterface.h"
#include "events/PEvent.h"

#include <shellapi.h>

namespace {

// The first child identifier of the MDI client, and the client's own identifier.
const UINT firstMDIChildId = 7894;
const INT_PTR mdiClientId = 1;
const DWORD mdiClientStyle = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_VSCROLL | WS_HSCROLL;

HINSTANCE instanceOf(PAppInterface *app)
{
    if (!app)
        return nullptr;
    IConsoleApp *console = app;
    return console->getInstance();
}

// An application of this name hears about children that refuse to close. Deliberate.
bool heedsRefusals()
{
    PAppInterface *application = getApplication();
    if (!application)
        return true;
    IConsoleApp *console = application;
    return console->getAppName() == PString("Corvantis");
}

} // namespace

PFrame::PFrame(PString const &caption, PString const &menuName, PAppInterface *app)
    : PDragWindow(nullptr, caption, app)
{
    initFields();
    menu = PMenu(menuName, app);
    style |= WS_CLIPCHILDREN;
    isMDIFrame = 1;
}

PFrame::PFrame(PString const &caption, int, PAppInterface *app) : PDragWindow(nullptr, caption, app)
{
    initFields();
}

void PFrame::initFields()
{
    clientHWND = nullptr;
    clientCreate = CLIENTCREATESTRUCT();
    rOffset = 0;
    lOffset = 0;
    tOffset = 0;
    bOffset = 0;
    activeChild = nullptr;
    windowMenuIndex = 0;
    defaultProc = PFrameProc;
}

PFrame::~PFrame()
{
    clientHWND = nullptr;
    activeChild = nullptr;
}

char *PFrame::getClassName()
{
    static char className[] = "PFRAME";
    return className;
}

void PFrame::getWindowClass(tagWNDCLASSA &windowClass)
{
    PWindow::getWindowClass(windowClass);
    windowClass.style = 0;
}

void PFrame::setupWindow()
{
    DragAcceptFiles(hwnd, TRUE);
    PWindow::setupWindow();
}

HWND PFrame::getClientHWND()
{
    return clientHWND;
}

GRect PFrame::getClientArea()
{
    return PWindowObject::getClientArea();
}

int PFrame::isMDIChildrenMaximized()
{
    return activeChild ? activeChild->isMaximized() : 1;
}

int PFrame::processEvent(PEvent const &event)
{
    switch (event.getMessage()) {
    case WM_QUERYNEWPALETTE:
        if (!activeChild)
            return 0;
        return activeChild->processEvent(PEvent(activeChild, event.getMessage(), event.getWParam(), event.getLParam()));
    case WM_PALETTECHANGED: {
        // lParam, not wParam, names the window compared. Deliberate.
        if (event.getLParam() == reinterpret_cast<LPARAM>(static_cast<HWND>(hwnd)))
            return 0;
        int result = 0;
        const unsigned int count = children.length();
        for (unsigned int index = 0; index < count; ++index) {
            PWindowObject *child = children(index);
            result |= child->processEvent(PEvent(child, event.getMessage(), event.getWParam(), event.getLParam()));
        }
        return result;
    }
    default:
        return PRespond::processEvent(event);
    }
}

void PFrame::activateChild(PWindow *child)
{
    activeChild = child;
}

void PFrame::arrangeIcons()
{
    SendMessageA(clientHWND, WM_MDIICONARRANGE, 0, 0);
}

void PFrame::cascadeChildren()
{
    SendMessageA(clientHWND, WM_MDICASCADE, 0, 0);
}

void PFrame::tileChildren()
{
    SendMessageA(clientHWND, WM_MDITILE, 0, 0);
}

// A child that refuses stays at its index and is asked again while the count runs down, so
// that children behind it may never be asked. Deliberate.
int PFrame::closeChildren()
{
    int count = static_cast<int>(children.length());
    for (int index = 0; index < count; ++index) {
        PWindowObject *child = children(static_cast<unsigned int>(index));
        if (child && isMDIChildWindow(child)) {
            child->closeWindow();
            --index;
            --count;
        }
    }
    if (!heedsRefusals())
        return 1;
    for (unsigned int index = 0; index < children.length(); ++index) {
        if (isMDIChildWindow(children(index)))
            return 0;
    }
    return 1;
}

void PFrame::initClientWindow()
{
    const GRect area = getClientArea();
    // Holds a share of the first frame's menu for the life of the process. Deliberate.
    static const PMenu firstFrameMenu(menu);
    HMENU windowMenu = GetSubMenu(menu, windowMenuIndex);
    clientCreate.hWindowMenu = windowMenu ? windowMenu : static_cast<HMENU>(menu);
    clientCreate.idFirstChild = firstMDIChildId;
    const int x = truncateCoord(area.lVal() + lOffset);
    const int y = truncateCoord(area.tVal() + tOffset);
    const int width = truncateCoord(area.width() - (lOffset + rOffset));
    const int height = truncateCoord(area.height() - (tOffset + bOffset));
    clientHWND = CreateWindowExA(0, "MDICLIENT", nullptr, mdiClientStyle, x, y, width, height, hwnd,
                                 reinterpret_cast<HMENU>(mdiClientId), instanceOf(app), &clientCreate);
}

void PFrame::resizeClient(GPoint const &size)
{
    if (!clientHWND)
        return;
    const int cx = truncateCoord(size.xVal() - (lOffset - rOffset));
    const int cy = truncateCoord(size.yVal() - (tOffset - bOffset));
    SetWindowPos(clientHWND, nullptr, 0, 0, cx, cy, SWP_NOMOVE | SWP_NOZORDER);
}

void PFrame::moveClient(GPoint const &position)
{
    if (clientHWND)
        SetWindowPos(clientHWND, nullptr, truncateCoord(position.xVal()), truncateCoord(position.yVal()), 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER);
}

void PFrame::fitClientToArea()
{
    const GRect area = getClientArea();
    resizeClient(GPoint(area.rVal(), area.bVal()));
}

void PFrame::setLOffset(int offset)
{
    lOffset = offset;
    fitClientToArea();
    moveClient(GPoint(lOffset, tOffset));
}

void PFrame::setTOffset(int offset)
{
    tOffset = offset;
    fitClientToArea();
    moveClient(GPoint(lOffset, tOffset));
}

void PFrame::setROffset(int offset)
{
    rOffset = offset;
    fitClientToArea();
}

void PFrame::setBOffset(int offset)
{
    bOffset = offset;
    fitClientToArea();
}

GRect PFrame::getWorkspaceArea()
{
    RECT rect = {};
    if (isValidWindow() && IsWindow(getClientHWND()))
        GetClientRect(getClientHWND(), &rect);
    return GRect(rect);
}

void PFrame::showClientHWND(int command)
{
    if (IsWindow(clientHWND))
        ShowWindow(clientHWND, command);
}

PList<PWindowObject *> PFrame::getMDIChildren()
{
    PList<PWindowObject *> mdiChildren;
    const unsigned int count = children.length();
    for (unsigned int index = 0; index < count; ++index) {
        PWindowObject *child = children(index);
        if (child && isMDIChildWindow(child))
            mdiChildren.add(child);
    }
    return mdiChildren;
}

// The accelerators are asked for once, before anything else. A frame without an application
// has none and drops what it pumps.
int PFrame::eventLoopOnce()
{
    yield();
    PAccel *accelerators = app ? app->getAccelerators() : nullptr;
    MSG msg;
    if (!PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
        if (app)
            app->idleAction();
        return 0;
    }
    if (msg.message == WM_QUIT)
        return 1;
    if (!app || !app->getMainWindow())
        return 0;
    // An MDI system key is still translated and dispatched. Deliberate.
    if (!TranslateMDISysAccel(clientHWND, &msg) && accelerators &&
        TranslateAcceleratorA(hwnd, *accelerators, &msg))
        return 0;
    TranslateMessage(&msg);
    DispatchMessageA(&msg);
    return 0;
}

// Unlike PWindowProc, an event is built also for a window with no object, which the dispatch
// answers with 1.
LRESULT CALLBACK PFrameProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    PWindowObject *object = PWindow::getWinPtr(PHHwnd(hwnd));
    PFrame *frame = dynamic_cast<PFrame *>(object);
    const PEvent event(object, message, wParam, lParam);
    // Read before the dispatch, which may end with the object deleted.
    HWND client = object ? object->getClientHWND() : nullptr;
    switch (message) {
    case WM_CREATE:
        if (frame)
            frame->initClientWindow();
        return 1;
    case WM_SIZE: {
        // Unsigned halves here, where the dispatch reads them signed. Deliberate.
        const GPoint size(LOWORD(lParam), HIWORD(lParam));
        if (object)
            object->resizeEvent(size);
        if (frame)
            frame->resizeClient(size);
        return 1;
    }
    default:
        break;
    }
    const int result = PGeneralProc(event);
    if (result)
        return result;
    if (!object)
        return 0;
    return DefFrameProcA(hwnd, client, message, wParam, lParam);
}
