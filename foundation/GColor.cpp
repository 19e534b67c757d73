#include "foundation/GColor.h"

#include <windows.h>

#include <cmath>

const GColor GColor::Red(255, 0, 0);
const GColor GColor::White(255, 255, 255);
const GColor GColor::Black(0, 0, 0);

const double GHSVColor::Achromatic = -999.0;

namespace {

// A fraction in [0, 1] (NaN as 0) to the nearest 8-bit component.
unsigned char toComponent(double fraction)
{
    if (!(fraction > 0))
        return 0;
    if (fraction >= 1)
        return 255;
    return static_cast<unsigned char>(fraction * 255.0 + 0.5);
}

} // namespace

GColor::GColor(GHSVColor const &hsv)
{
    const double v = hsv.getV(), s = hsv.getS();
    double h = hsv.getH();
    // Hues outside one turn are brought back into it; fmod is slow, so only for those.
    if (!(h < 360.0))
        h = std::fmod(h, 360.0);
    // No saturation, or a negative hue, is a grey.
    if (!(s > 0) || !(h >= 0)) {
        red = green = blue = toComponent(v);
        return;
    }
    const double saturation = s < 1 ? s : 1.0;
    const double sector = h / 60.0;
    const int i = static_cast<int>(sector);
    const double f = sector - i;
    const double p = v * (1.0 - saturation);
    const double q = v * (1.0 - saturation * f);
    const double t = v * (1.0 - saturation * (1.0 - f));
    double r, g, b;
    switch (i) {
    case 0: r = v; g = t; b = p; break;
    case 1: r = q; g = v; b = p; break;
    case 2: r = p; g = v; b = t; break;
    case 3: r = p; g = q; b = v; break;
    case 4: r = t; g = p; b = v; break;
    default: r = v; g = p; b = q; break;
    }
    red = toComponent(r);
    green = toComponent(g);
    blue = toComponent(b);
}

GColor::operator tagPALETTEENTRY() const
{
    return PALETTEENTRY{red, green, blue, 0};
}

GHSVColor::GHSVColor(GColor const &color)
{
    const int r = color.getR(), g = color.getG(), b = color.getB();
    const int high = r > g ? (r > b ? r : b) : (g > b ? g : b);
    const int low = r < g ? (r < b ? r : b) : (g < b ? g : b);
    const int range = high - low;
    value = high / 255.0;
    if (range == 0) {
        hue = Achromatic;
        saturation = 0.0;
        return;
    }
    saturation = static_cast<double>(range) / high;
    double sector;
    if (high == r)
        sector = g >= b ? static_cast<double>(g - b) / range : 6.0 + static_cast<double>(g - b) / range;
    else if (high == g)
        sector = 2.0 + static_cast<double>(b - r) / range;
    else
        sector = 4.0 + static_cast<double>(r - g) / range;
    hue = sector * 60.0;
}
