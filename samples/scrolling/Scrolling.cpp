// Scrolling.cpp - a window that paints a drawing larger than itself and scrolls over it.
//
// The window owns a PScroller: the scroll bars move the view, and the painter's viewport is
// shifted by the scroll position, so the drawing code works in drawing coordinates only.
#include "../common/SampleApp.h"

#include <cstdio>

namespace {

// The drawing: a grid of numbered circles, much larger than the window.
const int drawingWidth = 2400;
const int drawingHeight = 1800;
const int cell = 120;

class DrawingWindow : public PWindow {
public:
    DrawingWindow(PAppInterface *app) : PWindow(nullptr, PString("TeskWin sample - scrolling a drawing"), app)
    {
        scroller.setLines(20, 20);
        scroller.setRange(drawingWidth, drawingHeight);
        scroller.showBoth();
        setScroller(&scroller);
    }

    ~DrawingWindow() override { setScroller(nullptr); }

    // Runs the window until it is closed; the loop deletes the window at the end.
    void run() { eventLoop(); }

    int paintEvent(GContext &context) override
    {
        // From here on, (0, 0) is the drawing's top-left corner wherever the view stands.
        context.beginScrollerView();
        context.setPen(GPen(GColor(200, 200, 220), 1, LineSolid));
        for (int x = 0; x <= drawingWidth; x += cell) {
            context.moveTo(x, 0);
            context.lineTo(x, drawingHeight);
        }
        for (int y = 0; y <= drawingHeight; y += cell) {
            context.moveTo(0, y);
            context.lineTo(drawingWidth, y);
        }
        context.setPen(GPen(GColor(40, 60, 120), 2, LineSolid));
        context.setBackgroundMode(TransparentBackground);
        for (int row = 0; row < drawingHeight / cell; ++row)
            for (int column = 0; column < drawingWidth / cell; ++column) {
                const double cx = column * cell + cell / 2.0, cy = row * cell + cell / 2.0;
                // Colour and size change across the drawing, so that scrolling shows.
                context.setBrush(GBrush(GColor(column * 12, 120, 255 - row * 16)));
                context.circle(GPoint(cx, cy), 20 + (row + column) % 5 * 6);
                char label[16];
                std::snprintf(label, sizeof label, "%c%d", 'A' + row, column + 1);
                context.writeText(GPoint(cx - 10, cy + 36), PString(label));
            }
        return 1;
    }

    // A new size changes how much of the drawing one page shows.
    int resizeEvent(GPoint const &size) override
    {
        PWindow::resizeEvent(size);
        scroller.setPageSize();
        return 0;
    }

private:
    PScroller scroller;
};

} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int)
{
    SampleApp app(instance, "Scrolling sample");
    auto *window = new DrawingWindow(&app);
    app.setMainWindow(window);
    window->setSize(640, 480);
    if (!window->registerWindow() || !window->create())
        return 1;
    window->run();
    return 0;
}
