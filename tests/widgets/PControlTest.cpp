#include <gtest/gtest.h>

#include "support/ReadBack.h"
#include "support/TestApplication.h"
#include "widgets/ControlHost.h"
#include "windows/WindowProbes.h"

#include <iterator>
#include <string>

namespace {

// A control of a named class; with the library's window procedure it hears the marking message.
class NamedControl : public PControl {
public:
    NamedControl(PWindowObject *parent, int id, char const *className, int x, unsigned long extraStyle = 0)
        : PControl(parent, id, PString("start"), x, 10, 60, 40, nullptr), className(className)
    {
        style |= extraStyle;
        markRect = GRect(2, 2, 10, 10);
    }
    char *getClassName() override { return &className[0]; }
    // Owner drawing, reached through the parent's WM_DRAWITEM.
    void drawItem(tagDRAWITEMSTRUCT *item) override
    {
        drawnId = item->CtlID;
        HBRUSH blue = CreateSolidBrush(RGB(0, 0, 255));
        FillRect(item->hDC, &item->rcItem, blue);
        DeleteObject(blue);
    }
    void useLibraryProcedure() { defaultProc = PWindowProc; }

    std::string className;
    UINT drawnId = 0;
};

PControl *fakeControl(int index)
{
    return reinterpret_cast<PControl *>(static_cast<INT_PTR>(index + 1));
}

HFONT fontOf(HWND control)
{
    return reinterpret_cast<HFONT>(SendMessageA(control, WM_GETFONT, 0, 0));
}

} // namespace

TEST(PControl, UniqueIdsSkipRegisteredOnesWrapAndRunOut)
{
    TestApplication app;
    EXPECT_EQ(6501, PControl::getUniqueControlId());
    {
        PControl taken(nullptr, 6502, PString(), 0, 0, 10, 10, &app);
        EXPECT_EQ(&taken, PControl::getControlPtr(HashedId(6502)));
        EXPECT_EQ(6503, PControl::getUniqueControlId());
        // A copy is not registered, yet its destructor takes the original's entry out.
        { PControl copy(taken); }
        EXPECT_EQ(nullptr, PControl::getControlPtr(HashedId(6502)));
    }
    // Id 0 is never registered, and its destructor leaves an entry under 0 alone.
    HashedId zero(0);
    PControl::addControlPtr(fakeControl(0), zero);
    { PControl unnamed(nullptr, 0, PString(), 0, 0, 10, 10, &app); }
    EXPECT_EQ(fakeControl(0), PControl::getControlPtr(zero));
    PControl::removeControlPtr(zero);

    int id = 0;
    while ((id = PControl::getUniqueControlId()) != 11500)
        ASSERT_LT(id, 11500);
    EXPECT_EQ(6500, PControl::getUniqueControlId());
    // Every id taken: the fallback, not checked against the table.
    for (int i = 6500; i <= 11500; ++i) {
        HashedId key(i);
        PControl::addControlPtr(fakeControl(i), key);
    }
    EXPECT_EQ(100, PControl::getUniqueControlId());
    for (int i = 6500; i <= 11500; ++i)
        PControl::removeControlPtr(HashedId(i));
    EXPECT_EQ(nullptr, PControl::getControlPtr(HashedId(7000)));
}

TEST(PControl, TextFontsAndOwnerDrawingOnRealControls)
{
    ExpectNoLeaks leaks;
    TestApplication app;
    ControlHost *host = new ControlHost(&app);
    NamedControl *edit = new NamedControl(host, 7100, "EDIT", 10);
    NamedControl *button = new NamedControl(host, 7101, "BUTTON", 100, BS_OWNERDRAW);
    const GFont first(-12, PString("Arial"), GFont::Plain, 0, 0);
    const GFont second(-20, PString("Arial"), GFont::Bold, 0, 0);
    // Before the window exists the font given comes back, and waits for setupWindow.
    EXPECT_EQ(HFONT(first), HFONT(edit->setFont(first)));
    host->make();
    ASSERT_TRUE(edit->isValidWindow());
    EXPECT_EQ(7100, GetDlgCtrlID(*edit));
    EXPECT_EQ(edit, PControl::getControlPtr(HashedId(7100)));
    EXPECT_EQ(HFONT(first), fontOf(*edit));
    // On a live control the previous font comes back.
    EXPECT_EQ(HFONT(first), HFONT(edit->setFont(second)));
    EXPECT_EQ(HFONT(second), fontOf(*edit));

    edit->setText(PString("hello world"));
    EXPECT_EQ(11, edit->getTextLen());
    PString text;
    EXPECT_EQ(5, edit->getText(text, 6));
    EXPECT_STREQ("hello", text);
    edit->clear();
    EXPECT_EQ(0, GetWindowTextLengthA(*edit));

    EXPECT_EQ(7101u, button->drawnId);
    EXPECT_EQ(RGB(0, 0, 255), pixelAt(*button, 20, 15));

    // A control whose window has gone: no crash, nothing read.
    DestroyWindow(*edit);
    EXPECT_EQ(0, edit->getText(text, 10));
    EXPECT_EQ(PControl::DMBox, edit->setDisplayMode(PControl::DMBox));
    host->shutDownWindow();
    EXPECT_EQ(nullptr, PControl::getControlPtr(HashedId(7100)));
}

