#pragma once

#include <ketra/math/matrix/Matrix.h>
#include <ketra/math/matrix/RowVector.h>

namespace math::interpolation {

/// A table v(x, y) over a grid; each axis rises or falls.
///
/// An axis of a single point is legal: the table then does not depend on that coordinate. A
/// look-up does not change the table, which may be read by several threads at once.
class KETRA_API Interpolation2D
{
public:
    /// Copies axes and values; v[ix * ny + iy] is the value at x[ix], y[iy].
    /// \throws math::interpolation::Exception 0 for an empty axis, one that neither rises nor
    ///         falls, and for numbers that are not finite
    Interpolation2D(unsigned int nx, const double* x, unsigned int ny, const double* y,
                    const double* v);
    virtual ~Interpolation2D();

    /// The same. \returns a new table, the caller's
    static Interpolation2D* createInterpolation2D(unsigned int nx, const double* x, unsigned int ny,
                                                  const double* y, const double* v);

    /// The smaller and the larger end of each axis.
    double getMinX() const { return minX; }
    double getMaxX() const { return maxX; }
    double getMinY() const { return minY; }
    double getMaxY() const { return maxY; }

    /// The value at \p x, \p y, linear in either. \throws Exception 0 outside the table
    double bilinearInterpolation(double x, double y) const;

    /// The axes as given, and the values, nx rows and ny columns; the table's own.
    const matrix::RowVector* getX() const { return &axisX; }
    const matrix::RowVector* getY() const { return &axisY; }
    const matrix::Matrix* getValues() const { return &values; }

private:
    matrix::RowVector axisX;
    matrix::RowVector axisY;
    matrix::Matrix values;
    double minX;
    double maxX;
    double minY;
    double maxY;
};

} // namespace math::interpolation
