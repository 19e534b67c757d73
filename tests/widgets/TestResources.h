// TestResources.h - ids shared by TestResources.rc and the tests.
#pragma once

#define ID_FILE_OPEN 1001
#define ID_FILE_SAVE 1002
#define ID_FILE_EXIT 1003
#define ID_EDIT_CUT 1101
#define ID_EDIT_COPY 1102
#define ID_EDIT_DEEP 1201

#define IDS_GREETING 100
#define IDS_TWO_ARGUMENTS 101
#define IDS_FATAL_CAPTION 200
#define IDS_WARNING_CAPTION 201
