// TestApplication.h - the application object of every test program.
//
//   TestApplication  a PAppInterface on the test program's own module (and its resources),
//                    whose answers the tests set and whose calls they count
#pragma once

#include "events/PAppInterface.h"
#include "events/PEvent.h"

#include <windows.h>

#include <map>
#include <vector>

class TestApplication final : public PAppInterface {
public:
    explicit TestApplication(HINSTANCE module = GetModuleHandleA(nullptr)) : module(module) {}

    int idleAction() override { return ++idleCount; }
    PWindowObject *createMainWindow() override { return nullptr; }
    PWindowObject *getMainWindow() override { return mainWindow; }
    void setMainWindow(PWindowObject *window) override { mainWindow = window; }
    PStatusBar *getStatusBar() override { return nullptr; }
    void showMainWindow(int command) override { shownCommand = command; }
    PProgressBar *getProgressBar() override { return progressBar; }
    int canExit() override { ++exitAsked; return exitAllowed; }
    // Keeps the bar and makes its window, as an application must.
    void setProgressBar(PProgressBar *bar) override;
    PAccel *getAccelerators() override { return accelerators; }
    void setAccelerators(PAccel *value) override { accelerators = value; }
    unsigned long getHelpContext() override { return 0; }
    void setHelpContext(unsigned long) override {}
    int hotKeyEvent(PEvent const &event) override;
    int capturedKeyEvent(PEvent const &event) override;

    HINSTANCE getInstance() const override { return module; }
    HINSTANCE getResourceModule() const override { return resourceModule ? resourceModule : module; }
    PString getCommandLine() const override { return PString(); }
    int getShowCommand() const override { return SW_SHOWNORMAL; }
    PString getProgramPath() const override { return PString(); }
    PString getAppName() const override { return appName; }
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
    // The resource id given to translateKey for key, else 0 (no translation).
    int getStringId(int key) const override;
    void setExitCode(int) override {}

    // Lets the library's string key translate to a string resource of the program.
    void translateKey(int key, int resourceId) { stringIds[key] = resourceId; }

    // Replaces the resource module the application reports, e.g. with (HINSTANCE)-1.
    HINSTANCE resourceModule = nullptr;
    // The name frames put in their captions.
    PString appName = PString("Test application");
    PWindowObject *mainWindow = nullptr;
    PAccel *accelerators = nullptr;
    PProgressBar *progressBar = nullptr;
    int exitAllowed = 1;
    int hotKeyAnswer = 0;
    int capturedKeyAnswer = 0;

    // What the library asked of the application.
    int idleCount = 0;
    int exitAsked = 0;
    int shownCommand = -1;
    std::vector<unsigned int> hotKeys;
    std::vector<unsigned int> capturedKeys;

private:
    HINSTANCE module;
    std::map<int, int> stringIds;
};
