// TeskWin.h - every public header of the library.
#pragma once

#include "foundation/TeskWinExport.h"
#include "foundation/PMemory.h"
#include "foundation/PList.h"
#include "foundation/PQueue.h"
#include "foundation/PCArray.h"
#include "foundation/PHashTable.h"
#include "foundation/PPairDictionary.h"
#include "foundation/PHashablePointer.h"
#include "foundation/HashedId.h"
#include "foundation/PHHwnd.h"
