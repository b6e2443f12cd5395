#pragma once

#include <algorithm>
#include <cmath>
#include <functional>

namespace math::interpolation::detail {

/// The two points of an axis that enclose a position, and where between them it lies, 0 to 1. On
/// the last point both are that point.
struct Cell {
    unsigned int low;
    unsigned int high;
    double t;
};

/// (x - low) / (high - low), also where the difference of the two overflows.
inline double fraction(double x, double low, double high)
{
    const double span = high - low;
    return std::isfinite(span) ? (x - low) / span : (x / 2 - low / 2) / (high / 2 - low / 2);
}

/// The cell of \p x, which lies within the axis. Where points repeat the cell begins at the last
/// of them, so that the two ends of a cell always differ.
inline Cell locate(const double* axis, unsigned int n, bool rising, double x)
{
    const double* const end = axis + n;
    const double* const after =
        rising ? std::upper_bound(axis, end, x) : std::upper_bound(axis, end, x, std::greater<>());
    if (after == end) return {n - 1, n - 1, 0.0};
    const auto high = static_cast<unsigned int>(after - axis);
    return {high - 1, high, fraction(x, axis[high - 1], axis[high])};
}

} // namespace math::interpolation::detail
