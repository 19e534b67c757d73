teskwin_classes(graphics GRect GMapMode GDevice GMemoryDevice)
teskwin_headers(graphics GObjectSelection)
teskwin_classes(graphics GSharedHandle GPen GBrush GFont GPalette GBitmap)
list(APPEND TESKWIN_SOURCES graphics/GStockObjects.cpp)
