list(APPEND TESKWIN_HEADERS
  graphics/GRect.h
  graphics/GMapMode.h
)
list(APPEND TESKWIN_SOURCES
  graphics/GRect.cpp
  graphics/GMapMode.cpp
)
