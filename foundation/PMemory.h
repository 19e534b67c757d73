// PMemory.h - the library's memory helpers.
//
// The Local and Global families draw on the one C heap; Global zeroes what it gives.
// A block of one family may be freed by the other. Failure is a null result.
#pragma once

#include "foundation/TeskWinExport.h"

TESKWIN_API void *PLocalAlloc(unsigned int size);
TESKWIN_API void PLocalFree(void *block);
TESKWIN_API void *PLocalReAlloc(void *block, unsigned int size);

TESKWIN_API void *PGlobalAlloc(unsigned long size);
TESKWIN_API void PGlobalFree(void *block);
TESKWIN_API void *PGlobalReAlloc(void *block, unsigned long size);

// Copies in 4-byte words and then the last 0 to 3 bytes; the regions must not overlap.
TESKWIN_API void *PMemCpy(void *to, void *const from, unsigned int size);

// True when this build places every block against an inaccessible page (test builds).
TESKWIN_API bool PMemoryIsGuarded();
