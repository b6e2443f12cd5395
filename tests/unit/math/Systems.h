#pragma once

#include <ketra/math/matrix/ColumnVector.h>
#include <ketra/math/matrix/LinearSystem.h>

#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <random>

namespace math_test {

using math::matrix::ColumnVector;
using math::matrix::LinearSystem;

/// Numbers between -1 and 1, the same on every platform.
class Numbers
{
public:
    explicit Numbers(std::uint64_t seed) : generator(seed) {}
    double next() { return std::ldexp(static_cast<double>(generator() >> 11), -52) - 1.0; }

private:
    std::mt19937_64 generator;
};

inline LinearSystem systemOf(unsigned int n, std::initializer_list<double> entries)
{
    LinearSystem a(n);
    unsigned int i = 0;
    for (const double entry : entries) a.getData()[i++] = entry;
    return a;
}

inline ColumnVector vectorOf(std::initializer_list<double> entries)
{
    ColumnVector v(static_cast<unsigned int>(entries.size()));
    unsigned int i = 0;
    for (const double entry : entries) v.set(i++, entry);
    return v;
}

inline ColumnVector randomVector(unsigned int n, Numbers& numbers)
{
    ColumnVector v(n);
    for (unsigned int i = 0; i < n; ++i) v.set(i, numbers.next());
    return v;
}

/// Entries between -1 and 1 and a diagonal that dominates, the rows in an order that hides it:
/// condition number of a few.
inline LinearSystem wellConditioned(unsigned int n, Numbers& numbers)
{
    LinearSystem a(n);
    for (unsigned int i = 0; i < n; ++i) {
        for (unsigned int j = 0; j < n; ++j) a.set(i, j, numbers.next());
        const unsigned int large = (i + n / 2) % n;
        a.set(i, large, a.at(i, large) + (a.at(i, large) < 0 ? -1.0 : 1.0) * 2.0 * n);
    }
    return a;
}

/// The Hilbert matrix, 1 / (i + j + 1): condition number about exp(3.5 n).
inline LinearSystem hilbert(unsigned int n)
{
    LinearSystem a(n);
    for (unsigned int i = 0; i < n; ++i)
        for (unsigned int j = 0; j < n; ++j) a.set(i, j, 1.0 / (i + j + 1.0));
    return a;
}

/// Wilkinson's matrix: partial pivoting doubles the last column at each step, full pivoting
/// does not.
inline LinearSystem wilkinson(unsigned int n)
{
    LinearSystem a(n);
    for (unsigned int i = 0; i < n; ++i) {
        for (unsigned int j = 0; j < i; ++j) a.set(i, j, -1.0);
        a.set(i, i, 1.0);
        a.set(i, n - 1, 1.0);
    }
    return a;
}

/// A x.
inline ColumnVector product(const LinearSystem& a, const ColumnVector& x)
{
    ColumnVector b(x.size());
    for (unsigned int i = 0; i < x.size(); ++i) {
        long double sum = 0.0L;
        for (unsigned int j = 0; j < x.size(); ++j)
            sum += static_cast<long double>(a.at(i, j)) * x.at(j);
        b.set(i, static_cast<double>(sum));
    }
    return b;
}

/// Largest |x - y| over the largest |y|.
inline double relativeError(const ColumnVector& x, const ColumnVector& y)
{
    double error = 0.0, size = 0.0;
    for (unsigned int i = 0; i < y.size(); ++i) {
        error = std::fmax(error, std::fabs(x.at(i) - y.at(i)));
        size = std::fmax(size, std::fabs(y.at(i)));
    }
    return error / size;
}

inline bool sameEntries(const math::matrix::Matrix& a, const math::matrix::Matrix& b)
{
    if (a.rowCount() != b.rowCount() || a.columnCount() != b.columnCount()) return false;
    for (unsigned int i = 0; i < a.rowCount(); ++i)
        for (unsigned int j = 0; j < a.columnCount(); ++j)
            if (a.at(i, j) != b.at(i, j)) return false;
    return true;
}

/// The three ways to solve a system.
enum class Way { lu, refined, full };

inline std::unique_ptr<ColumnVector> solve(Way way, const LinearSystem& a, const ColumnVector& b)
{
    switch (way) {
    case Way::lu:
        return std::unique_ptr<ColumnVector>(a.solveLU(&b, false));
    case Way::refined:
        return std::unique_ptr<ColumnVector>(a.solve(&b, true));
    case Way::full:
        break;
    }
    return std::unique_ptr<ColumnVector>(a.solve(&b, false));
}

} // namespace math_test
