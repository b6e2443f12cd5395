#include <ketra/performance/detail/BracketedRoot.h>

#include <cmath>
#include <utility>

namespace performance::detail {

namespace {

constexpr int maxEvaluations = 120; // bisection alone would have come to the end of the digits

} // namespace

BracketedRoot::BracketedRoot(std::function<double(double)> newFunction, Point a, Point b)
    : function(std::move(newFunction)), present(b), opposite(a), former(a), lastStep(b.x - a.x),
      stepBefore(b.x - a.x)
{
    if (std::abs(opposite.value) < std::abs(present.value)) {
        std::swap(present, opposite);
        former = opposite;
    }
}

bool BracketedRoot::close(double tolerance, double width)
{
    for (int evaluation = 0; evaluation < maxEvaluations; ++evaluation) {
        if (std::abs(opposite.x - present.x) <= width) return false;
        const double half = (opposite.x - present.x) / 2.0;
        double step = nextPosition() - present.x;
        // An interpolation that leaves the better half of the bracket, or that shrinks more slowly
        // than every second step should, gives way to bisection. So does one that is no number.
        const bool pays =
            step / half > 0.0 && step / half < 1.5 && std::abs(step) < std::abs(stepBefore) / 2.0;
        stepBefore = pays ? lastStep : half;
        lastStep = step = pays ? step : half;
        // A step below the width would never move the opposite end.
        if (std::abs(step) < width / 2.0) step = std::copysign(width / 2.0, half);

        const double x = present.x + step;
        const double value = function(x);
        if (std::abs(value) < tolerance) return true;
        take({x, value});
    }
    return false;
}

// Inverse quadratic interpolation through three positions, or the secant through two.
double BracketedRoot::nextPosition() const
{
    const double s = present.value / former.value;
    if (former.x == opposite.x) return present.x + (opposite.x - present.x) * s / (s - 1.0);
    const double q = former.value / opposite.value;
    const double r = present.value / opposite.value;
    const double numerator =
        s * ((opposite.x - present.x) * q * (q - r) - (present.x - former.x) * (r - 1.0));
    return present.x - numerator / ((q - 1.0) * (r - 1.0) * (s - 1.0));
}

void BracketedRoot::take(Point point)
{
    if (std::signbit(point.value) == std::signbit(present.value)) {
        former = std::exchange(present, point);
    } else {
        former = present;
        opposite = std::exchange(present, point);
    }
    if (!(std::abs(opposite.value) < std::abs(present.value))) return;
    former = present;
    std::swap(present, opposite);
}

BracketedRoot::Point BracketedRoot::best() const { return present; }

BracketedRoot::Point BracketedRoot::other() const { return opposite; }

} // namespace performance::detail
