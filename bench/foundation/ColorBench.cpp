// Time per colour of GColor -> GHSVColor -> GColor, the step that brightness
// adjustment takes for every true-colour pixel.
#include "TeskWin.h"

#include <chrono>
#include <cstdio>

int main()
{
    const auto start = std::chrono::steady_clock::now();
    unsigned long checksum = 0;
    for (unsigned long ref = 0; ref < 0x1000000UL; ++ref) {
        GHSVColor hsv{GColor(ref)};
        hsv.getS() *= 0.9;
        checksum += static_cast<unsigned long>(GColor(hsv));
    }
    const std::chrono::duration<double, std::nano> elapsed = std::chrono::steady_clock::now() - start;
    std::printf("HSV round trip: %.1f ns per colour (checksum %lu)\n", elapsed.count() / 0x1000000, checksum);
    return 0;
}
