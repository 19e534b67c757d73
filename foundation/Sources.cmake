list(APPEND TESKWIN_HEADERS
  foundation/TeskWinExport.h
  foundation/PMemory.h
  foundation/PString.h
  foundation/PGenericString.h
  foundation/IConsoleApp.h
  foundation/IErrorMessage.h
  foundation/PFile.h
  foundation/PStream.h
  foundation/PTemporaryFileServices.h
  foundation/FileUtilities.h
)
list(APPEND TESKWIN_SOURCES
  foundation/PMemory.cpp
  foundation/PString.cpp
  foundation/PGenericString.cpp
  foundation/IConsoleApp.cpp
  foundation/IErrorMessage.cpp
  foundation/PFile.cpp
  foundation/PStream.cpp
  foundation/PTemporaryFileServices.cpp
  foundation/FileUtilities.cpp
)
