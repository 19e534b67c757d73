#include "foundation/GPoint.h"
#include "foundation/PNumerics.h"

#include <windows.h>

// Zero-initialised storage already reads (0, 0), so statics built before this
// one still copy the right value.
const GPoint GPoint::Zero;

GPoint::operator tagPOINT() const
{
    return POINT{tesk::round(x), tesk::round(y)};
}
