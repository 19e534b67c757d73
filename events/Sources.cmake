list(APPEND TESKWIN_HEADERS
  events/PError.h
  events/PEvent.h
  events/PRespond.h
  events/PWindowProc.h
  events/PWindowObject.h
  events/PAppInterface.h
)
list(APPEND TESKWIN_SOURCES
  events/PError.cpp
  events/PEvent.cpp
  events/PRespond.cpp
  events/PWindowProc.cpp
  events/PWindowObject.cpp
  events/PAppInterface.cpp
)
