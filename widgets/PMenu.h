// PMenu.h - menus and accelerator tables.
//
//   MenuHandle  the record that copies of a PMenu share: the handle and whether it is owned
//   PMenu       a platform menu as a value; items addressed by command id or by position
//   PAccel      an accelerator table loaded from resources
#pragma once

#include "foundation/GPoint.h"
#include "foundation/PString.h"
#include "foundation/TeskWinExport.h"
#include "graphics/GSharedHandle.h"

#include <windows.h>

class PAppInterface;
class PWindow;
class PWindowObject;
class PFrame;

struct MenuHandle {
    using Handle = HMENU;

    HMENU handle;
    int owned;

    // Destroys an owned menu that still exists.
    ~MenuHandle();
};

class TESKWIN_API PMenu {
public:
    // A record with no menu yet, owned; create() fills it.
    PMenu();
    // Loads the menu resource `name` from the application's resource module. With no
    // application nothing is loaded and the menu is not valid.
    PMenu(PString const &name, PAppInterface *app);
    PMenu(PMenu const &other);
    PMenu &operator=(PMenu const &other);
    virtual ~PMenu();

    int operator==(PMenu const &other) const;
    int operator!=(PMenu const &other) const;
    operator HMENU() const;

    int create();
    int isValid() const;
    int getMenuItemCount();
    // 0xFFFF for a popup, 0 for a separator.
    unsigned short getMenuItemID(int position);
    // The popup at position, not owned; the menu itself when that item is no popup.
    PMenu getSubMenu(unsigned short position);
    PString getName();
    GPoint getMenuPos();

    int isSeparator(unsigned short item, int byPosition);
    int isChecked(unsigned short item, int byPosition);
    int isDisabled(unsigned short item, int byPosition);
    int isGray(unsigned short item, int byPosition);
    int isEnabled(unsigned short item, int byPosition);

    void check(unsigned short item, int byPosition);
    void unCheck(unsigned short item, int byPosition);
    void enableItem(unsigned short item, int byPosition);
    void disableItem(unsigned short item, int byPosition);
    void grayItem(unsigned short item, int byPosition);
    int deleteItem(unsigned short item, int byPosition);
    int removeItem(unsigned short item, int byPosition);
    // Takes the item out without destroying a popup below it.
    int detachItem(unsigned short item, int byPosition);

    int addString(unsigned short before, PString const &text, unsigned short id);
    int addStringByPosition(unsigned short position, PString const &text, unsigned short id);
    int addSeparator(unsigned short before);
    // Inserts sub and takes its ownership away: this menu destroys it from now on.
    int addMenu(unsigned short before, PString const &text, PMenu *sub);
    int addString(PString const &text, unsigned short id);
    // Appends sub and leaves its ownership with sub (deliberate, unlike the form above).
    int addMenu(PString const &text, PMenu *sub);
    int addSeparator();
    // Refuses a popup: returns 0 when the item has no command id.
    int changeString(unsigned short position, PString const &text);
    int changeMenu(unsigned short position, PString const &text, PMenu *sub);
    int changeStringToMenu(unsigned short position, PString const &text, PMenu *sub);
    int changeMenuToString(unsigned short position, PString const &text, unsigned short id);

    // Pops up the items of the first entry at point, in screen coordinates; the platform's
    // result, or 0 when there is no first popup.
    int trackMenu(PWindow *owner, GPoint const &point);

    // flat: this level only, by position; otherwise every command item at every level.
    void enableAll(int flat);
    void disableAll(int flat);
    void grayAll(int flat);
    // Leaves no separator first, last or next to another, at any level.
    void syncSeparators();

private:
    friend class PWindow;

    PMenu(HMENU handle, int owned);

    HMENU handle() const;
    // The shared record, for the window that keeps a child identifier in it.
    MenuHandle *record() const;
    void setAll(UINT state, int flat);

    PString name;
    GSharedHandle<MenuHandle> handleRef;
    GPoint menuPos;
};

class TESKWIN_API PAccel {
public:
    PAccel();
    PAccel(PString const &name, HINSTANCE instance);
    PAccel(PAccel const &other);
    PAccel &operator=(PAccel const &other);
    ~PAccel();

    // Stores name; with a null instance keeps the old table and returns 0.
    int load(PString const &name, HINSTANCE instance);

private:
    // The message loops translate keys through the table.
    friend class PWindowObject;
    friend class PFrame;
    operator HACCEL() const;

    HACCEL handle;
    PString name;
};
