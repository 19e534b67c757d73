// Fonts: system fonts by kind, faces with heights, styles and character sets, the TrueType
// matching rule, and the sharing of the platform font. Faces and heights are checked as the
// platform reports them once the font is selected.
#include <gtest/gtest.h>

#include "TeskWin.h"
#include "support/GdiObjectCounter.h"
#include "support/ImportPatch.h"

#include <mbctype.h>
#include <string>

namespace {

const char library[] = "TeskWin.dll";

// Opens the protected parts of GFont to the tests.
class FontProbe : public GFont {
public:
    FontProbe() = default;
    explicit FontProbe(HFONT handle) : GFont(handle) {}
    using GFont::findMatch;
};

LOGFONTA descriptionOf(HGDIOBJ font)
{
    LOGFONTA description = {};
    GetObjectA(font, sizeof description, &description);
    return description;
}

// What the platform made of a font: the face it took and its metrics.
struct Realised {
    std::string face;
    TEXTMETRICA metrics;
};

Realised realise(HFONT font)
{
    Realised result = {};
    HDC dc = CreateCompatibleDC(nullptr);
    HGDIOBJ old = SelectObject(dc, font);
    char face[LF_FACESIZE] = {};
    GetTextFaceA(dc, sizeof face, face);
    GetTextMetricsA(dc, &result.metrics);
    SelectObject(dc, old);
    DeleteDC(dc);
    result.face = face;
    return result;
}

int screenDpi()
{
    HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    return dpi;
}

int pointsToHeight(int points)
{
    return -MulDiv(points, screenDpi(), 72);
}

// The default font and the stock kinds borrow the platform's stock fonts and make nothing.
TEST(GFont, DefaultAndStockKindsNameTheirStockFontWhateverTheLimit)
{
    const struct {
        int kind;
        int stock;
    } kinds[] = {
        {0, ANSI_FIXED_FONT},  {1, ANSI_VAR_FONT},    {2, DEVICE_DEFAULT_FONT}, {3, SYSTEM_FONT},
        {4, OEM_FIXED_FONT},   {5, SYSTEM_FONT},      {6, SYSTEM_FIXED_FONT},   {12, SYSTEM_FONT},
        {13, SYSTEM_FONT},     {14, SYSTEM_FONT},     {15, SYSTEM_FONT},        {16, SYSTEM_FONT},
        {17, DEFAULT_GUI_FONT}, {18, SYSTEM_FONT},    {99, SYSTEM_FONT},        {-1, SYSTEM_FONT},
    };
    GdiObjectCounter counter;
    {
        GFont font;
        HGDIOBJ stock = GetStockObject(SYSTEM_FONT);
        EXPECT_EQ(static_cast<HFONT>(font), stock);
        const LOGFONTA platform = descriptionOf(stock);
        EXPECT_EQ(font.getSize(), platform.lfHeight);
        EXPECT_STREQ(font.getFaceName(), platform.lfFaceName);
        EXPECT_EQ(font.getCharSet(), platform.lfCharSet);
    }
    for (auto const &expected : kinds) {
        for (int limit : {0, 1}) {
            GFont font(expected.kind, limit);
            HGDIOBJ stock = GetStockObject(expected.stock);
            EXPECT_EQ(static_cast<HFONT>(font), stock) << "kind " << expected.kind;
            EXPECT_STREQ(font.getFaceName(), descriptionOf(stock).lfFaceName) << "kind " << expected.kind;
        }
    }
    EXPECT_EQ(counter.created(), 0);
    EXPECT_EQ(counter.deleteCalls(), 0);
}

TEST(GFont, MetricsKindsCopyTheNonClientFonts)
{
    NONCLIENTMETRICSA metrics = {};
    metrics.cbSize = sizeof metrics;
    ASSERT_TRUE(SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0));
    const struct {
        int kind;
        LOGFONTA const &font;
    } kinds[] = {
        {7, metrics.lfCaptionFont}, {8, metrics.lfSmCaptionFont}, {9, metrics.lfMenuFont},
        {10, metrics.lfStatusFont}, {11, metrics.lfMessageFont},
    };
    GdiObjectCounter counter;
    for (auto const &expected : kinds) {
        GFont font(expected.kind, 0);
        EXPECT_EQ(static_cast<void *>(static_cast<HFONT>(font)), counter.lastCreated());
        EXPECT_EQ(font.getSize(), expected.font.lfHeight) << "kind " << expected.kind;
        EXPECT_STREQ(font.getFaceName(), expected.font.lfFaceName) << "kind " << expected.kind;
        EXPECT_EQ(font.getStyle(), expected.font.lfWeight >= FW_BOLD ? GFont::Bold : GFont::Plain);
    }
    EXPECT_EQ(counter.created(), 5);
    EXPECT_TRUE(counter.eachDeletedOnce());
}

