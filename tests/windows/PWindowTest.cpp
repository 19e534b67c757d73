#include <gtest/gtest.h>

#include "TeskWin.h"
#include "support/FakeMessageBox.h"
#include "support/ImportPatch.h"
#include "support/ReadBack.h"
#include "support/TestApplication.h"
#include "widgets/TestResources.h"
#include "windows/WindowProbes.h"

#include <string>

namespace {

// The message boxes' captions come from the program's string table.
TestApplication theApp = [] {
    TestApplication app;
    app.translateKey(GSFatalCaption, IDS_FATAL_CAPTION);
    app.translateKey(GSWarningCaption, IDS_WARNING_CAPTION);
    return app;
}();

class TestWindow : public PWindow {
public:
    TestWindow(PWindowObject *parent, unsigned long style = WS_VISIBLE)
        : PWindow(parent, PString("test window"), &theApp, style)
    {
    }
    explicit TestWindow(PString const &menuName) : PWindow(PString("menu window"), menuName, &theApp) {}

    char *getClassName() override
    {
        static char name[] = "TeskWinTestWindow";
        return name;
    }

    int storedWidth() const { return width; }
    int storedHeight() const { return height; }
    unsigned long storedStyle() const { return style; }
    int foreign() const { return isForeign; }
    void makeMDIFrame() { isMDIFrame = 1; }
    GRect const &lastClientRect() const { return clientRect; }

    // Counts the events that reach the object, from the first message of its window on.
    int processEvent(PEvent const &event) override
    {
        if (!createReturned)
            ++eventsDuringCreate;
        return PWindow::processEvent(event);
    }

    int create() override
    {
        int created = PWindow::create();
        createReturned = true;
        return created;
    }

    int eventsDuringCreate = 0;
    bool createReturned = false;
};

// A window of its own class, created and registered, at (x, y) with the given size.
TestWindow *createdWindow(int width = 120, int height = 80)
{
    TestWindow *window = new TestWindow(nullptr, WS_VISIBLE);
    window->setLocation(30, 40);
    window->setSize(width, height);
    return created(window);
}

RECT screenRect(HWND window)
{
    RECT rect = {};
    GetWindowRect(window, &rect);
    return rect;
}

// The window stands at (left, top) with that size on the screen, and its fields hold the size.
void expectPlacement(TestWindow &window, int left, int top, int width, int height)
{
    const RECT rect = screenRect(window);
    EXPECT_EQ(left, rect.left);
    EXPECT_EQ(top, rect.top);
    EXPECT_EQ(width, rect.right - rect.left);
    EXPECT_EQ(height, rect.bottom - rect.top);
    EXPECT_EQ(width, window.storedWidth());
    EXPECT_EQ(height, window.storedHeight());
}

} // namespace

TEST(PWindow, CreationBindsTheQueuedObject)
{
    // Wider than the platform's least width of a captioned window.
    TestWindow *window = createdWindow(300, 50);
    HWND handle = *window;
    ASSERT_NE(nullptr, handle);
    // Bound by the first message, long before CreateWindowExA returned.
    EXPECT_GT(window->eventsDuringCreate, 0);
    EXPECT_EQ(window, PWindowObject::getWinPtr(PHHwnd(handle)));
    EXPECT_EQ(1, window->isValidWindow());
    EXPECT_TRUE(PWindow::theCreatedQueue.isEmpty());

    expectPlacement(*window, 30, 40, 300, 50);

    // The class: no CS_DBLCLKS, so a double click arrives as two button-downs.
    EXPECT_EQ(static_cast<DWORD>(CS_HREDRAW | CS_VREDRAW), GetClassLongA(handle, GCL_STYLE));
    EXPECT_EQ(reinterpret_cast<ULONG_PTR>(LoadCursorA(nullptr, IDC_ARROW)), GetClassLongPtrA(handle, GCLP_HCURSOR));
    EXPECT_EQ(reinterpret_cast<ULONG_PTR>(LoadIconA(nullptr, IDI_APPLICATION)), GetClassLongPtrA(handle, GCLP_HICON));

    window->shutDownWindow();
    EXPECT_FALSE(IsWindow(handle));
}

TEST(PWindow, DefaultPlacementIsReadBack)
{
    TestWindow *window = created(new TestWindow(nullptr));
    RECT rect = screenRect(*window);
    EXPECT_NE(static_cast<int>(CW_USEDEFAULT), window->storedWidth());
    EXPECT_EQ(rect.right - rect.left, window->storedWidth());
    EXPECT_EQ(rect.bottom - rect.top, window->storedHeight());
    window->shutDownWindow();
}

