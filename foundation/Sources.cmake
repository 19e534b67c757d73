list(APPEND TESKWIN_HEADERS
  foundation/TeskWinExport.h
  foundation/PMemory.h
  foundation/PString.h
  foundation/PGenericString.h
  foundation/IConsoleApp.h
  foundation/IErrorMessage.h
  foundation/PFile.h
  foundation/PStream.h
  foundation/PTemporaryFileServices.h
  foundation/FileUtilities.h
  foundation/PFFloat.h
  foundation/PTPoint.h
  foundation/GPoint.h
  foundation/PCoord.h
  foundation/PVector.h
  foundation/PNumerics.h
  foundation/GColor.h
  foundation/PRefCount.h
  foundation/PList.h
  foundation/PQueue.h
  foundation/PCArray.h
  foundation/PHashTable.h
  foundation/PPairDictionary.h
  foundation/PHashablePointer.h
  foundation/HashedId.h
  foundation/PHHwnd.h
)
list(APPEND TESKWIN_SOURCES
  foundation/PMemory.cpp
  foundation/PString.cpp
  foundation/PGenericString.cpp
  foundation/IConsoleApp.cpp
  foundation/IErrorMessage.cpp
  foundation/PFile.cpp
  foundation/PStream.cpp
  foundation/PTemporaryFileServices.cpp
  foundation/FileUtilities.cpp
  foundation/PTPoint.cpp
  foundation/GPoint.cpp
  foundation/PNumerics.cpp
  foundation/GColor.cpp
  foundation/PRefCount.cpp
  foundation/HashedId.cpp
  foundation/PHHwnd.cpp
)
teskwin_headers(foundation TeskWinExport PFFloat PCoord PVector)
teskwin_classes(foundation PMemory)
teskwin_classes(foundation PString PGenericString)
teskwin_classes(foundation IConsoleApp IErrorMessage)
teskwin_classes(foundation PFile PStream PTemporaryFileServices FileUtilities)
teskwin_classes(foundation PTPoint GPoint PNumerics GColor PRefCount)
teskwin_headers(foundation PList PQueue PCArray PHashTable PPairDictionary PHashablePointer)
teskwin_classes(foundation HashedId PHHwnd)
