#include "windows/PWindow.h"

#include "events/PAppInterface.h"
#include "events/PWindowProc.h"
#include "widgets/PScroller.h"
#include "widgets/PStringResManager.h"
#include "windows/PFrame.h"

#include <shellapi.h>

#include <new>

namespace {

// Read once at load: a change of the system colours later leaves new windows with it.
const GBrush theDefaultBackground(GColor(static_cast<unsigned long>(GetSysColor(COLOR_WINDOW))));

HINSTANCE instanceOf(PAppInterface *app)
{
    if (!app)
        return nullptr;
    IConsoleApp *console = app;
    return console->getInstance();
}

// Without the host's runtime, a host window is a live window of this process.
bool isHostWindow(HWND handle)
{
    if (!handle || !IsWindow(handle))
        return false;
    DWORD process = 0;
    GetWindowThreadProcessId(handle, &process);
    return process == GetCurrentProcessId();
}

} // namespace

PQueue<PWindowObject *> PWindow::theCreatedQueue;

PWindow::PWindow(PWindowObject *parent, PString const &caption, PAppInterface *app)
    : PWindowObject(parent, app), cursor(cursorArrow), background(theDefaultBackground)
{
    initFields(WS_OVERLAPPEDWINDOW);
    this->caption = caption;
    if (!parent || !parent->isMDIFrame) {
        style |= WS_VISIBLE;
    } else {
        isMDIChild = 1;
        style |= WS_VISIBLE | WS_CLIPSIBLINGS;
    }
}

PWindow::PWindow(PWindowObject *parent, PString const &caption, PAppInterface *app, unsigned long style)
    : PWindowObject(parent, app), cursor(cursorArrow), background(theDefaultBackground)
{
    initFields(WS_OVERLAPPEDWINDOW | style);
    this->caption = caption;
    if (parent && parent->isMDIFrame) {
        isMDIChild = 1;
        this->style |= WS_CLIPSIBLINGS;
    }
}

PWindow::PWindow(PString const &caption, PString const &menuName, PAppInterface *app)
    : PWindowObject(nullptr, app), cursor(cursorArrow), menu(menuName, app), background(theDefaultBackground)
{
    initFields(WS_VISIBLE | WS_OVERLAPPEDWINDOW);
    this->caption = caption;
}

PWindow::PWindow(HWND handle, PAppInterface *app)
    : PWindowObject(nullptr, app), cursor(cursorArrow), background(theDefaultBackground)
{
    initFields(WS_VISIBLE | WS_OVERLAPPEDWINDOW);
    // Not the library's window procedure: the host keeps its own.
    defaultProc = nullptr;
    if (!isHostWindow(handle))
        return;
    isForeign = 1;
    HWND parentHandle = GetParent(handle);
    if (isHostWindow(parentHandle)) {
        PWindowObject *found = getWinPtr(PHHwnd(parentHandle));
        if (!found) {
            found = new (std::nothrow) PWindow(parentHandle, app);
            ownsParent = found ? 1 : 0;
        }
        if (found) {
            parent = found;
            found->addChild(this);
        }
    }
    autoCreate = 0;
    hwnd = handle;
}

PWindow::PWindow(PWindow const &other) = default;

PWindow &PWindow::operator=(PWindow const &other) = default;

void PWindow::initFields(unsigned long windowStyle)
{
    mdiCreate = MDICREATESTRUCTA();
    reserved = 0;
    helpActive = 0;
    style = windowStyle;
    exStyle = 0;
    x = CW_USEDEFAULT;
    y = CW_USEDEFAULT;
    height = CW_USEDEFAULT;
    width = CW_USEDEFAULT;
    controlId = 0;
    scroller = nullptr;
    ownsParent = 0;
    isForeign = 0;
    defaultProc = PWindowProc;
}

// An MDI child that goes is no longer its frame's active child, whatever the platform said.
PWindow::~PWindow()
{
    scroller = nullptr;
    if (PFrame *frame = isMDIChild ? dynamic_cast<PFrame *>(parent) : nullptr) {
        if (frame->activeChild == this)
            frame->activeChild = nullptr;
    }
    if (isForeign && parent)
        parent->removeChild(this);
    if (ownsParent)
        deleteWindow(parent);
}

void PWindow::fatalError(PString const &text)
{
    PString title = getStringResManager()->get(GSFatalCaption);
    MessageBoxA(nullptr, text, title, MB_TASKMODAL | MB_ICONHAND);
    ExitProcess(1);
}

void PWindow::warningError(PString const &text)
{
    PString title = getStringResManager()->get(GSWarningCaption);
    MessageBoxA(nullptr, text, title, MB_TASKMODAL | MB_ICONEXCLAMATION);
}

char *PWindow::getClassName()
{
    static char className[] = "PWindow";
    return className;
}

