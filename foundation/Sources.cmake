list(APPEND TESKWIN_HEADERS
  foundation/TeskWinExport.h
  foundation/PMemory.h
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
  foundation/HashedId.cpp
  foundation/PHHwnd.cpp
)
