#include <gtest/gtest.h>

#include "support/ReadBack.h"
#include "support/TestApplication.h"
#include "windows/WindowProbes.h"

namespace {

TestApplication theApp;

class TestFrame : public PFrame {
public:
    TestFrame() : PFrame(PString("frame"), PString("TESTMENU"), &theApp)
    {
        setLocation(0, 0);
        setSize(400, 300);
    }
    using PFrame::eventLoopOnce;
    int processEvent(PEvent const &event) override
    {
        if (event.getMessage() == WM_SIZE)
            ++sizesSeen;
        if (event.getMessage() == WM_APP)
            ++appMessagesSeen;
        return PFrame::processEvent(event);
    }
    int sizesSeen = 0;
    int appMessagesSeen = 0;
};

class MDIChild : public PWindow {
public:
    explicit MDIChild(PWindowObject *frame) : PWindow(frame, PString("child"), &theApp)
    {
        setSize(120, 90);
    }
    char *getClassName() override
    {
        static char name[] = "TeskWinMDIChild";
        return name;
    }
    int canClose() override { return refuse ? 0 : PWindow::canClose(); }
    int mdiActivate() override
    {
        ++activations;
        if (closeOnActivate)
            shutDownWindow();
        return 0;
    }
    int mdiDeactivate() override
    {
        ++deactivations;
        return 0;
    }
    int processEvent(PEvent const &event) override
    {
        if (event.getMessage() == WM_PALETTECHANGED || event.getMessage() == WM_QUERYNEWPALETTE) {
            ++paletteEvents;
            return paletteAnswer;
        }
        return PWindow::processEvent(event);
    }
    int refuse = 0;
    int paletteEvents = 0;
    int paletteAnswer = 0;
    int closeOnActivate = 0;
    int activations = 0;
    int deactivations = 0;
};

TestFrame *createdFrame(int rightOffset = 0)
{
    TestFrame *frame = new TestFrame;
    frame->setROffset(rightOffset);
    EXPECT_NE(0, frame->registerWindow());
    EXPECT_EQ(1, frame->create());
    return frame;
}

RECT clientRect(HWND window)
{
    RECT rect;
    GetClientRect(window, &rect);
    return rect;
}

} // namespace

TEST(PFrame, TheMDIClientKeepsInsideItsOffsets)
{
    TestFrame *frame = createdFrame();
    HWND client = frame->getClientHWND();
    ASSERT_TRUE(IsWindow(client));
    char className[32] = {};
    GetClassNameA(client, className, sizeof className);
    EXPECT_STRCASEEQ("MDICLIENT", className);
    EXPECT_EQ(1, GetDlgCtrlID(client));
    EXPECT_TRUE(GetWindowLongPtrA(*frame, GWL_EXSTYLE) & WS_EX_ACCEPTFILES);
    EXPECT_EQ(0u, GetClassLongA(*frame, GCL_STYLE));

    const RECT area = clientRect(*frame);
    RECT placed = placementIn(*frame, client);
    EXPECT_EQ(0, placed.left);
    EXPECT_EQ(area.right, placed.right);
    EXPECT_EQ(area.bottom, placed.bottom);
    EXPECT_EQ(clientRect(client).right, frame->getWorkspaceArea().rVal());
    EXPECT_EQ(clientRect(client).bottom, frame->getWorkspaceArea().bVal());

    // The left offset moves the client and narrows it.
    frame->setLOffset(10);
    placed = placementIn(*frame, client);
    EXPECT_EQ(10, placed.left);
    EXPECT_EQ(area.right - 10, placed.right - placed.left);
    // The right offset widens it, unmoved. Deliberate.
    frame->setROffset(10);
    placed = placementIn(*frame, client);
    EXPECT_EQ(10, placed.left);
    EXPECT_EQ(area.right, placed.right - placed.left);

    // WM_SIZE fits the client and never reaches processEvent.
    frame->setLOffset(0);
    frame->setROffset(0);
    EXPECT_EQ(1, SendMessageA(*frame, WM_SIZE, 0, MAKELPARAM(150, 100)));
    EXPECT_EQ(0, frame->sizesSeen);
    placed = placementIn(*frame, client);
    EXPECT_EQ(150, placed.right - placed.left);
    EXPECT_EQ(100, placed.bottom - placed.top);
    frame->shutDownWindow();

    // A resize adds the right offset, while making the client takes all four off. Deliberate.
    TestFrame *narrowed = createdFrame(10);
    const int width = clientRect(*narrowed).right;
    placed = placementIn(*narrowed, narrowed->getClientHWND());
    EXPECT_EQ(width + 10, placed.right - placed.left);
    narrowed->initClientWindow();
    placed = placementIn(*narrowed, narrowed->getClientHWND());
    EXPECT_EQ(width - 10, placed.right - placed.left);
    narrowed->shutDownWindow();
}