// No CS_DBLCLKS: a double click arrives as two button-down messages.
void PWindow::getWindowClass(tagWNDCLASSA &windowClass)
{
    windowClass.style = CS_VREDRAW | CS_HREDRAW;
    windowClass.lpfnWndProc = getDefaultProc();
    windowClass.cbClsExtra = 0;
    windowClass.cbWndExtra = 0;
    windowClass.hInstance = instanceOf(app);
    windowClass.hIcon = icon;
    windowClass.hCursor = cursor;
    windowClass.hbrBackground = background;
    windowClass.lpszMenuName = nullptr;
    windowClass.lpszClassName = getClassName();
}

void PWindow::setupWindow()
{
    PWindowObject::setupWindow();
    if (isMDIChild)
        SetFocus(hwnd);
    if (scroller)
        scroller->setPageSize();
}

void PWindow::onParentNotify(WPARAM wParam, LPARAM lParam)
{
    if (LOWORD(wParam) == WM_CREATE)
        findWinPtr(PHHwnd(reinterpret_cast<HWND>(lParam)));
}

int PWindow::create()
{
    HWND parentHandle = parent ? static_cast<HWND>(*parent) : nullptr;
    PWindowObject *self = this;
    if (getDefaultProc())
        theCreatedQueue.enQueue(self);
    if (!isMDIFrame || menu.handle()) {
        HWND created;
        if (parent && parent->isMDIFrame && isMDIChild) {
            mdiCreate.szClass = getClassName();
            mdiCreate.szTitle = caption;
            mdiCreate.hOwner = instanceOf(app);
            mdiCreate.x = x;
            mdiCreate.y = y;
            mdiCreate.cx = width;
            mdiCreate.cy = height;
            mdiCreate.style = style;
            mdiCreate.lParam = 0;
            if (parent->isMDIChildrenMaximized())
                mdiCreate.style |= WS_MAXIMIZE;
            created = reinterpret_cast<HWND>(
                SendMessageA(parent->getClientHWND(), WM_MDICREATE, 0, reinterpret_cast<LPARAM>(&mdiCreate)));
        } else {
            // A child's identifier travels where a top-level window's menu does.
            created = CreateWindowExA(exStyle, getClassName(), caption, style, x, y, width, height, parentHandle,
                                      menu.handle(), instanceOf(app), &creationParam);
        }
        if (created) {
            hwnd = created;
            if (!getDefaultProc())
                addWinPtr(this, created);
            GRect placed = PWindowObject::getWindowSize();
            height = truncateCoord(placed.height());
            width = truncateCoord(placed.width());
            setupWindow();
            return 1;
        }
    }
    if (getDefaultProc())
        theCreatedQueue.deQueue(self);
    return 0;
}

HINSTANCE PWindow::getAppInstance() const
{
    return instanceOf(app);
}

PWindowObject *PWindow::getWinPtr(PHHwnd const &handle)
{
    if (PWindowObject *bound = PWindowObject::getWinPtr(handle))
        return bound;
    PWindowObject *pending;
    if (!theCreatedQueue.deQueue(pending))
        return nullptr;
    addWinPtr(pending, handle);
    pending->hwnd = handle;
    return pending;
}

int PWindow::getId()
{
    return static_cast<int>(reinterpret_cast<INT_PTR>(menu.handle()));
}

void PWindow::setId(int id)
{
    if (MenuHandle *record = menu.record()) {
        record->handle = reinterpret_cast<HMENU>(static_cast<INT_PTR>(id));
        record->owned = 0;
    }
}

void PWindow::shutDownWindow()
{
    if (helpActive)
        WinHelpA(hwnd, nullptr, HELP_QUIT, 0);
    PWindowObject::shutDownWindow();
}

PWindowObject *PWindow::findWinPtr(PHHwnd const &handle)
{
    return getWinPtr(handle);
}

void PWindow::moveWindow(GPoint const &position)
{
    x = truncateCoord(position.getX());
    y = truncateCoord(position.getY());
    PWindowObject::moveWindow(position);
}

void PWindow::moveWindow(GPoint const &position, GPoint const &size)
{
    x = truncateCoord(position.getX());
    y = truncateCoord(position.getY());
    width = truncateCoord(size.getX());
    height = truncateCoord(size.getY());
    PWindowObject::moveWindow(position, size);
}

void PWindow::sizeWindow(GPoint const &size)
{
    width = truncateCoord(size.getX());
    height = truncateCoord(size.getY());
    PWindowObject::sizeWindow(size);
}

// Without a parent the stored placement is already in screen coordinates.
GRect PWindow::getWindowSize()
{
    if (isValidWindow())
        return PWindowObject::getWindowSize();
    GPoint topLeft(x, y);
    GPoint bottomRight(static_cast<double>(x) + width, static_cast<double>(y) + height);
    if (!parent)
        return GRect(topLeft, bottomRight);
    return GRect(parent->clientToScreen(topLeft), parent->clientToScreen(bottomRight));
}

