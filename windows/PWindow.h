// PWindow.h - the concrete window.
//
//   PWindow  window class, styles, placement, cursor, menu, icon, background and scroller
//            of one window; its creation, and error boxes in place of the error log
//
// Creation hands the new platform window to its object through theCreatedQueue: create()
// queues the object before CreateWindowExA, and the first message for an unbound handle
// takes the oldest queued object (getWinPtr), long before CreateWindowExA returns.
//
// Wrapping a host's window. PWindow(HWND, PAppInterface *) lets a window of a host
// framework take part in the tree without being subclassed or bound. This library does not
// use the host's runtime, so it identifies a host window itself: a handle belongs to the
// host when it names a live window (IsWindow) of this process. Its parent is found with
// GetParent and wrapped in the same way, up to the first ancestor that is not such a window.
// A handle that fails the test leaves the object unattached, with no handle.
#pragma once

#include "events/PWindowObject.h"
#include "foundation/PQueue.h"
#include "foundation/TeskWinExport.h"
#include "graphics/GBrush.h"
#include "widgets/PCursor.h"
#include "widgets/PMenu.h"

#include <windows.h>

class PScroller;

// A frame's window procedure (PFrame.h); it binds windows under construction as PWindowProc does.
TESKWIN_API LRESULT CALLBACK PFrameProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

class TESKWIN_API PWindow : public PWindowObject {
    // The window procedure and its dispatch look handles up through getWinPtr. A friend
    // declaration cannot repeat the import attribute, which GCC would otherwise warn about.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wattributes"
    friend LRESULT CALLBACK ::PWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
    friend int ::PGeneralProc(PEvent const &event);
    friend LRESULT CALLBACK ::PFrameProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
#pragma GCC diagnostic pop
    friend class PDispatch;

public:
    // A visible overlapped window; under an MDI frame, an MDI child that clips its siblings.
    PWindow(PWindowObject *parent, PString const &caption, PAppInterface *app);
    // An overlapped window with the extra style bits; WS_VISIBLE only if style has it.
    PWindow(PWindowObject *parent, PString const &caption, PAppInterface *app, unsigned long style);
    // A visible top-level window with the menu resource menuName.
    PWindow(PString const &caption, PString const &menuName, PAppInterface *app);
    // Wraps a window of the host (see the head of this file).
    PWindow(HWND handle, PAppInterface *app);
    PWindow(PWindow const &other);
    PWindow &operator=(PWindow const &other);

    // PError side, in table order.
    // A task-modal box, then the process ends with exit code 1.
    void fatalError(PString const &text) override;
    // A task-modal box; no log.
    void warningError(PString const &text) override;
    char *getClassName() override;
    void getWindowClass(tagWNDCLASSA &windowClass) override;
    void setupWindow() override;
    // Leaves a host's parent and deletes a parent made for it.
    ~PWindow() override;
    // Binds a child that announces its creation while still unbound.
    void onParentNotify(WPARAM wParam, LPARAM lParam) override;
    // Registration is the caller's: registerWindow() first. 1 on success.
    int create() override;
    // The child identifier kept in the menu's record.
    int getId() override;
    void shutDownWindow() override;
    PWindowObject *findWinPtr(PHHwnd const &handle) override;
    void moveWindow(GPoint const &position) override;
    void moveWindow(GPoint const &position, GPoint const &size) override;
    void sizeWindow(GPoint const &size) override;
    // Without a live window: the stored placement, through the parent's client coordinates.
    GRect getWindowSize() override;
    // 38 to 40.
    virtual void repaint(GRect &area, int erase);
    virtual void repaint(int erase);
    virtual int getCaptionSize() const;

    // PRespond side.
    // Records the client and window rectangles, resizes the children, and never claims.
    int resizeEvent(GPoint const &size) override;
    int hScrollEvent(unsigned int code, int position) override;
    int vScrollEvent(unsigned int code, int position) override;

    // Placement; stored for create(), the move and size operations also act.
    void setLocation(int x, int y);
    void setLocation(GPoint const &position);
    GPoint getLocation();
    void setSize(int width, int height);
    void setSize(GPoint const &size);

    void updateWindow();
    // Repaints the window; the menu bar is left alone.
    void refreshMenus();

    // Sets the cursor at once, whether or not the window exists.
    void setCursor(PCursor const &cursor);
    PCursor getCursor();
    // Brings the display count to exactly -1, and to exactly 0.
    void hideCursor() const;
    void showCursor() const;

    void setMenu(PMenu const &menu);
    PMenu &getMenu();
    // Child windows keep their identifier where a top-level window keeps its menu.
    void setId(int id);
    // Used when the class is registered; a live window does not change.
    void setIcon(PIcon const &icon);
    // Changes the class's brush, and so that of every window of the class.
    void setBackground(GBrush const &brush);
    GBrush getBackground();

    void setScroller(PScroller *scroller);
    PScroller *getScroller();
    // While the left button is down, runs a nested pump with the mouse captured and lets the
    // scroller move the view at every round.
    void processAutoScrolling();

    // 0 on success, -1 when the help program could not be reached.
    int helpContents(PString const &file);
    int helpOnHelp(PString const &file);
    int helpOnHelp();
    // Opens path with its associated program; nothing is reported.
    void openDocument(PString const &path);

    // Objects whose platform window is being created, oldest first.
    static PQueue<PWindowObject *> theCreatedQueue;

protected:
    // For the windows derived from this one, which see the tree only through PWindowObject.
    static int isMDIChildWindow(PWindowObject const *window) { return window && window->isMDIChild; }
    // The module the application's windows are made under; null without an application.
    HINSTANCE getAppInstance() const;

private:
    // The bound object, or else the oldest object under construction, now bound to handle.
    static PWindowObject *getWinPtr(PHHwnd const &handle);
    void initFields(unsigned long windowStyle);
    int startHelp(PString const &file, unsigned int command);

protected:
    MDICREATESTRUCTA mdiCreate;
    long reserved;
    int helpActive;
    PCursor cursor;
    PMenu menu;
    PIcon icon;
    GBrush background;
    unsigned long style;
    unsigned long exStyle;
    int x;
    int y;
    int height;
    int width;
    int controlId;
    PScroller *scroller;
    int ownsParent;
    int isForeign;
};
