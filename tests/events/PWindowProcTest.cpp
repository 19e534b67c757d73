// The dispatch table, by what the handlers of real windows receive through PWindowProc.
#include "RecordingWindow.h"

#include <gtest/gtest.h>

#include <commctrl.h>
#include <shlobj.h>

#include <cstring>

namespace {

int countOf(EventLog const &log, std::string const &part)
{
    int count = 0;
    for (std::string const &line : log)
        count += line.find(part) != std::string::npos;
    return count;
}

class Dispatch : public RecordingFixture {
protected:
    Dispatch() : RecordingFixture("p") {}

    LRESULT send(PWindowObject *target, UINT message, WPARAM wParam, LPARAM lParam)
    {
        return SendMessageA(*target, message, wParam, lParam);
    }
    RecordingWindow *child(char const *name, int id)
    {
        RecordingWindow *made = new RecordingWindow(window, &app, log, name);
        made->testId = id;
        EXPECT_TRUE(made->create());
        return made;
    }
};

TEST_F(Dispatch, UnboundHandleGoesToTheDefaultProcedureAlone)
{
    HWND unbound = CreateWindowExA(0, RecordingWindow::className, "unbound", WS_OVERLAPPEDWINDOW, 0, 0, 50, 50,
                                   nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
    ASSERT_NE(unbound, nullptr);
    EXPECT_EQ(SendMessageA(unbound, WM_USER + 5, 1, 2), 0);
    EXPECT_EQ(SendMessageA(unbound, WM_SETTEXT, 0, reinterpret_cast<LPARAM>("set")), TRUE);
    DestroyWindow(unbound);
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(PGeneralProc(PEvent(nullptr, WM_CLOSE, 0, 0)), 1);
}

TEST_F(Dispatch, MouseRoutingLetsTheGeneralHandlerSwallowTheSpecificOne)
{
    EXPECT_EQ(send(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 7)), 0);
    EXPECT_EQ(log, (EventLog{"p:mouseEvent 5,7", "p:mouseLDownEvent 1 5,7", "p:processEvent 201"}));

    log.clear();
    window->answer("mouseLUpEvent", 1);
    EXPECT_EQ(send(window, WM_LBUTTONUP, 0, MAKELPARAM(6, 8)), 1);
    EXPECT_EQ(log, (EventLog{"p:mouseEvent 6,8", "p:mouseLUpEvent 0 6,8"}));

    log.clear();
    window->answer("mouseMoveEvent", 1);
    EXPECT_EQ(send(window, WM_MOUSEMOVE, MK_SHIFT, 0xFFFF0002), 0);
    EXPECT_EQ(log, (EventLog{"p:mouseEvent 2,65535", "p:mouseMoveEvent 2,65535 4", "p:processEvent 200"}));

    log.clear();
    EXPECT_EQ(send(window, WM_RBUTTONDBLCLK, MK_RBUTTON, MAKELPARAM(1, 1)), 0);
    EXPECT_EQ(log.at(1), "p:mouseRDClickEvent 2 1,1");

    log.clear();
    window->answer("mouseEvent", 1);
    EXPECT_EQ(send(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 7)), 1);
    EXPECT_EQ(send(window, WM_MOUSEMOVE, 0, 0), 1);
    EXPECT_EQ(log, (EventLog{"p:mouseEvent 5,7", "p:mouseEvent 0,0"}));
}

// Catches what the tooltip relay sends it.
class TipCatcher : public RecordingWindow {
public:
    using RecordingWindow::RecordingWindow;
    int processEvent(PEvent const &event) override
    {
        if (event.getMessage() == TTM_RELAYEVENT)
            relayed.push_back(*reinterpret_cast<MSG const *>(event.getLParam()));
        return 0;
    }
    std::vector<MSG> relayed;
};

TEST_F(Dispatch, MouseMessagesAreRelayedToTheTipWindowOnlyWithText)
{
    EventLog tipLog;
    TipCatcher *tip = new TipCatcher(nullptr, &app, tipLog, "tip");
    ASSERT_TRUE(tip->create());
    window->setTipWindow(tip);
    send(window, WM_MOUSEMOVE, 0, MAKELPARAM(3, 4));
    EXPECT_TRUE(tip->relayed.empty());

    window->setTipText("help");
    EXPECT_TRUE(window->getTipText() == "help");
    send(window, WM_MBUTTONUP, MK_SHIFT, MAKELPARAM(3, 4));
    send(window, WM_KEYUP, 0, 0);
    ASSERT_EQ(tip->relayed.size(), 1u);
    EXPECT_EQ(tip->relayed[0].hwnd, static_cast<HWND>(*window));
    EXPECT_EQ(tip->relayed[0].message, static_cast<UINT>(WM_MBUTTONUP));
    EXPECT_EQ(tip->relayed[0].wParam, static_cast<WPARAM>(MK_SHIFT));
    EXPECT_EQ(tip->relayed[0].lParam, MAKELPARAM(3, 4));
    tip->shutDownWindow();
}

