// ForceLine.h - one segment clipped to a rectangle.
//
//   ForceLine<T>  a Cohen-Sutherland clip of two rounds, for double and long coordinates
#pragma once

#include "foundation/PNumerics.h"
#include "graphics/GRect.h"

#include <cmath>
#include <type_traits>

template <class T>
class ForceLine {
    static_assert(std::is_same<T, double>::value || std::is_same<T, long>::value,
                  "ForceLine is made for double and long");

public:
    // Moves the ends onto the rectangle, a bound being inside; 0 when the segment is seen to
    // miss it. Deliberately two rounds and no more: each end moves at most once on X and once
    // on Y, a ratio above 1 leaves an end where it is, and after the second round the result
    // is 1 without a further test. The ends keep their moves also when the result is 0.
    static int forceLine(T &x0, T &y0, T &x1, T &y1, T minX, T minY, T maxX, T maxY)
    {
        for (int round = 0; round < 2; ++round) {
            const int code0 = outCode(x0, y0, minX, minY, maxX, maxY);
            const int code1 = outCode(x1, y1, minX, minY, maxX, maxY);
            if ((code0 | code1) == 0)
                return 1;
            if (code0 & code1)
                return 0;
            // The second end sees the first end where it has just moved.
            moveEnd(code0, x0, y0, x1, y1, minX, minY, maxX, maxY);
            moveEnd(code1, x1, y1, x0, y0, minX, minY, maxX, maxY);
        }
        return 1;
    }

private:
    enum : int { below = 1, left = 2, right = 4, above = 8 };

    static int outCode(T x, T y, T minX, T minY, T maxX, T maxY)
    {
        int code = 0;
        if (x < minX)
            code |= left;
        else if (x > maxX)
            code |= right;
        if (y < minY)
            code |= below;
        else if (y > maxY)
            code |= above;
        return code;
    }

    // One boundary per end and round: the first of left, right, below, above in the code.
    static void moveEnd(int code, T &tx, T &ty, T ox, T oy, T minX, T minY, T maxX, T maxY)
    {
        if (code & (left | right))
            slide(code & left ? minX : maxX, tx, ty, ox, oy);
        else if (code & (below | above))
            slide(code & below ? minY : maxY, ty, tx, oy, ox);
    }

    // Moves the end (along, across) to along == bound on the line toward (otherAlong, otherAcross).
    static void slide(T bound, T &along, T &across, T otherAlong, T otherAcross)
    {
        if (same(along, otherAlong))
            return;
        const double t = (static_cast<double>(bound) - static_cast<double>(along)) /
                         (static_cast<double>(otherAlong) - static_cast<double>(along));
        if (t > 1)
            return;
        across = moved(across, otherAcross, t);
        along = bound;
    }

    static bool same(double a, double b) { return IS_EQUAL(a, b, 1e-9); }
    static bool same(long a, long b) { return IS_EQUAL(int(a), int(b)); }

    static double moved(double from, double to, double t) { return t * (to - from) + from; }
    // The step is truncated before the start is added; the sum is held within 32 bits.
    static long moved(long from, long to, double t)
    {
        const double step = std::trunc((static_cast<double>(to) - static_cast<double>(from)) * t);
        return truncateCoord(step + static_cast<double>(from));
    }
};
