// StatusLine.h - the frame's status line: sections of text and the percent done of a long
// operation.
//
//   StatusLine  message, picture size, zoom and pointer sections; percent done
#pragma once

#include <TeskWin.h>

class StatusLine {
public:
    enum Section { message, pictureSize, zoom, pointer, sectionCount };

    explicit StatusLine(PWindow &frame);
    StatusLine(StatusLine const &) = delete;
    StatusLine &operator=(StatusLine const &) = delete;
    ~StatusLine();

    // Makes the line along the bottom of the frame; the height it takes there.
    int create();
    void write(Section section, PString const &text);
    void showPercentDone(int percent, PString const &text);
    void clearPercentDone();

private:
    void showInCaption();

    PWindow &frame;
    PString texts[sectionCount];
    int percent = -1;
};
