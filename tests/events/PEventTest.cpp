// Event records read against real messages, and the error mix-in.
#include "RecordingWindow.h"

#include "foundation/IErrorMessage.h"

#include <gtest/gtest.h>

namespace {

class EventRecords : public RecordingFixture {
protected:
    EventRecords() : RecordingFixture("w") {}
    void SetUp() override
    {
        RecordingFixture::SetUp();
        MoveWindow(*window, 100, 120, 300, 200, TRUE);
    }
};

TEST_F(EventRecords, LocationIsTheCursorInClientOrScreenCoordinates)
{
    SetCursorPos(250, 260);
    // A posted message carries the cursor position of its moment.
    PostMessageA(*window, WM_NULL, 0, 0);
    MSG msg;
    ASSERT_TRUE(PeekMessageA(&msg, *window, WM_NULL, WM_NULL, PM_REMOVE));
    POINT client = {250, 260};
    ScreenToClient(*window, &client);

    const PEvent inClient(window, WM_NULL, 0, 0);
    EXPECT_EQ(inClient.getLocation(), GPoint(client.x, client.y));
    EXPECT_EQ(inClient.getTime(), static_cast<unsigned int>(GetMessageTime()));
    const PEvent onScreen(nullptr, WM_NULL, 0, 0);
    EXPECT_EQ(onScreen.getLocation(), GPoint(250, 260));

    PEvent copy(onScreen);
    copy = inClient;
    EXPECT_EQ(copy.getWindow(), window);
    EXPECT_EQ(copy.getLocation(), inClient.getLocation());
}

TEST_F(EventRecords, MouseTakesLParamUnsignedWhileLocatorKeepsTheCursor)
{
    const PEvent event(window, WM_MOUSEMOVE, 8, static_cast<long>(0xFFFFFFFF));
    const PMouseEvent mouse(event);
    const PLocatorEvent locator(event);
    EXPECT_EQ(mouse.getLocation(), GPoint(65535, 65535));
    EXPECT_EQ(locator.getLocation(), event.getLocation());
    EXPECT_EQ(PLocatorEvent(window, WM_MOUSEMOVE, 0u, 0x00070003).getLocation(), GPoint(3, 7));

    EXPECT_EQ(locator.isControlKeyDown(), 8u);
    EXPECT_EQ(mouse.isControlKeyDown(), 8u);
    EXPECT_EQ(mouse.isLeftButtonDown(), 0u);
    const PMouseEvent all(window, WM_LBUTTONDOWN, 0x1Fu, 0);
    EXPECT_EQ(all.isLeftButtonDown() + all.isRightButtonDown() + all.isShiftKeyDown() + all.isMiddleButtonDown(),
              1u + 2u + 4u + 16u);
}

TEST_F(EventRecords, SynthesisedLocatorKeepsTheFullPointAndTruncatesLParam)
{
    const PLocatorEvent event(window, WM_LBUTTONDOWN, GPoint(12.75, -3.5), 4242, 1, 1, 1, 0, 1);
    EXPECT_EQ(event.getWParam(), 8u | 4u | 1u | 0x10u);
    EXPECT_EQ(event.getLParam(), static_cast<long>(0xFFFD000C));
    EXPECT_EQ(event.getTime(), 4242u);
    EXPECT_EQ(event.getLocation(), GPoint(12.75, -3.5));
    const PMouseEvent mouse(window, WM_RBUTTONUP, GPoint(1, 2), 7, 0, 0, 0, 1, 0);
    EXPECT_EQ(mouse.getWParam(), 2u);
    EXPECT_EQ(mouse.getLParam(), 0x00020001);
}

TEST_F(EventRecords, KeyboardCommandNotifyAndScrollReadTheirWords)
{
    const PKeyboardEvent key(window, WM_KEYDOWN, 0x141u, static_cast<long>(0xC12A0003));
    EXPECT_EQ(key.getChar(), 0x41);
    EXPECT_EQ(key.getVirtualKey(), 0x141u);
    EXPECT_EQ(key.getRepeatCount(), 3);
    EXPECT_EQ(key.getScanCode(), 0x2A);
    EXPECT_EQ(key.isExtendedKey(), 0x1000000);
    EXPECT_EQ(key.wasKeyDown(), 0x40000000);
    EXPECT_EQ(key.isBeingPressed(), 0);
    EXPECT_EQ(PKeyboardEvent(window, WM_KEYDOWN, 0u, 1).isBeingPressed(), 1);

    const PCommandEvent command(window, WM_COMMAND, 0xABCD1234u, 0);
    EXPECT_EQ(command.getCommandId(), 0x1234);
    EXPECT_EQ(command.PEvent::getCommandId(), 0x1234u);

    const PNotifyEvent notify(window, WM_COMMAND, 0x00050009u, 0);
    EXPECT_EQ(notify.getMessageId(), 5u);
    EXPECT_EQ(notify.getControlId(), 9u);
    EXPECT_EQ(notify.getControl(), nullptr);
    const PNotifyEvent fromWindow(window, WM_COMMAND, 0u, reinterpret_cast<LPARAM>(static_cast<HWND>(*window)));
    EXPECT_EQ(fromWindow.getControl(), window);

    const PScrollEvent scroll(window, WM_HSCROLL, 0xFFFF0005u, 0);
    EXPECT_EQ(scroll.getScrollPos(), -1);
    EXPECT_EQ(scroll.getScrollCode(), 5u);
    EXPECT_EQ(scroll.isHorizontal(), 1);
    EXPECT_EQ(scroll.isVertical(), 0);
    EXPECT_EQ(scroll.isControl(), 0);
}

TEST_F(EventRecords, RelativeScrollPositionIsReadFromTheWindowsBar)
{
    SetWindowLongA(*window, GWL_STYLE, GetWindowLongA(*window, GWL_STYLE) | WS_HSCROLL | WS_VSCROLL);
    SetScrollRange(*window, SB_HORZ, 0, 100, FALSE);
    SetScrollRange(*window, SB_VERT, 0, 100, FALSE);
    SetScrollPos(*window, SB_HORZ, 30, FALSE);
    SetScrollPos(*window, SB_VERT, 60, FALSE);
    EXPECT_EQ(PScrollEvent(window, WM_HSCROLL, 0u, 0).getScrollPosRelative(), 30);
    EXPECT_EQ(PScrollEvent(window, WM_VSCROLL, 0u, 0).getScrollPosRelative(), 60);
    EXPECT_EQ(PScrollEvent(window, WM_NULL, 0u, 0).getScrollPosRelative(), 30);

    HWND bar = CreateWindowExA(0, "SCROLLBAR", "", WS_CHILD | SBS_HORZ, 0, 0, 100, 16, *window, nullptr,
                               GetModuleHandleA(nullptr), nullptr);
    ASSERT_NE(bar, nullptr);
    SetScrollRange(bar, SB_CTL, 0, 50, FALSE);
    SetScrollPos(bar, SB_CTL, 20, FALSE);
    RecordingWindow *control = new RecordingWindow(window, &app, log, "bar");
    control->bind(bar);
    // For a control the event's own window is read, so it must be the control itself.
    EXPECT_EQ(PScrollEvent(control, WM_NULL, 0u, reinterpret_cast<LPARAM>(bar)).getScrollPosRelative(), 20);
    EXPECT_EQ(PScrollEvent(window, WM_HSCROLL, 0u, reinterpret_cast<LPARAM>(bar)).getControl(), control);
}

TEST(PErrorRecord, RecordsWithoutLoggingAndWarnsThroughTheLog)
{
    PError error;
    EXPECT_FALSE(error.isError());
    error.reportError(noError);
    EXPECT_FALSE(error.isError());
    EXPECT_EQ(error.getStatusCode(), 0);

    clearErrorLog();
    error.reportError(registerClassError);
    EXPECT_TRUE(error.isError());
    EXPECT_EQ(error.getError(), registerClassError);
    EXPECT_EQ(getErrorLogCount(), 0);

    error.setStatusCode(7);
    PError copy(error);
    EXPECT_EQ(copy.getStatusCode(), 7);
    EXPECT_EQ(copy.getError(), registerClassError);

    error.warningError("careful");
    ASSERT_EQ(getErrorLogCount(), 1);
    EXPECT_TRUE(getErrorLogEntry(0)->getText() == "careful");
    EXPECT_EQ(getErrorLogEntry(0)->getType(), warningErrorMessage);
}

struct OnePaint : PRespond {
    int paintEvent(GContext &) override { return 42; }
    using PRespond::paintEvent;
};

TEST(PRespondDefaults, TwoArgumentPaintReachesTheOneArgumentOverride)
{
    OnePaint respond;
    // The context is only passed on, never read, so any storage stands in for one.
    alignas(16) char contextStorage[256] = {};
    GRect area(1, 2, 3, 4);
    EXPECT_EQ(respond.paintEvent(*reinterpret_cast<GContext *>(contextStorage), area), 42);
    LRESULT result = 5;
    EXPECT_EQ(respond.processChildEvent(PEvent(nullptr, WM_NULL, 0, 0), &result), 0);
    EXPECT_EQ(result, 5);
}

} // namespace
