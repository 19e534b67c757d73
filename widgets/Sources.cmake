list(APPEND TESKWIN_HEADERS
  widgets/PMenu.h
  widgets/PCursor.h
  widgets/PStringResManager.h
  widgets/PMessageBox.h
  widgets/PSysColorManager.h
)
list(APPEND TESKWIN_SOURCES
  widgets/PMenu.cpp
  widgets/PCursor.cpp
  widgets/PStringResManager.cpp
  widgets/PMessageBox.cpp
  widgets/PSysColorManager.cpp
)
