# Each subsystem lists its classes in <subsystem>/Sources.cmake, one family a line:
#   teskwin_classes(<subsystem> <names...>)   a header and a source per name
#   teskwin_headers(<subsystem> <names...>)   header-only names
# They fill TESKWIN_SOURCES and TESKWIN_HEADERS (paths relative to the source root).
set(TESKWIN_SOURCES)
set(TESKWIN_HEADERS)

macro(teskwin_headers subsystem)
  foreach(name ${ARGN})
    list(APPEND TESKWIN_HEADERS ${subsystem}/${name}.h)
  endforeach()
endmacro()

macro(teskwin_classes subsystem)
  foreach(name ${ARGN})
    list(APPEND TESKWIN_HEADERS ${subsystem}/${name}.h)
    list(APPEND TESKWIN_SOURCES ${subsystem}/${name}.cpp)
  endforeach()
endmacro()

foreach(subsystem foundation events windows widgets graphics contexts imaging imagefiles)
  if(EXISTS ${CMAKE_SOURCE_DIR}/${subsystem}/Sources.cmake)
    include(${CMAKE_SOURCE_DIR}/${subsystem}/Sources.cmake)
  endif()
endforeach()
