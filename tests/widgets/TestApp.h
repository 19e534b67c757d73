// TestApp.h - an application object for tests of widgets and windows.
//
//   TestApp      a PAppInterface whose module is the test program (with TestResources.rc)
//   KeyedTestApp the same, also translating the library's string keys
#pragma once

#include "TeskWin.h"
#include "widgets/TestResources.h"

class TestApp : public PAppInterface {
public:
    explicit TestApp(HINSTANCE module = GetModuleHandleA(nullptr)) : module(module) {}
    virtual ~TestApp() = default;

    int idleAction() override { return 0; }
    PWindowObject *createMainWindow() override { return nullptr; }
    PWindowObject *getMainWindow() override { return mainWindow; }
    void setMainWindow(PWindowObject *window) override { mainWindow = window; }
    PStatusBar *getStatusBar() override { return nullptr; }
    void showMainWindow(int) override {}
    PProgressBar *getProgressBar() override { return nullptr; }
    int canExit() override { return 1; }
    void setProgressBar(PProgressBar *) override {}
    PAccel *getAccelerators() override { return nullptr; }
    void setAccelerators(PAccel *) override {}
    unsigned long getHelpContext() override { return 0; }
    void setHelpContext(unsigned long) override {}
    int hotKeyEvent(PEvent const &) override { return 0; }
    int capturedKeyEvent(PEvent const &) override { return 0; }

    HINSTANCE getInstance() const override { return module; }
    HINSTANCE getResourceModule() const override { return resourceModule ? resourceModule : module; }
    PString getCommandLine() const override { return PString(); }
    int getShowCommand() const override { return SW_SHOWNORMAL; }
    PString getProgramPath() const override { return PString(); }
    PString getAppName() const override { return PString("Test application"); }
    PString getCompanyName() const override { return PString(); }
    PString getVersion() const override { return PString("1.0"); }
    PString getHelpFile() const override { return PString(); }
    PString getWorkingFolder() const override { return PString(); }
    PString getTempPrefix() const override { return PString("tst"); }
    int getLanguage() const override { return 0x0409; }
    int getCodePage() const override { return 1252; }
    int isInteractive() const override { return 0; }
    int initInstance() override { return 1; }
    int run() override { return 0; }
    int exitInstance() override { return 0; }
    int getStringId(int) const override { return 0; }
    void setExitCode(int) override {}

    // Replaces the resource module the application reports, e.g. with (HINSTANCE)-1.
    HINSTANCE resourceModule = nullptr;

private:
    HINSTANCE module;
    PWindowObject *mainWindow = nullptr;
};

class KeyedTestApp : public TestApp {
public:
    int getStringId(int key) const override
    {
        switch (key) {
        case GSFatalCaption: return IDS_FATAL_CAPTION;
        case GSWarningCaption: return IDS_WARNING_CAPTION;
        default: return 0;
        }
    }
};
