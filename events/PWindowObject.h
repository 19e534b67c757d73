// PWindowObject.h - the base of everything that owns a window handle.
//
//   PWindowObject  binds a handle to an object, keeps the tree of parent and children, owns
//                  the order of creation, closing, destruction and deletion, runs the polling
//                  event loop and sends events to other objects
#pragma once

#include "events/PError.h"
#include "events/PRespond.h"
#include "events/PWindowProc.h"
#include "foundation/GPoint.h"
#include "foundation/PHHwnd.h"
#include "foundation/PHashablePointer.h"
#include "foundation/PList.h"
#include "foundation/PPairDictionary.h"
#include "foundation/PString.h"
#include "foundation/TeskWinExport.h"
#include "graphics/GRect.h"

#include <windows.h>

class PAppInterface;

// Two tables of virtual operations: PError's first, PRespond's second. The order of the
// declarations on each side is the order of its table and part of the design.
class TESKWIN_API PWindowObject : public PError, public PRespond {
    friend class PWindow;
    friend class PDispatch;
    // A tooltip keeps its parent for getParent but leaves that parent's children.
    friend class PTooltip;

public:
    // Attaches the object at the end of parent's children. With neither a parent nor an
    // application the process ends, after a task-modal box says why.
    PWindowObject(PWindowObject *parent, PAppInterface *app);
    // Copies every field: the copy shares handle, parent and tip text with its source and is
    // not attached to the tree, while its list of children is a duplicate.
    PWindowObject(PWindowObject const &other);
    PWindowObject &operator=(PWindowObject const &other);

protected:
    // 2: one step of the loop; non-zero ends it.
    virtual int eventLoopOnce();

public:
    // 3, 4: what the derived class registers.
    virtual char *getClassName() = 0;
    virtual void getWindowClass(tagWNDCLASSA &windowClass) = 0;
    // 5: creates the children that have autoCreate set; a failure leaves childrenError.
    virtual void setupWindow();
    // 6: the parent has been resized.
    virtual void resize();
    // 7: clears the main window of the application if this was it; leaves tree and window alone.
    virtual ~PWindowObject();
    // 8, 9: hooks for the application's own handlers; the dispatch never calls them.
    virtual void afterDispatchHandler();
    virtual void beforeDispatchHandler();
    // 10 to 18: what a child's messages to its parent become (see processChildEvent).
    virtual int onChildCommand(unsigned int notification);
    virtual int onChildNotify(unsigned int code, LRESULT *result);
    virtual void onParentNotify(WPARAM wParam, LPARAM lParam);
    virtual void drawItem(tagDRAWITEMSTRUCT *item);
    virtual void measureItem(tagMEASUREITEMSTRUCT *item);
    virtual void deleteItem(tagDELETEITEMSTRUCT *item);
    virtual int vKeyToItem(unsigned int key, unsigned int caret);
    virtual int charToItem(unsigned int key, unsigned int caret);
    virtual int compareItem(tagCOMPAREITEMSTRUCT *item);
    // 19: true unless a child with a live window refuses.
    virtual int canClose();
    // 20: makes the platform window; 1 on success.
    virtual int create() = 0;
    // 21: destroys the platform window (through the MDI client for an MDI child).
    virtual void destroy();
    // 22
    virtual int getId();
    // 23: registers the class unless it exists; non-zero when it exists afterwards.
    virtual int registerWindow();
    // 24: with no live window the application's showMainWindow gets the command.
    virtual void show(int command);
    // 25
    virtual void hide();
    // 26: children from last to first, then this: unlink, destroy, delete.
    virtual void shutDownWindow();
    // 27
    virtual PWindowObject *findWinPtr(PHHwnd const &handle);
    // 28 to 30: positions and sizes are truncated.
    virtual void moveWindow(GPoint const &position);
    virtual void moveWindow(GPoint const &position, GPoint const &size);
    virtual void sizeWindow(GPoint const &size);
    // 31
    virtual HWND getClientHWND();
    // 32, 33: zeros without a live window.
    virtual GRect getClientArea();
    virtual GRect getWindowSize();
    // 34: gives the focus to window when this object (not window) is valid.
    virtual void setFocus(PWindowObject *window);
    // 35
    virtual int isIn(GPoint const &point);
    // 36, 37
    virtual int isAutoPan();
    virtual int isMDIChildrenMaximized();