TEST(PControl, DisplayModesDrawTheirMarkOnRequest)
{
    ExpectNoLeaks leaks;
    TestApplication app;
    ControlHost *host = new ControlHost(&app);
    NamedControl *control = new NamedControl(host, 7200, "TeskWinMarkedControl", 10);
    control->useLibraryProcedure();
    control->setBackground(GBrush(GColor(255, 255, 255)));
    ASSERT_NE(0, control->registerWindow());
    host->make();
    ASSERT_TRUE(control->isValidWindow());
    auto mark = [control] { SendMessageA(*control, PM_DRAWMARK, 0, 0); };
    // Normal mode draws nothing.
    mark();
    EXPECT_EQ(probeWhite, pixelAt(*control, 5, 5));

    // The mark rectangle grown by one, XOR-filled with white through a black frame: the
    // inside inverts, the frame stays; a second message inverts it back.
    EXPECT_EQ(PControl::DMInvert, control->setDisplayMode(PControl::DMInvert));
    control->updateWindow();
    mark();
    EXPECT_EQ(RGB(0, 0, 0), pixelAt(*control, 2, 2));
    EXPECT_EQ(RGB(0, 0, 0), pixelAt(*control, 9, 9));
    EXPECT_EQ(probeWhite, pixelAt(*control, 1, 1));
    EXPECT_EQ(probeWhite, pixelAt(*control, 10, 10));
    mark();
    EXPECT_EQ(probeWhite, pixelAt(*control, 5, 5));
    // The same mode again does not repaint.
    control->setDisplayMode(PControl::DMInvert);
    EXPECT_FALSE(GetUpdateRect(*control, nullptr, FALSE));

    // The box: a red frame inside the client area, inset by 2 on the right.
    control->setDisplayMode(PControl::DMBox);
    control->updateWindow();
    mark();
    EXPECT_EQ(probeRed, pixelAt(*control, 30, 1));
    EXPECT_EQ(probeRed, pixelAt(*control, 1, 20));
    EXPECT_EQ(probeRed, pixelAt(*control, 58, 20));
    EXPECT_EQ(probeWhite, pixelAt(*control, 30, 20));
    host->shutDownWindow();
}

TEST(PScrollBar, EveryScrollEventMovesTheBarAndTellsTheParent)
{
    ExpectNoLeaks leaks;
    TestApplication app;
    ControlHost *host = new ControlHost(&app);
    PScrollBar *bar = new PScrollBar(host, 7300, 10, 10, 200, 0, 1, &app);
    PScrollBar *vertical = new PScrollBar(host, 7301, 250, 10, 0, 120, 0, &app);
    host->make();
    ASSERT_TRUE(bar->isValidWindow());
    RECT shape;
    GetWindowRect(*bar, &shape);
    EXPECT_EQ(GetSystemMetrics(SM_CYHSCROLL), shape.bottom - shape.top);
    GetWindowRect(*vertical, &shape);
    EXPECT_EQ(GetSystemMetrics(SM_CXVSCROLL), shape.right - shape.left);
    EXPECT_NE(0, GetWindowLongA(*vertical, GWL_STYLE) & SBS_VERT);
    int min = -1, max = -1;
    GetScrollRange(*bar, SB_CTL, &min, &max);
    EXPECT_EQ(0, min);
    EXPECT_EQ(100, max);

    // The platform sends WM_HSCROLL to the parent; the bar moves, then the parent hears of it.
    struct Step {
        WORD code;
        WORD thumb;
        int position;
    };
    const Step steps[] = {
        {SB_LINEDOWN, 0, 1}, {SB_PAGEDOWN, 0, 11}, {SB_LINEUP, 0, 10}, {SB_PAGEUP, 0, 0},
        {SB_PAGEUP, 0, 0},   {SB_BOTTOM, 0, 100},  {SB_TOP, 0, 0},     {SB_LINEDOWN, 0, 1},
        // The thumb travels in wParam but its handlers read lParam: the bar lands on the minimum.
        {SB_THUMBTRACK, 80, 0}, {SB_PAGEDOWN, 0, 10}, {SB_THUMBPOSITION, 60, 0}, {SB_ENDSCROLL, 0, 0},
    };
    for (Step const &step : steps) {
        SendMessageA(*host, WM_HSCROLL, MAKEWPARAM(step.code, step.thumb), reinterpret_cast<LPARAM>(HWND(*bar)));
        EXPECT_EQ(step.position, SendMessageA(*bar, SBM_GETPOS, 0, 0)) << "code " << step.code;
    }
    ASSERT_EQ(std::size(steps), host->commands.size());
    EXPECT_EQ(7300u, host->commands.back().wParam);
    EXPECT_EQ(HWND(*bar), host->commands.back().from);
    SendMessageA(*host, WM_VSCROLL, SB_LINEDOWN, reinterpret_cast<LPARAM>(HWND(*vertical)));
    EXPECT_EQ(1, vertical->getPosition());
    EXPECT_EQ(7301u, host->commands.back().wParam);

    // Positions are clamped to the range; deltaPos(0) only reads.
    bar->setRange(10, 20);
    bar->setPosition(50);
    EXPECT_EQ(20, bar->getPosition());
    EXPECT_EQ(20, bar->deltaPos(0));
    EXPECT_EQ(10, bar->deltaPos(-30));

    // A bar that already exists in the parent is attached by its id.
    HWND existing = CreateWindowExA(0, "SCROLLBAR", nullptr, WS_CHILD | WS_VISIBLE, 10, 60, 100, 16, *host,
                                    reinterpret_cast<HMENU>(7302), nullptr, nullptr);
    PScrollBar *attached = new PScrollBar(host, 7302, &app);
    EXPECT_EQ(existing, HWND(*attached));
    EXPECT_TRUE(attached->isValidWindow());
    EXPECT_EQ(attached, PControl::getControlPtr(HashedId(7302)));

    // A bar whose window has gone reads as position 0 and takes moves without harm.
    DestroyWindow(*bar);
    EXPECT_EQ(0, bar->deltaPos(5));
    bar->setPosition(3);
    EXPECT_EQ(1, bar->hScrollEvent(SB_LINEDOWN, 0));
    host->shutDownWindow();
}
