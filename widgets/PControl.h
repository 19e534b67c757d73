// PControl.h - child windows addressed by a small integer id.
//
//   PControl    a child window with an id, a process-wide registry from id to object, a font,
//               a display mode that marks the control in an editor, and owner-draw hooks
//   PScrollBar  the platform's SCROLLBAR class with its own position logic; tells its parent
//               of every move as a command from the bar
//   PM_DRAWMARK the message that asks a control to draw the mark of its display mode
#pragma once

#include "foundation/HashedId.h"
#include "foundation/PHashTable.h"
#include "foundation/PString.h"
#include "foundation/TeskWinExport.h"
#include "graphics/GFont.h"
#include "graphics/GRect.h"
#include "windows/PWindow.h"

#include <windows.h>

class GContext;

// Sent by an application, never by the library.
constexpr unsigned int PM_DRAWMARK = WM_USER + 0x103;

class TESKWIN_API PControl : public PWindow {
public:
    enum DisplayMode : int {
        DMNormal = 0,
        DMInvert = 1,
        DMBox = 2
    };

    // A control that create() will make: a visible child tab stop starting a group,
    // registered under id unless id is 0.
    PControl(PWindowObject *parent, int id, PString const &title, int x, int y, int width, int height,
             PAppInterface *app);
    // A control that already exists inside parent, as in a dialog resource: bound at once
    // when the parent is live, never created by its parent.
    PControl(PWindowObject *parent, int id, PAppInterface *app);
    // The copy is not registered, yet its destructor removes the id all the same.
    PControl(PControl const &other);
    PControl &operator=(PControl const &other);

    // PError side.
    // A font set before the window existed takes effect here.
    void setupWindow() override;
    // Deletes the font and takes the id out of the registry.
    ~PControl() override;
    int getId() override;

    // PRespond side: never claims.
    // WM_SYSCOLORCHANGE takes the 3D face colour as background; PM_DRAWMARK draws the mark.
    int processEvent(PEvent const &event) override;

    // Added after PWindow's operations, in this order. The three drawing hooks do nothing and
    // the library never calls them.
    virtual void drawSelected(GContext &context);
    virtual void drawUnselected(GContext &context);
    virtual void drawFocus(GContext &context);
    virtual int getTextLen();
    virtual void setText(PString const &text);

    // The previous font of a live control; for one not yet created, a copy of newFont.
    GFont setFont(GFont const &newFont);
    // The font set, or else the one the control reports.
    GFont getFont();
    void clear();
    // At most maxLength bytes with the terminator; GetWindowTextA's result.
    int getText(PString &text, int maxLength);
    // Repaints only when the mode changes; the mode now in force.
    DisplayMode setDisplayMode(DisplayMode mode);
    DisplayMode getDisplayMode() const { return displayMode; }
    void set3D() {}

    // The registry of controls by id.
    static void addControlPtr(PControl *control, HashedId &id);
    static void removeControlPtr(HashedId const &id);
    // Null for an id that no control holds.
    static PControl *getControlPtr(HashedId const &id);
    // An id from 6500 to 11500 that no control holds; 100 when all are taken.
    static int getUniqueControlId();

    static PHashTable<PControl *, HashedId> theControlTable;

protected:
    // XOR-inverts markRect grown by one unit on each side.
    void dmDrawInvert();
    // A red frame inside the client area.
    void dmDrawBox();

    // Inverted by dmDrawInvert; the library only copies and reads it.
    GRect markRect;
    // Owned.
    GFont *font;
    DisplayMode displayMode;

private:
    void registerId();
};

class TESKWIN_API PScrollBar : public PControl {
public:
    // With horizontal 0 a vertical bar, whose width 0 becomes the system's; a horizontal bar's
    // height 0 becomes the system's.
    PScrollBar(PWindowObject *parent, int id, int x, int y, int width, int height, int horizontal,
               PAppInterface *app);
    // A bar that already exists inside parent.
    PScrollBar(PWindowObject *parent, int id, PAppInterface *app);
    PScrollBar(PScrollBar const &other) = default;
    PScrollBar &operator=(PScrollBar const &other) = default;

    // PError side.
    char *getClassName() override;
    // Rebinds through the parent, then starts every bar at the range 0 to 100.
    void setupWindow() override;
    ~PScrollBar() override = default;

    // PRespond side: the handler of the code runs, then the parent hears of it as WM_COMMAND
    // from the bar; both always claim.
    int hScrollEvent(unsigned int code, int thumb) override;
    int vScrollEvent(unsigned int code, int thumb) override;

    // Added after PControl's operations, in this order; each returns 1.
    virtual int sbBottomEvent(PEvent const &event);
    virtual int sbLineDownEvent(PEvent const &event);
    virtual int sbLineUpEvent(PEvent const &event);
    virtual int sbPageDownEvent(PEvent const &event);
    virtual int sbPageUpEvent(PEvent const &event);
    // Both thumb handlers read lParam, which the scroll handlers leave 0: a thumb drag lands
    // on the minimum unless a subclass says otherwise. Deliberate.
    virtual int sbThumbPositionEvent(PEvent const &event);
    virtual int sbThumbTrackEvent(PEvent const &event);
    virtual int sbTopEvent(PEvent const &event);

    void getRange(int &min, int &max);
    int getPosition();
    // Does not redraw.
    void setRange(int min, int max);
    // Clamped to the range; the platform is called only when the position changes.
    void setPosition(int position);
    // The position after moving by delta.
    int deltaPos(int delta);

protected:
    // Copied with the bar; nothing reads it.
    int reservedWord;
    int lineStep;
    int pageStep;

private:
    int scrolled(unsigned int code, int thumb);
};