// SystemParametersInfoA as the library sees it, with the caption font's height replaced.
ImportPatch *metricsPatch;
LONG captionHeight;
BOOL metricsAnswer;

BOOL WINAPI fakeSystemParametersInfoA(UINT action, UINT size, void *data, UINT flags)
{
    BOOL result = metricsPatch->originalAs<decltype(SystemParametersInfoA)>()(action, size, data, flags);
    if (result && action == SPI_GETNONCLIENTMETRICS)
        static_cast<NONCLIENTMETRICSA *>(data)->lfCaptionFont.lfHeight = captionHeight;
    return metricsAnswer ? result : FALSE;
}

TEST(GFont, LimitSizeHoldsMetricsFontsBetweenEightAndSixteenPointsAndFailuresGiveTheSystemFont)
{
    ImportPatch patch(library, "user32.dll", "SystemParametersInfoA",
                      reinterpret_cast<void *>(&fakeSystemParametersInfoA));
    ASSERT_TRUE(patch.isActive());
    metricsPatch = &patch;
    metricsAnswer = TRUE;

    const struct {
        int points;
        int limit;
        int expectedPoints;
    } cases[] = {{30, 1, 16}, {6, 1, 8}, {12, 1, 12}, {16, 1, 16}, {8, 1, 8}, {30, 0, 30}, {6, 0, 6}};
    for (auto const &c : cases) {
        captionHeight = pointsToHeight(c.points);
        GFont font(GFont::CaptionFont, c.limit);
        EXPECT_EQ(font.getSize(), pointsToHeight(c.expectedPoints)) << c.points << " points";
        EXPECT_EQ(descriptionOf(font).lfHeight, pointsToHeight(c.expectedPoints)) << c.points << " points";
        // A negative height asks for the em height, which a TrueType face meets exactly.
        const Realised made = realise(font);
        EXPECT_EQ(made.metrics.tmHeight - made.metrics.tmInternalLeading, -pointsToHeight(c.expectedPoints))
            << made.face;
    }

    // Failing metrics give the system font, and nothing is made.
    metricsAnswer = FALSE;
    GdiObjectCounter counter;
    for (int kind = GFont::CaptionFont; kind <= GFont::MessageFont; ++kind) {
        GFont font(kind, 1);
        EXPECT_EQ(static_cast<HFONT>(font), GetStockObject(SYSTEM_FONT)) << "kind " << kind;
    }
    EXPECT_EQ(counter.created(), 0);
    EXPECT_EQ(counter.deleteCalls(), 0);
}

TEST(GFont, FaceHeightAndStyleReachThePlatform)
{
    const struct {
        GFont::FontStyle style;
        LONG weight;
        BYTE italic;
    } styles[] = {{GFont::Plain, 400, 0}, {GFont::Bold, 700, 0}, {GFont::Italic, 400, 1}, {GFont::BoldItalic, 700, 1}};
    GdiObjectCounter counter;
    for (auto const &expected : styles) {
        GFont font(-20, "Tahoma", expected.style, 0, 0);
        EXPECT_EQ(font.getSize(), -20);
        EXPECT_STREQ(font.getFaceName(), "Tahoma");
        EXPECT_EQ(font.getStyle(), expected.style);
        EXPECT_EQ(font.getCharSet(), ANSI_CHARSET);
        const LOGFONTA platform = descriptionOf(font);
        EXPECT_EQ(platform.lfWeight, expected.weight);
        EXPECT_EQ(platform.lfItalic, expected.italic);
        const Realised made = realise(font);
        EXPECT_EQ(made.face, "Tahoma");
        EXPECT_EQ(made.metrics.tmHeight - made.metrics.tmInternalLeading, 20);
        EXPECT_EQ(made.metrics.tmWeight, expected.weight);
        EXPECT_EQ(made.metrics.tmItalic != 0, expected.italic != 0);
    }

    GFont narrow(-20, 6, "Tahoma", GFont::Bold, 0);
    EXPECT_EQ(descriptionOf(narrow).lfWidth, 6);
    EXPECT_EQ(narrow.getStyle(), GFont::Bold);
    GFont wide(-20, 20, "Tahoma", GFont::Plain, 0);
    EXPECT_LT(realise(narrow).metrics.tmAveCharWidth, realise(wide).metrics.tmAveCharWidth);
    EXPECT_EQ(counter.created(), 6);
}

