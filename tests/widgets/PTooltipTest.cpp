#include <gtest/gtest.h>

#include "support/ReadBack.h"
#include "support/TestApplication.h"
#include "widgets/ControlHost.h"
#include "windows/WindowProbes.h"

#include <commctrl.h>

#include <string>

namespace {

// A plain child window of the library's own class: its mouse messages pass the dispatcher.
class ChildPane : public PWindow {
public:
    ChildPane(PWindowObject *parent, int x, int y, int width, int height) : PWindow(parent, PString(), nullptr)
    {
        style = WS_CHILD | WS_VISIBLE;
        setLocation(x, y);
        setSize(width, height);
    }
    char *getClassName() override
    {
        static char name[] = "TeskWinChildPane";
        return name;
    }
};

} // namespace

TEST(PTooltip, AttachedToolShowsItsOwnTextWhenTheMouseRests)
{
    ExpectNoLeaks leaks;
    TestApplication app;
    ControlHost *host = new ControlHost(&app, 320, 240);
    // Away from the windows of other tests, which could stand under the cursor.
    host->setLocation(700, 500);
    ChildPane *container = new ChildPane(host, 0, 0, 300, 200);
    ChildPane *tool = new ChildPane(container, 40, 40, 80, 40);
    ChildPane *other = new ChildPane(container, 160, 40, 80, 40);
    ASSERT_NE(0, container->registerWindow());
    host->make();
    ASSERT_TRUE(tool->isValidWindow());

    PTooltip *tip = new PTooltip(container, 1);
    // A parent for getParent, but not one of its children.
    EXPECT_EQ(container, tip->getParent());
    EXPECT_EQ(2u, container->getChildren().length());
    EXPECT_EQ(1, static_cast<PWindowObject *>(tip)->create());
    ASSERT_TRUE(tip->isValidWindow());
    EXPECT_EQ(nullptr, GetParent(*tip));

    EXPECT_EQ(PString(), tool->getTipText());
    for (ChildPane *pane : {tool, other}) {
        pane->setTipWindow(tip);
        EXPECT_NE(0, tip->attachControl(pane));
    }
    tool->setTipText(PString("Tip of the tool"));
    other->setTipText(PString("Tip of the other"));
    EXPECT_EQ(2, SendMessageA(*tip, TTM_GETTOOLCOUNT, 0, 0));
    // The tool reports to the parent of the tooltip's parent and is named by its handle.
    TOOLINFOA info = {};
    info.cbSize = TTTOOLINFOA_V2_SIZE;
    info.hwnd = *host;
    info.uId = reinterpret_cast<UINT_PTR>(HWND(*tool));
    ASSERT_TRUE(SendMessageA(*tip, TTM_GETTOOLINFOA, 0, reinterpret_cast<LPARAM>(&info)));
    EXPECT_EQ(UINT(TTF_IDISHWND | TTF_CENTERTIP), info.uFlags & (TTF_IDISHWND | TTF_CENTERTIP));

    // The mouse rests on the tool: the move is relayed, and the tip asks for its text.
    SendMessageA(*tip, TTM_SETDELAYTIME, TTDT_INITIAL, 1);
    const GPoint centre = tool->clientToScreen(GPoint(40, 20));
    SetCursorPos(static_cast<int>(centre.xVal()), static_cast<int>(centre.yVal()));
    SendMessageA(*tool, WM_MOUSEMOVE, 0, MAKELPARAM(40, 20));
    const DWORD start = GetTickCount();
    while (!IsWindowVisible(*tip) && GetTickCount() - start < 3000) {
        pumpMessages();
        Sleep(10);
    }
    ASSERT_TRUE(IsWindowVisible(*tip));
    info.uId = 0;
    ASSERT_TRUE(SendMessageA(*tip, TTM_GETCURRENTTOOLA, 0, reinterpret_cast<LPARAM>(&info)));
    EXPECT_EQ(HWND(*tool), reinterpret_cast<HWND>(info.uId));
    char shown[100] = {};
    GetWindowTextA(*tip, shown, sizeof shown);
    EXPECT_STREQ("Tip of the tool", shown);
    // Shown in the topmost band.
    EXPECT_NE(0, GetWindowLongA(*tip, GWL_EXSTYLE) & WS_EX_TOPMOST);

    tip->shutDownWindow();
    host->shutDownWindow();
}
