# The imaging engine and its parts are internal, not in TeskWin.h: EngineDib, WicCodec,
# ImageEngine, DrawBuffer.
teskwin_classes(imagefiles EngineDib WicCodec ImageEngine DrawBuffer)
teskwin_classes(imagefiles PImage PPicture)
# The GDevice operations on engine images.
list(APPEND TESKWIN_SOURCES imagefiles/GDeviceImage.cpp)