TEST(PFrame, ChildrenTileAndCascadeIntoTheWorkspace)
{
    ExpectNoLeaks leaks;
    TestFrame *frame = createdFrame();
    EXPECT_EQ(1, frame->isMDIChildrenMaximized());
    MDIChild *first = created(new MDIChild(frame));
    // With no active child the first one opens maximised, and becomes the active one.
    EXPECT_TRUE(IsZoomed(*first));
    EXPECT_EQ(first, frame->getActiveChild());
    EXPECT_EQ(1, first->activations);
    MDIChild *second = created(new MDIChild(frame));
    EXPECT_EQ(second, frame->getActiveChild());
    EXPECT_GE(first->deactivations, 1);
    SendMessageA(frame->getClientHWND(), WM_MDIRESTORE, reinterpret_cast<WPARAM>(static_cast<HWND>(*second)), 0);
    EXPECT_EQ(0, frame->isMDIChildrenMaximized());

    PList<PWindowObject *> children = frame->getMDIChildren();
    ASSERT_EQ(2u, children.length());
    EXPECT_EQ(first, children(0));
    EXPECT_EQ(second, children(1));

    // Tiled, the two children share the workspace without overlapping.
    frame->tileChildren();
    HWND client = frame->getClientHWND();
    const RECT workspace = clientRect(client);
    const RECT a = placementIn(client, *first);
    const RECT b = placementIn(client, *second);
    RECT overlap;
    EXPECT_FALSE(IntersectRect(&overlap, &a, &b));
    RECT both;
    UnionRect(&both, &a, &b);
    EXPECT_TRUE(EqualRect(&both, &workspace)) << both.left << "," << both.top << "," << both.right << "," << both.bottom;
    EXPECT_EQ((a.right - a.left) * (a.bottom - a.top) + (b.right - b.left) * (b.bottom - b.top),
              workspace.right * workspace.bottom);

    // Cascaded, one stands at the origin and the other one step down the diagonal.
    frame->cascadeChildren();
    const RECT c = placementIn(client, *first);
    const RECT d = placementIn(client, *second);
    const RECT &upper = c.left < d.left ? c : d;
    const RECT &lower = c.left < d.left ? d : c;
    EXPECT_EQ(0, upper.left);
    EXPECT_EQ(0, upper.top);
    EXPECT_GT(lower.left, 0);
    EXPECT_EQ(lower.left - upper.left, lower.top - upper.top);
    frame->arrangeIcons();

    frame->shutDownWindow();
}

TEST(PFrame, ActivationFollowsTheChildrenAndForgetsClosedOnes)
{
    ExpectNoLeaks leaks;
    TestFrame *frame = createdFrame();
    MDIChild *first = created(new MDIChild(frame));
    MDIChild *second = created(new MDIChild(frame));
    HWND client = frame->getClientHWND();

    const int activations = first->activations;
    const int deactivations = second->deactivations;
    SendMessageA(client, WM_MDIACTIVATE, reinterpret_cast<WPARAM>(static_cast<HWND>(*first)), 0);
    EXPECT_EQ(first, frame->getActiveChild());
    EXPECT_GT(first->activations, activations);
    EXPECT_GT(second->deactivations, deactivations);

    // The active child closes: the frame does not keep it.
    first->shutDownWindow();
    EXPECT_EQ(second, frame->getActiveChild());

    // A child that closes while it is being activated.
    MDIChild *third = created(new MDIChild(frame));
    SendMessageA(client, WM_MDIACTIVATE, reinterpret_cast<WPARAM>(static_cast<HWND>(*second)), 0);
    HWND thirdHandle = *third;
    third->closeOnActivate = 1;
    SendMessageA(client, WM_MDIACTIVATE, reinterpret_cast<WPARAM>(thirdHandle), 0);
    EXPECT_FALSE(IsWindow(thirdHandle));
    EXPECT_NE(static_cast<PWindow *>(third), frame->getActiveChild());
    EXPECT_EQ(1u, frame->getMDIChildren().length());

    frame->shutDownWindow();
}

