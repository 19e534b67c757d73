list(APPEND TESKWIN_HEADERS
  foundation/TeskWinExport.h
  foundation/PMemory.h
)
list(APPEND TESKWIN_SOURCES
  foundation/PMemory.cpp
)
