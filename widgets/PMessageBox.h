// PMessageBox.h - the platform's modal message box, one class per button set.
//
//   PMessageBox           OK
//   PMBOkayCancel         OK, Cancel
//   PMBYesNo              Yes, No
//   PMBYesNoCancel        Yes, No, Cancel
//   PMBRetryCancel        Retry, Cancel
//   PMBAbortRetryIgnore   Abort, Retry, Ignore
//
// The constructors take (owner, icon, defaultButton):
//   icon           1 information, 2 exclamation, 3 stop, 4 question, other: none
//   defaultButton  2 or 3 make that button the default, other: the first
// execute() gives the button pressed in the library's own codes:
//   0 OK, Ignore, or no box at all    1 Cancel    2 Yes    3 No    4 Retry    5 Abort
#pragma once

#include "foundation/PString.h"
#include "foundation/TeskWinExport.h"

class PWindowObject;

class TESKWIN_API PMessageBox {
public:
    PMessageBox(PWindowObject *owner, int icon, int defaultButton);
    PMessageBox(PMessageBox const &other) = default;
    PMessageBox &operator=(PMessageBox const &other) = default;

    // Shows the box, owned by the owner's window while that is valid, and waits for it.
    int execute(PString const &caption, PString const &text);

    // The platform's button set.
    virtual unsigned int getStyle();

protected:
    // The icon and default-button flags.
    unsigned int getBaseStyle();

private:
    PWindowObject *owner;
    int defaultButton;
    int icon;
};

class TESKWIN_API PMBOkayCancel : public PMessageBox {
public:
    PMBOkayCancel(PWindowObject *owner, int icon, int defaultButton);
    unsigned int getStyle() override;
};

class TESKWIN_API PMBYesNo : public PMessageBox {
public:
    PMBYesNo(PWindowObject *owner, int icon, int defaultButton);
    unsigned int getStyle() override;
};

class TESKWIN_API PMBYesNoCancel : public PMessageBox {
public:
    PMBYesNoCancel(PWindowObject *owner, int icon, int defaultButton);
    unsigned int getStyle() override;
};

class TESKWIN_API PMBRetryCancel : public PMessageBox {
public:
    PMBRetryCancel(PWindowObject *owner, int icon, int defaultButton);
    unsigned int getStyle() override;
};

class TESKWIN_API PMBAbortRetryIgnore : public PMessageBox {
public:
    PMBAbortRetryIgnore(PWindowObject *owner, int icon, int defaultButton);
    unsigned int getStyle() override;
};