TEST(PWindow, FailedCreationLeavesTheQueueAsItWas)
{
    TestWindow *frame = new TestWindow(nullptr);
    ASSERT_NE(0, frame->registerWindow());
    frame->makeMDIFrame();
    EXPECT_EQ(0, frame->create());
    EXPECT_TRUE(PWindow::theCreatedQueue.isEmpty());
    EXPECT_EQ(nullptr, static_cast<HWND>(*frame));

    // An unregistered class: the platform refuses.
    PWindow *unregistered = new PWindow(nullptr, PString("x"), &theApp);
    EXPECT_EQ(0, unregistered->create());
    EXPECT_TRUE(PWindow::theCreatedQueue.isEmpty());
    PWindowObject::deleteWindow(unregistered);
    PWindowObject::deleteWindow(frame);
}

TEST(PWindow, ConstructorsChooseStyles)
{
    TestWindow plain(nullptr, 0);
    EXPECT_EQ(static_cast<unsigned long>(WS_OVERLAPPEDWINDOW), plain.storedStyle());
    TestWindow withMenu(PString("TESTMENU"));
    EXPECT_EQ(static_cast<unsigned long>(WS_VISIBLE | WS_OVERLAPPEDWINDOW), withMenu.storedStyle());
    EXPECT_EQ(1, withMenu.getMenu().isValid());
}

TEST(PWindow, ChildIdentifierTravelsInTheMenuRecord)
{
    TestWindow *parent = new TestWindow(nullptr);
    TestWindow *child = new TestWindow(parent, WS_CHILD | WS_VISIBLE);
    child->setId(7);
    EXPECT_EQ(7, child->getId());
    EXPECT_EQ(reinterpret_cast<HMENU>(7), static_cast<HMENU>(child->getMenu()));
    child->setSize(20, 10);
    child->setLocation(5, 6);

    ASSERT_NE(0, parent->registerWindow());
    // The parent's setupWindow creates the child.
    ASSERT_EQ(1, parent->create());
    HWND childHandle = *child;
    ASSERT_NE(nullptr, childHandle);
    EXPECT_EQ(7, GetDlgCtrlID(childHandle));
    EXPECT_EQ(static_cast<HWND>(*parent), GetParent(childHandle));
    EXPECT_EQ(child, PWindowObject::getWinPtr(PHHwnd(childHandle)));

    // Not valid any more: the stored placement through the parent's client coordinates.
    TestWindow *described = new TestWindow(parent, WS_CHILD);
    described->disableAutoCreate();
    described->setLocation(5, 6);
    described->setSize(20, 10);
    GPoint origin = parent->clientToScreen(GPoint(5, 6));
    GRect placed = described->getWindowSize();
    EXPECT_EQ(static_cast<double>(origin.getX()), static_cast<double>(placed.lVal()));
    EXPECT_EQ(static_cast<double>(origin.getY()), static_cast<double>(placed.tVal()));
    EXPECT_EQ(20.0, static_cast<double>(placed.width()));
    EXPECT_EQ(10.0, static_cast<double>(placed.height()));

    parent->shutDownWindow();
    EXPECT_FALSE(IsWindow(childHandle));
}

TEST(PWindow, ParentNotifyBindsAPendingChild)
{
    TestWindow *parent = createdWindow();
    HWND child = CreateWindowExA(0, "STATIC", "child", WS_CHILD, 0, 0, 10, 10, *parent, nullptr, nullptr, nullptr);
    TestWindow *pending = new TestWindow(nullptr);
    PWindowObject *queued = pending;
    PWindow::theCreatedQueue.enQueue(queued);

    parent->onParentNotify(WM_DESTROY, reinterpret_cast<LPARAM>(child));
    EXPECT_FALSE(PWindow::theCreatedQueue.isEmpty());
    parent->onParentNotify(MAKEWPARAM(WM_CREATE, 3), reinterpret_cast<LPARAM>(child));
    EXPECT_TRUE(PWindow::theCreatedQueue.isEmpty());
    EXPECT_EQ(pending, PWindowObject::getWinPtr(PHHwnd(child)));
    EXPECT_EQ(child, static_cast<HWND>(*pending));

    SetWindowLongPtrA(child, GWLP_USERDATA, 0);
    DestroyWindow(child);
    delete pending;
    parent->shutDownWindow();
}

