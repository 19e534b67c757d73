#include "graphics/GFont.h"

#include "graphics/GObjectSelection.h"

#include <algorithm>
#include <mbstring.h>

namespace {

// The screen's device context for a scope.
class ScreenContext {
public:
    ScreenContext() : dc(GetDC(nullptr)) {}
    ~ScreenContext() { ReleaseDC(nullptr, dc); }
    ScreenContext(ScreenContext const &) = delete;
    ScreenContext &operator=(ScreenContext const &) = delete;

    operator HDC() const { return dc; }

private:
    HDC dc;
};

// The size of NONCLIENTMETRICSA without the padded border width, which every version of
// the platform accepts.
const UINT classicMetricsSize = 340;

int stockFontOf(int kind)
{
    switch (kind) {
    case GFont::AnsiFixedFont:
        return ANSI_FIXED_FONT;
    case GFont::AnsiVarFont:
        return ANSI_VAR_FONT;
    case GFont::DeviceDefaultFont:
        return DEVICE_DEFAULT_FONT;
    case GFont::OemFixedFont:
        return OEM_FIXED_FONT;
    case GFont::SystemFixedFont:
        return SYSTEM_FIXED_FONT;
    case GFont::DefaultGuiFont:
        return DEFAULT_GUI_FONT;
    default:
        return SYSTEM_FONT;
    }
}

// The font of the non-client metrics that kind names, or null for a stock kind.
LOGFONTA *metricsFontOf(NONCLIENTMETRICSA &metrics, int kind)
{
    switch (kind) {
    case GFont::CaptionFont:
        return &metrics.lfCaptionFont;
    case GFont::SmallCaptionFont:
        return &metrics.lfSmCaptionFont;
    case GFont::MenuFont:
        return &metrics.lfMenuFont;
    case GFont::StatusFont:
        return &metrics.lfStatusFont;
    case GFont::MessageFont:
        return &metrics.lfMessageFont;
    default:
        return nullptr;
    }
}

// Holds a character height (negative) between 8 and 16 points of the screen.
LONG clampToReadableSize(LONG height)
{
    int dpi;
    {
        ScreenContext screen;
        dpi = GetDeviceCaps(screen, LOGPIXELSY);
    }
    const LONG low = -MulDiv(8, dpi, 72);
    const LONG high = -MulDiv(16, dpi, 72);
    return std::min(low, std::max(high, height));
}

// At most 31 bytes of name, never half a double-byte character; the rest of the 32 is zero.
void copyFaceName(char (&faceName)[LF_FACESIZE], PString const &name)
{
    std::fill(faceName, faceName + LF_FACESIZE, 0);
    char const *text = name;
    _mbsnbcpy(reinterpret_cast<unsigned char *>(faceName), reinterpret_cast<unsigned char const *>(text),
              LF_FACESIZE - 1);
}

} // namespace

GFont::GFont() : logFont()
{
    describe(static_cast<HFONT>(GetStockObject(SYSTEM_FONT)), 0);
}

GFont::GFont(HFONT handle) : logFont()
{
    describe(handle, 0);
}

GFont::GFont(LOGFONTA const &description) : logFont(description)
{
    create();
}

GFont::GFont(int kind, int limitSize) : logFont()
{
    NONCLIENTMETRICSA metrics = {};
    metrics.cbSize = classicMetricsSize;
    LOGFONTA *chosen = metricsFontOf(metrics, kind);
    if (!chosen) {
        describe(static_cast<HFONT>(GetStockObject(stockFontOf(kind))), 0);
        return;
    }
    if (!SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, classicMetricsSize, &metrics, 0)) {
        describe(static_cast<HFONT>(GetStockObject(SYSTEM_FONT)), 0);
        return;
    }
    if (limitSize)
        chosen->lfHeight = clampToReadableSize(chosen->lfHeight);
    describe(CreateFontIndirectA(chosen), 1);
}

GFont::GFont(int height, PString const &face, FontStyle style, int match, int languageCharSet) : logFont()
{
    describe(height, 0, face, style, match);
    if (languageCharSet)
        setLanguageCharSet(logFont);
    create();
}

