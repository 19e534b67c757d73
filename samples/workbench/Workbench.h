// Workbench.h - the workbench's main window.
//
//   Workbench  an MDI frame with a tool strip and a status line; opens, makes, saves and
//              closes pictures, each in its own child window, and runs the image operations
//              on the active one, keeping the program responsive between bands of work
#pragma once

#include "Operations.h"
#include "Picture.h"
#include "StatusLine.h"
#include "ToolTips.h"

#include <TeskWin.h>

class PictureWindow;
class WorkbenchApp;

class Workbench : public PFrame {
public:
    explicit Workbench(WorkbenchApp *app);

    void setupWindow() override;
    int paintEvent(GContext &context) override;
    int commandEvent(PCommandEvent const &event) override;

    // Runs the frame's event loop until the frame has gone; the frame is deleted then.
    void run() { eventLoop(); }
    // Closes the frame as the system menu would.
    void close();

    // Each returns true on success; a failure has reached the user through report().
    bool newScene(unsigned long width, unsigned long height, unsigned int seed);
    bool open(PString const &path);
    bool saveActive(PString const &path);
    bool duplicateActive();
    bool apply(Operation const &operation);
    bool traceOutlines();
    bool lineScreen();
    bool crop();
    bool closeActive();
    // The n-th picture window, from 1, in the order they were opened.
    bool activate(unsigned int n);

    PictureWindow *activePicture();
    unsigned int pictureCount();
    StatusLine &status() { return statusLine; }
    // Takes the waiting messages until the queue is empty, as the event loop would.
    void keepAlive();
    // The status line follows the active picture.
    void showActive();

protected:
    int droppedFile(PString const &path) override;

private:
    PictureWindow *addPicture(PString const &title, Picture const &picture);
    void createToolStrip();
    void askOpen();
    void askSaveAs();
    void report(char const *format, char const *detail);
    PictureWindow *needActive();

    WorkbenchApp *workbench;
    StatusLine statusLine;
    ToolTips toolTips;
    unsigned int opened = 0;
};