TEST(GFont, FaceNamesAreCutTo31BytesNeverHalfACharacter)
{
    const std::string forty(40, 'x');
    EXPECT_STREQ(GFont(-12, forty.c_str(), GFont::Plain, 0, 0).getFaceName(), std::string(31, 'x').c_str());
    EXPECT_STREQ(GFont(-12, 3, forty.c_str(), GFont::Plain, 0).getFaceName(), std::string(31, 'x').c_str());

    // In code page 932, 0x82 0xA0 is one character: it fits whole at bytes 30 and 31, and
    // is dropped whole where only its first byte would fit.
    const int previous = _getmbcp();
    ASSERT_EQ(_setmbcp(932), 0);
    const std::string fits = std::string(29, 'a') + "\x82\xA0" + "bbb";
    const std::string straddles = std::string(30, 'a') + "\x82\xA0" + "bbb";
    EXPECT_STREQ(GFont(-12, fits.c_str(), GFont::Plain, 0, 0).getFaceName(), fits.substr(0, 31).c_str());
    EXPECT_STREQ(GFont(-12, straddles.c_str(), GFont::Plain, 0, 0).getFaceName(), std::string(30, 'a').c_str());
    _setmbcp(previous);
}

LANGID fakeLanguage;

LANGID WINAPI fakeGetUserDefaultLangID()
{
    return fakeLanguage;
}

TEST(GFont, LanguageCharSetFollowsTheUserLanguage)
{
    ImportPatch patch(library, "kernel32.dll", "GetUserDefaultLangID",
                      reinterpret_cast<void *>(&fakeGetUserDefaultLangID));
    ASSERT_TRUE(patch.isActive());
    const struct {
        LANGID language;
        int charSet;
    } languages[] = {
        {0x0401, ARABIC_CHARSET},      {0x0429, ARABIC_CHARSET}, {0x0412, JOHAB_CHARSET},
        {0x0411, SHIFTJIS_CHARSET},    {0x0804, GB2312_CHARSET}, {0x0404, CHINESEBIG5_CHARSET},
        {0x0C04, CHINESEBIG5_CHARSET}, {0x0408, GREEK_CHARSET},  {0x041E, THAI_CHARSET},
        {0x0409, DEFAULT_CHARSET},     {0x0407, DEFAULT_CHARSET},
    };
    for (auto const &expected : languages) {
        fakeLanguage = expected.language;
        GFont font(-12, "Tahoma", GFont::Plain, 0, 1);
        EXPECT_EQ(font.getCharSet(), expected.charSet) << std::hex << expected.language;
        const LOGFONTA platform = descriptionOf(font);
        EXPECT_EQ(platform.lfCharSet, expected.charSet) << std::hex << expected.language;
        EXPECT_EQ(platform.lfPitchAndFamily, expected.charSet == ARABIC_CHARSET ? 8 : 0)
            << std::hex << expected.language;
    }
    fakeLanguage = 0x0411;
    EXPECT_EQ(GFont(-12, "Tahoma", GFont::Plain, 0, 0).getCharSet(), ANSI_CHARSET);
    EXPECT_EQ(GFont(-12, 0, "Tahoma", GFont::Plain, 0).getCharSet(), ANSI_CHARSET);
}

// The first TrueType family of the system's character set, as the platform lists them.
int CALLBACK keepFirstTrueType(LOGFONTA const *font, TEXTMETRICA const *, DWORD type, LPARAM first)
{
    std::string &name = *reinterpret_cast<std::string *>(first);
    if ((type & TRUETYPE_FONTTYPE) && name.empty())
        name = font->lfFaceName;
    return 1;
}

std::string firstTrueTypeFamily()
{
    HDC screen = GetDC(nullptr);
    HGDIOBJ old = SelectObject(screen, GetStockObject(SYSTEM_FONT));
    LOGFONTA wanted = {};
    wanted.lfCharSet = static_cast<BYTE>(GetTextCharset(screen));
    SelectObject(screen, old);
    std::string first;
    EnumFontFamiliesExA(screen, &wanted, keepFirstTrueType, reinterpret_cast<LPARAM>(&first), 0);
    ReleaseDC(nullptr, screen);
    return first;
}

