teskwin_classes(imaging GImage)
teskwin_headers(imaging GImageRows PImgDithSquare)
# GImage's tone operations, kept apart from the image model.
list(APPEND TESKWIN_SOURCES imaging/GImageTone.cpp)
# Its geometry, filters, morphology, colour reduction, dither squares and outlines.
list(APPEND TESKWIN_SOURCES imaging/GImageGeometry.cpp imaging/GImageFilters.cpp
     imaging/GImageMorphology.cpp imaging/GImageReduction.cpp imaging/GImageDither.cpp
     imaging/GImageOutline.cpp)
