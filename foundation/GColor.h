// GColor.h - colours as red, green, blue and as hue, saturation, value.
//
//   GColor     three 8-bit components; converts to and from a Win32 COLORREF
//   GHSVColor  hue in degrees [0, 360), or -999 for a grey; saturation and value in [0, 1]
#pragma once

#include "foundation/TeskWinExport.h"

struct tagPALETTEENTRY;
class GHSVColor;

class TESKWIN_API GColor {
public:
    constexpr GColor() : red(0), green(0), blue(0) {}
    constexpr GColor(unsigned char r, unsigned char g, unsigned char b) : red(r), green(g), blue(b) {}
    // From a COLORREF, 0x00bbggrr; the top byte is ignored.
    constexpr GColor(unsigned long colorRef)
        : red(colorRef & 0xFF), green((colorRef >> 8) & 0xFF), blue((colorRef >> 16) & 0xFF) {}
    // The nearest colour to the given hue, saturation and value.
    GColor(GHSVColor const &hsv);
    constexpr GColor(GColor const &other) = default;
    virtual ~GColor() = default;

    GColor &operator=(GColor const &other) = default;
    bool operator==(GColor const &other) const
    {
        return red == other.red && green == other.green && blue == other.blue;
    }

    // The COLORREF.
    constexpr operator unsigned long() const
    {
        return red | (static_cast<unsigned long>(green) << 8) | (static_cast<unsigned long>(blue) << 16);
    }
    // The three components as a palette entry with no flags.
    operator tagPALETTEENTRY() const;

    unsigned char getR() const { return red; }
    unsigned char getG() const { return green; }
    unsigned char getB() const { return blue; }

    static const GColor Red;
    static const GColor White;
    static const GColor Black;

private:
    unsigned char red;
    unsigned char green;
    unsigned char blue;
};

class TESKWIN_API GHSVColor {
public:
    // The hue of a grey, which has none.
    static const double Achromatic;

    GHSVColor(GColor const &color);

    // Writable, so that a colour can be changed before it goes back through GColor.
    double &getH() { return hue; }
    double &getS() { return saturation; }
    double &getV() { return value; }
    double getH() const { return hue; }
    double getS() const { return saturation; }
    double getV() const { return value; }

private:
    double hue;
    double saturation;
    double value;
};
