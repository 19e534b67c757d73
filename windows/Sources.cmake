list(APPEND TESKWIN_HEADERS
  windows/PWindow.h
)
list(APPEND TESKWIN_SOURCES
  windows/PWindow.cpp
)
