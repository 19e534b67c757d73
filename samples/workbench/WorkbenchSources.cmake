# The workbench's sources, for the sample's own build and for the test that drives it.
set(WORKBENCH_SOURCES
  ${CMAKE_CURRENT_LIST_DIR}/Main.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Operations.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Picture.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PictureFiles.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PictureWindow.cpp
  ${CMAKE_CURRENT_LIST_DIR}/RunLog.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Screenshot.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ScriptRunner.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SelectionBand.cpp
  ${CMAKE_CURRENT_LIST_DIR}/StatusLine.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ToolButton.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ToolTips.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Workbench.cpp
  ${CMAKE_CURRENT_LIST_DIR}/WorkbenchApp.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Workbench.rc)
# Open and save dialogs.
set(WORKBENCH_LIBRARIES comdlg32)
