#include "graphics/GDevice.h"
#include "foundation/PNumerics.h"
#include "graphics/GObjectSelection.h"

#include <cstring>

namespace {

// The device, not the font, decides which face is taken: GetTextFaceA says which.
constexpr int faceBufferSize = 80;

// Face names compare without case, over at most the buffer's length. The LOGFONT's name is
// copied out first, so that one filling all 32 bytes is still read within bounds.
bool sameFace(LOGFONTA const &description, char const *face)
{
    char name[LF_FACESIZE + 1] = {};
    std::memcpy(name, description.lfFaceName, LF_FACESIZE);
    return _strnicmp(name, face, faceBufferSize) == 0;
}

// The character set of the system's code page; symbol when the code page has none of its own.
BYTE charSetOfCodePage(UINT codePage)
{
    switch (codePage) {
    case 932: return SHIFTJIS_CHARSET;
    case 936: return GB2312_CHARSET;
    case 949: return HANGEUL_CHARSET;
    case 950: return CHINESEBIG5_CHARSET;
    case 1253: return GREEK_CHARSET;
    default: return SYMBOL_CHARSET;
    }
}

} // namespace

GDevice::GDevice() : dc(nullptr), savedState(0), textMetrics(), mapMode(textMappingMode)
{
    setMapMode(mapMode);
}

GDevice::~GDevice()
{
    // Restoring the state deselects the library's objects before their shares go.
    if (dc && savedState)
        RestoreDC(dc, savedState);
}

void GDevice::initObjects()
{
    if (dc)
        savedState = SaveDC(dc);
}

GDeviceCaps GDevice::getDeviceCaps()
{
    return GDeviceCaps(*this);
}

void GDevice::setPen(GPen const &newPen)
{
    if (!dc)
        return;
    SelectObject(dc, HPEN(newPen));
    pen = newPen;
}

void GDevice::setBrush(GBrush const &newBrush)
{
    if (!dc)
        return;
    SelectObject(dc, HBRUSH(newBrush));
    SetBkColor(dc, newBrush.getBrushColor());
    brush = newBrush;
}

void GDevice::setFont(GFont const &newFont)
{
    if (!dc || HFONT(newFont) == HFONT(font))
        return;
    font = newFont;
    SelectObject(dc, HFONT(font));
    char taken[faceBufferSize] = {};
    GetTextFaceA(dc, faceBufferSize, taken);
    if (!sameFace(font.logFont, taken)) {
        LOGFONTA retry = font.logFont;
        retry.lfCharSet = charSetOfCodePage(GetACP());
        GFont candidate(retry);
        char candidateTaken[faceBufferSize] = {};
        {
            GObjectSelection trial(dc, HFONT(candidate));
            GetTextFaceA(dc, faceBufferSize, candidateTaken);
        }
        if (sameFace(candidate.logFont, candidateTaken))
            font = candidate;
    }
    SelectObject(dc, HFONT(font));
    GetTextMetricsA(dc, &textMetrics);
}

unsigned GDevice::setPalette(GPalette const &palette, int select)
{
    // Only a device on a window realises palettes.
    if (!dc || !WindowFromDC(dc))
        return ~0u;
    GPaletteSelection selection(dc, HPALETTE(palette), select);
    UnrealizeObject(HPALETTE(palette));
    return RealizePalette(dc);
}

void GDevice::setTextColor(GColor const &color)
{
    SetTextColor(dc, color);
}

GColor GDevice::getTextColor()
{
    return GColor(GetTextColor(dc));
}

void GDevice::setTextCharacterSpacing(int spacing)
{
    SetTextCharacterExtra(dc, spacing);
}

int GDevice::getTextCharacterSpacing()
{
    return GetTextCharacterExtra(dc);
}

void GDevice::setBackgroundColor(GColor const &color)
{
    SetBkColor(dc, color);
}

GColor GDevice::getBackgroundColor()
{
    return GColor(GetBkColor(dc));
}

void GDevice::setBackgroundMode(enum backgroundMode mode)
{
    SetBkMode(dc, mode);
}

int GDevice::getBackgroundMode()
{
    return GetBkMode(dc);
}

void GDevice::setNOT(int on)
{
    SetROP2(dc, on ? R2_NOT : R2_COPYPEN);
}

void GDevice::setXOR(int on)
{
    SetROP2(dc, on ? R2_XORPEN : R2_COPYPEN);
}

void GDevice::setMASK(int on)
{
    SetROP2(dc, on ? R2_MASKPEN : R2_COPYPEN);
}

GPoint GDevice::deviceToLogical(GPoint const &p)
{
    if (!dc)
        return GPoint::Zero;
    return GPoint(newTranslateXinv(truncateCoord(p.xVal())), newTranslateYinv(truncateCoord(p.yVal())));
}

GPoint GDevice::logicalToDevice(GPoint const &p)
{
    if (!dc)
        return GPoint::Zero;
    return GPoint(newTranslateX(p.xVal()), newTranslateY(p.yVal()));
}

double GDevice::lengthDeviceToLogical(double d)
{
    if (!dc || IS_ZERO(deviceMapMode.scale, 1e-9))
        return d;
    return d / deviceMapMode.scale;
}

// Offsets take no part in lengths.
double GDevice::lengthLogicalToDevice(double d)
{
    if (!dc)
        return d;
    return d * deviceMapMode.scale;
}

