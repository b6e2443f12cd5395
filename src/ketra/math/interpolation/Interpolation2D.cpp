#include <ketra/math/interpolation/Interpolation2D.h>

#include <ketra/math/interpolation/Exception.h>
#include <ketra/math/interpolation/detail/Axis.h>

#include <algorithm>
#include <cmath>
#include <functional>

namespace math::interpolation {

namespace {

void requireFinite(const double* numbers, std::size_t n)
{
    if (n == 0 || numbers == nullptr) throw Exception(0);
    if (!std::all_of(numbers, numbers + n, [](double x) { return std::isfinite(x); }))
        throw Exception(0);
}

matrix::RowVector copyAxis(unsigned int n, const double* axis)
{
    requireFinite(axis, n);
    if (!std::is_sorted(axis, axis + n) && !std::is_sorted(axis, axis + n, std::greater<>()))
        throw Exception(0);
    matrix::RowVector copy(n);
    std::copy_n(axis, n, copy.getData());
    return copy;
}

matrix::Matrix copyValues(unsigned int nx, unsigned int ny, const double* v)
{
    const std::size_t n = std::size_t{nx} * ny;
    requireFinite(v, n);
    matrix::Matrix copy(nx, ny);
    std::copy_n(v, n, copy.getData());
    return copy;
}

double first(const matrix::RowVector& axis) { return axis.at(0); }

double last(const matrix::RowVector& axis) { return axis.at(axis.size() - 1); }

detail::Cell locate(const matrix::RowVector& axis, double low, double high, double position)
{
    if (axis.size() == 1 && std::isfinite(position)) return {0, 0, 0.0};
    if (!(position >= low && position <= high)) throw Exception(0);
    return detail::locate(axis.getData(), axis.size(), first(axis) <= last(axis), position);
}

} // namespace

Interpolation2D::Interpolation2D(unsigned int nx, const double* x, unsigned int ny, const double* y,
                                 const double* v)
    : axisX(copyAxis(nx, x)), axisY(copyAxis(ny, y)), values(copyValues(nx, ny, v)),
      minX(std::min(first(axisX), last(axisX))), maxX(std::max(first(axisX), last(axisX))),
      minY(std::min(first(axisY), last(axisY))), maxY(std::max(first(axisY), last(axisY)))
{
}

Interpolation2D::~Interpolation2D() = default;

Interpolation2D* Interpolation2D::createInterpolation2D(unsigned int nx, const double* x,
                                                        unsigned int ny, const double* y,
                                                        const double* v)
{
    return new Interpolation2D(nx, x, ny, y, v);
}

double Interpolation2D::bilinearInterpolation(double x, double y) const
{
    const detail::Cell cx = locate(axisX, minX, maxX, x);
    const detail::Cell cy = locate(axisY, minY, maxY, y);
    const double low = std::lerp(values.at(cx.low, cy.low), values.at(cx.low, cy.high), cy.t);
    const double high = std::lerp(values.at(cx.high, cy.low), values.at(cx.high, cy.high), cy.t);
    return std::lerp(low, high, cx.t);
}

} // namespace math::interpolation
