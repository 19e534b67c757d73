// WorkbenchApp.h - the workbench as the library sees it.
//
//   WorkbenchApp  main window, accelerators and progress bar; the idle hook that drives a
//                 script; errors as message boxes, or as log lines when no one can answer
#pragma once

#include "../common/SampleApp.h"
#include "RunLog.h"

#include <TeskWin.h>

class ScriptRunner;

class WorkbenchApp : public SampleApp {
public:
    explicit WorkbenchApp(HINSTANCE instance);

    // Runs a script step when one is waiting; notes that the queue ran empty.
    int idleAction() override;
    // Not while an operation runs: its pictures would go from under it.
    int canExit() override { return !busy; }
    void setProgressBar(PProgressBar *bar) override;
    int isInteractive() const override { return script == nullptr; }

    void loadAccelerators();
    void setScript(ScriptRunner *runner) { script = runner; }
    RunLog &log() { return runLog; }

    // The user hears of a failure: a message box, or in a script run, where a modal box
    // would wait for ever, a line in the log.
    void report(PWindowObject *owner, PString const &text);

    // Set while an operation runs, so that the polling between its bands starts nothing new.
    bool busy = false;
    // Set by every idle step; an operation's polling stops when the queue has run empty.
    bool idleSeen = false;

private:
    PAccel keys;
    ScriptRunner *script = nullptr;
    RunLog runLog;
};
