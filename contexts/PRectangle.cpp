#include "contexts/PRectangle.h"
#include "contexts/GContext.h"

#include <cmath>

PRectangle::PRectangle(GPoint const &lowerLeft, GPoint const &lowerRight, PFFloat const &height)
    : lowerLeftCorner(lowerLeft), lowerRightCorner(lowerRight), height(height)
{
}

void PRectangle::setBase(GPoint const &lowerLeft, GPoint const &lowerRight)
{
    lowerLeftCorner = lowerLeft;
    lowerRightCorner = lowerRight;
}

void PRectangle::setHeight(PFFloat const &newHeight)
{
    height = newHeight;
}

void PRectangle::recalculate()
{
    const GPoint d = lowerRightCorner - lowerLeftCorner;
    const double h = height;
    const double leftX = lowerLeftCorner.xVal(), leftY = lowerLeftCorner.yVal();
    const double rightX = lowerRightCorner.xVal(), rightY = lowerRightCorner.yVal();
    // Deliberately, a horizontal base puts the upper edge at smaller y whichever way it runs,
    // unlike the turned base of the general case.
    if (double(d.yVal()) == 0.0) {
        upperLeftCorner = GPoint(leftX, leftY - h);
        upperRightCorner = GPoint(rightX, rightY - h);
        return;
    }
    const double dx = d.xVal(), dy = d.yVal();
    const double length = std::sqrt(dx * dx + dy * dy);
    const double a = h * (rightX - leftX) / length;
    const double b = h * (rightY - leftY) / length;
    upperLeftCorner = GPoint(leftX + b, leftY - a);
    upperRightCorner = GPoint(rightX + b, rightY - a);
}

void PRectangle::draw(GContext &context)
{
    recalculate();
    context.moveTo(lowerLeftCorner);
    context.lineTo(lowerRightCorner);
    context.lineTo(upperRightCorner);
    context.lineTo(upperLeftCorner);
    context.lineTo(lowerLeftCorner);
}
