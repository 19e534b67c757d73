// BusyCursor.h - the hourglass over a window for the length of a scope.
//
//   BusyCursor  shows the wait cursor at construction and puts the earlier cursor back
#pragma once

#include <TeskWin.h>

class BusyCursor {
public:
    explicit BusyCursor(PWindow *window);
    BusyCursor(BusyCursor const &) = delete;
    BusyCursor &operator=(BusyCursor const &) = delete;
    ~BusyCursor();

private:
    PWindow *window;
    PCursor saved;
};
