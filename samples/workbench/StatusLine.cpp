// StatusLine.cpp - the status bar of the frame.
#include "StatusLine.h"

namespace {
// Widths of the sections after the first, which takes what the others leave.
const int sectionWidths[] = {460, 190, 70, 250};
} // namespace

StatusLine::StatusLine(PWindow &frame) : frame(frame) {}

// The bar goes with the frame's window tree.
StatusLine::~StatusLine() { gStatusBar = nullptr; }

int StatusLine::create()
{
    bar = new PStatusBar(&frame);
    // Created through its base, where creation is public: a status bar is not made by its
    // parent's createChildren.
    PWindowObject *window = bar;
    if (!window->create()) {
        PWindowObject::deleteWindow(bar);
        bar = nullptr;
        return 0;
    }
    for (int width : sectionWidths)
        bar->addSection(width);
    gStatusBar = bar;
    return bar->getHeight();
}

void StatusLine::write(Section section, PString const &text)
{
    if (bar)
        bar->write(text, section);
}

void StatusLine::showPercentDone(int percent, PString const &text)
{
    if (bar)
        bar->showPercentDone(percent, text);
}

void StatusLine::clearPercentDone()
{
    if (bar)
        bar->clearPercentDone();
}
