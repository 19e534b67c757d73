#include "graphics/GPen.h"

GPen::GPen()
    : shared(GHandleBox<HPEN>::make(static_cast<HPEN>(GetStockObject(BLACK_PEN)), 0)), color(GColor::Black),
      width(0), style(LineSolid)
{
}

GPen::GPen(HPEN handle) : shared(GHandleBox<HPEN>::make(handle, 0)), width(0), style(LineSolid) {}

GPen::GPen(GColor const &color, int width, GLineStyle style)
    : shared(GHandleBox<HPEN>::make(CreatePen(style & 0xFFFF, width, color), 1)), color(color), width(width),
      style(style)
{
}

GPen::GPen(GPen const &other) = default;

GPen::~GPen() = default;

GPen &GPen::operator=(GPen const &other) = default;
