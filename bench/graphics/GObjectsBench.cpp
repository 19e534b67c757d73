// GObjectsBench - the cost of sharing graphic objects against making them, in nanoseconds.
//   wine graphics_objects_bench.exe
#include "TeskWin.h"
#include "BenchTimer.h"

#include <windows.h>

#include <cstdio>

namespace {

volatile int theSink;

void copyPen(int n) { GPen pen(GColor::Red, 1, LineSolid); for (int i = 0; i < n; ++i) { GPen copy(pen); theSink += copy.getWidth(); } }
void assignBrush(int n) { GBrush a(GColor::Red), b(GColor::White), target; for (int i = 0; i < n; ++i) { target = i & 1 ? a : b; theSink += target.getBrushType(); } }
void readFontHandle(int n) { GFont font; for (int i = 0; i < n; ++i) theSink += static_cast<HFONT>(font) != nullptr; }
void makePen(int n) { for (int i = 0; i < n; ++i) { GPen pen(GColor::Red, 1, LineSolid); theSink += pen.getWidth(); } }
void makeBrush(int n) { for (int i = 0; i < n; ++i) { GBrush brush(GColor(1, 2, 3)); theSink += brush.getBrushType(); } }
void makeFont(int n) { for (int i = 0; i < n; ++i) { GFont font(-12, "Tahoma", GFont::Plain, 0, 0); theSink += font.getSize(); } }
void makeMatchedFont(int n) { for (int i = 0; i < n; ++i) { GFont font(-12, "tahoma", GFont::Plain, 1, 0); theSink += font.getSize(); } }
void copyPalette(int n) { GPalette palette; for (int i = 0; i < n; ++i) { GPalette copy(palette); theSink += copy.getEntry(3).getR(); } }

} // namespace

int main()
{
    std::printf("%-34s %10s\n", "operation", "ns");
    std::printf("%-34s %10.1f\n", "copy and drop a pen", nanosecondsPerCall(2000000, copyPen));
    std::printf("%-34s %10.1f\n", "assign a brush", nanosecondsPerCall(2000000, assignBrush));
    std::printf("%-34s %10.1f\n", "read a font's handle", nanosecondsPerCall(2000000, readFontHandle));
    std::printf("%-34s %10.1f\n", "copy a 20-colour palette", nanosecondsPerCall(1000000, copyPalette));
    std::printf("%-34s %10.1f\n", "make and delete a pen", nanosecondsPerCall(20000, makePen));
    std::printf("%-34s %10.1f\n", "make and delete a brush", nanosecondsPerCall(20000, makeBrush));
    std::printf("%-34s %10.1f\n", "make and delete a font", nanosecondsPerCall(20000, makeFont));
    std::printf("%-34s %10.1f\n", "the same, face matched", nanosecondsPerCall(2000, makeMatchedFont));
    return 0;
}
