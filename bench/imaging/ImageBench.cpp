// ImageBench - GImage's pixel access, tone operations and .bmp round trip on a 4096 x 4096
// picture at 24 and 8 bits, in megapixels per second, the best of a few runs.
//   wine imaging_bench.exe [runs [text]]   only the operations whose name holds the text
#include "TeskWin.h"
#include "BenchTimer.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>

namespace {

const long theSide = 4096;
const double theMegapixels = theSide * theSide / 1e6;

// An image of random pixels whose protected operations the benchmark reaches.
class BenchImage : public GImage {
public:
    BenchImage(int bits, GPalette const &palette) : GImage(nullptr, makeHeader(bits), palette)
    {
        pixels = static_cast<unsigned char *>(PGlobalAlloc(header->biSizeImage));
        pristine = static_cast<unsigned char *>(PGlobalAlloc(header->biSizeImage));
        original = *header;
        originalPalette = colorTable;
        unsigned long state = 7;
        for (unsigned long i = 0; i < header->biSizeImage; ++i) {
            state = state * 1664525u + 1013904223u;
            pristine[i] = static_cast<unsigned char>(state >> 24);
        }
        reset();
    }
    ~BenchImage() override { PGlobalFree(pristine); }

    // Back to the first picture, also after an operation that changed its size, depth or palette.
    void reset()
    {
        if (std::memcmp(header, &original, sizeof original) != 0) {
            PGlobalFree(pixels);
            *header = original;
            pixels = static_cast<unsigned char *>(PGlobalAlloc(header->biSizeImage));
        }
        colorTable = originalPalette;
        std::memcpy(pixels, pristine, header->biSizeImage);
    }

    using GImage::buildHistogram;
    using GImage::getSubset;

private:
    static BITMAPINFOHEADER *makeHeader(int bits)
    {
        auto *h = static_cast<BITMAPINFOHEADER *>(PGlobalAlloc(sizeof(BITMAPINFOHEADER)));
        const DWORD colors = bits == 8 ? 256 : 0;
        *h = BITMAPINFOHEADER{sizeof(BITMAPINFOHEADER), theSide, theSide, 1, static_cast<WORD>(bits), 0,
                              static_cast<DWORD>(theSide * theSide * bits / 8), 0, 0, colors, colors};
        return h;
    }

    unsigned char *pristine;
    BITMAPINFOHEADER original;
    GPalette originalPalette;
};

int theRuns = 3;

// Megapixels per second of the fastest of theRuns runs of `body`, each on the restored image.
double rate(BenchImage &image, std::function<void()> const &body, double megapixels = theMegapixels)
{
    double best = 0;
    for (int run = 0; run < theRuns; ++run) {
        image.reset();
        const double seconds = nanosecondsPerCall(1, [&](int) { body(); }) * 1e-9;
        best = megapixels / seconds > best ? megapixels / seconds : best;
    }
    return best;
}

volatile unsigned long theSink;

void report(char const *operation, double trueColor, double indexed)
{
    std::printf("%-34s %10.1f %10.1f\n", operation, trueColor, indexed);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc > 1)
        theRuns = std::atoi(argv[1]) > 0 ? std::atoi(argv[1]) : 1;
    char const *only = argc > 2 ? argv[2] : "";

    GColor colors[256];
    for (int i = 0; i < 256; ++i)
        colors[i] = GColor(static_cast<unsigned char>(i), static_cast<unsigned char>(255 - i),
                           static_cast<unsigned char>(i * 7));
    GPalette palette(256, colors);
    BenchImage color(24, GPalette());
    BenchImage indexed(8, palette);
    BenchImage *images[2] = {&color, &indexed};
    // A grey ramp: the 8-bit pictures of the filters' peers are grey.
    GColor greys[256];
    for (int i = 0; i < 256; ++i)
        greys[i] = GColor(static_cast<unsigned char>(i), static_cast<unsigned char>(i), static_cast<unsigned char>(i));
    BenchImage grey(8, GPalette(256, greys));

    char path[MAX_PATH], name[MAX_PATH];
    GetTempPathA(MAX_PATH, path);
    GetTempFileNameA(path, "ibn", 0, name);

    std::printf("%dx%d picture, megapixels per second\n", static_cast<int>(theSide), static_cast<int>(theSide));
    std::printf("%-34s %10s %10s\n", "operation", "24-bit", "8-bit");
    auto both = [&](char const *operation, std::function<void(BenchImage &)> const &body, double megapixels) {
        if (!std::strstr(operation, only))
            return;
        double r[2];
        for (int i = 0; i < 2; ++i)
            r[i] = rate(*images[i], [&] { body(*images[i]); }, megapixels);
        report(operation, r[0], r[1]);
    };
    auto whole = [&](char const *operation, std::function<void(BenchImage &)> const &body) {
        both(operation, body, theMegapixels);
    };

