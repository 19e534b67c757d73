#include "widgets/PWaitCursor.h"

#include "events/PAppInterface.h"
#include "windows/PWindow.h"

PWaitCursor::PWaitCursor() : window(nullptr), saved(cursorArrow)
{
    if (PAppInterface *application = getApplication())
        begin(dynamic_cast<PWindow *>(application->getMainWindow()));
}

PWaitCursor::PWaitCursor(PWindow *window) : window(nullptr), saved(cursorArrow)
{
    begin(window);
}

PWaitCursor::~PWaitCursor()
{
    release();
}

void PWaitCursor::begin(PWindow *target)
{
    window = target;
    if (!window)
        return;
    saved = window->getCursor();
    restore();
}

void PWaitCursor::restore()
{
    if (window)
        window->setCursor(PCursor(cursorWait));
}

void PWaitCursor::release()
{
    if (!window)
        return;
    window->setCursor(saved);
    window = nullptr;
}
