// PictureWindow.h - one picture in an MDI child window.
//
//   PictureWindow  paints the picture through its painter at a zoom, scrolls it, draws traced
//                  outlines and a line screen over it with vector drawing, and selects a
//                  rectangle with a rubber band, scrolling on its own while the band is dragged
#pragma once

#include "Picture.h"
#include "SelectionBand.h"

#include <TeskWin.h>

class WorkbenchApp;

class PictureWindow : public PWindow {
public:
    PictureWindow(PWindowObject *frame, PString const &title, Picture const &picture, WorkbenchApp *app);
    ~PictureWindow() override;

    char *getClassName() override;
    // Not while an operation runs on the picture.
    int canClose() override;

    Picture &getPicture() { return picture; }
    PString const &getTitle() const { return title; }
    // After the picture changed: overlays that no longer fit go, the view is fitted again.
    void pictureChanged();

    // Percent; 100 is one screen pixel for each picture pixel.
    int getZoom() const { return zoom; }
    void setZoom(int percent);
    void scrollToPicture(double x, double y);

    // Corners in picture pixels, in any order; the band is drawn at once.
    void select(GPoint const &a, GPoint const &b);
    bool hasSelection() const { return selected; }
    // Queues the mouse messages of a drag with the left button between two picture points,
    // with the pointer left at the end: the selection follows as if a hand moved the mouse,
    // and the view scrolls when the end lies outside the window.
    void queueDrag(GPoint const &from, GPoint const &to);
    // The picture cut to the selection; false when nothing is selected or memory is short.
    bool cropToSelection();

    // Traces the outlines of the picture's colour regions, reduced to a few colours first;
    // the library's result code.
    int traceOutlines();
    int outlineCount() const { return outlines.length(); }
    // Shows the picture as a line screen of bars whose thickness follows the tone.
    int makeLineScreen();
    int barCount() const { return bars.length(); }
    void clearOverlays();

    // What the status line shows for this picture.
    PString describe();

    int paintEvent(GContext &context) override;
    int resizeEvent(GPoint const &size) override;
    int mouseLDownEvent(unsigned short flags, GPoint const &position) override;
    int mouseMoveEvent(GPoint const &position, unsigned short flags) override;
    int mdiActivate() override;

private:
    double scale() const { return zoom / 100.0; }
    // A client point as a picture point, kept inside the picture.
    GPoint toPicture(GPoint const &client);
    // A rectangle of picture pixels in the window's scrolled logical space.
    GRect onScreen(GRect const &pictureRect) const;
    void drawOutlines(GDevice &device);
    void drawLineScreen(GDevice &device);
    void showPointer(GPoint const &client);

    WorkbenchApp *workbench;
    PString title;
    Picture picture;
    PScroller scroller;
    int zoom = 100;
    PList<POutlines> outlines;
    // Outlines are traced on a smaller copy: picture pixels per traced pixel.
    double traceScale = 1;
    PList<PImgDithSquare> bars;
    SelectionBand band;
    GPoint anchor;
    GRect selection;
    bool selected = false;
    bool dragging = false;
};
