teskwin_classes(imaging GImage)
teskwin_headers(imaging GImageRows)
# GImage's tone operations, kept apart from the image model.
list(APPEND TESKWIN_SOURCES imaging/GImageTone.cpp)