namespace {

// The colour at (3, 3) of a window's client area, as it stands on the screen.
COLORREF pixelOf(HWND window)
{
    const PlatformPixels copy(1, 1, RGB(0, 0, 0));
    HDC dc = GetDC(window);
    BitBlt(copy, 0, 0, 1, 1, dc, 3, 3, SRCCOPY);
    ReleaseDC(window, dc);
    return copy.pixel(0, 0);
}

} // namespace

TEST(PWindow, SecondWindowKeepsTheClassBrushUntilSetBackground)
{
    TestWindow *first = createdWindow();
    TestWindow *second = new TestWindow(nullptr);
    second->setBackground(GBrush(GColor(255, 0, 0)));
    ASSERT_NE(0, second->registerWindow());
    ASSERT_EQ(1, second->create());
    ULONG_PTR original = GetClassLongPtrA(*first, GCLP_HBRBACKGROUND);
    EXPECT_NE(0u, original);
    EXPECT_EQ(original, GetClassLongPtrA(*second, GCLP_HBRBACKGROUND));
    // The class keeps the first window's brush, but each window erases with its own.
    UpdateWindow(*second);
    EXPECT_EQ(RGB(255, 0, 0), pixelOf(*second));
    EXPECT_NE(RGB(255, 0, 0), pixelOf(*first));

    GBrush blue(GColor(0, 0, 255));
    second->setBackground(blue);
    ULONG_PTR changed = GetClassLongPtrA(*first, GCLP_HBRBACKGROUND);
    EXPECT_NE(original, changed);
    EXPECT_EQ(changed, GetClassLongPtrA(*second, GCLP_HBRBACKGROUND));

    second->shutDownWindow();
    first->shutDownWindow();
}

TEST(PWindow, MovesAndSizes)
{
    TestWindow *window = createdWindow();
    window->moveWindow(GPoint(50.9, 60.2), GPoint(150.7, 90.1));
    expectPlacement(*window, 50, 60, 150, 90);

    window->moveWindow(GPoint(70, 80));
    window->sizeWindow(GPoint(210, 55));
    expectPlacement(*window, 70, 80, 210, 55);
    EXPECT_EQ(GPoint(70, 80), window->getLocation());

    // After create, the setters only store.
    window->setLocation(GPoint(1.9, 2.9));
    window->setSize(GPoint(33, 44));
    EXPECT_EQ(GPoint(1, 2), window->getLocation());
    EXPECT_EQ(70, screenRect(*window).left);
    GRect live = window->getWindowSize();
    EXPECT_EQ(210.0, static_cast<double>(live.width()));

    EXPECT_EQ(GetSystemMetrics(SM_CYCAPTION), window->getCaptionSize());
    EXPECT_EQ(0, window->resizeEvent(GPoint(12, 34)));
    EXPECT_EQ(12.0, static_cast<double>(window->lastClientRect().rVal()));
    EXPECT_EQ(34.0, static_cast<double>(window->lastClientRect().bVal()));
    window->shutDownWindow();
}

TEST(PWindow, CursorCountAndCursor)
{
    TestWindow window(nullptr);
    while (ShowCursor(TRUE) < 3) {
    }
    window.hideCursor();
    EXPECT_EQ(0, ShowCursor(TRUE));
    while (ShowCursor(FALSE) > -5) {
    }
    window.showCursor();
    EXPECT_EQ(1, ShowCursor(TRUE));
    ShowCursor(FALSE);

    // Set at once, with no window.
    window.setCursor(PCursor(cursorWait));
    EXPECT_EQ(LoadCursorA(nullptr, IDC_WAIT), GetCursor());
    EXPECT_EQ(1, window.getCursor() == PCursor(cursorWait));
}

TEST(PWindow, MenuOfATopLevelWindow)
{
    TestWindow *window = created(new TestWindow(PString("TESTMENU")));
    HMENU loaded = window->getMenu();
    ASSERT_NE(nullptr, loaded);
    EXPECT_EQ(loaded, GetMenu(*window));

    PMenu other;
    other.create();
    other.addString(PString("only"), 5);
    window->setMenu(other);
    EXPECT_EQ(static_cast<HMENU>(other), GetMenu(*window));
    EXPECT_EQ(other, window->getMenu());
    window->refreshMenus();
    window->updateWindow();
    window->shutDownWindow();
}

