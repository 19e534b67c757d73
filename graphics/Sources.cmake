teskwin_classes(graphics GRect GMapMode GDevice GMemoryDevice)
teskwin_headers(graphics GObjectSelection)
teskwin_classes(graphics GSharedHandle GPen GBrush GFont GPalette GBitmap)
list(APPEND TESKWIN_SOURCES graphics/GStockObjects.cpp)
teskwin_classes(graphics GDiBitmap)
list(APPEND TESKWIN_SOURCES graphics/GDeviceRaster.cpp)
# The bitmap format shared by the device, the image and the .bmp reader; internal, not in TeskWin.h.
teskwin_classes(graphics DibFormat)
