# Each subsystem lists its own sources and public headers in <subsystem>/Sources.cmake,
# appending to TESKWIN_SOURCES and TESKWIN_HEADERS (paths relative to the source root).
set(TESKWIN_SOURCES)
set(TESKWIN_HEADERS)
foreach(subsystem foundation events windows widgets graphics contexts imaging imagefiles)
  if(EXISTS ${CMAKE_SOURCE_DIR}/${subsystem}/Sources.cmake)
    include(${CMAKE_SOURCE_DIR}/${subsystem}/Sources.cmake)
  endif()
endforeach()