TEST(PFrame, ClosingChildrenHeedsRefusalsOnlyForOneApplication)
{
    PAppInterface *previous = getApplication();
    TestFrame *frame = createdFrame();
    MDIChild *willing = created(new MDIChild(frame));
    MDIChild *refusing = created(new MDIChild(frame));
    refusing->refuse = 1;
    (void)willing;

    setApplication(&theApp);
    EXPECT_EQ(1, frame->closeChildren());
    ASSERT_EQ(1u, frame->getMDIChildren().length());
    EXPECT_EQ(refusing, frame->getMDIChildren()(0));

    TestApplication corvantis;
    corvantis.appName = PString("Corvantis");
    setApplication(&corvantis);
    EXPECT_EQ(0, frame->closeChildren());
    setApplication(nullptr);
    EXPECT_EQ(0, frame->closeChildren());
    setApplication(previous);

    refusing->refuse = 0;
    EXPECT_EQ(1, frame->closeChildren());
    EXPECT_EQ(0u, frame->getMDIChildren().length());
    EXPECT_EQ(nullptr, frame->getActiveChild());
    // The palette goes to the active child, and there is none.
    EXPECT_EQ(0, SendMessageA(*frame, WM_QUERYNEWPALETTE, 0, 0));
    frame->shutDownWindow();
}

TEST(PFrame, PaletteMessagesGoToTheChildren)
{
    TestFrame *frame = createdFrame();
    MDIChild *first = created(new MDIChild(frame));
    MDIChild *second = created(new MDIChild(frame));
    first->paletteAnswer = 1;
    second->paletteAnswer = 4;
    HWND other = frame->getClientHWND();

    // Every child hears of a change made by another window; the answers are ORed.
    EXPECT_EQ(5, SendMessageA(*frame, WM_PALETTECHANGED, 0, reinterpret_cast<LPARAM>(other)));
    EXPECT_EQ(1, first->paletteEvents);
    EXPECT_EQ(1, second->paletteEvents);
    // A change named by the frame in lParam reaches nobody.
    EXPECT_EQ(0, SendMessageA(*frame, WM_PALETTECHANGED, 0, reinterpret_cast<LPARAM>(static_cast<HWND>(*frame))));
    EXPECT_EQ(1, first->paletteEvents);

    // A new palette is the active child's to realise.
    ASSERT_EQ(second, frame->getActiveChild());
    EXPECT_EQ(4, SendMessageA(*frame, WM_QUERYNEWPALETTE, 0, 0));
    EXPECT_EQ(1, first->paletteEvents);
    EXPECT_EQ(2, second->paletteEvents);
    frame->shutDownWindow();
}

TEST(PFrame, LoopStepDropsMessagesWithoutAMainWindow)
{
    TestFrame *frame = createdFrame();
    pumpMessages();
    auto stepUntilTaken = [&](UINT message) {
        MSG msg;
        for (int step = 0; step < 50 && PeekMessageA(&msg, nullptr, message, message, PM_NOREMOVE); ++step)
            frame->eventLoopOnce();
        return !PeekMessageA(&msg, nullptr, message, message, PM_NOREMOVE);
    };
    theApp.setMainWindow(nullptr);
    PostMessageA(*frame, WM_APP, 0, 0);
    EXPECT_TRUE(stepUntilTaken(WM_APP));
    EXPECT_EQ(0, frame->appMessagesSeen);

    theApp.setMainWindow(frame);
    PostMessageA(*frame, WM_APP, 0, 0);
    EXPECT_TRUE(stepUntilTaken(WM_APP));
    EXPECT_EQ(1, frame->appMessagesSeen);

    // WM_QUIT ends the step and leaves the status code alone.
    frame->setStatusCode(2);
    PostThreadMessageA(GetCurrentThreadId(), WM_QUIT, 7, 0);
    int ended = 0;
    for (int step = 0; step < 50 && !ended; ++step)
        ended = frame->eventLoopOnce();
    EXPECT_EQ(1, ended);
    EXPECT_EQ(2, frame->getStatusCode());

    theApp.setMainWindow(nullptr);
    frame->shutDownWindow();
}
