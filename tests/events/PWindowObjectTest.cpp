// Window objects: the tree, the order of closing and deleting, coordinates and input.
#include "RecordingWindow.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class WindowObjects : public ::testing::Test {
protected:
    void SetUp() override
    {
        registerTestClass(app);
        window = new RecordingWindow(nullptr, &app, log, "p");
        window->testId = 1;
    }
    void TearDown() override
    {
        if (window)
            window->shutDownWindow();
        pumpMessages();
    }
    RecordingWindow *child(char const *name, int id)
    {
        RecordingWindow *made = new RecordingWindow(window, &app, log, name);
        made->testId = id;
        return made;
    }
    EventLog linesWith(std::string const &part) const
    {
        EventLog found;
        for (std::string const &line : log)
            if (line.find(part) != std::string::npos)
                found.push_back(line);
        return found;
    }

    TestApplication app;
    EventLog log;
    RecordingWindow *window = nullptr;
};

TEST_F(WindowObjects, TreeKeepsChildrenInOrderAndTheLastChildWraps)
{
    EXPECT_EQ(window->getFirstChild(), nullptr);
    EXPECT_EQ(window->getLastChild(), nullptr);
    RecordingWindow *a = child("a", 10);
    RecordingWindow *b = child("b", 20);
    RecordingWindow *c = child("c", 30);
    EXPECT_EQ(window->getChildren().length(), 3u);
    EXPECT_EQ(window->getFirstChild(), a);
    EXPECT_EQ(window->getLastChild(), a);
    EXPECT_EQ(window->childWithId(20), b);
    EXPECT_EQ(c->getParent(), window);
    EXPECT_EQ(c->getApp(), &app);

    // A child made with no application takes its parent's.
    RecordingWindow *orphanApp = new RecordingWindow(a, nullptr, log, "x");
    EXPECT_EQ(orphanApp->getApp(), &app);
    EXPECT_FALSE(orphanApp->isError());
}

TEST_F(WindowObjects, CreationMakesAutomaticChildrenAndRecordsAFailure)
{
    ASSERT_TRUE(window->create());
    RecordingWindow *a = child("a", 10);
    RecordingWindow *manual = child("m", 11);
    manual->disableAutoCreate();
    window->setupWindow();
    EXPECT_TRUE(a->isValidWindow());
    EXPECT_FALSE(manual->isValidWindow());
    EXPECT_FALSE(window->isError());
    EXPECT_EQ(GetDlgItem(*window, 10), static_cast<HWND>(*a));

    RecordingWindow *failing = child("f", 12);
    failing->created = 0;
    window->setupWindow();
    EXPECT_EQ(window->getError(), childrenError);
}

TEST_F(WindowObjects, RegistrationSkipsExistingClassesAndReportsAFailure)
{
    struct SystemClass : RecordingWindow {
        using RecordingWindow::RecordingWindow;
        char *getClassName() override { return const_cast<char *>(name.c_str()); }
        void getWindowClass(tagWNDCLASSA &windowClass) override
        {
            ++classAsked;
            RecordingWindow::getWindowClass(windowClass);
            windowClass.lpszClassName = getClassName();
        }
        int classAsked = 0;
    };
    SystemClass *scrollBar = new SystemClass(window, &app, log, "SCROLLBAR");
    EXPECT_EQ(scrollBar->registerWindow(), 1);
    EXPECT_EQ(window->registerWindow(), 1);
    EXPECT_EQ(scrollBar->classAsked, 0);

    SystemClass *tooLong = new SystemClass(window, &app, log, std::string(300, 'Q'));
    EXPECT_EQ(tooLong->registerWindow(), 0);
    EXPECT_EQ(tooLong->classAsked, 1);
    EXPECT_EQ(tooLong->getError(), registerClassError);
}

