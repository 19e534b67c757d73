// PTPoint.h - the library's point template.
//
//   PTPoint<T>  two coordinates x and y of type T, with component-wise arithmetic
//               and a product order; exported for float and long. PTPoint<PFFloat>
//               is the same template, used as the base of GPoint.
#pragma once

#include "foundation/TeskWinExport.h"

#include <cmath>
#include <cstdint>

namespace PTPointDetail {

// Euclidean distance in the coordinate type.
template <class T>
T distance(T const &x1, T const &y1, T const &x2, T const &y2)
{
    const double dx = x1 - x2, dy = y1 - y2;
    return T(std::sqrt(dx * dx + dy * dy));
}

// Integer points sum the squares in 32-bit arithmetic and truncate the root.
// Deliberate: differences and sum wrap modulo 2^32 like that arithmetic.
inline long distance(long x1, long y1, long x2, long y2)
{
    const std::uint32_t dx = static_cast<std::uint32_t>(x1) - static_cast<std::uint32_t>(x2);
    const std::uint32_t dy = static_cast<std::uint32_t>(y1) - static_cast<std::uint32_t>(y2);
    return static_cast<long>(std::sqrt(static_cast<double>(dx * dx + dy * dy)));
}

} // namespace PTPointDetail

template <class T>
class PTPoint {
public:
    // Leaves both fields unset, as the plain number types do.
    PTPoint() {}
    constexpr PTPoint(T const &value) : x(value), y(value) {}
    constexpr PTPoint(T const &x, T const &y) : x(x), y(y) {}
    constexpr PTPoint(PTPoint const &other) = default;
    virtual ~PTPoint() = default;

    PTPoint &operator=(PTPoint const &other) = default;

    T &xVal() { return x; }
    T &yVal() { return y; }
    T const &xVal() const { return x; }
    T const &yVal() const { return y; }
    void setX(T const &value) { x = value; }
    void setY(T const &value) { y = value; }

    T distance(PTPoint const &other) const
    {
        return PTPointDetail::distance(x, y, other.x, other.y);
    }

    PTPoint operator-() const { return PTPoint(-x, -y); }

    PTPoint operator+(PTPoint const &other) const { return PTPoint(x + other.x, y + other.y); }
    PTPoint operator-(PTPoint const &other) const { return PTPoint(x - other.x, y - other.y); }
    PTPoint operator*(PTPoint const &other) const { return PTPoint(x * other.x, y * other.y); }
    // No check for zero: a long division by zero faults, a float one gives an infinity.
    PTPoint operator/(PTPoint const &other) const { return PTPoint(x / other.x, y / other.y); }
    PTPoint operator*(T const &scalar) const { return PTPoint(x * scalar, y * scalar); }
    PTPoint operator/(T const &scalar) const { return PTPoint(x / scalar, y / scalar); }

    void operator+=(PTPoint const &other) { x += other.x; y += other.y; }
    void operator-=(PTPoint const &other) { x -= other.x; y -= other.y; }

    bool operator==(PTPoint const &other) const { return x == other.x && y == other.y; }
    bool operator!=(PTPoint const &other) const { return x != other.x || y != other.y; }

    // A product order: each relation must hold for both coordinates, so that
    // (1, 5) and (2, 3) are neither less nor greater than each other.
    bool operator<(PTPoint const &other) const { return x < other.x && y < other.y; }
    bool operator<=(PTPoint const &other) const { return x <= other.x && y <= other.y; }
    bool operator>(PTPoint const &other) const { return x > other.x && y > other.y; }
    bool operator>=(PTPoint const &other) const { return x >= other.x && y >= other.y; }

protected:
    T x;
    T y;
};

extern template class TESKWIN_API PTPoint<float>;
extern template class TESKWIN_API PTPoint<long>;
