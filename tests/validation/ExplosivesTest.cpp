// Heats of explosion against published ones. The deviations are those of docs/verification.md.

#include <ketra/explosion/HeatOfExplosion.h>
#include <ketra/thermo/Mixture.h>

#include <support/Reactants.h>
#include <support/ReferenceStates.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <map>
#include <string>
#include <vector>

namespace {

using explosion::HeatOfExplosion;
using ketra_test::numberOf;

// Of a figure that is calculated in the same way, and of one that is measured on a detonation.
constexpr double calculatedBand = 3.5; // %
constexpr double measuredBand = 8.0;   // %
// Of the stated deviation: half of its last digit, and the rounding of the published figure.
constexpr double statedBand = 0.06; // %

struct PublishedHeat {
    std::string explosive;
    std::string origin;
    std::string water;
    double rho; // kg/m^3
    double T;   // K
    double Q;   // J/kg
    std::string source;
    double deviation; // %

    std::map<std::string, std::string> finalState() const
    {
        return {{"H2O", water == "liquid" ? "H2O(L)" : "H2O"}};
    }
};

std::vector<PublishedHeat> publishedHeats()
{
    std::vector<PublishedHeat> all;
    for (const auto& row : ketra_test::referenceRows("explosives.csv"))
        all.push_back({row.at(0), row.at(1), row.at(2), numberOf(row.at(3)), numberOf(row.at(4)),
                       1000.0 * numberOf(row.at(5)), row.at(6), numberOf(row.at(7))});
    return all;
}

void PrintTo(const PublishedHeat& heat, std::ostream* out)
{
    *out << heat.explosive << ", " << heat.origin << ", water " << heat.water;
}

double heatOf(const PublishedHeat& published)
{
    ketra_test::useShippedSpecies();
    const auto sample = ketra_test::mixtureOf({{published.explosive, 298.15, 1.0}});
    auto finalState = published.finalState();
    return HeatOfExplosion(*sample).runExactMethod(published.rho, published.T, finalState);
}

class Explosives : public testing::TestWithParam<PublishedHeat>
{
};

TEST_P(Explosives, AreWithinTheBandOfThePublishedFigure)
{
    const PublishedHeat& published = GetParam();
    const double deviation = 100.0 * (heatOf(published) / published.Q - 1.0);
    EXPECT_LT(std::abs(deviation),
              published.origin == "calculated" ? calculatedBand : measuredBand);
    EXPECT_NEAR(deviation, published.deviation, statedBand);
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
        const double Q = heatOf({name, "", "liquid", 100.0, 1500.0, 0.0, "", 0.0});
        for (const double rho : {10.0, 1000.0, 1700.0})
            for (const double T : {1200.0, 1500.0, 1800.0})
                EXPECT_NEAR(heatOf({name, "", "liquid", rho, T, 0.0, "", 0.0}), Q, 2e-3 * Q);
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
            const double Q = heatOf({name, "", "liquid", 1000.0, T, 0.0, "", 0.0});
            EXPECT_LT(Q, before);
            before = Q;
        }
    }
}

} // namespace
