// WorkbenchApp.cpp - the application object.
#include "WorkbenchApp.h"

#include "ScriptRunner.h"
#include "WorkbenchIds.h"

namespace {
const int iconStop = 3;
const int firstButton = 1;
} // namespace

WorkbenchApp::WorkbenchApp(HINSTANCE instance) : SampleApp(instance, "TeskWin Workbench") {}

int WorkbenchApp::idleAction()
{
    idleSeen = true;
    if (script && !busy)
        script->onIdle();
    return 0;
}

// The status bar hands over its progress bar for the application to make its window.
void WorkbenchApp::setProgressBar(PProgressBar *bar)
{
    progressBar = bar;
    if (bar)
        bar->create();
}

void WorkbenchApp::loadAccelerators()
{
    if (keys.load(PString(WORKBENCH_KEYS), instance))
        accelerators = &keys;
}

void WorkbenchApp::report(PWindowObject *owner, PString const &text)
{
    if (script) {
        runLog.line("message box (not shown in a script run): %s", static_cast<char const *>(text));
        return;
    }
    PMessageBox(owner, iconStop, firstButton).execute(getAppName(), text);
}
