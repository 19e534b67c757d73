// PAppInterface.h - the application as the library sees it, and the process-wide state.
//
//   PAppInterface    abstract application; the application derives from it
//   getApplication   the process-wide application pointer, set by setApplication
//   gLastWindow      the window that the cursor was last over
//   gStatusBar       the application's status bar, for its own use
#pragma once

#include "events/PError.h"
#include "foundation/IConsoleApp.h"
#include "foundation/TeskWinExport.h"

#include <windows.h>

class PAccel;
class PEvent;
class PProgressBar;
class PStatusBar;
class PWindowObject;

// Two tables of virtual operations: PError's first, IConsoleApp's second. The order of the
// operations below is the order of the first table; the library calls the slots that say so
// and leaves the others to the application.
class TESKWIN_API PAppInterface : public PError, public IConsoleApp {
public:
    PAppInterface();
    PAppInterface(PAppInterface const &other);
    PAppInterface &operator=(PAppInterface const &other);

    // 2: called by the event loops whenever the queue is empty; the result is dropped.
    virtual int idleAction() = 0;
    // 3: builds the main window; the application's own start-up calls it.
    virtual PWindowObject *createMainWindow() = 0;
    // 4: the main window, or null.
    virtual PWindowObject *getMainWindow() = 0;
    // 5: replaces it; the library passes null when the main window goes.
    virtual void setMainWindow(PWindowObject *window) = 0;
    // 6: the application's status bar, or null.
    virtual PStatusBar *getStatusBar() = 0;
    // 7: receives the show command for a window object without a live window.
    virtual void showMainWindow(int command) = 0;
    // 8: the progress bar last handed over by setProgressBar, or null.
    virtual PProgressBar *getProgressBar() = 0;
    // 9: non-zero lets the main window close.
    virtual int canExit() = 0;
    // 10: receives the status bar's progress bar.
    virtual void setProgressBar(PProgressBar *bar) = 0;
    // 11: the current accelerators, or null; asked afresh at each step of a loop.
    virtual PAccel *getAccelerators() = 0;
    // 12: replaces the accelerators.
    virtual void setAccelerators(PAccel *accelerators) = 0;
    // 13: the help context of what the user is doing now.
    virtual unsigned long getHelpContext() = 0;
    // 14: replaces it.
    virtual void setHelpContext(unsigned long context) = 0;
    // 15: WM_HOTKEY for any window; the result is the window procedure's.
    virtual int hotKeyEvent(PEvent const &event) = 0;
    // 16: WM_KEYDOWN while a window holds the mouse capture; non-zero claims the key.
    virtual int capturedKeyEvent(PEvent const &event) = 0;

protected:
    // Not virtual, to keep both tables as they are; the application owns and deletes its object.
    ~PAppInterface() = default;
};

TESKWIN_API PAppInterface *getApplication();
TESKWIN_API void setApplication(PAppInterface *application);

extern TESKWIN_API HWND gLastWindow;
extern TESKWIN_API PStatusBar *gStatusBar;
