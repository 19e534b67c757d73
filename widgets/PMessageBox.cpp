#include "widgets/PMessageBox.h"

#include "events/PWindowObject.h"

#include <windows.h>

namespace {

// The library's result for each platform answer, indexed by IDOK (1) to IDNO (7).
const int theResultCodes[] = {0, 0, 1, 5, 4, 0, 2, 3};

} // namespace

PMessageBox::PMessageBox(PWindowObject *owner, int icon, int defaultButton)
    : owner(owner), defaultButton(defaultButton), icon(icon)
{
}

int PMessageBox::execute(PString const &caption, PString const &text)
{
    unsigned int style = getStyle() | getBaseStyle();
    HWND window = owner && owner->isValidWindow() ? static_cast<HWND>(*owner) : nullptr;
    int answer = MessageBoxA(window, text, caption, style);
    return answer > 0 && answer <= IDNO ? theResultCodes[answer] : 0;
}

unsigned int PMessageBox::getStyle()
{
    return MB_OK;
}

unsigned int PMessageBox::getBaseStyle()
{
    unsigned int style = 0;
    if (defaultButton == 2)
        style |= MB_DEFBUTTON2;
    else if (defaultButton == 3)
        style |= MB_DEFBUTTON3;
    switch (icon) {
    case 1: style |= MB_ICONINFORMATION; break;
    case 2: style |= MB_ICONEXCLAMATION; break;
    case 3: style |= MB_ICONSTOP; break;
    case 4: style |= MB_ICONQUESTION; break;
    default: break;
    }
    return style;
}

PMBOkayCancel::PMBOkayCancel(PWindowObject *owner, int icon, int defaultButton)
    : PMessageBox(owner, icon, defaultButton)
{
}

unsigned int PMBOkayCancel::getStyle()
{
    return MB_OKCANCEL;
}

PMBYesNo::PMBYesNo(PWindowObject *owner, int icon, int defaultButton) : PMessageBox(owner, icon, defaultButton)
{
}

unsigned int PMBYesNo::getStyle()
{
    return MB_YESNO;
}

PMBYesNoCancel::PMBYesNoCancel(PWindowObject *owner, int icon, int defaultButton)
    : PMessageBox(owner, icon, defaultButton)
{
}

unsigned int PMBYesNoCancel::getStyle()
{
    return MB_YESNOCANCEL;
}

PMBRetryCancel::PMBRetryCancel(PWindowObject *owner, int icon, int defaultButton)
    : PMessageBox(owner, icon, defaultButton)
{
}

unsigned int PMBRetryCancel::getStyle()
{
    return MB_RETRYCANCEL;
}

PMBAbortRetryIgnore::PMBAbortRetryIgnore(PWindowObject *owner, int icon, int defaultButton)
    : PMessageBox(owner, icon, defaultButton)
{
}

unsigned int PMBAbortRetryIgnore::getStyle()
{
    return MB_ABORTRETRYIGNORE;
}
