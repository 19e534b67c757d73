list(APPEND TESKWIN_HEADERS
  foundation/TeskWinExport.h
  foundation/PMemory.h
  foundation/PString.h
  foundation/PGenericString.h
)
list(APPEND TESKWIN_SOURCES
  foundation/PMemory.cpp
  foundation/PString.cpp
  foundation/PGenericString.cpp
)
