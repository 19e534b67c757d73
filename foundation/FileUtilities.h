// FileUtilities.h - whole-file operations.
//
//   fileCopy     copies a file
//   fileExists   tells whether a file exists
#pragma once

#include "foundation/TeskWinExport.h"

// Copies from to to; with flag non-zero an existing target is replaced, with 0 it makes the
// copy fail. Non-zero on success. A null name fails.
TESKWIN_API int fileCopy(char const *from, char const *to, int flag);
// Non-zero when name is an existing file; a folder or a null name gives 0.
TESKWIN_API int fileExists(char const *name);
