// The graphic objects built when the library loads. They are defined together because the
// pen must be built before the brush, and only one source fixes an order.
#include "graphics/GBrush.h"
#include "graphics/GPen.h"

const GPen GPen::Null(static_cast<HPEN>(GetStockObject(NULL_PEN)));
const GBrush GBrush::Null(static_cast<HBRUSH>(GetStockObject(NULL_BRUSH)));
