// StatusLine.h - the frame's status bar: sections of text and the percent done of a long
// operation.
//
//   StatusLine  message, picture size, zoom and pointer sections; percent done in a progress
//               bar over the picture size section
#pragma once

#include <TeskWin.h>

class StatusLine {
public:
    enum Section { message, pictureSize, zoom, pointer, sectionCount };

    explicit StatusLine(PWindow &frame);
    StatusLine(StatusLine const &) = delete;
    StatusLine &operator=(StatusLine const &) = delete;
    ~StatusLine();

    // Makes the bar along the bottom of the frame; the height it takes there.
    int create();
    void write(Section section, PString const &text);
    void showPercentDone(int percent, PString const &text);
    void clearPercentDone();

private:
    PWindow &frame;
    // A child of the frame, which deletes it with its other children.
    PStatusBar *bar = nullptr;
};
