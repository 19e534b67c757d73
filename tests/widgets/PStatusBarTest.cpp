#include <gtest/gtest.h>

#include "support/ReadBack.h"
#include "support/TestApplication.h"
#include "widgets/ControlHost.h"

#include <commctrl.h>

#include <string>
#include <vector>

namespace {

// The host is made first: the status window needs its parent's handle.
PStatusBar *madeStatusBar(ControlHost *host)
{
    host->make();
    PStatusBar *bar = new PStatusBar(host);
    PWindowObject *window = bar;
    EXPECT_EQ(1, window->create());
    return bar;
}

std::vector<int> partEdges(HWND bar)
{
    std::vector<int> edges(static_cast<std::size_t>(SendMessageA(bar, SB_GETPARTS, 0, 0)));
    SendMessageA(bar, SB_GETPARTS, edges.size(), reinterpret_cast<LPARAM>(edges.data()));
    return edges;
}

std::string partText(HWND bar, int part)
{
    char text[128] = {};
    SendMessageA(bar, SB_GETTEXTA, static_cast<WPARAM>(part), reinterpret_cast<LPARAM>(text));
    return text;
}

RECT placeIn(HWND window, HWND parent)
{
    RECT rect;
    GetWindowRect(window, &rect);
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT *>(&rect), 2);
    return rect;
}

} // namespace

TEST(PStatusBar, SectionsTextAndSimpleModeReadBackFromTheWindow)
{
    ExpectNoLeaks leaks;
    TestApplication app;
    ControlHost *host = new ControlHost(&app);
    PStatusBar *bar = madeStatusBar(host);
    ASSERT_TRUE(bar->isValidWindow());
    EXPECT_EQ(100, GetDlgCtrlID(*bar));

    bar->addSection(100);
    EXPECT_EQ(std::vector<int>{100}, partEdges(*bar));
    bar->addSection(50);
    EXPECT_EQ((std::vector<int>{100, 151}), partEdges(*bar));
    EXPECT_EQ(2, bar->numFields());
    RECT second = {};
    SendMessageA(*bar, SB_GETRECT, 1, reinterpret_cast<LPARAM>(&second));
    const GRect field = bar->getFieldSize(1);
    EXPECT_EQ(second.left, field.lVal());
    EXPECT_EQ(second.right, field.rVal());
    EXPECT_EQ(second.bottom - second.top, bar->getHeight());

    bar->write(PString("left"), 0);
    bar->write(PString("right"), 1);
    EXPECT_EQ("left", partText(*bar, 0));
    EXPECT_EQ("right", partText(*bar, 1));
    // A section past the last is the platform's to refuse.
    bar->write(PString("nowhere"), 7);
    EXPECT_EQ(2, bar->numFields());

    // In simple mode the section is ignored: the simple text is written, the sections keep theirs.
    bar->setSimple(1);
    bar->write(PString("simple"), 1);
    EXPECT_EQ("simple", partText(*bar, 0));
    bar->setSimple(0);
    EXPECT_EQ("left", partText(*bar, 0));
    EXPECT_EQ("right", partText(*bar, 1));

    const int before = bar->getHeight();
    bar->setHeight(before + 20);
    EXPECT_LT(before, bar->getHeight());
    bar->resize();
    EXPECT_EQ(nullptr, gStatusBar);

    // A bar whose window has gone has no fields.
    DestroyWindow(*bar);
    bar->addSection(10);
    EXPECT_EQ(0, bar->numFields());
    EXPECT_EQ(0.0, bar->getFieldSize(1).rVal());
    host->shutDownWindow();
}

TEST(PStatusBar, PercentDoneShowsAProgressBarInItsSection)
{
    ExpectNoLeaks leaks;
    TestApplication app;
    ControlHost *host = new ControlHost(&app);
    PStatusBar *bar = madeStatusBar(host);
    // A progress bar not yet made refuses its settings.
    PProgressBar *unmade = new PProgressBar(host);
    EXPECT_EQ(0, unmade->setRange(0, 10));
    EXPECT_EQ(0, unmade->setStep(2));

    // One section: the text is cleared at once; the bar stands at x 4 with its default width.
    EXPECT_EQ(0, bar->showPercentDone(10, PString("text")));
    ASSERT_NE(nullptr, app.progressBar);
    ASSERT_TRUE(app.progressBar->isValidWindow());
    EXPECT_EQ(bar, app.progressBar->getParent());
    EXPECT_EQ("", partText(*bar, 0));
    RECT placed = placeIn(*app.progressBar, *bar);
    EXPECT_EQ(4, placed.left);
    EXPECT_EQ(4, placed.top);
    EXPECT_EQ(100, placed.right - placed.left);
    EXPECT_EQ(10, SendMessageA(*app.progressBar, PBM_GETPOS, 0, 0));
    HWND progressWindow = *app.progressBar;
    bar->write(PString("again"), 0);
    bar->clearPercentDone();
    EXPECT_FALSE(IsWindow(progressWindow));
    EXPECT_EQ(0u, bar->getChildren().length());
    EXPECT_EQ("", partText(*bar, 0));
    // With no progress bar, section 0 is cleared all the same.
    bar->write(PString("again"), 0);
    bar->clearPercentDone();
    EXPECT_EQ("", partText(*bar, 0));

    // Two sections: the bar fills section 1, which is cleared; section 0 keeps the text.
    bar->addSection(100);
    bar->addSection(120);
    EXPECT_EQ(0, bar->showPercentDone(30, PString("working")));
    PProgressBar *progress = app.progressBar;
    const GRect field = bar->getFieldSize(1);
    placed = placeIn(*progress, *bar);
    EXPECT_EQ(field.lVal(), placed.left);
    EXPECT_EQ(field.width(), placed.right - placed.left);
    EXPECT_EQ("working", partText(*bar, 0));
    EXPECT_EQ("", partText(*bar, 1));
    EXPECT_EQ(30, SendMessageA(*progress, PBM_GETPOS, 0, 0));
    // Later calls move the bar and leave the text.
    EXPECT_EQ(0, bar->showPercentDone(70, PString("other")));
    EXPECT_EQ(70, SendMessageA(*progress, PBM_GETPOS, 0, 0));
    EXPECT_EQ("working", partText(*bar, 0));
    EXPECT_EQ(1, progress->step());
    EXPECT_EQ(71, SendMessageA(*progress, PBM_GETPOS, 0, 0));
    // Outside 0 to 100 the platform holds the bar at the end of its range.
    bar->showPercentDone(150, PString());
    EXPECT_EQ(100, SendMessageA(*progress, PBM_GETPOS, 0, 0));
    EXPECT_EQ(1, progress->setRange(0, 50));
    EXPECT_EQ(50, SendMessageA(*progress, PBM_GETRANGE, FALSE, 0));
    // The progress bar goes with the window tree when the status bar goes first.
    host->shutDownWindow();
}
