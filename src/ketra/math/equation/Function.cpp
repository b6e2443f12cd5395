#include <ketra/math/equation/Function.h>

#include <algorithm>
#include <cmath>

namespace math::equation {

namespace {

// A second difference divides by the square of the step: the same noise asks for a wider one.
constexpr double widening = 10.0;

} // namespace

Function::Function() : relativeStep(1e-3), leastStep(1e-5) {}

Function::~Function() = default;

double Function::at1(double x)
{
    const double h = stepAt(x);
    const double above = x + h;
    const double below = x - h;
    const double fAbove = at(above);
    const double fBelow = at(below);
    if (std::isfinite(fAbove) && std::isfinite(fBelow)) return (fAbove - fBelow) / (above - below);
    // The edge of the region where the function is defined runs between the two points.
    if (std::isfinite(fAbove)) return (fAbove - at(x)) / (above - x);
    return (at(x) - fBelow) / (x - below);
}

double Function::at2(double x)
{
    const double h = widening * stepAt(x);
    return ((at(x + h) - at(x)) / h - (at(x) - at(x - h)) / h) / h;
}

void Function::setSteps(double relative, double least)
{
    relativeStep = relative;
    leastStep = least;
}

double Function::stepAt(double x) const { return std::max(relativeStep * std::fabs(x), leastStep); }

} // namespace math::equation
