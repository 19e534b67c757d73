list(APPEND TESKWIN_HEADERS
  foundation/TeskWinExport.h
  foundation/PMemory.h
  foundation/PFFloat.h
  foundation/PTPoint.h
  foundation/GPoint.h
  foundation/PCoord.h
  foundation/PVector.h
  foundation/PNumerics.h
  foundation/GColor.h
  foundation/PRefCount.h
)
list(APPEND TESKWIN_SOURCES
  foundation/PMemory.cpp
  foundation/PTPoint.cpp
  foundation/GPoint.cpp
  foundation/PNumerics.cpp
  foundation/GColor.cpp
  foundation/PRefCount.cpp
)
