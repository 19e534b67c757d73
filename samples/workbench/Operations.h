// Operations.h - the image operations of the workbench's menus.
//
//   Operation         one menu command: its name in scripts, its menu text, and what it does
//   findOperation     by command id or by script name
//   operationMessage  a result code in words
#pragma once

#include "Picture.h"

#include <TeskWin.h>

struct Operation {
    unsigned short command;
    char const *name;  // in scripts
    char const *title; // in the log and on the status bar
    // A 3 by 3 neighbourhood operation on a true-colour picture may run band by band.
    bool banded;
    // The fixed palettes refuse true colour: the picture must have a palette already.
    bool needsPalette;
    int (*apply)(Picture &picture);
};

// Null when there is none.
Operation const *findOperation(unsigned short command);
Operation const *findOperation(char const *name);

// Runs the operation on the picture, band by band where it can, reporting percent done.
int runOperation(Operation const &operation, Picture &picture, std::function<void(int)> const &progress);

// What runOperation returns, beyond the library's results, for a true-colour picture given
// to an operation that needs a palette.
const int resultNeedsPalette = 100;

char const *operationMessage(int result);
