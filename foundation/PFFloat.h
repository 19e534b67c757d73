// PFFloat.h - the scalar of all logical coordinates.
//
//   PFFloat  one double, held exactly and converted both ways without change
#pragma once

// There is no default constructor: every coordinate starts from a stated value.
class PFFloat {
public:
    constexpr PFFloat(double value) : value(value) {}
    constexpr PFFloat(PFFloat const &other) = default;
    virtual ~PFFloat() = default;

    PFFloat &operator=(PFFloat const &other) = default;

    constexpr operator double() const { return value; }

    void operator+=(PFFloat const &other) { value += other.value; }
    void operator-=(PFFloat const &other) { value -= other.value; }

private:
    double value;
};
