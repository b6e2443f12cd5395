#include "DefaultCases.h"
#include "DefaultRecord.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

// With all defaults the library gives what it gave before it could be persistent and start warm.
// tests/regression/data/defaults.txt: captured from this library on 21 November 2026 with glibc
// 2.36 on x86-64, guards against change only.

using namespace ketra_test;

namespace {

constexpr std::size_t blockSize = 50;

class Defaults : public testing::TestWithParam<std::size_t>
{
protected:
    static void SetUpTestSuite() { useShippedSpecies(); }

    static const DefaultRecords& stored()
    {
        static const DefaultRecords records =
            readDefaultRecords(KETRA_SOURCE_DIR "/tests/regression/data/defaults.txt");
        return records;
    }
};
class DefaultEngines : public Defaults
{
};
class DefaultEquilibria : public Defaults
{
};

bool sameBits(double a, double b)
{
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

bool isNear(double a, double b)
{
    return sameBits(a, b) || std::abs(a - b) <= 1e-9 * std::max(std::abs(a), std::abs(b));
}

void expectSame(const DefaultRecord& found, const DefaultRecord& expected, bool exact)
{
    EXPECT_EQ(found.outcome, expected.outcome);
    ASSERT_EQ(found.values.size(), expected.values.size());
    for (std::size_t k = 0; k < found.values.size(); ++k) {
        const double a = found.values[k], b = expected.values[k];
        EXPECT_TRUE(exact ? sameBits(a, b) : isNear(a, b))
            << "value " << k << ": " << testing::PrintToString(a) << " instead of "
            << testing::PrintToString(b) << ", off by " << a / b - 1.0;
    }
    if (!exact) return;
    EXPECT_EQ(found.products, expected.products) << "digest of the products";
}

/// What a difference means here.
std::string demand(bool exact)
{
    return exact ? "the same mathematical functions as in the record: every bit has to agree"
                 : "other mathematical functions than in the record: the same outcome, and every "
                   "number within 1e-9";
}

TEST_P(DefaultEngines, GiveTheSameBits)
{
    const bool exact = stored().fingerprint == mathematicsFingerprint();
    SCOPED_TRACE(demand(exact));
    ASSERT_EQ(stored().engines.size(), defaultEngineCount);
    const auto cases = defaultEngines();
    for (std::size_t i = GetParam() * blockSize; i < (GetParam() + 1) * blockSize; ++i) {
        SCOPED_TRACE("engine " + std::to_string(i) + ": " + describe(cases[i]));
        expectSame(recordEngine(i), stored().engines[i], exact);
    }
}

TEST_P(DefaultEquilibria, GiveTheSameBits)
{
    const bool exact = stored().fingerprint == mathematicsFingerprint();
    SCOPED_TRACE(demand(exact));
    ASSERT_EQ(stored().equilibria.size(), defaultEquilibriumCount);
    for (std::size_t i = GetParam() * blockSize; i < (GetParam() + 1) * blockSize; ++i) {
        SCOPED_TRACE("equilibrium " + std::to_string(i));
        expectSame(recordEquilibrium(i), stored().equilibria[i], exact);
    }
}

INSTANTIATE_TEST_SUITE_P(Blocks, DefaultEngines,
                         testing::Range<std::size_t>(0, defaultEngineCount / blockSize));
INSTANTIATE_TEST_SUITE_P(Blocks, DefaultEquilibria,
                         testing::Range<std::size_t>(0, defaultEquilibriumCount / blockSize));

} // namespace
