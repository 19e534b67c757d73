// StatusLine.cpp - the status line in the frame's caption, until a status bar is at hand.
#include "StatusLine.h"

#include <cstdio>

StatusLine::StatusLine(PWindow &frame) : frame(frame) {}

StatusLine::~StatusLine() = default;

int StatusLine::create() { return 0; }

void StatusLine::write(Section section, PString const &text)
{
    texts[section] = text;
    showInCaption();
}

void StatusLine::showPercentDone(int done, PString const &text)
{
    percent = done;
    texts[message] = text;
    showInCaption();
}

void StatusLine::clearPercentDone()
{
    percent = -1;
    texts[message] = PString("");
    showInCaption();
}

void StatusLine::showInCaption()
{
    PString caption("TeskWin Workbench");
    for (PString const &text : texts)
        if (!text.isEmpty())
            caption = caption + " - " + text;
    if (percent >= 0) {
        char done[16];
        std::snprintf(done, sizeof done, " %d%%", percent);
        caption = caption + done;
    }
    frame.setCaption(caption);
}
