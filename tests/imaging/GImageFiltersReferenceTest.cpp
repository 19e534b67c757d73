// The 3 by 3 filters, which work on whole rows at once, against a plain reading of their rules
// position by position through getSubset and getIndex, on random pictures of odd sizes.
#include "imaging/ImageBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <string>

namespace {

class Random {
public:
    explicit Random(unsigned long seed) : state(seed) {}
    int below(int n)
    {
        state = state * 1664525u + 1013904223u;
        return static_cast<int>((state >> 8) % static_cast<unsigned long>(n));
    }

private:
    unsigned long state;
};

enum Form { greyForm, shortGreyForm, colourForm, smallColourForm, trueColourForm };

// A picture of random bytes. Colour palettes draw from few channel values, so that entries
// repeat and distances tie; the small one has 5 colours and indices past them. The short grey
// ramp counts 200 of its 256 entries, so that the greys past them map to others.
ProbeImage randomPicture(Form form, long width, long height, Random &random)
{
    std::vector<GColor> colors;
    if (form == greyForm || form == shortGreyForm)
        colors = ProbeImage::greys(256);
    const int count = form == colourForm ? 256 : form == smallColourForm ? 5 : 0;
    for (int i = 0; i < count; ++i)
        colors.emplace_back(random.below(4) * 85, random.below(4) * 85, random.below(3) * 127);
    ProbeImage image(width, height, colors);
    if (form == shortGreyForm)
        image.info().biClrUsed = image.info().biClrImportant = 200;
    const int values = form == smallColourForm ? 8 : 256;
    for (unsigned long i = 0; i < image.info().biSizeImage; ++i)
        image.bytes()[i] = static_cast<unsigned char>(random.below(values));
    return image;
}

int channelSum(GColor const &c) { return c.getR() + c.getG() + c.getB(); }

// Each inner position's choice among its nine colours, sorted stably by channel sum.
Rows referenceRank(ProbeImage &image, int mode)
{
    ProbeImage result(image);
    const int type = image.getImageType();
    const long bytes = image.info().biBitCount / 8;
    for (long r = 1; r + 1 < image.info().biHeight; ++r)
        for (long c = 1; c + 1 < image.info().biWidth; ++c) {
            GColor window[9];
            image.getSubset(static_cast<unsigned short>(r), static_cast<unsigned short>(c), 3, type, window);
            std::stable_sort(window, window + 9,
                             [](GColor const &a, GColor const &b) { return channelSum(a) < channelSum(b); });
            GColor choice;
            if (mode == 4) {
                choice = window[4];
            } else if (mode == 5) {
                choice = window[0];
            } else if (mode == 6) {
                choice = window[8];
            } else if (mode == 7) {
                unsigned char sums[3] = {0, 0, 0};
                for (GColor const &w : window) {
                    sums[0] = static_cast<unsigned char>(sums[0] + w.getR());
                    sums[1] = static_cast<unsigned char>(sums[1] + w.getG());
                    sums[2] = static_cast<unsigned char>(sums[2] + w.getB());
                }
                auto distance = [&](GColor const &e) {
                    return std::abs(sums[0] / 9 - e.getR()) + std::abs(sums[1] / 9 - e.getG()) +
                           std::abs(sums[2] / 9 - e.getB());
                };
                choice = distance(window[0]) < distance(window[8]) ? window[0] : window[8];
            }
            unsigned char *to = result.at(r, c);
            if (bytes == 1) {
                to[0] = image.getIndex(choice);
            } else {
                to[0] = choice.getR();
                to[1] = choice.getG();
                to[2] = choice.getB();
            }
        }
    return storedRows(result);
}

using WindowValue = std::function<int(unsigned char const *window)>;

// Each inner position's value per plane, through the palette's nearest colour.
Rows referencePlanes(ProbeImage &image, WindowValue const &value)
{
    ProbeImage result(image);
    const int type = image.getImageType();
    const int planes = type == 0 ? 1 : 3;
    for (long r = 1; r + 1 < image.info().biHeight; ++r)
        for (long c = 1; c + 1 < image.info().biWidth; ++c) {
            int v[3];
            for (int p = 0; p < planes; ++p) {
                unsigned char window[9];
                image.getSubset(static_cast<unsigned short>(r), static_cast<unsigned short>(c), p, 3, type, window);
                v[p] = value(window);
            }
            unsigned char *to = result.at(r, c);
            auto byte = [](int x) { return static_cast<unsigned char>(x); };
            if (type == 2)
                to[0] = byte(v[0]), to[1] = byte(v[1]), to[2] = byte(v[2]);
            else if (type == 0)
                to[0] = image.getIndex(GColor(byte(v[0]), byte(v[0]), byte(v[0])));
            else
                to[0] = image.getIndex(GColor(byte(v[0]), byte(v[1]), byte(v[2])));
        }
    return storedRows(result);
}

int convolution(unsigned char const *window, std::vector<int> const &kernel, int divisor)
{
    int sum = 0;
    for (int i = 0; i < 9; ++i)
        sum += window[i] * kernel[i];
    return sum == 0 ? 0 : std::min(255, std::abs(sum / divisor));
}

WindowValue kernelValue(std::vector<int> const &kernel, int divisor)
{
    return [kernel, divisor](unsigned char const *window) { return convolution(window, kernel, divisor); };
}

// Sizes with borders only, one inner column or row, and widths off the lanes' multiples.
const long theSizes[][2] = {{1, 1}, {2, 7}, {3, 3}, {4, 5}, {19, 3}, {3, 21}, {37, 11}, {50, 6}};

// Runs `operation` on pictures of every form and size and compares with `reference`.
void compareOnRandomPictures(std::string const &name, std::function<int(ProbeImage &)> const &operation,
                             std::function<Rows(ProbeImage &)> const &reference)
{
    Random random(12345);
    for (Form form : {greyForm, shortGreyForm, colourForm, smallColourForm, trueColourForm})
        for (auto const &size : theSizes) {
            ProbeImage image = randomPicture(form, size[0], size[1], random);
            ProbeImage pristine(image);
            const Rows expected = reference(pristine);
            ASSERT_EQ(operation(image), GImage::resultOk);
            EXPECT_EQ(storedRows(image), expected) << name << ", form " << form << ", " << size[0] << " by " << size[1];
            EXPECT_EQ(image.isModified(), 1);
        }
}

} // namespace

