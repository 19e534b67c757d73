#include "windows/PChildFrame.h"

PChildFrame::PChildFrame(PWindowObject *parent, PString const &caption, PWindow *client, PAppInterface *app)
    : PWindow(parent, caption, app), client(client), rOffset(0), lOffset(0), tOffset(0), bOffset(0)
{
}

PChildFrame::PChildFrame(PWindowObject *parent, PString const &caption, PWindow *client, PAppInterface *app,
                         unsigned long style)
    : PWindow(parent, caption, app, style), client(client), rOffset(0), lOffset(0), tOffset(0), bOffset(0)
{
}

PChildFrame::~PChildFrame() = default;

char *PChildFrame::getClassName()
{
    static char className[] = "PCHILDFRAME";
    return className;
}

void PChildFrame::shutDownWindow()
{
    client = nullptr;
    PWindow::shutDownWindow();
}

int PChildFrame::resizeEvent(GPoint const &size)
{
    PWindow::resizeEvent(size);
    resizeClient();
    return 0;
}

void PChildFrame::setClient(PWindow *client)
{
    this->client = client;
    resizeClient();
}

void PChildFrame::resizeClient()
{
    if (!client || !isValidWindow())
        return;
    const GRect area = getClientArea();
    const int width = truncateCoord(area.width());
    const int height = truncateCoord(area.height());
    client->moveWindow(GPoint(lOffset, tOffset), GPoint(width - rOffset - lOffset, height - bOffset - tOffset));
}
