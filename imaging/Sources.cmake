list(APPEND TESKWIN_HEADERS
  imaging/GImage.h
  imaging/GImageRows.h
)
list(APPEND TESKWIN_SOURCES
  imaging/GImage.cpp
  imaging/GImageTone.cpp
)
