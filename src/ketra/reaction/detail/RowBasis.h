#pragma once

#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace reaction::detail {

/// Gathers rows that do not depend on each other, by Gram-Schmidt.
class RowBasis
{
public:
    explicit RowBasis(std::size_t order) : m(order) {}

    bool isFull() const { return units.size() == m; }
    /// The rows taken up, one after the other.
    const std::vector<double>& rows() const { return taken; }

    /// Takes up a row unless it depends on those before. \returns whether it was taken
    bool offer(const double* row)
    {
        constexpr double dependent = 1e-10; // of the square of a row: what is left of it then
        if (isFull()) return false;
        std::vector<double> rest(row, row + m);
        const double before = square(rest);
        for (const auto& unit : units) {
            double part = 0.0;
            for (std::size_t i = 0; i < m; ++i) part += unit[i] * rest[i];
            for (std::size_t i = 0; i < m; ++i) rest[i] -= part * unit[i];
        }
        const double norm = square(rest);
        if (!(norm > dependent * before)) return false;
        for (double& a : rest) a /= std::sqrt(norm);
        units.push_back(std::move(rest));
        taken.insert(taken.end(), row, row + m);
        return true;
    }

private:
    static double square(const std::vector<double>& row)
    {
        double sum = 0.0;
        for (const double a : row) sum += a * a;
        return sum;
    }

    std::size_t m;
    std::vector<double> taken;
    std::vector<std::vector<double>> units; // orthonormal
};

} // namespace reaction::detail
