// TeskWin.h - every public header of the library.
#pragma once

#include "foundation/TeskWinExport.h"
#include "foundation/PMemory.h"
#include "foundation/PFFloat.h"
#include "foundation/PTPoint.h"
#include "foundation/GPoint.h"
#include "foundation/PCoord.h"
#include "foundation/PVector.h"
#include "foundation/PNumerics.h"
#include "foundation/GColor.h"
#include "foundation/PRefCount.h"
