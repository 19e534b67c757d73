// SampleApp.h - the smallest application the library can run with, for the samples.
//
//   SampleApp  answers every operation of PAppInterface: a main window, optional accelerators
//              and an exit code; everything else is empty
#pragma once

#include <TeskWin.h>

class SampleApp : public PAppInterface {
public:
    SampleApp(HINSTANCE instance, char const *name) : instance(instance), name(name) {}

    // The library's side: what the event loops and the windows ask for.
    int idleAction() override { return 0; }
    PWindowObject *createMainWindow() override { return mainWindow; }
    PWindowObject *getMainWindow() override { return mainWindow; }
    void setMainWindow(PWindowObject *window) override { mainWindow = window; }
    PStatusBar *getStatusBar() override { return nullptr; }
    void showMainWindow(int) override {}
    PProgressBar *getProgressBar() override { return progressBar; }
    int canExit() override { return 1; }
    void setProgressBar(PProgressBar *bar) override { progressBar = bar; }
    PAccel *getAccelerators() override { return accelerators; }
    void setAccelerators(PAccel *keys) override { accelerators = keys; }
    unsigned long getHelpContext() override { return 0; }
    void setHelpContext(unsigned long) override {}
    int hotKeyEvent(PEvent const &) override { return 0; }
    int capturedKeyEvent(PEvent const &) override { return 0; }

    // The context's side: the module, its resources and the program's name.
    HINSTANCE getInstance() const override { return instance; }
    HINSTANCE getResourceModule() const override { return instance; }
    PString getCommandLine() const override { return PString(""); }
    int getShowCommand() const override { return SW_SHOWNORMAL; }
    PString getProgramPath() const override { return PString(""); }
    PString getAppName() const override { return name; }
    PString getCompanyName() const override { return PString("TeskWin"); }
    PString getVersion() const override { return PString("0.1"); }
    PString getHelpFile() const override { return PString(""); }
    PString getWorkingFolder() const override { return PString("."); }
    PString getTempPrefix() const override { return PString("tsk"); }
    int getLanguage() const override { return 0x0409; }
    int getCodePage() const override { return 1252; }
    int isInteractive() const override { return 1; }
    int initInstance() override { return 1; }
    int run() override { return 0; }
    int exitInstance() override { return exitCode; }
    int getStringId(int) const override { return 0; }
    void setExitCode(int code) override { exitCode = code; }

protected:
    HINSTANCE instance;
    PString name;
    PWindowObject *mainWindow = nullptr;
    PProgressBar *progressBar = nullptr;
    PAccel *accelerators = nullptr;
    int exitCode = 0;
};