TEST(PWindow, AutoScrollingWithoutScrollerCapturesNothing)
{
    TestWindow *window = createdWindow();
    EXPECT_EQ(nullptr, window->getScroller());
    window->processAutoScrolling();
    EXPECT_EQ(nullptr, GetCapture());
    window->shutDownWindow();
}

namespace {

struct HelpCall {
    HWND window = nullptr;
    std::string file;
    UINT command = 0;
    bool nullFile = false;
    int calls = 0;
    BOOL answer = TRUE;
} lastHelp;

BOOL WINAPI fakeWinHelpA(HWND window, char const *file, UINT command, ULONG_PTR)
{
    lastHelp.window = window;
    lastHelp.nullFile = file == nullptr;
    lastHelp.file = file ? file : "";
    lastHelp.command = command;
    ++lastHelp.calls;
    return lastHelp.answer;
}

struct ShellCall {
    HWND window = nullptr;
    std::string verb;
    std::string file;
    int show = -1;
} lastShell;

HINSTANCE WINAPI fakeShellExecuteA(HWND window, char const *verb, char const *file, char const *, char const *, INT show)
{
    lastShell.window = window;
    lastShell.verb = verb ? verb : "";
    lastShell.file = file ? file : "";
    lastShell.show = show;
    return reinterpret_cast<HINSTANCE>(2);
}

} // namespace

TEST(PWindow, HelpNeverReachesThePlatformsHelp)
{
    ImportPatch help("TeskWin.dll", "user32.dll", "WinHelpA", reinterpret_cast<void *>(fakeWinHelpA));
    ASSERT_TRUE(help.isActive());
    TestWindow *window = createdWindow();

    lastHelp.answer = FALSE;
    EXPECT_EQ(-1, window->helpContents(PString("app.hlp")));
    EXPECT_EQ("app.hlp", lastHelp.file);
    EXPECT_EQ(static_cast<UINT>(HELP_FINDER), lastHelp.command);
    EXPECT_EQ(static_cast<HWND>(*window), lastHelp.window);

    lastHelp.answer = TRUE;
    EXPECT_EQ(0, window->helpOnHelp());
    EXPECT_EQ("winhelp.hlp", lastHelp.file);
    EXPECT_EQ(static_cast<UINT>(HELP_HELPONHELP), lastHelp.command);
    EXPECT_EQ(0, window->helpOnHelp(PString("other.hlp")));
    EXPECT_EQ("other.hlp", lastHelp.file);

    // Help was used: closing the window quits it.
    window->shutDownWindow();
    EXPECT_EQ(4, lastHelp.calls);
    EXPECT_EQ(static_cast<UINT>(HELP_QUIT), lastHelp.command);
    EXPECT_TRUE(lastHelp.nullFile);

    TestWindow *quiet = createdWindow();
    quiet->shutDownWindow();
    EXPECT_EQ(4, lastHelp.calls);
}

TEST(PWindow, OpenDocumentGoesToTheShell)
{
    ImportPatch shell("TeskWin.dll", "shell32.dll", "ShellExecuteA", reinterpret_cast<void *>(fakeShellExecuteA));
    ASSERT_TRUE(shell.isActive());
    TestWindow *window = createdWindow();
    window->openDocument(PString("C:\\no such folder\\letter.txt"));
    EXPECT_EQ("open", lastShell.verb);
    EXPECT_EQ("C:\\no such folder\\letter.txt", lastShell.file);
    EXPECT_EQ(0, lastShell.show);
    EXPECT_EQ(static_cast<HWND>(*window), lastShell.window);
    window->shutDownWindow();
}

namespace {

// Ends the calling thread instead of the process.
void WINAPI fakeExitProcess(UINT code)
{
    ExitThread(code);
}

DWORD WINAPI callFatalError(void *window)
{
    static_cast<PWindow *>(window)->fatalError(PString("It is over"));
    return 99;
}

} // namespace

