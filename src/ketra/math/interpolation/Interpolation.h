#pragma once

#include <ketra/math/matrix/RowVector.h>

#include <memory>

namespace math::interpolation {

/// A table y(x).
///
/// The points may come in any order of x and x may repeat. A look-up does not change the table,
/// which may be read by several threads at once; copies share the prepared curve.
/// Failures are math::interpolation::Exception 0.
class KETRA_API Interpolation
{
public:
    /// Copies the \p n points. \throws Exception 0 for no points and for numbers not finite
    Interpolation(unsigned int n, const double* x, const double* y);

    /// The smallest and the largest x.
    double getMinX() const;
    double getMaxX() const;

    /// The value at \p x on the broken line through the points; where x repeats, the value of its
    /// last point. \throws Exception 0 outside the table
    double linearInterpolation(double x) const;

    /// The value at \p x on a smooth curve through the points that rises and falls only where they
    /// do (piecewise cubic Hermite, slopes after Fritsch and Carlson); points of the same x count
    /// as their mean. With fewer than four different x a broken line.
    /// \throws Exception 0 outside the table
    double polynomialInterpolation(double x) const;

    /// The y values in the order in which they were given; the table's own.
    const matrix::RowVector* getValues() const { return &values; }

private:
    class Curve;

    matrix::RowVector values;
    std::shared_ptr<const Curve> curve; // never changes once made
};

} // namespace math::interpolation