TEST(GFont, FindMatchTakesTheTrueTypeFamilyAsThePlatformSpellsIt)
{
    FontProbe probe;
    EXPECT_STREQ(probe.findMatch("tahoma"), "Tahoma");
    EXPECT_STREQ(GFont(-12, "TAHOMA", GFont::Plain, 1, 0).getFaceName(), "Tahoma");
    EXPECT_STREQ(GFont(-12, 5, "tAHOMA", GFont::Plain, 1).getFaceName(), "Tahoma");

    const std::string first = firstTrueTypeFamily();
    ASSERT_FALSE(first.empty());
    EXPECT_STREQ(probe.findMatch("No Such Face"), first.c_str());
    EXPECT_STREQ(GFont(-12, "No Such Face", GFont::Plain, 1, 0).getFaceName(), first.c_str());
    EXPECT_STREQ(GFont(-12, "No Such Face", GFont::Plain, 0, 0).getFaceName(), "No Such Face");
}

int enumerations;

// Answers every enumeration with one raster family only.
int WINAPI fakeEnumFontFamiliesExA(HDC, LOGFONTA *, FONTENUMPROCA callback, LPARAM data, DWORD)
{
    ++enumerations;
    ENUMLOGFONTEXA font = {};
    lstrcpyA(font.elfLogFont.lfFaceName, "Raster Only");
    NEWTEXTMETRICEXA metrics = {};
    callback(&font.elfLogFont, reinterpret_cast<TEXTMETRICA *>(&metrics), RASTER_FONTTYPE, data);
    return 1;
}

TEST(GFont, FindMatchKeepsTheNameWhenNoTrueTypeFamilyAnswers)
{
    ImportPatch patch(library, "gdi32.dll", "EnumFontFamiliesExA",
                      reinterpret_cast<void *>(&fakeEnumFontFamiliesExA));
    ASSERT_TRUE(patch.isActive());
    enumerations = 0;
    FontProbe probe;
    EXPECT_STREQ(probe.findMatch("Tahoma"), "Tahoma");
    EXPECT_EQ(enumerations, 2) << "by name, then all families of the character set";
}

TEST(GFont, StyleReadsWeightAndItalicOfBorrowedFonts)
{
    const struct {
        LONG weight;
        BYTE italic;
        GFont::FontStyle style;
    } cases[] = {{600, 0, GFont::Plain},  {700, 0, GFont::Bold},   {900, 0, GFont::Bold},
                 {400, 1, GFont::Italic}, {699, 1, GFont::Italic}, {700, 1, GFont::BoldItalic}};
    GdiObjectCounter counter;
    for (auto const &c : cases) {
        LOGFONTA description = {};
        description.lfHeight = -12;
        description.lfWeight = c.weight;
        description.lfItalic = c.italic;
        lstrcpyA(description.lfFaceName, "Tahoma");
        HFONT borrowed = CreateFontIndirectA(&description);
        {
            FontProbe font(borrowed);
            EXPECT_EQ(font.getStyle(), c.style) << c.weight << " " << int(c.italic);
            EXPECT_EQ(static_cast<HFONT>(font), borrowed);
            FontProbe copy(font);
        }
        EXPECT_EQ(counter.deletions(borrowed), 0) << "a borrowed font is never deleted";
        EXPECT_NE(GetObjectType(borrowed), 0u);
        DeleteObject(borrowed);
    }
}

TEST(GFont, CopiesShareOneFontDeletedWithTheLast)
{
    GdiObjectCounter counter;
    {
        GFont first(-12, "Tahoma", GFont::Plain, 0, 0);
        HFONT handle = first;
        GFont copy(first);
        EXPECT_EQ(static_cast<HFONT>(copy), handle);
        first = GFont();
        first = first;
        EXPECT_EQ(counter.deletions(handle), 0);
        EXPECT_EQ(copy.getSize(), -12);
        copy = first;
        EXPECT_EQ(counter.deletions(handle), 1);
        EXPECT_STREQ(copy.getFaceName(), GFont().getFaceName());
    }
    EXPECT_EQ(counter.created(), 1);
    EXPECT_TRUE(counter.eachDeletedOnce());
}

HFONT WINAPI failingCreateFontIndirectA(LOGFONTA const *)
{
    return nullptr;
}

TEST(GFont, AFailedCreationLeavesTheDescriptionWithoutAFont)
{
    ImportPatch patch(library, "gdi32.dll", "CreateFontIndirectA",
                      reinterpret_cast<void *>(&failingCreateFontIndirectA));
    ASSERT_TRUE(patch.isActive());
    GFont font(-15, "Tahoma", GFont::BoldItalic, 0, 0);
    EXPECT_EQ(static_cast<HFONT>(font), nullptr);
    EXPECT_STREQ(font.getFaceName(), "Tahoma");
    EXPECT_EQ(font.getSize(), -15);
    EXPECT_EQ(font.getStyle(), GFont::BoldItalic);
}

} // namespace
