// Workbench.cpp - the frame: pictures in, operations on them, pictures out.
#include "Workbench.h"

#include "PictureFiles.h"
#include "PictureWindow.h"
#include "ToolButton.h"
#include "WorkbenchApp.h"
#include "WorkbenchIds.h"

#include <commdlg.h>

#include <cstdio>

namespace {

const int stripHeight = 30;
const int buttonWidth = 76;
const int buttonGap = 4;
const GColor stripFace(224, 224, 228);
const GColor stripLine(150, 150, 160);
// The size of a scene made from the menu.
const unsigned long sceneWidth = 480;
const unsigned long sceneHeight = 360;
// Steps of the event loop that an operation lets run between two bands, at most.
const int stepsBetweenBands = 64;

struct ToolDescription {
    char const *label;
    unsigned short command;
    char const *tip;
};

const ToolDescription tools[] = {
    {"Scene", CM_NEW_SCENE, "Make a new picture of a landscape"},
    {"Open", CM_OPEN, "Open a picture file"},
    {"Save", CM_SAVE_AS, "Save the active picture"},
    {"Zoom +", CM_ZOOM_IN, "Zoom in"},
    {"Zoom -", CM_ZOOM_OUT, "Zoom out"},
    {"Edges", CM_EDGES, "Sobel edge detection"},
    {"Outlines", CM_OUTLINES, "Trace the outlines of the colour regions"},
    {"Tile", CM_TILE, "Tile the picture windows"},
};

} // namespace

Workbench::Workbench(WorkbenchApp *app)
    : PFrame(PString("TeskWin Workbench"), PString(WORKBENCH_MENU), app), workbench(app), statusLine(*this)
{
}

void Workbench::setupWindow()
{
    PFrame::setupWindow();
    createToolStrip();
    const int statusHeight = statusLine.create();
    setTOffset(stripHeight);
    // A resize adds the bottom offset to the client's height where creation subtracts it
    // (the frame's deliberate rule), so a negative one keeps the client above the status line.
    setBOffset(-statusHeight);
    statusLine.write(StatusLine::message, PString("Ready"));
}

void Workbench::createToolStrip()
{
    int x = buttonGap;
    for (ToolDescription const &tool : tools) {
        auto *button = new ToolButton(this, PString(tool.label), tool.command, getApp());
        button->setLocation(x, buttonGap / 2);
        button->setSize(buttonWidth, stripHeight - buttonGap);
        if (button->registerWindow() && button->create())
            toolTips.attach(*button, PString(tool.tip));
        x += buttonWidth + buttonGap;
    }
}

int Workbench::paintEvent(GContext &context)
{
    const GRect area = getClientArea();
    context.fillRectangle(GRect(0, 0, area.rVal(), stripHeight), GBrush(stripFace));
    context.setPen(GPen(stripLine, 1, LineSolid));
    context.moveTo(0, stripHeight - 1);
    context.lineTo(area.rVal(), stripHeight - 1);
    return 1;
}

void Workbench::close() { postEvent(this, PEvent(this, WM_CLOSE, 0, 0)); }

int Workbench::commandEvent(PCommandEvent const &event)
{
    const unsigned short command = event.getCommandId();
    // Commands that come in while an operation polls between its bands wait for nothing:
    // they are dropped, as a busy program would.
    if (workbench->busy && command >= CM_NEW_SCENE && command <= CM_ARRANGE)
        return 1;
    if (Operation const *operation = findOperation(command)) {
        apply(*operation);
        return 1;
    }
    PictureWindow *active = activePicture();
    switch (command) {
    case CM_NEW_SCENE:
        newScene(sceneWidth, sceneHeight, opened + 1);
        return 1;
    case CM_OPEN:
        askOpen();
        return 1;
    case CM_SAVE_AS:
        askSaveAs();
        return 1;
    case CM_CLOSE:
        closeActive();
        return 1;
    case CM_EXIT:
        close();
        return 1;
    case CM_DUPLICATE:
        duplicateActive();
        return 1;
    case CM_ZOOM_IN:
    case CM_ZOOM_OUT:
    case CM_ZOOM_ONE:
        if (active) {
            active->setZoom(command == CM_ZOOM_ONE ? 100 : command == CM_ZOOM_IN ? active->getZoom() * 2 : active->getZoom() / 2);
            showActive();
        }
        return 1;
    case CM_CLEAR_OVERLAYS:
        if (active)
            active->clearOverlays();
        return 1;
    case CM_CROP:
        crop();
        return 1;
    case CM_OUTLINES:
        traceOutlines();
        return 1;
    case CM_LINE_SCREEN:
        lineScreen();
        return 1;
    case CM_TILE:
        tileChildren();
        return 1;
    case CM_CASCADE:
        cascadeChildren();
        return 1;
    case CM_ARRANGE:
        arrangeIcons();
        return 1;
    }
    return 0;
}

int Workbench::droppedFile(PString const &path)
{
    open(path);
    return 1;
}

bool Workbench::newScene(unsigned long width, unsigned long height, unsigned int seed)
{
    Picture scene = Picture::trueColour(width, height);
    if (scene.isEmpty()) {
        report("There is not enough memory for a new picture%s.", "");
        return false;
    }
    scene.paintScene(seed);
    char title[32];
    std::snprintf(title, sizeof title, "Scene %u", seed);
    return addPicture(PString(title), scene) != nullptr;
}

bool Workbench::open(PString const &path)
{
    Picture picture;
    PString problem;
    {
        PWaitCursor hourglass(this);
        if (loadPicture(path, picture, problem) != 0) {
            report("The picture could not be opened: %s.", problem);
            return false;
        }
    }
    return addPicture(path, picture) != nullptr;
}

