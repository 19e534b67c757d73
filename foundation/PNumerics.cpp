#include "foundation/PNumerics.h"

namespace {

int processExiting = 0;

} // namespace

int intersect(PCoord<double> *result, PCoord<double> const &a, PCoord<double> const &b,
              PCoord<double> const &c, PCoord<double> const &d)
{
    const double ux = b.xval() - a.xval(), uy = b.yval() - a.yval();
    const double vx = d.xval() - c.xval(), vy = d.yval() - c.yval();
    const double cross = ux * vy - uy * vx;
    // Parallel when the sine of the angle between the lines is below 1e-9.
    const double scale = std::sqrt((ux * ux + uy * uy) * (vx * vx + vy * vy));
    if (!(std::fabs(cross) > 1e-9 * scale))
        return 0;
    const double t = ((c.xval() - a.xval()) * vy - (c.yval() - a.yval()) * vx) / cross;
    *result = PCoord<double>(a.xval() + t * ux, a.yval() + t * uy);
    return 1;
}

void setExiting() { processExiting = 1; }

int isExiting() { return processExiting; }
