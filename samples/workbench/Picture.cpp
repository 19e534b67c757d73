// Picture.cpp - band-wise operations and the synthetic landscape.
#include "Picture.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <vector>

namespace {

// Pictures are cut into about this many bands, and never into bands thinner than minBandRows.
const unsigned long bandCount = 12;
const unsigned long minBandRows = 16;

// Smooth value noise: a lattice of hashed values, blended with a smoothstep.
class ValueNoise {
public:
    explicit ValueNoise(unsigned int seed) : seed(seed) {}

    double at(double x, double y) const
    {
        const long ix = static_cast<long>(std::floor(x)), iy = static_cast<long>(std::floor(y));
        const double fx = smooth(x - ix), fy = smooth(y - iy);
        const double top = lerp(lattice(ix, iy), lattice(ix + 1, iy), fx);
        const double bottom = lerp(lattice(ix, iy + 1), lattice(ix + 1, iy + 1), fx);
        return lerp(top, bottom, fy);
    }

    // Four octaves, each half as strong and twice as fine; about 0 to 1.
    double fractal(double x, double y) const
    {
        double sum = 0, weight = 0.5;
        for (int octave = 0; octave < 4; ++octave, x *= 2, y *= 2, weight /= 2)
            sum += weight * at(x, y);
        return sum / 0.9375;
    }

private:
    static double smooth(double t) { return t * t * (3 - 2 * t); }
    static double lerp(double a, double b, double t) { return a + (b - a) * t; }

    double lattice(long x, long y) const
    {
        unsigned int h = seed ^ static_cast<unsigned int>(x) * 374761393u ^ static_cast<unsigned int>(y) * 668265263u;
        h = (h ^ (h >> 13)) * 1274126177u;
        return ((h ^ (h >> 16)) & 0xFFFF) / 65535.0;
    }

    unsigned int seed;
};

struct Rgb {
    double r, g, b;
};

Rgb mix(Rgb a, Rgb b, double t)
{
    t = std::clamp(t, 0.0, 1.0);
    return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}

unsigned char channel(double v) { return static_cast<unsigned char>(std::clamp(v, 0.0, 255.0)); }

} // namespace

Picture Picture::trueColour(unsigned long width, unsigned long height)
{
    const unsigned long stride = (width * 3 + 3) & ~3ul;
    auto *header = static_cast<BITMAPINFOHEADER *>(PGlobalAlloc(sizeof(BITMAPINFOHEADER)));
    auto *pixels = static_cast<unsigned char *>(PGlobalAlloc(stride * height));
    if (!header || !pixels) {
        PGlobalFree(header);
        PGlobalFree(pixels);
        return Picture();
    }
    *header = BITMAPINFOHEADER{sizeof(BITMAPINFOHEADER), static_cast<LONG>(width), static_cast<LONG>(height), 1, 24,
                               BI_RGB, static_cast<DWORD>(stride * height), 2835, 2835, 0, 0};
    return Picture(GImage(pixels, header, GPalette()));
}

