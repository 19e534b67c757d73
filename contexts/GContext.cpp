#include "contexts/GContext.h"

#include "events/PWindowObject.h"
#include "graphics/GObjectSelection.h"
#include "widgets/PScroller.h"
#include "windows/PWindow.h"

namespace {

HDC acquire(PWindowObject *window, GContextStyle style)
{
    if (!window)
        return GetDC(nullptr);
    switch (style) {
    case GCWindow: return GetWindowDC(*window);
    case GCScreen: return GetDC(nullptr);
    case GCClient: break;
    }
    return GetDC(*window);
}

// Floor of the product would differ for negative positions: the offset truncates. Deliberate.
long scrollOffset(long unit, float position)
{
    return static_cast<long>(static_cast<float>(unit) * position);
}

// One family for each name the platform reports; a vertical variant ("@" first) only when
// its upright family is not listed already. Raster fonts are left out.
int CALLBACK addFontName(ENUMLOGFONTEXA const *font, NEWTEXTMETRICEXA const *, DWORD type, LPARAM list)
{
    if (type & RASTER_FONTTYPE)
        return 1;
    PList<PString> &names = *reinterpret_cast<PList<PString> *>(list);
    char const *face = reinterpret_cast<char const *>(font->elfLogFont.lfFaceName);
    if (face[0] == '@') {
        const PString upright(face + 1);
        for (unsigned int index = names.length(); index-- > 0;) {
            if (names(index) == upright)
                return 1;
        }
    }
    names.add(PString(face));
    return 1;
}

} // namespace

GContext::GContext(PWindowObject *window, GContextStyle style) : window(window)
{
    dc = acquire(window, style);
    if (window && style == GCScreen)
        this->window = nullptr;
    initObjects();
    GetTextMetricsA(dc, &textMetrics);
    noRelease = 0;
}

GContext::GContext(HDC const &handle) : noRelease(1), window(nullptr)
{
    dc = handle;
    initObjects();
}

GContext::GContext() : noRelease(0), window(nullptr)
{
}

GContext::~GContext()
{
    if (dc && !noRelease) {
        // The saved state goes back before the handle does.
        if (savedState)
            RestoreDC(dc, savedState);
        savedState = 0;
        ReleaseDC(window ? static_cast<HWND>(*window) : nullptr, dc);
        dc = nullptr;
    }
}

GPoint GContext::getDeviceArea()
{
    GPoint area;
    if (window && window->isValidWindow())
        area.set(window->getClientArea().width(), window->getClientArea().height());
    return area;
}

void GContext::clearWindow()
{
    PWindow *painted = dynamic_cast<PWindow *>(window);
    if (!painted || !painted->isValidWindow() || !dc)
        return;
    const GRect client = painted->getClientArea();
    const GBrush background = painted->getBackground();
    GObjectSelection selection(dc, static_cast<HBRUSH>(background));
    Rectangle(dc, newTranslateX(0), newTranslateY(0), newTranslateX(client.rVal()), newTranslateY(client.bVal()));
}

void GContext::beginScrollerView()
{
    shiftViewport(-1);
}

void GContext::endScrollerView()
{
    shiftViewport(1);
}

void GContext::shiftViewport(int sign)
{
    PWindow *scrolled = dynamic_cast<PWindow *>(window);
    PScroller *scroller = scrolled ? scrolled->getScroller() : nullptr;
    if (!dc || !scroller)
        return;
    const PTPoint<float> position = scroller->getPos();
    const PTPoint<long> unit = scroller->getUnit();
    const GPoint origin = mapMode.getViewportOrg();
    const double x = origin.xVal() + sign * static_cast<double>(scrollOffset(unit.xVal(), position.xVal()));
    const double y = origin.yVal() + sign * static_cast<double>(scrollOffset(unit.yVal(), position.yVal()));
    SetViewportOrgEx(dc, truncateCoord(x), truncateCoord(y), nullptr);
}

void GContext::exclude(GRect rect)
{
    if (dc)
        ExcludeClipRect(dc, truncateCoord(rect.lVal()), truncateCoord(rect.tVal()), truncateCoord(rect.rVal()),
                        truncateCoord(rect.bVal()));
}

// Every family but the raster ones, in the order the platform reports them, first of the
// default character set, then of the symbol set: a family in both comes twice.
void getTrueTypeFontNames(PList<PString> &names)
{
    GContext screen(nullptr, GCClient);
    for (BYTE charSet : {static_cast<BYTE>(DEFAULT_CHARSET), static_cast<BYTE>(SYMBOL_CHARSET)}) {
        LOGFONTA font = {};
        font.lfCharSet = charSet;
        EnumFontFamiliesExA(screen, &font, reinterpret_cast<FONTENUMPROCA>(addFontName),
                            reinterpret_cast<LPARAM>(&names), 0);
    }
}
