// GFont.h - fonts as shared values.
//
//   GFont  a LOGFONT and the platform font made from it, shared between copies; system fonts
//          by kind, and faces matched to the system's TrueType families
#pragma once

#include "foundation/PList.h"
#include "foundation/PString.h"
#include "foundation/TeskWinExport.h"
#include "graphics/GSharedHandle.h"

#include <windows.h>

class TESKWIN_API GFont {
public:
    enum FontStyle : int {
        Plain = 0,
        Bold = 1,
        Italic = 2,
        BoldItalic = 3,
    };

    // The kinds of system font that GFont(kind, limitSize) knows; any other kind gives
    // the system font.
    enum SystemFontKind : int {
        AnsiFixedFont = 0,
        AnsiVarFont = 1,
        DeviceDefaultFont = 2,
        SystemFont = 3,
        OemFixedFont = 4,
        SystemFixedFont = 6,
        CaptionFont = 7,
        SmallCaptionFont = 8,
        MenuFont = 9,
        StatusFont = 10,
        MessageFont = 11,
        DefaultGuiFont = 17,
    };

    // The stock system font.
    GFont();
    // A system font by kind. With limitSize non-zero, the fonts of the non-client metrics
    // (kinds 7 to 11) are held between 8 and 16 points.
    GFont(int kind, int limitSize);
    // A face at a height in logical units (negative: character height, positive: cell).
    // With match non-zero the face is first matched to a TrueType family; with
    // languageCharSet non-zero the character set follows the user's language.
    GFont(int height, PString const &face, FontStyle style, int match, int languageCharSet);
    GFont(int height, int width, PString const &face, FontStyle style, int match);
    GFont(GFont const &other);

    GFont &operator=(GFont const &other);

    operator HFONT() const { return shared.handle(); }

    int getSize() const { return logFont.lfHeight; }
    PString getFaceName() const;
    // Bold from a weight of 700 up, italic from the italic flag.
    FontStyle getStyle() const;
    int getCharSet() const { return logFont.lfCharSet; }

protected:
    // Names handle without owning it; the description is read back from the platform.
    explicit GFont(HFONT handle);

    // The TrueType family of the system's character set that name stands for, as the
    // platform spells it; failing that, the first such family; failing that, name itself.
    PString findMatch(PString const &name);

    // Enumeration callback: adds each TrueType family's name to the PList<PString> at list.
    static int CALLBACK _enumFontFamExProc(ENUMLOGFONTEXA *font, NEWTEXTMETRICEXA *metrics, int type,
                                           long list);

private:
    friend class GDevice;
    friend class PControl;

    explicit GFont(LOGFONTA const &description);

    // Replaces the platform font by one made from logFont; on failure nothing changes.
    void create();
    // Names handle, owned or not, and describes the font from it.
    void describe(HFONT handle, int owned);
    // Describes a face at a size and style, not yet made.
    void describe(int height, int width, PString const &face, FontStyle style, int match);
    static void setLanguageCharSet(LOGFONTA &description);

    LOGFONTA logFont;
    GSharedHandle<GHandleBox<HFONT>> shared;
};
