#include <ketra/math/equation/SecantRootFinder.h>

#include <ketra/math/equation/Exception.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace math::equation {

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();
constexpr double relativeOffset = 1e-3; // of the second point of the first secant
constexpr double leastOffset = 1e-5;

} // namespace

SecantRootFinder::SecantRootFinder(Function* f, double e)
    : RootFinder(f), Xnm1(none), Xn(none), Xnp1(none), tolerance(e), fnm1(none), fn(none)
{
}

SecantRootFinder::~SecantRootFinder() = default;

void SecantRootFinder::reset(double x0)
{
    restart();
    Xn = Xnp1 = x0;
    Xnm1 = x0 + std::max(relativeOffset * std::fabs(x0), leastOffset);
    fnm1 = fn = none;
}

void SecantRootFinder::doIterationProcedure(int count)
{
    if (!std::isfinite(Xnp1)) throw Exception(0);
    if (count == 1) {
        fnm1 = value(Xnm1);
    } else if (Xnp1 != Xn) {
        Xnm1 = Xn;
        fnm1 = fn;
    }
    Xn = Xnp1;
    computeNextPosition();
    checkPosition();
}

void SecantRootFinder::computeNextPosition()
{
    fn = value(Xn);
    if (fn == 0.0) return; // exactly on the root: there is nowhere to move
    const double slope = (fn - fnm1) / (Xn - Xnm1);
    if (slope == 0.0 || std::isinf(slope)) throw Exception(2);
    Xnp1 = Xn - fn / slope;
}

void SecantRootFinder::checkPosition()
{
    if (!std::isfinite(Xnp1)) throw Exception(0);
    if (Xnp1 == Xn && !hasConverged()) throw Exception(2);
}

bool SecantRootFinder::hasConverged()
{
    return fn == 0.0 || std::fabs(Xnp1 - Xn) <= tolerance * std::max(1.0, std::fabs(Xnp1));
}

} // namespace math::equation