TEST(GImageFiltersReference, RankFiltersMatchAStableSortOfEachWindow)
{
    for (int mode : {4, 5, 6, 7, 0})
        compareOnRandomPictures(
            "NLFilter " + std::to_string(mode), [mode](ProbeImage &image) { return image.NLFilter(mode, 3); },
            [mode](ProbeImage &image) { return referenceRank(image, mode); });
}

TEST(GImageFiltersReference, ConvolutionsMatchTheirKernelsPositionByPosition)
{
    const std::vector<int> linear[] = {{1, 1, 1, 1, 1, 1, 1, 1, 1},     {1, 1, 1, 1, 2, 1, 1, 1, 1},
                                       {1, 1, 1, 1, 4, 1, 1, 1, 1},     {1, 1, 1, 1, 12, 1, 1, 1, 1},
                                       {1, 2, 1, 2, 4, 2, 1, 2, 1},     {-1, -1, -1, -1, 9, -1, -1, -1, -1},
                                       {0, -1, 0, -1, 5, -1, 0, -1, 0}, {1, -2, 1, -2, 5, -2, 1, -2, 1},
                                       {0, -1, 0, -1, 20, -1, 0, -1, 0}};
    const int divisors[] = {9, 10, 12, 20, 16, 1, 1, 1, 1};
    for (int mode = 8; mode <= 16; ++mode)
        compareOnRandomPictures(
            "LFilter " + std::to_string(mode), [mode](ProbeImage &image) { return image.LFilter(mode, 3); },
            [&](ProbeImage &image) { return referencePlanes(image, kernelValue(linear[mode - 8], divisors[mode - 8])); });
    compareOnRandomPictures(
        "LFilter 99", [](ProbeImage &image) { return image.LFilter(99, 3); },
        [](ProbeImage &image) { return referencePlanes(image, [](unsigned char const *) { return 3; }); });
}

TEST(GImageFiltersReference, EdgeFiltersMatchTheirKernelsPositionByPosition)
{
    // Family 0 direction 2, family 1 direction 5, family 2 directions 1 and 3.
    const std::vector<int> family0 = {1, 1, 1, -1, -2, 1, -1, -1, 1};
    const std::vector<int> family1 = {0, -1, -1, 1, 1, -1, 1, 1, 0};
    const std::vector<int> north = {1, 2, 1, 0, 0, 0, -1, -2, -1}, west = {1, 0, -1, 2, 0, -2, 1, 0, -1};
    compareOnRandomPictures(
        "edgeEnhance 0 2", [](ProbeImage &image) { return image.edgeEnhance(0, 2, 3); },
        [&](ProbeImage &image) { return referencePlanes(image, kernelValue(family0, 1)); });
    compareOnRandomPictures(
        "edgeEnhance 1 5", [](ProbeImage &image) { return image.edgeEnhance(1, 5, 3); },
        [&](ProbeImage &image) { return referencePlanes(image, kernelValue(family1, 1)); });
    compareOnRandomPictures(
        "edgeDetector 2 1 3", [](ProbeImage &image) { return image.edgeDetector(2, 1, 3, 3); },
        [&](ProbeImage &image) {
            return referencePlanes(image, [&](unsigned char const *window) {
                const double a = convolution(window, north, 1), b = convolution(window, west, 1);
                const double root = std::sqrt(a * a + b * b);
                return std::min(255, static_cast<int>(root > 0 ? root + 0.5 : root - 0.5));
            });
        });
}