TEST_F(WindowObjects, ShutDownTakesChildrenFromLastToFirstBeforeThemselves)
{
    ASSERT_TRUE(window->create());
    child("a", 1);
    child("b", 2);
    RecordingWindow *c = child("c", 3);
    child("c1", 4)->setParent(c);
    window->setupWindow();
    EXPECT_EQ(window->getChildren().length(), 3u);
    EXPECT_EQ(c->getChildren().length(), 1u);
    HWND parentHandle = *window;

    window->shutDownWindow();
    window = nullptr;
    EXPECT_EQ(linesWith("shutDownWindow"), (EventLog{"p:shutDownWindow", "c:shutDownWindow", "c1:shutDownWindow",
                                                     "b:shutDownWindow", "a:shutDownWindow"}));
    EXPECT_EQ(linesWith("deleted"), (EventLog{"c1:deleted 0", "c:deleted 0", "b:deleted 0", "a:deleted 0",
                                              "p:deleted 0"}));
    EXPECT_FALSE(IsWindow(parentHandle));
}

TEST_F(WindowObjects, ClosingAsksTheApplicationForTheMainWindowAndChildrenOtherwise)
{
    ASSERT_TRUE(window->create());
    RecordingWindow *valid = child("v", 1);
    RecordingWindow *never = child("n", 2);
    never->created = 0;
    window->setupWindow();
    valid->answer("refuseClose", 1);
    never->answer("refuseClose", 1);

    // Not the main window: its own canClose asks the valid child only.
    EXPECT_EQ(SendMessageA(*window, WM_CLOSE, 0, 0), 1);
    EXPECT_EQ(linesWith("canClose"), (EventLog{"p:canClose", "v:canClose"}));
    EXPECT_TRUE(window->isValidWindow());

    app.mainWindow = window;
    app.exitAllowed = 0;
    EXPECT_EQ(SendMessageA(*window, WM_CLOSE, 0, 0), 1);
    EXPECT_EQ(app.exitAsked, 1);
    EXPECT_TRUE(window->isValidWindow());

    // Closing the main window posts the quit message with the application's status code.
    pumpMessages();
    app.exitAllowed = 1;
    app.setStatusCode(4);
    EXPECT_EQ(SendMessageA(*window, WM_CLOSE, 0, 0), 1);
    window = nullptr;
    EXPECT_EQ(app.mainWindow, nullptr);
    MSG msg;
    ASSERT_TRUE(PeekMessageA(&msg, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(msg.wParam, 4u);
    EXPECT_EQ(linesWith("deleted").size(), 3u);
}

TEST_F(WindowObjects, DeleteWindowWaitsForARunningLoopAndIgnoresAnEndingOne)
{
    int deletions = 0;
    window->deletions = &deletions;
    window->setLoopState(2);
    PWindowObject::deleteWindow(window);
    window->setLoopState(3);
    PWindowObject::deleteWindow(window);
    EXPECT_EQ(deletions, 0);

    window->setLoopState(1);
    PWindowObject::deleteWindow(window);
    EXPECT_EQ(window->loopState(), 2);
    EXPECT_EQ(deletions, 0);
    MSG msg;
    ASSERT_TRUE(PeekMessageA(&msg, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));

    window->setLoopState(0);
    PWindowObject::deleteWindow(window);
    window = nullptr;
    EXPECT_EQ(deletions, 1);
    PWindowObject::deleteWindow(nullptr);
}

TEST_F(WindowObjects, CoordinatesMapThroughTheScreen)
{
    EXPECT_EQ(window->getClientArea(), GRect());
    EXPECT_TRUE(window->getClientArea().isEmpty());
    ASSERT_TRUE(window->create());
    RecordingWindow *inner = child("i", 1);
    window->setupWindow();
    window->moveWindow(GPoint(100.9, 50.2), GPoint(400, 300));
    inner->moveWindow(GPoint(20, 30));
    inner->sizeWindow(GPoint(80.7, 60));

    RECT client;
    GetClientRect(*inner, &client);
    EXPECT_EQ(client.right, 80);
    GRect area = inner->getClientArea();
    EXPECT_EQ(area.rVal(), 80.0);
    EXPECT_EQ(area.bVal(), 60.0);

    POINT origin = {0, 0};
    ClientToScreen(*inner, &origin);
    EXPECT_EQ(inner->clientToScreen(GPoint(1.9, 2.9)), GPoint(origin.x + 1, origin.y + 2));
    EXPECT_EQ(inner->screenToClient(GPoint(origin.x + 5, origin.y + 6)), GPoint(5, 6));

    EXPECT_EQ(PWindowObject::mapWindowPoint(nullptr, nullptr, GPoint(1.25, 2.75)), GPoint(1.25, 2.75));
    // With a source, the destination is ignored and the result is on the screen.
    EXPECT_EQ(PWindowObject::mapWindowPoint(inner, window, GPoint(1.4, 2.6)), GPoint(origin.x + 1, origin.y + 3));
    EXPECT_EQ(PWindowObject::mapWindowPoint(nullptr, inner, GPoint(origin.x, origin.y)), GPoint(0, 0));

    EXPECT_EQ(inner->isIn(GPoint(10, 10)), 1);
    EXPECT_EQ(inner->isIn(GPoint(90, 10)), 0);

    GRect placement;
    int showCommand = -1;
    EXPECT_EQ(window->getWindowPlacement(&placement, &showCommand), 1);
    EXPECT_EQ(placement.lVal(), 100.0);
    EXPECT_EQ(placement.rVal(), 500.0);
    EXPECT_EQ(window->isMinimized(), 0);

    EXPECT_TRUE(PWindowObject::setCursorPosition(GPoint(origin.x + 3.8, origin.y + 4.2)));
    POINT cursor;
    GetCursorPos(&cursor);
    EXPECT_EQ(cursor.x, origin.x + 3);
}

TEST_F(WindowObjects, AppearanceAndInputActOnlyOnALiveWindow)
{
    window->setCaption("before");
    window->show(SW_SHOWNORMAL);
    EXPECT_EQ(app.shownCommand, SW_SHOWNORMAL);
    EXPECT_EQ(window->isVisible(), 0);

    ASSERT_TRUE(window->create());
    window->setCaption("after");
    char text[32] = {};
    GetWindowTextA(*window, text, sizeof text);
    EXPECT_STREQ(text, "after");
    window->hide();
    window->show(SW_SHOW);
    EXPECT_EQ(window->isVisible(), 1);
    window->disable();
    EXPECT_EQ(window->isEnabled(), 0);
    window->enable();
    EXPECT_EQ(window->isEnabled(), 1);

    RecordingWindow *edit = child("e", 1);
    window->setupWindow();
    EventLog idleLog;
    RecordingWindow *unbound = new RecordingWindow(nullptr, &app, idleLog, "u");
    SetFocus(*window);
    // The receiver decides: without a live window it gives the focus to no one.
    unbound->setFocus(edit);
    EXPECT_EQ(PWindowObject::getFocus(), window);
    window->setFocus(nullptr);
    EXPECT_EQ(PWindowObject::getFocus(), window);
    window->setFocus(edit);
    EXPECT_EQ(PWindowObject::getFocus(), edit);
    PWindowObject::deleteWindow(unbound);

    EXPECT_EQ(window->isMouseCaptured(), 0);
    window->setMouseCapture();
    EXPECT_EQ(window->isMouseCaptured(), 1);
    window->releaseMouseCapture();
    EXPECT_EQ(window->isMouseCaptured(), 0);
}

TEST_F(WindowObjects, CopiesShareTheHandleButOwnTheirTipText)
{
    ASSERT_TRUE(window->create());
    window->setTipText("first");
    RecordingWindow copy(*window);
    EXPECT_EQ(static_cast<HWND>(copy), static_cast<HWND>(*window));
    EXPECT_EQ(window->getChildren().length(), 0u);
    window->setTipText("second");
    EXPECT_TRUE(copy.getTipText() == "first");
    EXPECT_TRUE(window->getTipText() == "second");
    RecordingWindow assigned(nullptr, &app, log, "q");
    static_cast<PWindowObject &>(assigned) = copy;
    EXPECT_TRUE(assigned.getTipText() == "first");
    RecordingWindow plain(nullptr, &app, log, "r");
    static_cast<PWindowObject &>(assigned) = plain;
    EXPECT_TRUE(assigned.getTipText().isEmpty());
}

} // namespace
