teskwin_classes(graphics GSharedHandle GPen GBrush GFont GPalette GBitmap)
list(APPEND TESKWIN_SOURCES graphics/GStockObjects.cpp)
