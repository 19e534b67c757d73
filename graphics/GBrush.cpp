#include "graphics/GBrush.h"

#include "graphics/GBitmap.h"

namespace {

LOGBRUSH describe(UINT style, GColor const &color, ULONG_PTR hatch)
{
    LOGBRUSH description;
    description.lbStyle = style;
    description.lbColor = color;
    description.lbHatch = hatch;
    return description;
}

} // namespace

GBrush::GBrush() : GBrush(GColor::White) {}

GBrush::GBrush(GColor const &color)
    : logBrush(describe(BS_SOLID, color, 0)), shared(GHandleBox<HBRUSH>::make(CreateSolidBrush(color), 1))
{
}

GBrush::GBrush(int hatch, GColor const &color)
    : logBrush(describe(BS_HATCHED, color, static_cast<ULONG_PTR>(hatch))),
      shared(GHandleBox<HBRUSH>::make(CreateHatchBrush(hatch, color), 1))
{
}

GBrush::GBrush(HBRUSH handle) : logBrush(), shared(GHandleBox<HBRUSH>::make(handle, 0)) {}

GBrush::GBrush(GBrush const &other) = default;

GBrush::~GBrush() = default;

GBrush &GBrush::operator=(GBrush const &other) = default;

void GBrush::adopt(HBRUSH handle)
{
    shared.reset(GHandleBox<HBRUSH>::make(handle, 1));
}

GBMBrush::GBMBrush() = default;

GBMBrush::GBMBrush(GBitmap const &bitmap)
{
    adopt(CreatePatternBrush(bitmap));
}

GBMBrush::~GBMBrush() = default;
