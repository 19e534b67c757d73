// TestConsoleApp.h - an application context for test programs.
//
//   TestConsoleApp  an IConsoleApp whose instance and resource module are the test program's
#pragma once

#include "foundation/IConsoleApp.h"

class TestConsoleApp final : public IConsoleApp {
public:
    explicit TestConsoleApp(HINSTANCE instance = GetModuleHandleA(nullptr)) : instance(instance) {}

    HINSTANCE getInstance() const override { return instance; }
    HINSTANCE getResourceModule() const override { return instance; }
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

private:
    HINSTANCE instance;
};
