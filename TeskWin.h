// TeskWin.h - every public header of the library.
#pragma once

#include "foundation/TeskWinExport.h"
#include "foundation/PMemory.h"
#include "foundation/PString.h"
#include "foundation/PGenericString.h"
