// PStatusBar.h - the status window and the progress bar it can show.
//
//   PStatusBar    the platform's status window, divided into sections added from the left,
//                 or one simple part; shows percent done in a temporary progress bar
//   PProgressBar  the platform's "msctls_progress32" class
//
// The application's gStatusBar (PAppInterface.h) is the route by which long work finds the
// status bar to report on; the library itself neither sets nor reads it.
#pragma once

#include "foundation/GPoint.h"
#include "foundation/PString.h"
#include "foundation/TeskWinExport.h"
#include "graphics/GRect.h"
#include "windows/PWindow.h"

#include <windows.h>

class PProgressBar;

class TESKWIN_API PStatusBar : public PWindow {
public:
    // Not created by its parent's createChildren: the application creates it.
    explicit PStatusBar(PWindow *parent);
    // Copies share the progress bar.
    PStatusBar(PStatusBar const &other) = default;
    PStatusBar &operator=(PStatusBar const &other) = default;

    // Lets the platform refit the bar to its parent, then repaints.
    void resize() override;
    // WM_SIZE with the size given; 0 without a handle.
    int resize(GPoint const &size);

    // A section width wide to the right of the last; the first replaces the initial part.
    void addSection(int width);
    // Shows at once, even inside work that pumps no messages. In simple mode the section is
    // ignored.
    void write(PString const &text, int section);
    void setHeight(int height);
    int getHeight() const;
    int setSimple(int on);
    // 0 for a bar whose window has gone.
    int numFields();
    // A default rectangle for a bar whose window has gone.
    GRect getFieldSize(int section);

    // The first call shows text and a progress bar that the application creates through
    // setProgressBar; later calls move the bar. -1 when no bar could be allocated, else 0.
    int showPercentDone(int percent, PString const &text);
    // Closes the progress bar, if any, and clears section 0.
    void clearPercentDone();

protected:
    // CreateStatusWindowA under the parent; 0 when the platform refuses.
    int create() override;

    int simple;
    // Closed by clearPercentDone, not deleted by the destructor: it goes with the window tree.
    PProgressBar *progress;
};

class TESKWIN_API PProgressBar : public PWindow {
public:
    // 100 by 20, black behind; the window is made by create().
    explicit PProgressBar(PWindowObject *parent);
    PProgressBar(PProgressBar const &other) = default;
    PProgressBar &operator=(PProgressBar const &other) = default;

    char *getClassName() override;
    // Always 1: the platform's result is not tested.
    int create() override;

    // Stored for create(); a live window does not move.
    void setXPos(int value) { x = value; }
    void setYPos(int value) { y = value; }
    void setWidth(int value) { width = value; }
    void setHeight(int value) { height = value; }

    // 0 for a bar whose window is not live, else 1.
    int setRange(int min, int max);
    int setStep(int step);
    int step();
    void setProgress(int position);
};
