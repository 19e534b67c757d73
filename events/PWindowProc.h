// PWindowProc.h - the one road from the platform to the window objects.
//
//   PWindowProc    the window procedure of every window the library creates
//   PGeneralProc   picks the handlers of an event's window from one fixed table
//   PM_WINDOWLEFT  posted to the window that the cursor has just left
#pragma once

#include "foundation/TeskWinExport.h"

#include <windows.h>

class PEvent;

// Private message: the cursor has left this window for another. The library itself has no
// handler for it; it reaches processEvent like any message without a route.
const unsigned int PM_WINDOWLEFT = 0x0502;

// Finds the object of hwnd (binding a window under construction to its object), builds the
// event and dispatches it; unclaimed messages go to DefWindowProcA, or DefMDIChildProcA for an
// MDI child.
TESKWIN_API LRESULT CALLBACK PWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

// Non-zero claims the message and is the window procedure's result; 0 lets the default
// procedure run. An event without a window is answered with 1.
TESKWIN_API int PGeneralProc(PEvent const &event);