TEST(PWindow, FatalErrorShowsABoxAndEndsWithOne)
{
    FakeMessageBox box;
    ImportPatch exit("TeskWin.dll", "kernel32.dll", "ExitProcess", reinterpret_cast<void *>(fakeExitProcess));
    ASSERT_TRUE(box.isActive());
    ASSERT_TRUE(exit.isActive());
    TestWindow *window = createdWindow();

    HANDLE thread = CreateThread(nullptr, 0, callFatalError, window, 0, nullptr);
    ASSERT_NE(nullptr, thread);
    ASSERT_EQ(WAIT_OBJECT_0, WaitForSingleObject(thread, 10000));
    DWORD code = 0;
    GetExitCodeThread(thread, &code);
    CloseHandle(thread);
    EXPECT_EQ(1u, code);
    EXPECT_EQ("It is over", FakeMessageBox::last.text);
    EXPECT_EQ("Test fatal", FakeMessageBox::last.caption);
    EXPECT_EQ(static_cast<UINT>(MB_TASKMODAL | MB_ICONHAND), FakeMessageBox::last.style);
    // No owner, although the window is valid.
    EXPECT_EQ(nullptr, FakeMessageBox::last.owner);
    window->shutDownWindow();
}

namespace {

struct WarningSeen {
    bool pressed = false;
    bool hasOnlyOk = false;
} warningSeen;

BOOL CALLBACK pressOkOnWarning(HWND box, LPARAM)
{
    char title[64] = {};
    GetWindowTextA(box, title, sizeof title);
    if (std::string(title) != "Test warning")
        return TRUE;
    warningSeen.hasOnlyOk = GetDlgItem(box, IDOK) && !GetDlgItem(box, IDCANCEL);
    warningSeen.pressed = true;
    PostMessageA(box, WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED), reinterpret_cast<LPARAM>(GetDlgItem(box, IDOK)));
    return FALSE;
}

void CALLBACK findWarning(HWND, UINT, UINT_PTR timer, DWORD)
{
    EnumThreadWindows(GetCurrentThreadId(), pressOkOnWarning, 0);
    if (warningSeen.pressed)
        KillTimer(nullptr, timer);
}

} // namespace

TEST(PWindow, WarningErrorShowsATaskModalBoxAndReturns)
{
    TestWindow window(nullptr);
    ASSERT_NE(0u, SetTimer(nullptr, 0, 50, findWarning));
    window.warningError(PString("Careful"));
    EXPECT_TRUE(warningSeen.pressed);
    EXPECT_TRUE(warningSeen.hasOnlyOk);
}

TEST(PWindow, WrapsAHostWindow)
{
    TestWindow *host = createdWindow();
    HWND hostChild = CreateWindowExA(0, "STATIC", "host child", WS_CHILD | WS_VISIBLE, 0, 0, 10, 10, *host,
                                     nullptr, nullptr, nullptr);
    ASSERT_NE(nullptr, hostChild);
    {
        PWindow wrapped(hostChild, &theApp);
        EXPECT_EQ(hostChild, static_cast<HWND>(wrapped));
        EXPECT_EQ(host, wrapped.getParent());
        EXPECT_EQ(1, host->getChildren().find(&wrapped) >= 0);
        // Not bound: the host keeps the window's user data.
        EXPECT_EQ(0, wrapped.isValidWindow());
        EXPECT_EQ(nullptr, wrapped.getDefaultProc());
    }
    EXPECT_EQ(0u, host->getChildren().length());

    // An unknown parent gets an object of its own, which goes with the wrapper.
    HWND loneParent = CreateWindowExA(0, "STATIC", "lone parent", WS_POPUP, 0, 0, 40, 40, nullptr, nullptr,
                                      nullptr, nullptr);
    HWND loneChild = CreateWindowExA(0, "STATIC", "lone child", WS_CHILD, 0, 0, 10, 10, loneParent, nullptr,
                                     nullptr, nullptr);
    PWindow *wrapped = new PWindow(loneChild, &theApp);
    PWindowObject *madeParent = wrapped->getParent();
    ASSERT_NE(nullptr, madeParent);
    EXPECT_EQ(loneParent, static_cast<HWND>(*madeParent));
    EXPECT_EQ(nullptr, madeParent->getParent());
    EXPECT_EQ(1u, madeParent->getChildren().length());
    PWindowObject::deleteWindow(wrapped);

    // Not a window: an unattached object.
    PWindow nothing(reinterpret_cast<HWND>(0x1234), &theApp);
    EXPECT_EQ(nullptr, static_cast<HWND>(nothing));
    EXPECT_EQ(nullptr, nothing.getParent());

    DestroyWindow(loneParent);
    DestroyWindow(hostChild);
    host->shutDownWindow();
}
