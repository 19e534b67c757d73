list(APPEND TESKWIN_HEADERS
  graphics/GSharedHandle.h
  graphics/GPen.h
  graphics/GBrush.h
  graphics/GFont.h
  graphics/GPalette.h
  graphics/GBitmap.h
  graphics/GDiBitmap.h
)
list(APPEND TESKWIN_SOURCES
  graphics/GSharedHandle.cpp
  graphics/GStockObjects.cpp
  graphics/GPen.cpp
  graphics/GBrush.cpp
  graphics/GFont.cpp
  graphics/GPalette.cpp
  graphics/GBitmap.cpp
  graphics/GDiBitmap.cpp
)
