// RecordingWindow.h - window objects that record what reaches them.
//
//   RecordingWindow  a PWindowObject on a real window of the class "EventsTestWindow", run by
//                    PWindowProc; every handler appends a line to a shared log
#pragma once

#include "support/TestApplication.h"
#include "events/PWindowObject.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

using EventLog = std::vector<std::string>;

class RecordingWindow : public PWindowObject {
public:
    static const char *const className;

    RecordingWindow(PWindowObject *parent, PAppInterface *app, EventLog &log, std::string name);
    ~RecordingWindow() override;

    char *getClassName() override { return const_cast<char *>(className); }
    void getWindowClass(tagWNDCLASSA &windowClass) override;
    // A child window for a parent with a window, else a top-level one; bound once created.
    int create() override;
    int getId() override { return testId; }

    int processEvent(PEvent const &event) override;
    int processCommandEvent(PEvent const &event) override;
    int processNotificationEvent(PEvent const &event) override;
    int timerEvent() override;
    int resizeEvent(GPoint const &size) override;
    int moveEvent(GPoint const &position) override;
    int hScrollEvent(unsigned int code, int position) override;
    int vScrollEvent(unsigned int code, int position) override;
    int scrollEvent(PScrollEvent const &event) override;
    int mouseEvent(PMouseEvent const &event) override;
    int notifyEvent(PNotifyEvent const &event) override;
    int commandEvent(PCommandEvent const &event) override;
    int mouseMoveEvent(GPoint const &position, unsigned short flags) override;
    int mouseLDownEvent(unsigned short flags, GPoint const &position) override;
    int mouseLUpEvent(unsigned short flags, GPoint const &position) override;
    int mouseRDClickEvent(unsigned short flags, GPoint const &position) override;
    int closeEvent(PEvent const &event) override;
    int destroyEvent(PEvent const &event) override;
    int canClose() override;
    void shutDownWindow() override;
    int onChildCommand(unsigned int notification) override;
    int vKeyToItem(unsigned int key, unsigned int caret) override;

    // The answer of the handler of that name ("mouseEvent", "processEvent" ...); 0 unless set.
    void answer(std::string const &handler, int value);
    int answerOf(std::string const &handler) const;

    using PWindowObject::eventLoop;
    using PWindowObject::eventLoopOnce;
    int loopState() const { return eventLoopState; }
    void setLoopState(int state) { eventLoopState = state; }
    void bind(HWND handle);

    std::string name;
    int testId = 0;
    int created = 1;
    int *deletions = nullptr;

private:
    void record(std::string const &line);

    EventLog &log;
    std::vector<std::pair<std::string, int>> answers;
};

// Registers the test class once.
void registerTestClass(TestApplication &app);
// Sends every queued message of the thread to its window.
void pumpMessages();

// A fixture with one created top-level RecordingWindow, its log emptied.
class RecordingFixture : public ::testing::Test {
protected:
    explicit RecordingFixture(char const *windowName) : windowName(windowName) {}
    void SetUp() override
    {
        registerTestClass(app);
        pumpMessages();
        window = new RecordingWindow(nullptr, &app, log, windowName);
        ASSERT_TRUE(window->create());
        pumpMessages();
        log.clear();
    }
    void TearDown() override
    {
        if (window)
            window->shutDownWindow();
        pumpMessages();
    }

    char const *windowName;
    TestApplication app;
    EventLog log;
    RecordingWindow *window = nullptr;
};
