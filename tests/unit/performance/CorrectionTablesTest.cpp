#include <ketra/performance/efficiency/detail/CorrectionTables.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

using namespace performance::efficiency::detail;

template <std::size_t columns> using Entries = std::array<double, columns>;

/// The row of exactly this \p x.
template <std::size_t columns, std::size_t rows>
Entries<columns> rowAt(const std::array<Row<columns>, rows>& table, double x)
{
    for (const Row<columns>& row : table)
        if (row.x == x) return row.entries;
    ADD_FAILURE() << "no row at " << x;
    return {};
}

template <std::size_t columns, std::size_t rows>
void expectRisingAxis(const std::array<Row<columns>, rows>& table)
{
    for (std::size_t i = 1; i < rows; ++i) EXPECT_LT(table[i - 1].x, table[i].x) << i;
}

template <std::size_t columns, std::size_t rows>
void expectBounds(const std::array<Row<columns>, rows>& table, double least, double greatest)
{
    double low = table[0].entries[0];
    double high = low;
    for (const Row<columns>& row : table)
        for (const double entry : row.entries) {
            low = std::min(low, entry);
            high = std::max(high, entry);
        }
    EXPECT_EQ(low, least);
    EXPECT_EQ(high, greatest);
}

/// From row to row an entry moves by less than \p step: no figure has slipped.
template <std::size_t columns, std::size_t rows>
void expectSmooth(const std::array<Row<columns>, rows>& table, double step)
{
    for (std::size_t i = 1; i < rows; ++i)
        for (std::size_t j = 0; j < columns; ++j)
            EXPECT_NEAR(table[i].entries[j], table[i - 1].entries[j], step) << i << ", " << j;
}

/// The sum of all numbers of a table.
template <std::size_t columns, std::size_t rows>
double sumOf(const std::array<Row<columns>, rows>& table)
{
    double sum = 0.0;
    for (const Row<columns>& row : table) {
        sum += row.x;
        for (const double entry : row.entries) sum += entry;
    }
    return sum;
}

TEST(FrictionTable, HasItsAxes)
{
    EXPECT_EQ(frictionLosses.size(), 293U);
    EXPECT_EQ(frictionLosses.front().x, 1.0);
    EXPECT_EQ(frictionLosses.back().x, 50.3367);
    expectRisingAxis(frictionLosses);
    EXPECT_EQ(frictionAxis, (Entries<9>{16, 14, 12, 10, 8, 6, 4, 2, 0}));
}

TEST(FrictionTable, HasItsEntries)
{
    EXPECT_EQ(rowAt(frictionLosses, 1.0), (Entries<9>{0.28306, 0.291, 0.28532, 0.28806, 0.28838,
                                                      0.28771, 0.28749, 0.28005, 0.27991}));
    EXPECT_EQ(rowAt(frictionLosses, 5.00467),
              (Entries<9>{0.83965, 0.89287, 0.94786, 1.01791, 1.09316, 1.17978, 1.29323, 1.42592,
                          1.60954}));
    EXPECT_EQ(rowAt(frictionLosses, 50.3367),
              (Entries<9>{0.95741, 1.01863, 1.08693, 1.15881, 1.24845, 1.36114, 1.51553, 1.72676,
                          2.08909}));
    expectBounds(frictionLosses, 0.27991, 2.08909);
    expectSmooth(frictionLosses, 0.02);
    // The sum of the correlation's own file, 3,650.54933 and 2,866.40018.
    EXPECT_NEAR(sumOf(frictionLosses), 6516.94951, 1e-5);
}

TEST(ReactionTable, HasItsAxes)
{
    EXPECT_EQ(reactionLosses.size(), 97U);
    EXPECT_EQ(reactionLosses.front().x, 0.28664);
    EXPECT_EQ(reactionLosses.back().x, 1.4906);
    expectRisingAxis(reactionLosses);
    EXPECT_EQ(reactionAxis, (Entries<3>{1, 2, 3}));
}

TEST(ReactionTable, HasItsEntries)
{
    EXPECT_EQ(rowAt(reactionLosses, 0.28664), (Entries<3>{0, 1.6428, 2.3472}));
    EXPECT_EQ(rowAt(reactionLosses, 0.90464), (Entries<3>{0.9993, 1.2293, 1.8322}));
    EXPECT_EQ(rowAt(reactionLosses, 1.4906), (Entries<3>{0.5393, 1.0131, 1.0529}));
    expectBounds(reactionLosses, 0.0, 2.3472);
    expectSmooth(reactionLosses, 0.05);
    EXPECT_NEAR(sumOf(reactionLosses), 78.566763 + 377.9279, 1e-6);
}

TEST(DivergenceTable, HasItsAxes)
{
    EXPECT_EQ(divergenceEfficiencies.size(), 105U);
    EXPECT_EQ(divergenceEfficiencies.front().x, 60.0);
    EXPECT_EQ(divergenceEfficiencies.back().x, 100.0);
    expectRisingAxis(divergenceEfficiencies);
    EXPECT_EQ(divergenceAxis, (Entries<6>{10, 20, 30, 40, 100, 200}));
}

TEST(DivergenceTable, HasItsEntries)
{
    EXPECT_EQ(rowAt(divergenceEfficiencies, 60.0),
              (Entries<6>{96.2228, 96.707, 97.1435, 97.2455, 97.3692, 97.465}));
    EXPECT_EQ(rowAt(divergenceEfficiencies, 76.0711),
              (Entries<6>{98.226, 98.4989, 98.6273, 98.6637, 98.6968, 98.7199}));
    EXPECT_EQ(rowAt(divergenceEfficiencies, 100.0),
              (Entries<6>{99.1566, 99.1564, 99.1564, 99.1565, 99.1687, 99.1766}));
    expectBounds(divergenceEfficiencies, 96.2228, 99.1766);
    expectSmooth(divergenceEfficiencies, 0.05);
    EXPECT_NEAR(sumOf(divergenceEfficiencies), 7993.7237 + 61951.5876, 1e-5);
}

} // namespace
