#include <ketra/math/interpolation/Interpolation.h>

#include <ketra/math/interpolation/Exception.h>
#include <ketra/math/interpolation/detail/Axis.h>

// Boost.Math calls isnan() without a namespace.
#include <math.h>

#include <boost/math/interpolators/pchip.hpp>

#include <cmath>
#include <optional>
#include <utility>
#include <vector>

namespace math::interpolation {

namespace {

constexpr std::size_t leastForPolynomial = 4; // points of different x

/// Points in rising x.
struct Points {
    std::vector<double> x;
    std::vector<double> y;

    detail::Cell locate(double position) const
    {
        if (!(position >= x.front() && position <= x.back())) throw Exception(0);
        return detail::locate(x.data(), static_cast<unsigned int>(x.size()), true, position);
    }
    double linear(const detail::Cell& cell) const
    {
        return std::lerp(y[cell.low], y[cell.high], cell.t);
    }
};

Points sorted(unsigned int n, const double* x, const double* y)
{
    if (n == 0 || x == nullptr || y == nullptr) throw Exception(0);
    std::vector<std::pair<double, double>> pairs(n);
    for (unsigned int i = 0; i < n; ++i) {
        if (!std::isfinite(x[i]) || !std::isfinite(y[i])) throw Exception(0);
        pairs[i] = {x[i], y[i]};
    }
    // A table of a nozzle may go back by rounding or by a repaired point.
    std::stable_sort(pairs.begin(), pairs.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    Points points;
    for (const auto& [xi, yi] : pairs) {
        points.x.push_back(xi);
        points.y.push_back(yi);
    }
    return points;
}

/// The same with one point, the mean, in place of those of equal x.
Points merged(const Points& points)
{
    Points nodes;
    double count = 0.0;
    for (std::size_t i = 0; i < points.x.size(); ++i) {
        if (nodes.x.empty() || points.x[i] != nodes.x.back()) {
            nodes.x.push_back(points.x[i]);
            nodes.y.push_back(points.y[i]);
            count = 1.0;
        } else {
            count += 1.0;
            nodes.y.back() = std::lerp(nodes.y.back(), points.y[i], 1.0 / count);
        }
    }
    return nodes;
}

} // namespace

/// The prepared forms of a table.
class Interpolation::Curve
{
public:
    explicit Curve(Points given) : points(std::move(given)), nodes(merged(points))
    {
        if (nodes.x.size() >= leastForPolynomial)
            smooth.emplace(std::vector<double>(nodes.x), std::vector<double>(nodes.y));
    }

    double getMinX() const { return points.x.front(); }
    double getMaxX() const { return points.x.back(); }

    double linear(double x) const { return points.linear(points.locate(x)); }

    double polynomial(double x) const
    {
        const detail::Cell cell = nodes.locate(x);
        const double straight = nodes.linear(cell);
        if (!smooth) return straight;
        const double y = (*smooth)(x);
        if (!std::isfinite(y)) return straight; // slopes of huge values overflow
        // Rounding may carry the curve past the end of its cell by a last digit.
        const auto [low, high] = std::minmax(nodes.y[cell.low], nodes.y[cell.high]);
        return std::clamp(y, low, high);
    }

private:
    Points points;
    Points nodes;
    std::optional<boost::math::interpolators::pchip<std::vector<double>>> smooth;
};

Interpolation::Interpolation(unsigned int n, const double* x, const double* y)
    : values(n), curve(std::make_shared<const Curve>(sorted(n, x, y)))
{
    std::copy_n(y, n, values.getData());
}

double Interpolation::getMinX() const { return curve->getMinX(); }

double Interpolation::getMaxX() const { return curve->getMaxX(); }

double Interpolation::linearInterpolation(double x) const { return curve->linear(x); }

double Interpolation::polynomialInterpolation(double x) const { return curve->polynomial(x); }

} // namespace math::interpolation