    // Handlers of the PRespond side that the window object answers itself.
    int processChildEvent(PEvent const &event, LRESULT *result) override;
    int hScrollEvent(unsigned int code, int position) override;
    int vScrollEvent(unsigned int code, int position) override;
    // Closes through closeWindow and always claims, so that the default procedure never
    // destroys a window on WM_CLOSE.
    int closeEvent(PEvent const &event) override;
    // Posts the quit message when the main window goes; claims the message.
    int destroyEvent(PEvent const &event) override;

    // The object bound to handle, or null; never binds.
    static PWindowObject *getWinPtr(PHHwnd const &handle);
    // Deletes window now, or leaves that to its own running loop.
    static void deleteWindow(PWindowObject *window);
    // The object of the window that has the keyboard focus, or null.
    static PWindowObject *getFocus();
    // Waits for input, at most 1 millisecond.
    static void yield();

    // Tree.
    void setParent(PWindowObject *newParent);
    PWindowObject *getParent() const { return parent; }
    PList<PWindowObject *> const &getChildren() const { return children; }
    // The first child whose getId() is id; such a child must exist.
    PWindowObject *childWithId(int id);
    PWindowObject *getFirstChild();
    // Asks the list for the index equal to the count, which wraps: it returns the first
    // child, also when there are several. Deliberate.
    PWindowObject *getLastChild();
    void enableAutoCreate() { autoCreate = 1; }
    void disableAutoCreate() { autoCreate = 0; }
    // Creates the children that have autoCreate set, stopping at the first failure.
    int createChildren();

    // Lifecycle.
    int closeWindow();

    // Coordinates; points are truncated for the platform.
    GPoint screenToClient(GPoint const &point);
    GPoint clientToScreen(GPoint const &point);
    // With from set, to is ignored and the point comes back in screen coordinates. Deliberate.
    static GPoint mapWindowPoint(PWindowObject *from, PWindowObject *to, GPoint const &point);
    static int setCursorPosition(GPoint const &point);
    int getWindowPlacement(GRect *rect, int *showCommand);
    int isMaximized();
    int isMinimized();

    // Appearance and input.
    int isValidWindow() const;
    operator HWND() const { return hwnd; }
    void setCaption(PString const &text);
    int isVisible();
    void enable();
    void disable();
    int isEnabled();
    void onTopOff(PWindowObject *after);
    void makeForeground();
    void bringToTop();
    void setMouseCapture();
    void releaseMouseCapture();
    int isMouseCaptured() const;

    PAppInterface *getApp() const { return app; }
    WNDPROC getDefaultProc() const { return defaultProc; }
    PWindowObject *getTipWindow() const { return tipWindow; }
    void setTipWindow(PWindowObject *window) { tipWindow = window; }
    void setTipText(PString const &text);
    // A copy, or an empty text when none was set.
    PString getTipText() const;

    // Sending is tested on this object, the sender, and not on target.
    void sendEvent(PWindowObject *target, PEvent const &event);
    void postEvent(PWindowObject *target, PEvent const &event);
    void sendCommandEvent(PWindowObject *target, unsigned short id, LPARAM lParam);
    void postCommandEvent(PWindowObject *target, unsigned short id, LPARAM lParam);

    // Built at load and kept empty: the binding of handle and object lives in the window.
    static PPairDictionary<PHHwnd, PHashablePointer<PWindowObject>> theWinTable;

protected:
    // Runs eventLoopOnce until it ends the loop, then deletes this object.
    void eventLoop();

    static void addWinPtr(PWindowObject *object, HWND handle);

    WNDPROC defaultProc;
    PList<PWindowObject *> children;
    // Its address is the creation parameter of CreateWindowExA; nothing reads it.
    long creationParam;
    // 0 no loop, 1 running, 2 stop requested, 3 ended and being deleted.
    int eventLoopState;
    // Written by PWindow::resizeEvent only.
    GRect clientRect;
    GRect windowRect;
    PHHwnd hwnd;
    int attachedChild;
    long reservedFirst;
    int autoCreate;
    int isMDIChild;
    int isMDIFrame;
    long reservedSecond;
    PString caption;
    PAppInterface *app;
    int id;
    PWindowObject *parent;
    PString *tipText;
    PWindowObject *tipWindow;

private:
    void addChild(PWindowObject *child);
    void removeChild(PWindowObject *child);
    int indexOf(PWindowObject *child) const;
    PWindowObject *at(int index);
    void stopEventLoop();
};