TEST_F(Dispatch, CommandsFromMenusAndFromControlsTakeTheirOwnRoads)
{
    EXPECT_EQ(send(window, WM_COMMAND, 0x0042, 0), 0);
    EXPECT_EQ(log, (EventLog{"p:commandEvent 66", "p:processCommandEvent 66", "p:processEvent 111"}));

    RecordingWindow *button = child("c", 9);
    log.clear();
    EXPECT_EQ(send(window, WM_COMMAND, MAKEWPARAM(9, 3), reinterpret_cast<LPARAM>(static_cast<HWND>(*button))), 0);
    EXPECT_EQ(log, (EventLog{"c:onChildCommand 3", "p:notifyEvent 3 9", "p:processNotificationEvent 9",
                             "p:processCommandEvent 9", "p:processEvent 111"}));

    log.clear();
    button->answer("onChildCommand", 5);
    EXPECT_EQ(send(window, WM_COMMAND, MAKEWPARAM(9, 3), reinterpret_cast<LPARAM>(static_cast<HWND>(*button))), 0);
    EXPECT_EQ(log, (EventLog{"c:onChildCommand 3"}));

    log.clear();
    window->answer("processNotificationEvent", 1);
    EXPECT_EQ(send(window, WM_COMMAND, MAKEWPARAM(4, 1), 1), 1);
    EXPECT_EQ(log, (EventLog{"p:notifyEvent 1 4", "p:processNotificationEvent 4"}));
}

TEST_F(Dispatch, MoveAndSizeReadLParamSignedAndClaimOrProcess)
{
    window->answer("resizeEvent", 1);
    EXPECT_EQ(send(window, WM_SIZE, 0, 0xFFFF0010), 1);
    EXPECT_EQ(send(window, WM_MOVE, 0, MAKELPARAM(-20, 30)), 0);
    EXPECT_EQ(send(window, WM_TIMER, 1, 0), 0);
    EXPECT_EQ(log, (EventLog{"p:resizeEvent 16,-1", "p:moveEvent -20,30", "p:processEvent 3", "p:timerEvent",
                             "p:processEvent 113"}));
    log.clear();
    EXPECT_EQ(PGeneralProc(PEvent(window, WM_CREATE, 0, 0)), 0);
    EXPECT_TRUE(log.empty());
}

TEST_F(Dispatch, BroadcastReachesChildrenInOrderThenTheWindow)
{
    child("a", 1);
    child("b", 2);
    log.clear();
    window->answer("processEvent", 3);
    EXPECT_EQ(send(window, WM_SETTINGCHANGE, 0, 0), 3);
    EXPECT_EQ(log, (EventLog{"a:processEvent 1a", "b:processEvent 1a", "p:processEvent 1a"}));
    log.clear();
    send(window, WM_SYSCOLORCHANGE, 0, 0);
    EXPECT_EQ(log.size(), 3u);
}

TEST_F(Dispatch, ChildMessagesReachTheChildObjectFirst)
{
    RecordingWindow *list = child("l", 4);
    log.clear();
    EXPECT_EQ(send(window, WM_VKEYTOITEM, MAKEWPARAM(40, 2), reinterpret_cast<LPARAM>(static_cast<HWND>(*list))), 77);
    EXPECT_EQ(log, (EventLog{"l:vKeyToItem 40 2"}));

    log.clear();
    // Claimed with a result of 0, so that the default procedure runs all the same.
    EXPECT_EQ(send(window, WM_PARENTNOTIFY, WM_LBUTTONDOWN, 0), 0);
    EXPECT_TRUE(log.empty());

    // A menu item (id 0) is not routed.
    DRAWITEMSTRUCT item = {};
    EXPECT_EQ(send(window, WM_DRAWITEM, 0, reinterpret_cast<LPARAM>(&item)), 0);
    EXPECT_EQ(log, (EventLog{"p:processEvent 2b"}));
}

TEST_F(Dispatch, ScrollTellsAKnownControlFirstAndStillOffersTheParent)
{
    RecordingWindow *bar = child("s", 6);
    bar->answer("scrollEvent", 1);
    bar->answer("hScrollEvent", 1);
    log.clear();
    EXPECT_EQ(send(window, WM_HSCROLL, MAKEWPARAM(5, 0xFFFF), reinterpret_cast<LPARAM>(static_cast<HWND>(*bar))), 0);
    EXPECT_EQ(log, (EventLog{"s:scrollEvent 5", "s:hScrollEvent 5 -1", "p:scrollEvent 5", "p:hScrollEvent 5 -1",
                             "p:processEvent 114"}));
    log.clear();
    window->answer("vScrollEvent", 1);
    EXPECT_EQ(send(window, WM_VSCROLL, MAKEWPARAM(1, 3), 0), 1);
    EXPECT_EQ(log, (EventLog{"p:scrollEvent 1", "p:vScrollEvent 1 3"}));
}