void Picture::paintScene(unsigned int seed)
{
    if (!isTrueColour())
        return;
    const double w = getWidth(), h = getHeight();
    const ValueNoise noise(seed);
    const double horizon = 0.58 * h, shore = 0.80 * h;
    const double sunX = 0.72 * w, sunY = 0.22 * h, sunRadius = 0.05 * w;
    const Rgb zenith{40, 90, 175}, haze{215, 225, 235}, sun{255, 246, 210};
    const Rgb rock{88, 96, 128}, snow{236, 240, 248}, grass{70, 128, 52}, meadow{128, 160, 70};
    const Rgb water{30, 70, 110}, trunk{70, 50, 30}, leaves{28, 78, 36};

    for (unsigned long y = 0; y < getHeight(); ++y) {
        unsigned char *row = pictureRow(y);
        for (unsigned long x = 0; x < getWidth(); ++x) {
            const double u = x / w, v = y / h;
            // The sky, or for the lake the sky mirrored about the shore line, with ripples.
            const double skyY = y < shore ? y : 2 * shore - y + 3 * std::sin(y * 0.9 + noise.at(u * 40, v * 90) * 6);
            const double dx = x - sunX, dy = skyY - sunY;
            const double sunDistance = std::sqrt(dx * dx + dy * dy);
            Rgb colour = mix(zenith, haze, skyY / horizon);
            colour = mix(colour, sun, std::pow(std::max(0.0, 1 - sunDistance / (6 * sunRadius)), 3));
            if (sunDistance < sunRadius)
                colour = sun;
            const double cloud = noise.fractal(u * 6, skyY / h * 14);
            colour = mix(colour, haze, (cloud - 0.55) * 3);

            const double ridge = horizon - h * (0.28 * noise.fractal(u * 3 + 7, 0.5) + 0.02);
            const double hill = horizon - h * (0.10 * noise.fractal(u * 2 + 19, 3.5) - 0.04);
            if (y < shore && y >= ridge) {
                const double shade = noise.fractal(u * 30, v * 30);
                colour = mix(rock, snow, (ridge + 0.07 * h - y) / (0.05 * h) + shade * 0.4 - 0.2);
                colour = mix(colour, Rgb{40, 44, 60}, shade * 0.5);
            }
            if (y < shore && y >= hill) {
                const double grain = noise.fractal(u * 60, v * 60);
                colour = mix(grass, meadow, grain + (y - hill) / h);
                // Trees stand in a row along the hills: a trunk under a round crown.
                const double spacing = w / 14, cx = (std::floor(u * 14) + 0.5) * spacing;
                const double treeBase = hill + 0.06 * h, crownY = treeBase - 0.05 * h, radius = spacing * 0.3;
                const double tx = x - cx, ty = y - crownY;
                if (std::fabs(tx) < radius * 0.15 && y > crownY && y < treeBase)
                    colour = trunk;
                if (tx * tx + ty * ty < radius * radius)
                    colour = mix(leaves, grass, grain * 0.6 - ty / radius * 0.2);
            }
            if (y >= shore)
                colour = mix(colour, water, 0.45 + 0.3 * (y - shore) / (h - shore));
            unsigned char *pixel = row + 3 * x;
            pixel[0] = channel(colour.b);
            pixel[1] = channel(colour.g);
            pixel[2] = channel(colour.r);
        }
    }
    setModified(1);
}

int Picture::inBands(std::function<int(Picture &)> const &operation, std::function<void(int)> const &progress)
{
    if (isEmpty())
        return resultImpossible;
    const unsigned long width = getWidth(), height = getHeight();
    const unsigned long bandRows = std::max(minBandRows, (height + bandCount - 1) / bandCount);
    // Bands are cut from the picture as it was: a band's extra rows must not be filtered yet.
    Picture original(*this);
    for (unsigned long from = 0; from < height; from += bandRows) {
        const unsigned long to = std::min(height, from + bandRows);
        // One row more on each side, so that every row of the band is an inner row of the part.
        const unsigned long top = from == 0 ? 0 : from - 1, bottom = std::min(height - 1, to);
        std::unique_ptr<GImage> cut(original.getSubImage(GPoint(0, top), GPoint(width - 1, bottom)));
        if (!cut)
            return resultNoMemory;
        Picture part(*cut);
        const int result = operation(part);
        if (result != resultOk)
            return result;
        copyRows(part, top, from, to);
        progress(static_cast<int>(100 * to / height));
    }
    setModified(1);
    return resultOk;
}

void Picture::copyRows(Picture &part, unsigned long partTop, unsigned long from, unsigned long to)
{
    const unsigned long rowBytes = getWidth() * (getHeader()->biBitCount / 8);
    for (unsigned long y = from; y < to; ++y)
        std::memcpy(pictureRow(y), part.pictureRow(y - partTop), rowBytes);
}

bool Picture::readDevice(GDevice &device)
{
    if (!isTrueColour())
        return false;
    const int width = getWidth(), height = getHeight();
    const unsigned long stride = (width * 3ul + 3) & ~3ul;
    // The device gives its rows top-down; the picture keeps them bottom-up.
    std::vector<unsigned char> rows(stride * height);
    if (device.getDIBits(rows.data(), width, height, 1, 24) != height)
        return false;
    for (int y = 0; y < height; ++y)
        std::memcpy(pictureRow(y), rows.data() + y * stride, width * 3ul);
    setModified(1);
    return true;
}

void Picture::swapRedAndBlue()
{
    if (!isTrueColour())
        return;
    for (unsigned long y = 0; y < getHeight(); ++y) {
        unsigned char *pixel = pictureRow(y);
        for (unsigned long x = 0; x < getWidth(); ++x, pixel += 3)
            std::swap(pixel[0], pixel[2]);
    }
}
