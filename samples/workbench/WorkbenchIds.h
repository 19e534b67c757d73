// WorkbenchIds.h - resource names and command ids, shared by Workbench.rc and the code.
// The resource compiler reads this file too, so it holds preprocessor definitions only.
#pragma once

#define WORKBENCH_MENU "WorkbenchMenu"
#define WORKBENCH_KEYS "WorkbenchKeys"

// File
#define CM_NEW_SCENE 100
#define CM_OPEN 101
#define CM_SAVE_AS 102
#define CM_CLOSE 103
#define CM_EXIT 104
#define CM_DUPLICATE 105
// View
#define CM_ZOOM_IN 110
#define CM_ZOOM_OUT 111
#define CM_ZOOM_ONE 112
#define CM_CLEAR_OVERLAYS 113
// Tone
#define CM_GREY 120
#define CM_BRIGHTER 121
#define CM_DARKER 122
#define CM_EQUALISE 123
#define CM_FLATTEN 124
#define CM_STRETCH 125
#define CM_TREE_EQUALISE 126
// Geometry
#define CM_ROTATE_15 130
#define CM_ROTATE_90 131
#define CM_HALF 132
#define CM_DOUBLE 133
#define CM_CROP 134
// Colours
#define CM_OCTREE_256 140
#define CM_OCTREE_16 141
#define CM_FIXED_16 142
#define CM_FIXED_8 143
// Filters
#define CM_MEDIAN 150
#define CM_DARKEST 151
#define CM_BRIGHTEST 152
#define CM_SMOOTH 153
#define CM_SHARPEN 154
#define CM_EMBOSS 155
#define CM_EDGES 156
#define CM_JITTER 157
#define CM_MOSAIC 158
// Shapes
#define CM_BORDERS 160
#define CM_THINNING 161
#define CM_OUTLINES 162
#define CM_LINE_SCREEN 163
// Window
#define CM_TILE 170
#define CM_CASCADE 171
#define CM_ARRANGE 172