TEST_F(Dispatch, SetCursorPostsWindowLeftOnceToALiveLastWindow)
{
    RecordingWindow *other = new RecordingWindow(nullptr, &app, log, "o");
    ASSERT_TRUE(other->create());
    gLastWindow = *window;
    log.clear();
    EXPECT_EQ(send(other, WM_SETCURSOR, reinterpret_cast<WPARAM>(static_cast<HWND>(*other)), HTCLIENT), 0);
    EXPECT_EQ(send(other, WM_SETCURSOR, reinterpret_cast<WPARAM>(static_cast<HWND>(*other)), HTCLIENT), 0);
    EXPECT_EQ(gLastWindow, static_cast<HWND>(*other));
    pumpMessages();
    EXPECT_EQ(countOf(log, "p:processEvent 502"), 1);

    // The last window is gone: nothing is posted, and the new one is remembered.
    HWND otherHandle = *other;
    other->shutDownWindow();
    pumpMessages();
    log.clear();
    send(window, WM_SETCURSOR, reinterpret_cast<WPARAM>(static_cast<HWND>(*window)), HTCLIENT);
    pumpMessages();
    EXPECT_EQ(gLastWindow, static_cast<HWND>(*window));
    EXPECT_FALSE(IsWindow(otherHandle));
    EXPECT_EQ(countOf(log, "502"), 0);
    gLastWindow = nullptr;
}

TEST_F(Dispatch, TooltipNotificationsAskForTextAndRaiseTheTip)
{
    window->setTipText("tip text");
    NMTTDISPINFOA request = {};
    request.hdr.hwndFrom = *window;
    request.hdr.idFrom = reinterpret_cast<UINT_PTR>(static_cast<HWND>(*window));
    request.hdr.code = TTN_NEEDTEXTA;
    EXPECT_EQ(send(window, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&request)), 0);
    EXPECT_STREQ(request.szText, "tip text");
    EXPECT_TRUE(log.empty());

    RecordingWindow *tip = new RecordingWindow(nullptr, &app, log, "t");
    ASSERT_TRUE(tip->create());
    NMHDR shown = {*tip, 0, static_cast<UINT>(TTN_SHOW)};
    send(window, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&shown));
    EXPECT_TRUE(GetWindowLongA(*tip, GWL_EXSTYLE) & WS_EX_TOPMOST);
    EXPECT_EQ(log.back(), "p:processEvent 4e");
    tip->shutDownWindow();
}

TEST_F(Dispatch, KeysGoToTheApplicationWhileCapturedAndHotKeysAlways)
{
    app.capturedKeyAnswer = 1;
    EXPECT_EQ(send(window, WM_KEYDOWN, 'A', 0), 0);
    EXPECT_TRUE(app.capturedKeys.empty());
    window->setMouseCapture();
    ASSERT_TRUE(window->isMouseCaptured());
    EXPECT_EQ(send(window, WM_KEYDOWN, 'B', 0), 1);
    window->releaseMouseCapture();
    EXPECT_EQ(app.capturedKeys, (std::vector<unsigned int>{'B'}));
    EXPECT_EQ(countOf(log, "p:processEvent 100"), 1);

    app.hotKeyAnswer = 9;
    EXPECT_EQ(send(window, WM_HOTKEY, 3, 0), 9);
    EXPECT_EQ(app.hotKeys, (std::vector<unsigned int>{3}));
}

// Takes dropped files and releases the drop, as a handler must.
class DropTarget : public RecordingWindow {
public:
    using RecordingWindow::RecordingWindow;
    int files = -1;

private:
    int dropEvent(HDROP drop, int fileCount) override
    {
        files = fileCount;
        DragFinish(drop);
        return 1;
    }
};

TEST_F(Dispatch, DroppedFilesAreCountedForTheDropHandler)
{
    EventLog dropLog;
    DropTarget *target = new DropTarget(nullptr, &app, dropLog, "d");
    ASSERT_TRUE(target->create());
    const char names[] = "C:\\a.txt\0C:\\b.txt\0";
    HGLOBAL block = GlobalAlloc(GHND, sizeof(DROPFILES) + sizeof names);
    auto *header = static_cast<DROPFILES *>(GlobalLock(block));
    header->pFiles = sizeof(DROPFILES);
    std::memcpy(header + 1, names, sizeof names);
    GlobalUnlock(block);
    EXPECT_EQ(send(target, WM_DROPFILES, reinterpret_cast<WPARAM>(block), 0), 1);
    EXPECT_EQ(target->files, 2);
    EXPECT_TRUE(dropLog.empty());
    target->shutDownWindow();
}

} // namespace
