#include "windows/PDragWindow.h"

#include <shellapi.h>

PDragWindow::PDragWindow(PWindow *parent, PString const &caption, PAppInterface *app) : PWindow(parent, caption, app)
{
}

void PDragWindow::setupWindow()
{
    DragAcceptFiles(hwnd, TRUE);
    PWindow::setupWindow();
}

PDragWindow::~PDragWindow()
{
    DragAcceptFiles(hwnd, FALSE);
}

int PDragWindow::droppedFile(PString const &)
{
    return 1;
}

// A longer path is cut by the platform to the buffer.
int PDragWindow::dropEvent(HDROP drop, int fileCount)
{
    char path[MAX_PATH];
    for (int index = 0; index < fileCount; ++index) {
        DragQueryFileA(drop, static_cast<UINT>(index), path, sizeof path);
        if (!droppedFile(PString(path)))
            break;
    }
    DragFinish(drop);
    return 1;
}
