#include <ketra/math/equation/NewtonsRootFinder.h>

#include <ketra/math/equation/Exception.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace math::equation {

namespace {

constexpr int retreatLimit = 10; // halvings of one move, each costing an evaluation
constexpr int boundLimit = 1100; // the same at a bound: from the largest number to the smallest
constexpr double none = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

} // namespace

NewtonsRootFinder::NewtonsRootFinder(Function* f, double e)
    : RootFinder(f), Xn(none), Xnp1(none), tolerance(e), fn(none), dfn(none), good(none),
      retreats(0), least(-infinity), greatest(infinity), shortened(false)
{
}

NewtonsRootFinder::~NewtonsRootFinder() = default;

void NewtonsRootFinder::reset(double x0)
{
    restart();
    Xn = Xnp1 = x0;
    fn = dfn = good = none;
    retreats = 0;
    shortened = false;
}

void NewtonsRootFinder::setBounds(double newLeast, double newGreatest)
{
    least = newLeast;
    greatest = newGreatest;
}

void NewtonsRootFinder::doIterationProcedure(int)
{
    if (!std::isfinite(Xnp1)) throw Exception(0);
    Xn = Xnp1;
    computeNextPosition();
    checkPosition();
}

void NewtonsRootFinder::computeNextPosition()
{
    fn = value(Xn);
    if (!std::isfinite(fn)) return retreat();
    retreats = 0;
    good = Xn;
    if (fn == 0.0) return; // exactly on the root: there is nowhere to move
    dfn = derivative(Xn);
    if (dfn == 0.0 || std::isinf(dfn)) throw Exception(2);
    Xnp1 = Xn - fn / dfn;
}

/// Goes half the way back to the last position where the function was finite.
void NewtonsRootFinder::retreat()
{
    if (std::isnan(good) || ++retreats > retreatLimit) throw Exception(0);
    Xnp1 = good + (Xn - good) / 2;
}

void NewtonsRootFinder::checkPosition()
{
    if (!std::isfinite(Xnp1)) throw Exception(0);
    keepInBounds();
    if (Xnp1 == Xn && !hasConverged()) throw Exception(2);
}

void NewtonsRootFinder::keepInBounds()
{
    int halvings = 0;
    for (; Xnp1 < least || Xnp1 > greatest; Xnp1 = Xn + (Xnp1 - Xn) / 2)
        if (++halvings > boundLimit) throw Exception(0); // it has started outside
    shortened = halvings > 0;
}

bool NewtonsRootFinder::hasConverged()
{
    if (retreats > 0 || shortened) return false;
    return fn == 0.0 || std::fabs(Xnp1 - Xn) <= tolerance * std::max(1.0, std::fabs(Xnp1));
}

} // namespace math::equation
