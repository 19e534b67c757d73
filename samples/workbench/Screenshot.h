// Screenshot.h - what a window shows, frame and children included, as a .bmp file.
#pragma once

#include <TeskWin.h>

// 0, or the library's result code for a file not written.
int saveScreenshot(PWindowObject &window, PString const &path);
