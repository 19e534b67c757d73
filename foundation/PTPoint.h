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

// The members are defined outside the class so that the explicit instantiations
// for float and long export every one of them; inline members would not be.
template <class T>
class PTPoint {
public:
    // Leaves both fields unset, as the plain number types do.
    PTPoint();
    PTPoint(T const &value);
    PTPoint(T const &x, T const &y);
    PTPoint(PTPoint const &other);
    virtual ~PTPoint();

    PTPoint &operator=(PTPoint const &other);

    T &xVal();
    T &yVal();
    T const &xVal() const;
    T const &yVal() const;
    void setX(T const &value);
    void setY(T const &value);

    T distance(PTPoint const &other) const;

    PTPoint operator-() const;

    PTPoint operator+(PTPoint const &other) const;
    PTPoint operator-(PTPoint const &other) const;
    PTPoint operator*(PTPoint const &other) const;
    // No check for zero: a long division by zero faults, a float one gives an infinity.
    PTPoint operator/(PTPoint const &other) const;
    PTPoint operator*(T const &scalar) const;
    PTPoint operator/(T const &scalar) const;

    void operator+=(PTPoint const &other);
    void operator-=(PTPoint const &other);

    bool operator==(PTPoint const &other) const;
    bool operator!=(PTPoint const &other) const;

    // A product order: each relation must hold for both coordinates, so that
    // (1, 5) and (2, 3) are neither less nor greater than each other.
    bool operator<(PTPoint const &other) const;
    bool operator<=(PTPoint const &other) const;
    bool operator>(PTPoint const &other) const;
    bool operator>=(PTPoint const &other) const;

protected:
    T x;
    T y;
};

template <class T> PTPoint<T>::PTPoint() {}
template <class T> PTPoint<T>::PTPoint(T const &value) : x(value), y(value) {}
template <class T> PTPoint<T>::PTPoint(T const &x, T const &y) : x(x), y(y) {}
template <class T> PTPoint<T>::PTPoint(PTPoint const &other) : x(other.x), y(other.y) {}
template <class T> PTPoint<T>::~PTPoint() {}

template <class T> PTPoint<T> &PTPoint<T>::operator=(PTPoint const &other)
{
    x = other.x;
    y = other.y;
    return *this;
}

template <class T> T &PTPoint<T>::xVal() { return x; }
template <class T> T &PTPoint<T>::yVal() { return y; }
template <class T> T const &PTPoint<T>::xVal() const { return x; }
template <class T> T const &PTPoint<T>::yVal() const { return y; }
template <class T> void PTPoint<T>::setX(T const &value) { x = value; }
template <class T> void PTPoint<T>::setY(T const &value) { y = value; }

template <class T> T PTPoint<T>::distance(PTPoint const &other) const
{
    return PTPointDetail::distance(x, y, other.x, other.y);
}

template <class T> PTPoint<T> PTPoint<T>::operator-() const { return PTPoint(-x, -y); }

template <class T> PTPoint<T> PTPoint<T>::operator+(PTPoint const &other) const
{
    return PTPoint(x + other.x, y + other.y);
}

template <class T> PTPoint<T> PTPoint<T>::operator-(PTPoint const &other) const
{
    return PTPoint(x - other.x, y - other.y);
}

template <class T> PTPoint<T> PTPoint<T>::operator*(PTPoint const &other) const
{
    return PTPoint(x * other.x, y * other.y);
}

template <class T> PTPoint<T> PTPoint<T>::operator/(PTPoint const &other) const
{
    return PTPoint(x / other.x, y / other.y);
}

template <class T> PTPoint<T> PTPoint<T>::operator*(T const &scalar) const
{
    return PTPoint(x * scalar, y * scalar);
}

template <class T> PTPoint<T> PTPoint<T>::operator/(T const &scalar) const
{
    return PTPoint(x / scalar, y / scalar);
}

template <class T> void PTPoint<T>::operator+=(PTPoint const &other)
{
    x += other.x;
    y += other.y;
}

template <class T> void PTPoint<T>::operator-=(PTPoint const &other)
{
    x -= other.x;
    y -= other.y;
}

template <class T> bool PTPoint<T>::operator==(PTPoint const &other) const
{
    return x == other.x && y == other.y;
}

template <class T> bool PTPoint<T>::operator!=(PTPoint const &other) const
{
    return x != other.x || y != other.y;
}

template <class T> bool PTPoint<T>::operator<(PTPoint const &other) const
{
    return x < other.x && y < other.y;
}

template <class T> bool PTPoint<T>::operator<=(PTPoint const &other) const
{
    return x <= other.x && y <= other.y;
}

template <class T> bool PTPoint<T>::operator>(PTPoint const &other) const
{
    return x > other.x && y > other.y;
}

template <class T> bool PTPoint<T>::operator>=(PTPoint const &other) const
{
    return x >= other.x && y >= other.y;
}

extern template class TESKWIN_API PTPoint<float>;
extern template class TESKWIN_API PTPoint<long>;
