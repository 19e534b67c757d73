// The dispatch with concrete windows: binding during creation, the colour route and the
// loop's accelerators.
#include "RecordingWindow.h"

#include "widgets/PMenu.h"
#include "widgets/PSysColorManager.h"
#include "windows/PWindow.h"

#include <gtest/gtest.h>

namespace {

// Notes, for each message it is offered, whether the handle already leads back to it.
class BindingProbe : public PWindow {
public:
    BindingProbe(PWindowObject *parent, PAppInterface *app) : PWindow(parent, "probe", app, 0) {}
    int processEvent(PEvent const &event) override
    {
        seen.push_back(event.getMessage());
        if (PWindowObject::getWinPtr(PHHwnd(static_cast<HWND>(*this))) != this || !isValidWindow())
            unbound.push_back(event.getMessage());
        return 0;
    }
    std::vector<unsigned int> seen;
    std::vector<unsigned int> unbound;
};

TEST(PWindowDispatch, TheFirstMessageOfANewWindowBindsItsObject)
{
    TestApplication app;
    BindingProbe *probe = new BindingProbe(nullptr, &app);
    ASSERT_TRUE(probe->registerWindow());
    ASSERT_TRUE(probe->create());
    EXPECT_TRUE(PWindow::theCreatedQueue.isEmpty());
    ASSERT_FALSE(probe->seen.empty());
    // Messages sent from inside CreateWindowExA already reach the object, bound.
    EXPECT_EQ(probe->seen.front(), static_cast<unsigned int>(WM_GETMINMAXINFO));
    EXPECT_NE(std::find(probe->seen.begin(), probe->seen.end(), WM_NCCREATE), probe->seen.end());
    EXPECT_TRUE(probe->unbound.empty());
    // WM_CREATE reaches no handler.
    EXPECT_EQ(std::find(probe->seen.begin(), probe->seen.end(), WM_CREATE), probe->seen.end());

    // A child is bound the same way, through the parent's handle lookup of its creation.
    BindingProbe *child = new BindingProbe(probe, &app);
    child->setSize(30, 20);
    ASSERT_TRUE(child->create());
    EXPECT_TRUE(child->isValidWindow());
    EXPECT_EQ(PWindowObject::getWinPtr(PHHwnd(static_cast<HWND>(*child))), child);
    probe->shutDownWindow();
}

TEST(PWindowDispatch, ASystemColourChangeGivesTheWindowTheFaceColourButNotItsChildren)
{
    TestApplication app;
    registerTestClass(app);
    PWindow *window = new PWindow(nullptr, "colours", &app, 0);
    ASSERT_TRUE(window->registerWindow());
    ASSERT_TRUE(window->create());
    EventLog log;
    RecordingWindow *child = new RecordingWindow(window, &app, log, "c");
    ASSERT_TRUE(child->create());
    PWindow *windowChild = new PWindow(window, "inner", &app, WS_CHILD);
    ASSERT_TRUE(windowChild->create());
    const GColor before = windowChild->getBackground().getBrushColor();

    SendMessageA(*window, WM_SYSCOLORCHANGE, 0, 0);
    PSysColorManager::update();
    EXPECT_TRUE(window->getBackground().getBrushColor() == PSysColorManager::getFace3D());
    EXPECT_TRUE(windowChild->getBackground().getBrushColor() == before);
    EXPECT_EQ(log, (EventLog{"c:processEvent 15"}));
    window->shutDownWindow();
}

// Takes the erasing over when told to, by the answer of processEvent.
class ErasingWindow : public PWindow {
public:
    explicit ErasingWindow(PAppInterface *app) : PWindow(nullptr, "erase", app, WS_VISIBLE) {}
    int processEvent(PEvent const &event) override { return event.getMessage() == WM_ERASEBKGND ? answer : 0; }
    int answer = 0;
};

TEST(PWindowDispatch, ErasingFillsTheUpdateRectangleWithTheBackgroundUnlessClaimedWithOne)
{
    TestApplication app;
    ErasingWindow *window = new ErasingWindow(&app);
    window->setSize(200, 150);
    ASSERT_TRUE(window->registerWindow());
    ASSERT_TRUE(window->create());
    window->setBackground(GBrush(GColor(255, 0, 0)));
    UpdateWindow(*window);
    HDC dc = GetDC(*window);
    const COLORREF red = RGB(255, 0, 0);
    auto erase = [&](RECT area) {
        ValidateRect(*window, nullptr);
        InvalidateRect(*window, &area, FALSE);
        return PGeneralProc(PEvent(window, WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc), 0));
    };

    window->answer = 1;
    EXPECT_EQ(erase(RECT{10, 10, 50, 50}), 1);
    EXPECT_NE(GetPixel(dc, 30, 30), red);
    // Any other answer, even another non-zero one, still paints: exactly the update rectangle.
    window->answer = 2;
    EXPECT_EQ(erase(RECT{10, 10, 50, 50}), 1);
    EXPECT_EQ(GetPixel(dc, 10, 10), red);
    EXPECT_EQ(GetPixel(dc, 49, 49), red);
    EXPECT_NE(GetPixel(dc, 50, 50), red);
    EXPECT_NE(GetPixel(dc, 9, 30), red);
    // One unit wide is the default procedure's; no update region at all is answered at once.
    EXPECT_EQ(erase(RECT{60, 10, 61, 50}), 0);
    ValidateRect(*window, nullptr);
    EXPECT_EQ(PGeneralProc(PEvent(window, WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc), 0)), 1);
    // The device context comes back as it was handed over.
    EXPECT_EQ(GetCurrentObject(dc, OBJ_PEN), GetStockObject(BLACK_PEN));
    ReleaseDC(*window, dc);
    window->shutDownWindow();
}

TEST(PWindowDispatch, TheLoopTranslatesAcceleratorsInsteadOfDispatchingTheKey)
{
    TestApplication app;
    registerTestClass(app);
    EventLog log;
    RecordingWindow *window = new RecordingWindow(nullptr, &app, log, "w");
    ASSERT_TRUE(window->create());
    ShowWindow(*window, SW_SHOW);
    pumpMessages();
    PAccel keys("EVENTSTESTKEYS", GetModuleHandleA(nullptr));
    app.accelerators = &keys;
    log.clear();

    PostMessageA(*window, WM_KEYDOWN, 'A', 0);
    PostMessageA(*window, WM_KEYDOWN, 'B', 0);
    for (int step = 0; step < 4; ++step)
        EXPECT_EQ(window->eventLoopOnce(), 0);
    EventLog seen;
    for (std::string const &line : log)
        if (line.find("ommand") != std::string::npos || line.find("processEvent 100") != std::string::npos)
            seen.push_back(line);
    // 'A' becomes command 100 from an accelerator (notification code 1); 'B' is dispatched.
    EXPECT_EQ(seen, (EventLog{"w:commandEvent 65636", "w:processCommandEvent 100", "w:processEvent 100"}));
    window->shutDownWindow();
}

} // namespace
