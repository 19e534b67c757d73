// Mdi.cpp - an MDI frame with child windows.
//
// A PFrame with a menu from the resources holds the platform's MDI client; every PWindow made
// with the frame as its parent becomes an MDI child. The menu's first popup lists the children.
#include "../common/SampleApp.h"

#include "MdiIds.h"

#include <cstdio>

namespace {

// A child that fills itself with its own colour and says which one it is.
class ColourWindow : public PWindow {
public:
    ColourWindow(PWindowObject *frame, int number, GColor colour, PAppInterface *app)
        : PWindow(frame, title(number), app), colour(colour), name(title(number))
    {
    }

    int paintEvent(GContext &context) override
    {
        const GRect area = getClientArea();
        context.fillRectangle(area, GBrush(colour));
        context.setBackgroundMode(TransparentBackground);
        context.setTextColor(GColor(255, 255, 255));
        GRect text = area;
        context.drawText(name, text, TextSingleLine | TextCentre | TextMiddleLine);
        return 1;
    }

private:
    static PString title(int number)
    {
        char text[32];
        std::snprintf(text, sizeof text, "Child %d", number);
        return PString(text);
    }

    GColor colour;
    PString name;
};

class SampleFrame : public PFrame {
public:
    SampleFrame(PAppInterface *app) : PFrame(PString("TeskWin sample - MDI frame"), PString("MdiMenu"), app) {}

    void run() { eventLoop(); }

    // Menu commands; anything else goes on to the frame's default handling.
    int commandEvent(PCommandEvent const &event) override
    {
        switch (event.getCommandId()) {
        case CM_MDI_NEW:
            addChild();
            return 1;
        case CM_MDI_TILE:
            tileChildren();
            return 1;
        case CM_MDI_CASCADE:
            cascadeChildren();
            return 1;
        case CM_MDI_EXIT:
            postEvent(this, PEvent(this, WM_CLOSE, 0, 0));
            return 1;
        }
        return 0;
    }

    void addChild()
    {
        static const GColor colours[] = {GColor(180, 40, 40), GColor(40, 140, 60), GColor(40, 70, 170)};
        ++count;
        auto *child = new ColourWindow(this, count, colours[count % 3], getApp());
        // The class is registered once; the later calls find it.
        if (!child->registerWindow() || !child->create())
            deleteWindow(child);
    }

private:
    int count = 0;
};

} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int)
{
    SampleApp app(instance, "MDI sample");
    auto *frame = new SampleFrame(&app);
    app.setMainWindow(frame);
    frame->setSize(800, 600);
    if (!frame->registerWindow() || !frame->create())
        return 1;
    for (int i = 0; i < 3; ++i)
        frame->addChild();
    frame->tileChildren();
    frame->run();
    return 0;
}
