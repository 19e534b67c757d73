// The polling loop, the end of an object with its loop, and events sent between objects.
#include "RecordingWindow.h"

#include "foundation/PNumerics.h"

#include <gtest/gtest.h>

namespace {

class EventLoops : public RecordingFixture {
protected:
    EventLoops() : RecordingFixture("w") {}
};

TEST_F(EventLoops, QuitEndsTheLoopWithItsCodeAndDeletesTheObject)
{
    PostQuitMessage(7);
    window->eventLoop();
    window = nullptr;
    EXPECT_EQ(log.back(), "w:deleted 7");
    EXPECT_TRUE(isExiting());
}

TEST_F(EventLoops, AnEmptyQueueRunsTheIdleActionOncePerStep)
{
    int steps = 0;
    for (; steps < 3; ++steps)
        EXPECT_EQ(window->eventLoopOnce(), 0);
    EXPECT_EQ(app.idleCount, 3);

    PostMessageA(*window, WM_USER + 1, 0, 0);
    EXPECT_EQ(window->eventLoopOnce(), 0);
    EXPECT_EQ(app.idleCount, 3);
    EXPECT_EQ(log, (EventLog{"w:processEvent 401"}));
}

// Deletes itself from inside its own loop when it gets WM_USER.
class SelfDeleting : public RecordingWindow {
public:
    using RecordingWindow::RecordingWindow;
    int processEvent(PEvent const &event) override
    {
        if (event.getMessage() == WM_USER) {
            deleteWindow(this);
            stateAfterDelete = loopState();
        }
        return RecordingWindow::processEvent(event);
    }
    int stateAfterDelete = -1;
    int *stateSeen = nullptr;
    ~SelfDeleting() override { *stateSeen = stateAfterDelete; }
};

TEST_F(EventLoops, ARunningLoopOutlivesDeleteWindowAndDeletesItsObjectAtTheEnd)
{
    int stateSeen = -1;
    SelfDeleting *self = new SelfDeleting(nullptr, &app, log, "s");
    self->stateSeen = &stateSeen;
    ASSERT_TRUE(self->create());
    app.mainWindow = self;
    app.setStatusCode(3);
    HWND handle = *self;
    PostMessageA(handle, WM_USER, 0, 0);
    self->eventLoop();
    DestroyWindow(handle);
    // Still alive after deleteWindow, with the stop on its way; the loop did the delete.
    EXPECT_EQ(stateSeen, 2);
    EXPECT_EQ(log.back(), "s:deleted 3");
    EXPECT_EQ(app.mainWindow, nullptr);
}

TEST_F(EventLoops, ClosingTheMainWindowEndsItsLoopAfterTheChildren)
{
    RecordingWindow *childWindow = new RecordingWindow(window, &app, log, "c");
    window->setupWindow();
    ASSERT_TRUE(childWindow->isValidWindow());
    app.mainWindow = window;
    app.setStatusCode(5);
    PostMessageA(*window, WM_CLOSE, 0, 0);
    window->eventLoop();
    window = nullptr;

    EventLog lifecycle;
    for (std::string const &line : log)
        if (line.find("processEvent") == std::string::npos)
            lifecycle.push_back(line);
    EXPECT_EQ(lifecycle, (EventLog{"w:closeEvent", "w:shutDownWindow", "c:shutDownWindow", "c:destroyEvent",
                                   "c:deleted 0", "w:destroyEvent", "w:deleted 5"}));
    EXPECT_EQ(app.exitAsked, 1);
}

TEST_F(EventLoops, SendingIsTestedOnTheSenderAndCarriesOnlyTheWords)
{
    EventLog otherLog;
    RecordingWindow *unbound = new RecordingWindow(nullptr, &app, otherLog, "u");
    unbound->sendEvent(window, PEvent(nullptr, WM_USER + 2, 0, 0));
    unbound->sendCommandEvent(window, 1, 0);
    unbound->postCommandEvent(window, 1, 0);
    pumpMessages();
    EXPECT_TRUE(log.empty());
    PWindowObject::deleteWindow(unbound);

    RecordingWindow *sender = new RecordingWindow(nullptr, &app, log, "x");
    ASSERT_TRUE(sender->create());
    pumpMessages();
    log.clear();
    sender->sendEvent(window, PEvent(nullptr, WM_USER + 2, 0, 0));
    sender->sendCommandEvent(window, 0x1234, 0);
    EXPECT_EQ(log, (EventLog{"w:processEvent 402", "w:commandEvent 4660", "w:processCommandEvent 4660",
                             "w:processEvent 111"}));
    log.clear();
    sender->sendEvent(nullptr, PEvent(nullptr, WM_USER + 4, 0, 0));
    sender->postEvent(window, PEvent(nullptr, WM_USER + 3, 0, 0));
    sender->postCommandEvent(window, 0x0055, 0);
    EXPECT_TRUE(log.empty());
    pumpMessages();
    EXPECT_EQ(log, (EventLog{"w:processEvent 403", "w:commandEvent 85", "w:processCommandEvent 85",
                             "w:processEvent 111"}));
    sender->shutDownWindow();
}

} // namespace
