#include "foundation/PTPoint.h"

template class PTPoint<float>;
template class PTPoint<long>;
