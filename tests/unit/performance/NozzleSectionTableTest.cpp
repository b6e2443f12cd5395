#include "Sections.h"

#include <ketra/math/interpolation/Interpolation.h>
#include <ketra/thermo/Exception.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <string>

// Sections and the two tables of the nozzle.

namespace {

using namespace ketra_test;

Section tabulated(Chamber& chamber, double Fr, int size)
{
    return Section(&chamber, Fr, Section::AREA_RATIO, true, false, false, size);
}

/// Number of points of the chamber's exit table, which is there.
unsigned int sizeOfExitTable(Chamber& chamber)
{
    return chamber.getNozzleExit(0, 0, false, 1)->getValues()->size();
}

TEST(SectionTables, AreLeftAloneByANegativeSize)
{
    const auto chamber = hydrogenChamber();
    const double own = byArea(*chamber, 10.0).getP();
    EXPECT_FALSE(chamber->isNozzleExitTable());
    // a table that says something else is not read
    chamber->getNozzleExit(1e3, 1e3, false, 5);
    EXPECT_EQ(byArea(*chamber, 10.0).getP(), own);
    EXPECT_EQ(sizeOfExitTable(*chamber), 5U);
}

TEST(SectionTables, AreBuiltByTheFirstSupersonicSection)
{
    const auto chamber = hydrogenChamber();
    const Section section = tabulated(*chamber, 10.0, 0);
    ASSERT_TRUE(chamber->isNozzleExitTable());
    EXPECT_EQ(sizeOfExitTable(*chamber), 120U);
    EXPECT_EQ(chamber->getNozzleExitTableMaxFr(), 10.0);
    // its last point is this section
    EXPECT_EQ(chamber->getNozzleExit(0, 0, false, 1)->linearInterpolation(10.0), section.getP());
}

TEST(SectionTables, HaveTheSizeAskedFor)
{
    const auto chamber = hydrogenChamber();
    tabulated(*chamber, 10.0, 25);
    EXPECT_EQ(sizeOfExitTable(*chamber), 25U);
}

TEST(SectionTables, AreBuiltByASectionOfGivenPressureToo)
{
    const auto chamber = hydrogenChamber();
    const Section byRatio(chamber.get(), 200.0, Section::PRESSURE_RATIO, true, false, false, 0);
    EXPECT_EQ(chamber->getNozzleExitTableMaxFr(), byRatio.getFr());
}

TEST(SectionTables, AreNotBuiltBySubsonicSections)
{
    const auto chamber = hydrogenChamber(3.0);
    const Section throat(chamber.get(), 1.0, Section::AREA_RATIO, true, false, false, 0);
    const Section subsonic(chamber.get(), 2.0, Section::AREA_RATIO, false, false, false, 0);
    EXPECT_FALSE(chamber->isNozzleExitTable());
}

TEST(SectionTables, StayUntilTheyAreDeleted)
{
    const auto chamber = hydrogenChamber();
    tabulated(*chamber, 10.0, 25);
    const auto* first = chamber->getNozzleExit(0, 0, false, 1);
    const Section beyond = tabulated(*chamber, 20.0, 40); // outside: searched
    EXPECT_EQ(beyond.getP(), byArea(*chamber, 20.0).getP());
    EXPECT_EQ(chamber->getNozzleExit(0, 0, false, 1), first);
    EXPECT_EQ(sizeOfExitTable(*chamber), 25U);

    chamber->deleteNozzleExitTable();
    tabulated(*chamber, 20.0, 40);
    EXPECT_EQ(sizeOfExitTable(*chamber), 40U);
    EXPECT_EQ(chamber->getNozzleExitTableMaxFr(), 20.0);
}

TEST(SectionTables, GiveTheirPressureToASection)
{
    const auto chamber = hydrogenChamber();
    tabulated(*chamber, 50.0, 0);
    const Section section = tabulated(*chamber, 10.0, 0);
    EXPECT_EQ(section.getFr(), 10.0);
    EXPECT_EQ(section.getP(),
              chamber->getNozzleExit(0, 0, false, 1)->polynomialInterpolation(10.0));
    EXPECT_GT(section.getV(), 0.0); // solved at a given pressure, and so with transport
}

TEST(SectionTables, OfTheInletHave90PointsUnlessAskedOtherwise)
{
    for (const int asked : {-1, 0}) {
        const auto chamber = hydrogenChamber(3.0);
        const Section section(chamber.get(), 2.0, Section::AREA_RATIO, false, false, false, asked);
        const auto* table = chamber->getNozzleInput(false, 7);
        EXPECT_EQ(table->getValues()->size(), 90U);
        EXPECT_EQ(section.getP(), table->linearInterpolation(2.0));
    }
    const auto chamber = hydrogenChamber(3.0);
    const Section section(chamber.get(), 2.0, Section::AREA_RATIO, false, false, false, 30);
    EXPECT_EQ(chamber->getNozzleInput(false, 7)->getValues()->size(), 30U);
}

/// A propellant, the widest area ratio of its table, and what its pressures may be off, relative.
struct TableCase {
    const char* name;
    std::function<std::unique_ptr<thermo::Mixture>()> mixture;
    double widest;
    double tolerance = 2e-4;
};

class TabulatedExit : public testing::TestWithParam<TableCase>
{
protected:
    /// The pressure at which the flow has exactly the area ratio, by the secant in logarithms; the
    /// search of a section alone stops within 5e-4 of the area.
    static double exactPressure(Chamber& chamber, double Fr)
    {
        double p = byArea(chamber, Fr).getP();
        for (int i = 0; i < 3; ++i) {
            const double here = std::log(byPressure(chamber, p).getFr() / Fr);
            const double there = std::log(byPressure(chamber, p * 1.001).getFr() / Fr);
            p *= std::exp(-here * std::log(1.001) / (there - here));
        }
        EXPECT_NEAR(byPressure(chamber, p).getFr(), Fr, 1e-7 * Fr);
        return p;
    }
};

TEST_P(TabulatedExit, AgreesInPressureWithASectionSolvedWithoutIt)
{
    useShippedSpecies();
    const auto mixture = GetParam().mixture();
    const auto chamber = solvedChamber(*mixture);
    tabulated(*chamber, GetParam().widest, 0);
    ASSERT_TRUE(chamber->isNozzleExitTable());
    for (double Fr = 1.1; Fr < GetParam().widest; Fr *= 1.5) {
        const double exact = exactPressure(*chamber, Fr);
        EXPECT_NEAR(tabulated(*chamber, Fr, 0).getP(), exact, GetParam().tolerance * exact) << Fr;
    }
}

// At the throat the pressure falls with the square root of what the area has grown by: no smooth
// curve through a few points has an infinite slope.
TEST_P(TabulatedExit, IsWithinThreeInAThousandNextToTheThroat)
{
    useShippedSpecies();
    const auto mixture = GetParam().mixture();
    const auto chamber = solvedChamber(*mixture);
    tabulated(*chamber, GetParam().widest, 0);
    for (const double Fr : {1.01, 1.04}) {
        const double exact = exactPressure(*chamber, Fr);
        EXPECT_NEAR(tabulated(*chamber, Fr, 0).getP(), exact, 3e-3 * exact) << Fr;
    }
}

std::string nameOf(const testing::TestParamInfo<TableCase>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(
    Propellants, TabulatedExit,
    testing::Values(TableCase{"LoxHydrogen", [] { return loxHydrogen(6.0); }, 80.0},
                    TableCase{"LoxKerosene", [] { return loxKerosene(2.6); }, 40.0},
                    TableCase{"NtoMmh", [] { return ntoMmh(2.0); }, 150.0},
                    TableCase{"LoxHydrogenNarrow", [] { return loxHydrogen(6.0); }, 3.0},
                    // the melting of alumina bends the curve within less than two points
                    TableCase{"AluminisedSolid", [] { return aluminisedSolid(0.16); }, 10.0, 2e-3}),
    nameOf);

} // namespace
