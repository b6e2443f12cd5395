// The temperature at which the minimum meets the target.

#include <ketra/reaction/Equilibrium.h>
#include <ketra/reaction/detail/ElementPotentials.h>
#include <ketra/thermo/Exception.h>

#include <algorithm>
#include <cmath>

namespace reaction::detail {

namespace {

constexpr double coldest = 600.0; // K, below which data of products begin
constexpr double closeT = 1e-14;  // relative: two temperatures that are one
constexpr double edgeT = 1e-9;    // ... at an end of the data
constexpr double metT = 1e-12;    // relative error of T that a target may leave
constexpr double stepT = 1e-9;    // ... and beyond which only a step of the target leaves it
} // namespace

void ElementPotentials::solve(double startT)
{
    Point point;
    if (eq.isFixedTemperature()) {
        if (!evaluate(eq.T, point)) throw thermo::Exception(8);
        store(point);
        return;
    }
    if (!findRange()) throw thermo::Exception(8);
    Point low, high;
    bracket(startT, low, high);
    narrow(low, high);
    const bool fromLow = miss(low) < miss(high);
    if (low.T < high.T && std::min(miss(low), miss(high)) > stepT)
        store(mixed(low, high));
    else
        store(fromLow ? low : high);
}

// The next temperature towards an end: none of the edges of a range is jumped over, since the
// target quantity may rise or fall by a step where a species has data on one side only.
double ElementPotentials::nextT(double T, bool up, double factor) const
{
    double next = up ? std::min(T * factor, highest) : std::max(T / factor, lowest);
    for (const double edge : edges)
        if (up ? (edge > T && edge < next) : (edge < T && edge > next)) next = edge;
    return next;
}

// Walks from the start towards the target with growing steps.
void ElementPotentials::bracket(double startT, Point& low, Point& high)
{
    double T = std::clamp(startT, lowest, highest);
    Point point;
    if (!evaluate(T, point)) throw thermo::Exception(8);
    const bool up = point.value < wanted;
    double factor = 1.05;
    while (!(miss(point) <= edgeT && (T == highest || T == lowest))) {
        if (T == (up ? highest : lowest)) throw thermo::Exception(8);
        const double next = nextT(T, up, factor);
        Point there;
        if (!evaluate(next, there)) throw thermo::Exception(8);
        if ((there.value < wanted) != up) {
            low = up ? std::move(point) : std::move(there);
            high = up ? std::move(there) : std::move(point);
            return;
        }
        point = std::move(there);
        T = next;
        factor = std::min(factor * 1.1, 1.5);
    }
    low = high = std::move(point);
}

double ElementPotentials::miss(const Point& point) const
{
    return std::abs(point.value - wanted) / (point.capacity * point.T);
}

// Regula falsi that halves the value of an end which stays (Illinois), and a bisection where the
// bracket shrinks slowly, as around a step.
void ElementPotentials::narrow(Point& low, Point& high)
{
    constexpr int limit = 300;
    double fLow = low.value - wanted;
    double fHigh = high.value - wanted;
    double before = high.T - low.T;
    int side = 0;
    for (int count = 0; count < limit && high.T - low.T > closeT * high.T; ++count) {
        double T = high.T - fHigh * (high.T - low.T) / (fHigh - fLow);
        if (count % 3 == 2) {
            if (high.T - low.T > 0.25 * before) T = 0.5 * (low.T + high.T);
            before = high.T - low.T;
        }
        if (!(T > low.T && T < high.T)) T = 0.5 * (low.T + high.T);
        if (!(T > low.T && T < high.T)) return;
        Point point;
        if (!evaluate(T, point)) throw thermo::Exception(8);
        const double f = point.value - wanted;
        const bool met = std::abs(f) < metT * point.capacity * T;
        const bool below = f < 0.0;
        if (side == (below ? -1 : 1)) (below ? fHigh : fLow) *= 0.5;
        side = below ? -1 : 1;
        (below ? fLow : fHigh) = f;
        (below ? low : high) = std::move(point);
        if (met) return;
    }
}

bool ElementPotentials::carriesAllElements(double T) const
{
    const bool gas = std::any_of(candidates.begin(), candidates.end(), [&](const Product* product) {
        return !product->isCondensed() && hasData(*product, T);
    });
    if (!gas) return false;
    for (unsigned int i = 0; i < minimum.b.size(); ++i) {
        if (minimum.b[i] == 0.0) continue;
        const bool carried =
            std::any_of(candidates.begin(), candidates.end(), [&](const Product* product) {
                return product->a(i) > 0.0 && hasData(*product, T);
            });
        if (!carried) return false;
    }
    return true;
}

bool ElementPotentials::findRange()
{
    edges.clear();
    for (const Product* product : candidates) {
        edges.push_back(product->getMinimalT());
        edges.push_back(product->getMaximalT());
    }
    std::sort(edges.begin(), edges.end());
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    const auto carries = [this](double T) { return T > 0.0 && carriesAllElements(T); };
    const auto low = std::find_if(edges.begin(), edges.end(), carries);
    if (low == edges.end()) return false;
    lowest = *low;
    highest = *std::find_if(edges.rbegin(), edges.rend(), carries);
    return true;
}

// Below: no temperature at which products begin has less.
ElementPotentials::Side ElementPotentials::sideOfTarget(double& endT)
{
    if (eq.isFixedTemperature() || !std::isfinite(wanted) || !findRange()) return Side::UNKNOWN;
    Point point;
    endT = highest;
    if (!evaluate(highest, point)) return Side::UNKNOWN;
    if (point.value < wanted && miss(point) > edgeT) return Side::ABOVE;
    endT = lowest;
    for (const double edge : edges) {
        if (edge < lowest || edge > coldest) continue;
        if (!evaluate(edge, point)) return Side::UNKNOWN;
        if (point.value < wanted || miss(point) < edgeT) return Side::WITHIN;
    }
    return Side::BELOW;
}

} // namespace reaction::detail
