// PFrame.h - the application's main window with a multiple-document client.
//
//   PFrame      owns the platform's MDI client inside a border of four offsets, tracks the
//               active child, routes palette messages and runs a loop step that knows MDI keys
//   PFrameProc  the window procedure of a frame's class
//
// A PWindow whose parent is a frame with a menu becomes an MDI child when constructed, and is
// created through the MDI client.
#pragma once

#include "foundation/PList.h"
#include "foundation/TeskWinExport.h"
#include "windows/PDragWindow.h"

#include <windows.h>

// Creates the MDI client on WM_CREATE and fits it on WM_SIZE; everything else goes through
// the general dispatch, with DefFrameProcA for what is left.
TESKWIN_API LRESULT CALLBACK PFrameProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

class TESKWIN_API PFrame : public PDragWindow {
    // The window procedure fits the client; the dispatch keeps the active child; a child
    // that goes forgets itself as the active one.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wattributes"
    friend LRESULT CALLBACK ::PFrameProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
#pragma GCC diagnostic pop
    friend class PDispatch;
    friend class PWindow;

public:
    // An MDI frame with the menu resource menuName; its window menu is the menu's first popup.
    PFrame(PString const &caption, PString const &menuName, PAppInterface *app);
    // No menu and no MDI children; the number is not used. It still gets a client window.
    PFrame(PString const &caption, int unused, PAppInterface *app);
    PFrame(PFrame const &other) = default;
    PFrame &operator=(PFrame const &other) = default;

protected:
    // Translates the MDI keys; with no main window every message taken is dropped, and
    // WM_QUIT leaves the status code alone. Deliberate.
    int eventLoopOnce() override;

public:
    char *getClassName() override;
    // No redraw styles for a frame's class.
    void getWindowClass(tagWNDCLASSA &windowClass) override;
    void setupWindow() override;
    ~PFrame() override;
    HWND getClientHWND() override;
    // The whole client area of the frame, not that of the MDI client.
    GRect getClientArea() override;
    // 1 with no active child, so that a first child opens maximised.
    int isMDIChildrenMaximized() override;

    // The active child's palette, or each child's in turn when another window changed it.
    int processEvent(PEvent const &event) override;

protected:
    virtual void activateChild(PWindow *child);

public:
    virtual void arrangeIcons();
    virtual void cascadeChildren();
    // Closes the MDI children; non-zero when the frame may go on closing.
    virtual int closeChildren();
    virtual void tileChildren();
    virtual void initClientWindow();
    // The top and left offsets move the client; the right and bottom ones only resize it.
    virtual void setBOffset(int offset);
    virtual void setTOffset(int offset);
    virtual void setROffset(int offset);
    virtual void setLOffset(int offset);

    PWindow *getActiveChild() const { return activeChild; }
    // The MDI client's client area; empty without one.
    GRect getWorkspaceArea();
    void showClientHWND(int command);
    // The children that are MDI children, in the order of the tree.
    PList<PWindowObject *> getMDIChildren();
    int getLOffset() const { return lOffset; }
    int getROffset() const { return rOffset; }
    int getTOffset() const { return tOffset; }
    int getBOffset() const { return bOffset; }

protected:
    // Size less the left and top offsets, plus the right and bottom ones. Deliberate.
    void resizeClient(GPoint const &size);
    void moveClient(GPoint const &position);

private:
    void initFields();
    void fitClientToArea();

    HWND clientHWND;
    CLIENTCREATESTRUCT clientCreate;
    int rOffset;
    int lOffset;
    int tOffset;
    int bOffset;
    PWindow *activeChild;
    // Nothing sets it to anything but 0.
    int windowMenuIndex;
};
