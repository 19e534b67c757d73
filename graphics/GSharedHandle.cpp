#include "graphics/GSharedHandle.h"

template class GSharedHandle<GHandleBox<HPEN>>;
template class GSharedHandle<GHandleBox<HBRUSH>>;
template class GSharedHandle<GHandleBox<HFONT>>;
template class GSharedHandle<GHandleBox<HPALETTE>>;
template class GSharedHandle<GBitmapBox>;