void PWindow::repaint(GRect &area, int erase)
{
    if (isValidWindow())
        InvalidateRect(hwnd, area, erase);
}

void PWindow::repaint(int erase)
{
    if (isValidWindow())
        InvalidateRect(hwnd, nullptr, erase);
}

int PWindow::getCaptionSize() const
{
    return GetSystemMetrics(SM_CYCAPTION);
}

int PWindow::resizeEvent(GPoint const &size)
{
    clientRect = GRect(0, 0, size.getX(), size.getY());
    if (isValidWindow()) {
        RECT placed;
        GetWindowRect(hwnd, &placed);
        windowRect = GRect(placed);
        for (PWindowObject *child : children) {
            if (child && child->isValidWindow())
                child->resize();
        }
    }
    return 0;
}

void PWindow::setLocation(int x, int y)
{
    this->x = x;
    this->y = y;
}

void PWindow::setLocation(GPoint const &position)
{
    setLocation(truncateCoord(position.getX()), truncateCoord(position.getY()));
}

GPoint PWindow::getLocation()
{
    return GPoint(x, y);
}

// Height is stored before width; the names keep them apart.
void PWindow::setSize(int width, int height)
{
    this->width = width;
    this->height = height;
}

void PWindow::setSize(GPoint const &size)
{
    setSize(truncateCoord(size.getX()), truncateCoord(size.getY()));
}

void PWindow::updateWindow()
{
    if (isValidWindow())
        UpdateWindow(hwnd);
}

void PWindow::refreshMenus()
{
    if (isValidWindow())
        repaint(1);
}

void PWindow::setCursor(PCursor const &cursor)
{
    this->cursor = cursor;
    SetCursor(this->cursor);
}

PCursor PWindow::getCursor()
{
    return cursor;
}

void PWindow::hideCursor() const
{
    int count = ShowCursor(FALSE);
    while (count != -1)
        count = ShowCursor(count < -1);
}

void PWindow::showCursor() const
{
    int count = ShowCursor(TRUE);
    while (count != 0)
        count = ShowCursor(count < 1);
}

void PWindow::setMenu(PMenu const &menu)
{
    this->menu = menu;
    if (!isMDIChild && isValidWindow())
        SetMenu(hwnd, this->menu);
}

PMenu &PWindow::getMenu()
{
    return menu;
}

void PWindow::setIcon(PIcon const &icon)
{
    this->icon = icon;
}

void PWindow::setBackground(GBrush const &brush)
{
    background = brush;
    if (!isValidWindow())
        return;
    WNDCLASSA windowClass;
    if (GetClassInfoA(instanceOf(app), getClassName(), &windowClass))
        SetClassLongPtrA(hwnd, GCLP_HBRBACKGROUND, reinterpret_cast<LONG_PTR>(static_cast<HBRUSH>(background)));
}

GBrush PWindow::getBackground()
{
    return background;
}

PScroller *PWindow::getScroller()
{
    return scroller;
}

void PWindow::setScroller(PScroller *scroller)
{
    this->scroller = scroller;
    if (scroller) {
        scroller->setWindow(this);
        scroller->setPageSize();
    }
}

int PWindow::hScrollEvent(unsigned int code, int position)
{
    return scroller ? scroller->hScroll(static_cast<unsigned short>(code), position) : 0;
}

int PWindow::vScrollEvent(unsigned int code, int position)
{
    return scroller ? scroller->vScroll(static_cast<unsigned short>(code), position) : 0;
}

namespace {

// The left button has gone up, whether or not its up message was seen.
bool endsAutoScrolling(MSG const &msg)
{
    return msg.message == WM_LBUTTONUP || (msg.message == WM_MOUSEMOVE && !(msg.wParam & MK_LBUTTON));
}

} // namespace

// A busy loop with no wait, on purpose: the view moves as fast as the loop runs. WM_QUIT is
// dispatched like any other message here.
void PWindow::processAutoScrolling()
{
    if (!scroller || !scroller->autoModeOn())
        return;
    setMouseCapture();
    MSG msg = {};
    while (!endsAutoScrolling(msg)) {
        if (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&msg);
            DispatchMessageA(&msg);
        }
        scroller->autoScroll();
    }
    releaseMouseCapture();
}

int PWindow::startHelp(PString const &file, unsigned int command)
{
    helpActive = 1;
    return WinHelpA(hwnd, file, command, 0) ? 0 : -1;
}

int PWindow::helpContents(PString const &file)
{
    return startHelp(file, HELP_FINDER);
}

int PWindow::helpOnHelp(PString const &file)
{
    return startHelp(file, HELP_HELPONHELP);
}

int PWindow::helpOnHelp()
{
    return helpOnHelp(PString("winhelp.hlp"));
}

void PWindow::openDocument(PString const &path)
{
    ShellExecuteA(hwnd, "open", path, nullptr, nullptr, SW_HIDE);
}
