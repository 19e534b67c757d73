// DeviceBench - coordinate translation in both regimes and object selection on a memory
// device, in nanoseconds per call.
//   wine graphics_device_bench.exe
#include "TeskWin.h"
#include "BenchTimer.h"

#include <windows.h>

#include <cstdio>

namespace {

volatile long theSink;

// Logical coordinates that vary, so that no call can be folded into another.
double theCoords[1024];

class BitmapDevice : public GMemoryDevice {
public:
    BitmapDevice(GDevice &screen, GBitmap &bitmap) : GMemoryDevice(screen, bitmap) {}
};

void translate(char const *regime, GDevice const &device, int calls)
{
    const double x = nanosecondsPerCall(calls, [&device](int n) {
        long sum = 0;
        for (int i = 0; i < n; ++i)
            sum += device.newTranslateX(theCoords[i & 1023]);
        theSink = sum;
    });
    const double y = nanosecondsPerCall(calls, [&device](int n) {
        long sum = 0;
        for (int i = 0; i < n; ++i)
            sum += device.newTranslateY(theCoords[i & 1023]);
        theSink = sum;
    });
    const double inverse = nanosecondsPerCall(calls, [&device](int n) {
        double sum = 0;
        for (int i = 0; i < n; ++i)
            sum += device.newTranslateXinv(i & 1023);
        theSink = static_cast<long>(sum);
    });
    std::printf("%-44s %8.2f %8.2f %8.2f\n", regime, x, y, inverse);
}

} // namespace

int main()
{
    for (int i = 0; i < 1024; ++i)
        theCoords[i] = (i - 512) * 3.7 + 0.25;
    GMemoryDevice screen;
    GBitmap bitmap(nullptr, 256, 256, 1, 32);
    BitmapDevice device(screen, bitmap);

    const int calls = 20000000;
    std::printf("%-44s %8s %8s %8s\n", "translation, ns per call", "X", "Y", "X inv");
    device.setMapMode(GMapMode(anisotropicMappingMode));
    translate("platform mode (identity, truncation)", device, calls);
    device.setWindow(-12.5, 87.5, 140.25, 40.25);
    translate("scaledMappingMode (scale and offset)", device, calls);

    // What the platform's own mapping costs for one point, for comparison.
    GMapMode anisotropic(anisotropicMappingMode);
    anisotropic.setWindowExt(GPoint(100, 100));
    anisotropic.setViewportExt(GPoint(256, 256));
    device.setMapMode(anisotropic);
    const double platform = nanosecondsPerCall(calls / 20, [&device](int n) {
        long sum = 0;
        for (int i = 0; i < n; ++i) {
            POINT p{i & 1023, i & 511};
            LPtoDP(device, &p, 1);
            sum += p.x;
        }
        theSink = sum;
    });
    std::printf("%-44s %8.2f\n", "platform LPtoDP, one point", platform);

    const int selections = 1000000;
    const GPen pens[2] = {GPen(GColor::Red, 1, LineSolid), GPen(GColor::Black, 2, LineDash)};
    const GBrush brushes[2] = {GBrush(GColor::Red), GBrush(HS_CROSS, GColor::Black)};
    const GFont fonts[2] = {GFont(-12, "Tahoma", GFont::Plain, 0, 0), GFont(-20, "Tahoma", GFont::Bold, 0, 0)};
    std::printf("\n%-44s %8s\n", "selection, ns per call", "");
    std::printf("%-44s %8.1f\n", "setPen, two pens in turn", nanosecondsPerCall(selections, [&](int n) {
                    for (int i = 0; i < n; ++i)
                        device.setPen(pens[i & 1]);
                }));
    std::printf("%-44s %8.1f\n", "setBrush, two brushes in turn", nanosecondsPerCall(selections, [&](int n) {
                    for (int i = 0; i < n; ++i)
                        device.setBrush(brushes[i & 1]);
                }));
    std::printf("%-44s %8.1f\n", "setFont, the same font again", nanosecondsPerCall(selections, [&](int n) {
                    for (int i = 0; i < n; ++i)
                        device.setFont(fonts[0]);
                }));
    std::printf("%-44s %8.1f\n", "setFont, two fonts in turn", nanosecondsPerCall(selections / 20, [&](int n) {
                    for (int i = 0; i < n; ++i)
                        device.setFont(fonts[i & 1]);
                }));
    HPEN rawPens[2] = {CreatePen(PS_SOLID, 1, RGB(255, 0, 0)), CreatePen(PS_DASH, 2, 0)};
    HDC dc = device;
    std::printf("%-44s %8.1f\n", "platform SelectObject, two pens in turn", nanosecondsPerCall(selections, [&](int n) {
                    for (int i = 0; i < n; ++i)
                        SelectObject(dc, rawPens[i & 1]);
                }));
    device.setPen(GPen());
    DeleteObject(rawPens[0]);
    DeleteObject(rawPens[1]);
    return 0;
}
