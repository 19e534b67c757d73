// PNumerics.h - tolerant comparisons, rounding and line intersection.
//
//   IS_ZERO, IS_EQUAL     comparisons, exact for int and within a tolerance for double
//   min, max              smaller and larger of two values
//   tesk::round           the nearest int
//   intersect             meeting point of two lines
//   setExiting            the process is ending; isExiting asks whether it was said
//
// min and max are global, as applications look for them. Their names are parenthesised
// so that the min/max macros of <windows.h> never expand here; a caller that has those
// macros in scope writes (min)(a, b). The global round(double) is the C library's, which
// also takes halves away from zero; its int form is tesk::round, which cannot be global
// beside it (the two differ only in their result type).
#pragma once

#include "foundation/TeskWinExport.h"
#include "foundation/PCoord.h"

#include <climits>
#include <cmath>

inline int IS_ZERO(int value) { return value == 0; }
inline int IS_ZERO(double value, double tolerance) { return value <= tolerance && value >= -tolerance; }
inline int IS_EQUAL(int a, int b) { return a == b; }
inline int IS_EQUAL(double a, double b, double tolerance) { return a == b || IS_ZERO(a - b, tolerance); }

inline int (min)(int a, int b) { return a < b ? a : b; }
inline int (max)(int a, int b) { return a > b ? a : b; }
inline double (min)(double a, double b) { return a < b ? a : b; }
inline double (max)(double a, double b) { return a > b ? a : b; }
inline unsigned short (max)(unsigned short a, unsigned short b) { return a > b ? a : b; }

namespace tesk {

// Halves go away from zero; values beyond int are held at its limits and NaN gives 0.
inline int (round)(double value)
{
    if (!(value > INT_MIN && value < INT_MAX))
        return value >= INT_MAX ? INT_MAX : value <= INT_MIN ? INT_MIN : 0;
    // The fraction left by truncation is exact, so halves are found exactly.
    const int whole = static_cast<int>(value);
    const double fraction = value - whole;
    if (fraction >= 0.5)
        return whole + 1;
    if (fraction <= -0.5)
        return whole - 1;
    return whole;
}

} // namespace tesk

// Where the infinite lines through a, b and through c, d meet. Parallel lines, and a
// pair of equal points, which gives no line, return 0 and leave *result alone.
TESKWIN_API int intersect(PCoord<double> *result, PCoord<double> const &a, PCoord<double> const &b,
                          PCoord<double> const &c, PCoord<double> const &d);

TESKWIN_API void setExiting();
TESKWIN_API int isExiting();
