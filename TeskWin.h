// TeskWin.h - every public header of the library.
#pragma once

#include "foundation/TeskWinExport.h"
#include "foundation/PMemory.h"
#include "foundation/PString.h"
#include "foundation/PGenericString.h"
#include "foundation/IConsoleApp.h"
#include "foundation/IErrorMessage.h"
#include "foundation/PFile.h"
#include "foundation/PStream.h"
#include "foundation/PTemporaryFileServices.h"
#include "foundation/FileUtilities.h"
