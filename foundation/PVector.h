// PVector.h - a displacement in the plane.
//
//   PVector<T>  x and y of type T (double), added in place
#pragma once

template <class T>
class PVector {
public:
    constexpr PVector(T const &x, T const &y) : x(x), y(y) {}

    void operator+=(PVector const &other) { x += other.x; y += other.y; }

    T xval() const { return x; }
    T yval() const { return y; }
    T &xval() { return x; }
    T &yval() { return y; }

private:
    T x;
    T y;
};