bool Workbench::saveActive(PString const &path)
{
    PictureWindow *active = needActive();
    if (!active)
        return false;
    PString problem;
    PWaitCursor hourglass(this);
    if (savePicture(path, active->getPicture(), problem) != 0) {
        report("The picture could not be saved: %s.", problem);
        return false;
    }
    active->getPicture().setModified(0);
    statusLine.write(StatusLine::message, PString("Saved ") + path);
    return true;
}

bool Workbench::duplicateActive()
{
    PictureWindow *active = needActive();
    return active && addPicture(active->getTitle() + " (copy)", active->getPicture()) != nullptr;
}

bool Workbench::apply(Operation const &operation)
{
    PictureWindow *active = needActive();
    if (!active)
        return false;
    int result, reports = 0;
    {
        PWaitCursor hourglass(this);
        workbench->busy = true;
        result = runOperation(operation, active->getPicture(), [&](int percent) {
            statusLine.showPercentDone(percent, PString(operation.title));
            keepAlive();
            ++reports;
        });
        workbench->busy = false;
        statusLine.clearPercentDone();
    }
    workbench->log().line("  %d reports of percent done, with the event loop run after each", reports);
    // A refused operation leaves the picture, its overlays and its selection as they were.
    if (result == GImage::resultOk)
        active->pictureChanged();
    else
        active->repaint(1);
    showActive();
    if (result != GImage::resultOk) {
        report("The operation could not be applied: %s.", operationMessage(result));
        return false;
    }
    statusLine.write(StatusLine::message, PString(operation.title));
    return true;
}

bool Workbench::traceOutlines()
{
    PictureWindow *active = needActive();
    if (!active)
        return false;
    PWaitCursor hourglass(this);
    const int result = active->traceOutlines();
    if (result != GImage::resultOk) {
        report("No outlines were traced: %s.", operationMessage(result));
        return false;
    }
    char text[48];
    std::snprintf(text, sizeof text, "%d outlines", active->outlineCount());
    statusLine.write(StatusLine::message, PString(text));
    return true;
}

bool Workbench::lineScreen()
{
    PictureWindow *active = needActive();
    if (!active)
        return false;
    PWaitCursor hourglass(this);
    if (active->makeLineScreen() != GImage::resultOk) {
        report("No line screen could be made: %s.", operationMessage(GImage::resultImpossible));
        return false;
    }
    return true;
}

bool Workbench::crop()
{
    PictureWindow *active = needActive();
    if (!active)
        return false;
    if (!active->cropToSelection()) {
        report("The picture could not be cropped: %s.", active->hasSelection() ? "there is not enough memory"
                                                                               : "nothing is selected");
        return false;
    }
    showActive();
    return true;
}

bool Workbench::closeActive()
{
    PictureWindow *active = needActive();
    return active && active->closeWindow();
}

bool Workbench::activate(unsigned int n)
{
    PList<PWindowObject *> pictures = getMDIChildren();
    if (n == 0 || n > pictures.length()) {
        char number[16];
        std::snprintf(number, sizeof number, "%u", n);
        report("There is no picture window number %s.", number);
        return false;
    }
    // A child that takes the focus becomes the active one.
    setFocus(pictures(n - 1));
    return true;
}

PictureWindow *Workbench::activePicture() { return dynamic_cast<PictureWindow *>(getActiveChild()); }

unsigned int Workbench::pictureCount() { return getMDIChildren().length(); }

void Workbench::keepAlive()
{
    workbench->idleSeen = false;
    for (int step = 0; step < stepsBetweenBands && !workbench->idleSeen; ++step)
        // Nothing can end the loop meanwhile: closing waits while the application is busy.
        eventLoopOnce();
}

PictureWindow *Workbench::addPicture(PString const &title, Picture const &picture)
{
    auto *window = new PictureWindow(this, title, picture, workbench);
    if (!window->registerWindow() || !window->create()) {
        deleteWindow(window);
        report("The window for %s could not be made.", title);
        return nullptr;
    }
    ++opened;
    showActive();
    return window;
}

void Workbench::showActive()
{
    PictureWindow *active = activePicture();
    statusLine.write(StatusLine::pictureSize, active ? active->describe() : PString(""));
    char zoom[24] = "";
    if (active)
        std::snprintf(zoom, sizeof zoom, "%d%%", active->getZoom());
    statusLine.write(StatusLine::zoom, PString(zoom));
}

void Workbench::askOpen()
{
    char path[MAX_PATH] = "";
    OPENFILENAMEA request{};
    request.lStructSize = sizeof request;
    request.hwndOwner = *this;
    request.lpstrFilter = pictureFileFilter();
    request.lpstrFile = path;
    request.nMaxFile = sizeof path;
    request.Flags = OFN_FILEMUSTEXIST | OFN_HIDEREADONLY;
    if (GetOpenFileNameA(&request))
        open(PString(path));
}

void Workbench::askSaveAs()
{
    if (!needActive())
        return;
    char path[MAX_PATH] = "";
    OPENFILENAMEA request{};
    request.lStructSize = sizeof request;
    request.hwndOwner = *this;
    request.lpstrFilter = pictureFileFilter();
    request.lpstrFile = path;
    request.nMaxFile = sizeof path;
    request.lpstrDefExt = "png";
    request.Flags = OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY;
    if (GetSaveFileNameA(&request))
        saveActive(PString(path));
}

void Workbench::report(char const *format, char const *detail)
{
    char text[400];
    std::snprintf(text, sizeof text, format, detail);
    workbench->report(this, PString(text));
}

PictureWindow *Workbench::needActive()
{
    PictureWindow *active = activePicture();
    if (!active)
        report("There is no picture to work on%s.", "");
    return active;
}
