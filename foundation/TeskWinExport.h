// TeskWinExport.h - the one export marker of the library.
#pragma once

#ifdef TESKWIN_BUILDING_DLL
#define TESKWIN_API __declspec(dllexport)
#else
#define TESKWIN_API __declspec(dllimport)
#endif