GFont::GFont(int height, int width, PString const &face, FontStyle style, int match) : logFont()
{
    describe(height, width, face, style, match);
    create();
}

GFont::GFont(GFont const &other) = default;

GFont &GFont::operator=(GFont const &other) = default;

void GFont::create()
{
    HFONT handle = CreateFontIndirectA(&logFont);
    if (handle)
        shared.reset(GHandleBox<HFONT>::make(handle, 1));
}

void GFont::describe(HFONT handle, int owned)
{
    shared.reset(GHandleBox<HFONT>::make(handle, owned));
    logFont = LOGFONTA();
    GetObjectA(handle, sizeof logFont, &logFont);
}

void GFont::describe(int height, int width, PString const &face, FontStyle style, int match)
{
    copyFaceName(logFont.lfFaceName, match ? findMatch(face) : face);
    logFont.lfHeight = height;
    logFont.lfWidth = width;
    logFont.lfItalic = style == Italic || style == BoldItalic;
    logFont.lfWeight = style == Bold || style == BoldItalic ? FW_BOLD : FW_NORMAL;
}

void GFont::setLanguageCharSet(LOGFONTA &description)
{
    const LANGID language = GetUserDefaultLangID();
    switch (PRIMARYLANGID(language)) {
    case LANG_ARABIC:
    case LANG_FARSI:
        description.lfCharSet = ARABIC_CHARSET;
        description.lfPitchAndFamily = 8;
        break;
    case LANG_KOREAN:
        // Johab here, Hangeul where a device retries a face: deliberate, both stand.
        description.lfCharSet = JOHAB_CHARSET;
        break;
    case LANG_JAPANESE:
        description.lfCharSet = SHIFTJIS_CHARSET;
        break;
    case LANG_CHINESE:
        // Simplified script for the sublanguage 0x800 (China); Big5 for every other.
        description.lfCharSet =
            SUBLANGID(language) == SUBLANG_CHINESE_SIMPLIFIED ? GB2312_CHARSET : CHINESEBIG5_CHARSET;
        break;
    case LANG_GREEK:
        description.lfCharSet = GREEK_CHARSET;
        break;
    case LANG_THAI:
        description.lfCharSet = THAI_CHARSET;
        break;
    default:
        description.lfCharSet = DEFAULT_CHARSET;
        break;
    }
}

PString GFont::findMatch(PString const &name)
{
    ScreenContext screen;
    LOGFONTA wanted = {};
    {
        GObjectSelection systemFont(screen, GetStockObject(SYSTEM_FONT));
        wanted.lfCharSet = static_cast<BYTE>(GetTextCharset(screen));
    }
    copyFaceName(wanted.lfFaceName, name);

    // The platform calls back with the extended records that the callback is declared with.
    const FONTENUMPROCA collect = reinterpret_cast<FONTENUMPROCA>(reinterpret_cast<void (*)()>(_enumFontFamExProc));
    PList<PString> families;
    EnumFontFamiliesExA(screen, &wanted, collect, reinterpret_cast<LPARAM>(&families), 0);
    if (families.length() == 0) {
        // With no face, every TrueType family of the character set answers.
        std::fill(wanted.lfFaceName, wanted.lfFaceName + LF_FACESIZE, 0);
        EnumFontFamiliesExA(screen, &wanted, collect, reinterpret_cast<LPARAM>(&families), 0);
    }
    return families.length() != 0 ? families[0] : name;
}

int CALLBACK GFont::_enumFontFamExProc(ENUMLOGFONTEXA *font, NEWTEXTMETRICEXA *, int type, long list)
{
    if (type & TRUETYPE_FONTTYPE)
        reinterpret_cast<PList<PString> *>(list)->add(PString(font->elfLogFont.lfFaceName));
    return 1;
}

PString GFont::getFaceName() const
{
    return PString(logFont.lfFaceName);
}

GFont::FontStyle GFont::getStyle() const
{
    const bool bold = logFont.lfWeight >= FW_BOLD;
    const bool italic = logFont.lfItalic != 0;
    if (bold)
        return italic ? BoldItalic : Bold;
    return italic ? Italic : Plain;
}