// Separate from setMapMode's route, and told apart from it for degenerate extents: here a
// zero extent gives the identity.
GDeviceMapMode GDevice::getGDeviceMapMode(GMapMode const &mode)
{
    if (mode.getMode() != scaledMappingMode)
        return GDeviceMapMode();
    const GPoint windowExt = mode.getWindowExt();
    const GPoint viewportExt = mode.getViewportExt();
    const double vx = viewportExt.xVal(), vy = viewportExt.yVal();
    const double a = windowExt.yVal() * vx;
    const double b = windowExt.xVal() * vy;
    // The slack axis gets the extent that makes both ratios equal.
    double x = windowExt.xVal(), y = windowExt.yVal();
    if (a < b) {
        if (!IS_ZERO(vx, 1e-9))
            y = b / vx;
    } else if (!IS_ZERO(vy, 1e-9)) {
        x = a / vy;
    }
    if (IS_ZERO(x, 1e-9) || IS_ZERO(y, 1e-9))
        return GDeviceMapMode();
    GDeviceMapMode reduced;
    reduced.scale = (vx / x + vy / y) * 0.5;
    reduced.offsetX = truncateCoord(-(reduced.scale * mode.getWindowOrg().xVal()));
    reduced.offsetY = truncateCoord(-(reduced.scale * mode.getWindowOrg().yVal()));
    return reduced;
}

void GDevice::setMapMode(GMapMode const &mode)
{
    mapMode = mode;
    const GPoint windowOrg = mapMode.getWindowOrg();
    const GPoint windowExt = mapMode.getWindowExt();
    const GPoint viewportOrg = mapMode.getViewportOrg();
    const GPoint viewportExt = mapMode.getViewportExt();

    if (mapMode.getMode() != scaledMappingMode || !dc) {
        deviceMapMode = GDeviceMapMode();
        if (!dc)
            return;
        SetMapMode(dc, mapMode.getMode());
        SetWindowExtEx(dc, truncateCoord(windowExt.xVal()), truncateCoord(windowExt.yVal()), nullptr);
        SetWindowOrgEx(dc, truncateCoord(windowOrg.xVal()), truncateCoord(windowOrg.yVal()), nullptr);
        SetViewportExtEx(dc, truncateCoord(viewportExt.xVal()), truncateCoord(viewportExt.yVal()), nullptr);
        SetViewportOrgEx(dc, truncateCoord(viewportOrg.xVal()), truncateCoord(viewportOrg.yVal()), nullptr);
        GetTextMetricsA(dc, &textMetrics);
        return;
    }

    // The axis with the smaller ratio wins, so the whole window fits in the viewport,
    // anchored at the device origin and not centred.
    const double a = windowExt.yVal() * viewportExt.xVal();
    const double b = windowExt.xVal() * viewportExt.yVal();
    double scale;
    if (b > a)
        scale = IS_ZERO(windowExt.xVal(), 1e-9) ? 1.0 : viewportExt.xVal() / windowExt.xVal();
    else
        scale = IS_ZERO(windowExt.yVal(), 1e-9) ? 1.0 : viewportExt.yVal() / windowExt.yVal();
    deviceMapMode.scale = scale;
    deviceMapMode.offsetX = truncateCoord(-(scale * windowOrg.xVal()));
    deviceMapMode.offsetY = truncateCoord(-(scale * windowOrg.yVal()));

    // The platform stays in pixels; the window origin lives only in the offsets and the
    // viewport origin only in the platform.
    const int w = truncateCoord(viewportExt.xVal());
    const int h = truncateCoord(viewportExt.yVal());
    SetMapMode(dc, MM_TEXT);
    SetWindowExtEx(dc, w, h, nullptr);
    SetWindowOrgEx(dc, 0, 0, nullptr);
    SetViewportExtEx(dc, w, h, nullptr);
    SetViewportOrgEx(dc, truncateCoord(viewportOrg.xVal()), truncateCoord(viewportOrg.yVal()), nullptr);
    GetTextMetricsA(dc, &textMetrics);
}

void GDevice::setWindow(double a, double b, double c, double d)
{
    GMapMode mode(scaledMappingMode);
    mode.setViewportExt(getDeviceArea());
    mode.setViewportOrg(GPoint(0, 0));
    mode.setWindowExt(GPoint(b - a, c - d));
    mode.setWindowOrg(GPoint(a, d));
    setMapMode(mode);
}

void GDevice::getWindowCoords(double &a, double &b, double &c, double &d) const
{
    const GPoint origin = mapMode.getWindowOrg();
    const GPoint extent = mapMode.getWindowExt();
    a = origin.xVal();
    d = origin.yVal();
    b = extent.xVal() + a;
    c = extent.yVal() + d;
}

void GDevice::setClipRegion(GRect const &rect)
{
    // The platform keeps its own copy of the region.
    GRgn region;
    if (region.create(rect))
        SelectClipRgn(dc, region);
}

void GDevice::setClipRegion(GRgn const &region)
{
    SelectClipRgn(dc, region);
}

GRgn GDevice::getClipRegion()
{
    GRgn region;
    region.create();
    if (GetClipRgn(dc, region) == 1)
        return region;
    return GRgn();
}

void GDevice::flush() const
{
    for (int i = 0; i < 20; ++i) {
        {
            // Destroyed while selected: the platform deletes it when the null brush replaces it.
            const GBrush black(GColor::Black);
            SelectObject(dc, HBRUSH(black));
        }
        SelectObject(dc, HBRUSH(GBrush::Null));
    }
    SelectObject(dc, HBRUSH(brush));
}

GPoint GDeviceCaps::getOffset() const
{
    const GPoint res = getRes();
    if (IS_ZERO(res.xVal() * res.yVal(), 1e-9))
        return GPoint(0, 0);
    const GPoint size = getSize();
    const GPoint offset = getPhysicalOffset();
    return GPoint(size.xVal() / res.xVal() * offset.xVal(), size.yVal() / res.yVal() * offset.yVal());
}
