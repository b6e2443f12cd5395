// Heats of explosion against published ones. The deviations are those of docs/verification.md.

#include <validation/published/Heats.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <string>
#include <vector>

namespace ketra_test {

// Of the stated deviation: half of its last digit, and the rounding of the published figure.
constexpr double statedBand = 0.06; // %

void PrintTo(const PublishedHeat& heat, std::ostream* out)
{
    *out << heat.explosive << ", " << heat.origin << ", water " << heat.water;
}

namespace {

class Explosives : public testing::TestWithParam<PublishedHeat>
{
};

TEST_P(Explosives, AreWithinTheBandOfThePublishedFigure)
{
    const PublishedHeat& published = GetParam();
    const double deviation = heatOf(published) / (1000.0 * std::stod(published.Q)) - 1.0;
    EXPECT_LT(std::abs(deviation),
              published.origin == "calculated" ? calculatedBand : measuredBand);
    EXPECT_NEAR(100.0 * deviation, published.deviation, statedBand);
}

std::string nameOf(const testing::TestParamInfo<PublishedHeat>& info)
{
    std::string name = info.param.explosive + "_" + info.param.origin + "_" + info.param.water;
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Published, Explosives, testing::ValuesIn(publishedHeats()), nameOf);

// Explosives with enough oxygen burn to carbon dioxide, water and nitrogen whatever the vessel: no
// choice of density and temperature is behind their figures.
TEST(ExplosivesWithEnoughOxygen, HardlyDependOnTheVessel)
{
    for (const char* const name : {"NG(L)", "EGDN(L)"}) {
        SCOPED_TRACE(name);
        const double Q = heatOf({name, "", "liquid", 100.0, 1500.0, "", "", 0.0});
        for (const double rho : {10.0, 1000.0, 1700.0})
            for (const double T : {1200.0, 1500.0, 1800.0})
                EXPECT_NEAR(heatOf({name, "", "liquid", rho, T, "", "", 0.0}), Q, 2e-3 * Q);
    }
}

// ... and those without it do: the earlier the products freeze, the more carbon monoxide and
// hydrogen are left of the carbon and water that they would become.
TEST(ExplosivesWithoutOxygen, GiveLessHeatTheHotterTheirProductsFreeze)
{
    for (const char* const name : {"RDX(cr)", "HMX(cr)", "TNT(cr)", "NQ(cr)", "CH3NO2(L)"}) {
        SCOPED_TRACE(name);
        double before = 1e8;
        for (const double T : {1200.0, 1500.0, 1800.0, 2100.0}) {
            const double Q = heatOf({name, "", "liquid", 1000.0, T, "", "", 0.0});
            EXPECT_LT(Q, before);
            before = Q;
        }
    }
}

} // namespace

} // namespace ketra_test
