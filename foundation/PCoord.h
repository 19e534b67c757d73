// PCoord.h - a plain coordinate pair.
//
//   PCoord<T>  x and y of type T (double, int, short), with += and rotation
#pragma once

#include <cmath>
#include <limits>
#include <type_traits>

namespace PCoordDetail {

// Floating results stay as they are; integral ones take the nearest value,
// halves away from zero, held within the type's range. The limits are called in
// parentheses so that <windows.h>'s min and max macros cannot expand.
template <class T>
T fromDouble(double value)
{
    if constexpr (std::is_floating_point<T>::value) {
        return static_cast<T>(value);
    } else {
        const double low = (std::numeric_limits<T>::min)(), high = (std::numeric_limits<T>::max)();
        const double rounded = value > 0 ? value + 0.5 : value - 0.5;
        if (!(rounded > low))
            return (std::numeric_limits<T>::min)();
        if (!(rounded < high))
            return (std::numeric_limits<T>::max)();
        return static_cast<T>(rounded);
    }
}

} // namespace PCoordDetail

template <class T>
class PCoord {
public:
    constexpr PCoord() : x(), y() {}
    constexpr PCoord(T const &x, T const &y) : x(x), y(y) {}
    constexpr PCoord(PCoord const &other) = default;
    virtual ~PCoord() = default;

    PCoord &operator=(PCoord const &other) = default;

    void operator+=(PCoord const &other) { x += other.x; y += other.y; }

    T xval() const { return x; }
    T yval() const { return y; }
    T &xval() { return x; }
    T &yval() { return y; }

    // Turns the point counter-clockwise (with y up) by `degrees` about `centre`.
    void rotate(double degrees, PCoord const &centre)
    {
        const double radians = degrees * (3.14159265358979323846 / 180.0);
        const double c = std::cos(radians), s = std::sin(radians);
        const double dx = static_cast<double>(x) - centre.x, dy = static_cast<double>(y) - centre.y;
        x = PCoordDetail::fromDouble<T>(centre.x + dx * c - dy * s);
        y = PCoordDetail::fromDouble<T>(centre.y + dx * s + dy * c);
    }

private:
    T x;
    T y;
};
