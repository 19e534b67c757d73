// MdiIds.h - command ids, shared by Mdi.rc and Mdi.cpp.
#pragma once

#define CM_MDI_NEW 100
#define CM_MDI_TILE 101
#define CM_MDI_CASCADE 102
#define CM_MDI_EXIT 103