    whole("getPixel, every pixel", [](BenchImage &image) {
        unsigned long sum = 0;
        for (unsigned long y = 0; y < theSide; ++y)
            for (unsigned long x = 0; x < theSide; ++x)
                sum += image.getPixel(y, x).getG();
        theSink = sum;
    });
    both("setPixel, 1/16 of the pixels", [](BenchImage &image) {
        for (unsigned long y = 0; y < theSide; y += 4)
            for (unsigned long x = 0; x < theSide; x += 4)
                image.setPixel(y, x, GColor(static_cast<unsigned char>(x), 40, static_cast<unsigned char>(y)));
    }, theMegapixels / 16);
    both("getSubset 3x3 plane 0, 1/16", [](BenchImage &image) {
        unsigned char out[9];
        unsigned long sum = 0;
        const int type = image.numColors() ? 1 : 2;
        for (unsigned short r = 1; r < theSide - 1; r += 4)
            for (unsigned short c = 1; c < theSide - 1; c += 4) {
                image.getSubset(r, c, 0, 3, type, out);
                sum += out[4];
            }
        theSink = sum;
    }, theMegapixels / 16);
    whole("copy", [](BenchImage &image) { GImage copy(image); theSink = copy.getWidth(); });
    whole("getSubImage, whole picture", [](BenchImage &image) {
        delete image.getSubImage(GPoint(0, 0), GPoint(theSide - 1, theSide - 1));
    });
    whole("adjustBrightness(0.2)", [](BenchImage &image) { image.adjustBrightness(0.2); });
    whole("grayScale(0)", [](BenchImage &image) { image.grayScale(0); });
    whole("grayScale(1)", [](BenchImage &image) { image.grayScale(1); });
    whole("grayScale(2)", [](BenchImage &image) { image.grayScale(2); });
    whole("adjust(30)", [](BenchImage &image) { image.adjust(30); });
    whole("buildHistogram", [](BenchImage &image) { PGlobalFree(image.buildHistogram()); });
    whole("histEqua", [](BenchImage &image) { image.histEqua(); });
    whole("histFlatten", [](BenchImage &image) { image.histFlatten(); });
    whole("histStretch(20, 200)", [](BenchImage &image) { image.histStretch(20, 200); });
    whole("histTreeEqua(4)", [](BenchImage &image) { image.histTreeEqua(4); });
    whole("rotate(90)", [](BenchImage &image) { image.rotate(90.0f, GColor(), 0); });
    whole("rotate(30), same as interpolated", [](BenchImage &image) { image.rotate(30.0f, GColor(), 1); });
    // Rates of the resampling operations count the pixels written.
    both("scale(0.5, 0.5)", [](BenchImage &image) { image.scale(0.5f, 0.5f, 1); }, theMegapixels / 4);
    both("scale(2, 2)", [](BenchImage &image) { image.scale(2.0f, 2.0f, 1); }, theMegapixels * 4);
    whole("NLFilter(4, 3) median", [](BenchImage &image) { image.NLFilter(4, 3); });
    whole("NLFilter(5, 3) minimum", [](BenchImage &image) { image.NLFilter(5, 3); });
    whole("LFilter(12, 3)", [](BenchImage &image) { image.LFilter(12, 3); });
    whole("LFilter(13, 3)", [](BenchImage &image) { image.LFilter(13, 3); });
    whole("edgeEnhance(2, 3, 3)", [](BenchImage &image) { image.edgeEnhance(2, 3, 3); });
    whole("edgeDetector(2, 1, 3, 3)", [](BenchImage &image) { image.edgeDetector(2, 1, 3, 3); });
    // The 8-bit column on the grey ramp.
    auto onGrey = [&](char const *operation, std::function<void(BenchImage &)> const &body) {
        if (std::strstr(operation, only))
            std::printf("%-34s %10s %10.1f\n", operation, "-", rate(grey, [&] { body(grey); }));
    };
    onGrey("grey ramp NLFilter(4, 3) median", [](BenchImage &image) { image.NLFilter(4, 3); });
    onGrey("grey ramp NLFilter(5, 3) minimum", [](BenchImage &image) { image.NLFilter(5, 3); });
    onGrey("grey ramp LFilter(12, 3)", [](BenchImage &image) { image.LFilter(12, 3); });
    onGrey("grey ramp LFilter(13, 3)", [](BenchImage &image) { image.LFilter(13, 3); });
    onGrey("grey ramp edgeDetector(2, 1, 3, 3)", [](BenchImage &image) { image.edgeDetector(2, 1, 3, 3); });
    whole("jitter(1)", [](BenchImage &image) { image.jitter(1); });
    whole("mosaic(8)", [](BenchImage &image) { image.mosaic(8); });
    whole("octreeReduction(256)", [](BenchImage &image) { image.octreeReduction(256); });
    whole("PLUT16Reduction (24-bit refused)", [](BenchImage &image) { image.PLUT16Reduction(); });
    whole("morphology(0, ..., 1)", [](BenchImage &image) { image.morphology(0, GColor(), GColor(255, 255, 255), 1); });
    whole("thinning (24-bit refused)", [](BenchImage &image) { image.thinning(GColor()); });
    whole("makeDitherSquares, cell 8", [](BenchImage &image) {
        PList<PImgDithSquare> squares;
        image.makeDitherSquares(0, 8, 1.0f, 1, squares);
        theSink = squares.length();
    });
    whole("write .bmp", [&name](BenchImage &image) { image.write(PString(name)); });
    // The 8-bit file that "write .bmp" left is read back, in a run of every operation.
    if (*only) {
        DeleteFileA(name);
        return 0;
    }
    GDiBitmap loaded;
    int result = -1;
    const double readRate = rate(indexed, [&] { result = loaded.load(PString(name)); });
    std::printf("%-34s %10s %10.1f  (result %d)\n", "GDiBitmap::load .bmp", "-", readRate, result);
    DeleteFileA(name);
    return 0;
}
