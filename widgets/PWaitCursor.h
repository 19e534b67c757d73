// PWaitCursor.h - the hourglass for a scope.
//
//   PWaitCursor  shows the wait cursor on a window and puts back the cursor the window had
//
// There is no nesting count: each object saves what its window shows when it is made, so
// objects destroyed in reverse order of construction leave the first cursor in place.
#pragma once

#include "foundation/TeskWinExport.h"
#include "widgets/PCursor.h"

class PWindow;

class TESKWIN_API PWaitCursor {
public:
    // On the application's main window, if there is an application and it has one.
    PWaitCursor();
    // On window; a null window changes nothing.
    explicit PWaitCursor(PWindow *window);
    // Both objects then hold the window: each puts the saved cursor back when released.
    PWaitCursor(PWaitCursor const &other) = default;
    PWaitCursor &operator=(PWaitCursor const &other) = default;
    ~PWaitCursor();

    // Turns the hourglass on (again) until release.
    void restore();
    // Puts the saved cursor back once; after it, restore does nothing.
    void release();

private:
    // Saves the window's cursor and shows the hourglass.
    void begin(PWindow *target);

    PWindow *window;
    PCursor saved;
};
