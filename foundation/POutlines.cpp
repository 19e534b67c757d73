#include "foundation/POutlines.h"

POutlines::POutlines() : value(0) {}

POutlines::POutlines(unsigned char value, PList<PCoord<double>> const &points) : value(value), points(points) {}

POutlines::POutlines(POutlines const &other) : value(other.value), points(other.points) {}

POutlines &POutlines::operator=(POutlines const &other)
{
    // The list's own assignment empties a list assigned to itself.
    if (this != &other) {
        value = other.value;
        points = other.points;
    }
    return *this;
}

POutlines::~POutlines() = default;
