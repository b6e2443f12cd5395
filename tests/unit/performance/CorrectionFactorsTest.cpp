#include <ketra/performance/efficiency/CorrectionFactors.h>

#include <ketra/math/interpolation/Interpolation2D.h>
#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/efficiency/detail/CorrectionTables.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/frozen/Chamber.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Propellant.h>

#include "Engines.h"

#include <support/Failures.h>
#include <support/Reactants.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using ketra_test::bipropellantDocument;
using ketra_test::mixtureDocument;
using performance::TheoreticalPerformance;
using performance::efficiency::CorrectionFactors;
using performance::equilibrium::Chamber;
using thermo::input::ConfigFile;
using thermo::input::EfficiencyFactors;
using thermo::input::Ratio;
namespace tables = performance::efficiency::detail;

// The same operations in another order.
constexpr double rounding = 1e-14;

/// A document with a nozzle of \p areaRatio.
std::unique_ptr<ConfigFile> withNozzle(std::unique_ptr<ConfigFile> document, double areaRatio)
{
    document->getNozzleFlowOptions().setCalculateNozzleFlow(true);
    document->getNozzleFlowOptions().setNozzleExitConditions().setAreaRatio(areaRatio, true);
    return document;
}

std::unique_ptr<ConfigFile> hydrogenEngine(double areaRatio, double MPa = 7.0, double alpha = 0.75)
{
    return withNozzle(bipropellantDocument({"O2(L)", 1.0, 90.17}, {"H2(L)", 1.0, 20.27}, alpha,
                                           Ratio::ALPHA, MPa),
                      areaRatio);
}

std::unique_ptr<ConfigFile> keroseneEngine(double areaRatio, double alpha)
{
    return withNozzle(
        bipropellantDocument({"O2(L)", 1.0, 90.17}, {"RP-1", 1.0}, alpha, Ratio::ALPHA), areaRatio);
}

std::unique_ptr<ConfigFile> aluminisedMotor(double areaRatio)
{
    auto document = withNozzle(
        mixtureDocument({{"NH4CLO4(I)", 0.68}, {"HTPB", 0.14}, {"AL(cr)", 0.18}}, 6.2), areaRatio);
    document->getGeneralOptions().setMultiphase(true);
    return document;
}

std::unique_ptr<TheoreticalPerformance> solved(std::unique_ptr<ConfigFile> document)
{
    auto engine = std::make_unique<TheoreticalPerformance>(document.release(), true);
    engine->solve(/*calculateTransport=*/false);
    return engine;
}

EfficiencyFactors& factorsOf(TheoreticalPerformance& engine)
{
    return engine.getData()->getNozzleFlowOptions().setEfficiencyFactors();
}

/// A built-in table read by this test itself.
template <std::size_t columns, std::size_t rows>
double read(const std::array<tables::Row<columns>, rows>& table,
            const std::array<double, columns>& axis, double x, double y)
{
    std::vector<double> xs, values;
    for (const auto& row : table) {
        xs.push_back(row.x);
        values.insert(values.end(), row.entries.begin(), row.entries.end());
    }
    const math::interpolation::Interpolation2D whole(rows, xs.data(), columns, axis.data(),
                                                     values.data());
    return whole.bilinearInterpolation(x, y);
}
double frictionLoss(double x, double y)
{
    return read(tables::frictionLosses, tables::frictionAxis, x, y);
}
double reactionLoss(double x, double y)
{
    return read(tables::reactionLosses, tables::reactionAxis, x, y);
}
double divergenceKept(double x, double y)
{
    return read(tables::divergenceEfficiencies, tables::divergenceAxis, x, y);
}

/// Two engines that are solved once for all tests.
class CorrectionFactorsTest : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        ketra_test::useShippedSpecies();
        hydrogen = solved(hydrogenEngine(60.0)).release();
        solid = solved(aluminisedMotor(8.0)).release();
    }
    static void TearDownTestSuite()
    {
        delete hydrogen;
        delete solid;
        hydrogen = solid = nullptr;
    }
    void TearDown() override
    {
        for (TheoreticalPerformance* engine : {hydrogen, solid})
            engine->getData()->getNozzleFlowOptions().deleteEfficiencyFactors();
    }

    static TheoreticalPerformance* hydrogen; // shifting, without condensed products
    static TheoreticalPerformance* solid;    // premixed, with alumina
};
TheoreticalPerformance* CorrectionFactorsTest::hydrogen = nullptr;
TheoreticalPerformance* CorrectionFactorsTest::solid = nullptr;

TEST_F(CorrectionFactorsTest, MultiplyToTheOverallEfficiency)
{
    static_assert(std::has_virtual_destructor_v<CorrectionFactors>);
    for (TheoreticalPerformance* engine : {hydrogen, solid}) {
        const CorrectionFactors factors(engine);
        EXPECT_EQ(factors.getNozzleEfficiency(), factors.getDivergenceEfficiency() *
                                                     factors.getFrictionEfficiency() *
                                                     factors.getMultiphaseEfficiency());
        EXPECT_EQ(factors.getOverallEfficiency(),
                  factors.getReactionEfficiency() * factors.getNozzleEfficiency());
        EXPECT_EQ(factors.getChamberEfficiency(), factors.getReactionEfficiency());
        EXPECT_GT(factors.getOverallEfficiency(), 0.85);
        EXPECT_LT(factors.getOverallEfficiency(), 1.0);
    }
}

TEST_F(CorrectionFactorsTest, ReadTheDivergenceOfABellByLengthAndAreaRatio)
{
    const CorrectionFactors factors(hydrogen);
    EXPECT_NEAR(factors.getDivergenceEfficiency(76.0711, 30.0), 0.986273, rounding);
    EXPECT_NEAR(factors.getDivergenceEfficiency(60.0, 10.0), 0.962228, rounding);
    EXPECT_NEAR(factors.getDivergenceEfficiency(100.0, 200.0), 0.991766, rounding);
    // Halfway between two area ratios.
    EXPECT_NEAR(factors.getDivergenceEfficiency(100.0, 150.0), (99.1687 + 99.1766) / 200, rounding);
    // Both arguments are limited.
    EXPECT_EQ(factors.getDivergenceEfficiency(120.0, 20.0),
              factors.getDivergenceEfficiency(100.0, 20.0));
    EXPECT_EQ(factors.getDivergenceEfficiency(40.0, 20.0),
              factors.getDivergenceEfficiency(60.0, 20.0));
    EXPECT_EQ(factors.getDivergenceEfficiency(76.0711, 400.0),
              factors.getDivergenceEfficiency(76.0711, 200.0));
    EXPECT_EQ(factors.getDivergenceEfficiency(76.0711, 2.0),
              factors.getDivergenceEfficiency(76.0711, 10.0));
}

TEST_F(CorrectionFactorsTest, TakeABellOf80PercentUnlessToldOtherwise)
{
    const CorrectionFactors factors(hydrogen);
    const double Fr = hydrogen->getExitSection()->getFr();
    EXPECT_NEAR(Fr, 60.0, 0.05);
    EXPECT_NEAR(factors.getDivergenceEfficiency(), divergenceKept(80.0, Fr) / 100, rounding);
    EfficiencyFactors& given = factorsOf(*hydrogen);
    EXPECT_NEAR(factors.getDivergenceEfficiency(), divergenceKept(80.0, Fr) / 100, rounding);
    given.setNozzleLength(70.0);
    EXPECT_NEAR(factors.getDivergenceEfficiency(), divergenceKept(70.0, Fr) / 100, rounding);
    given.setNozzleLength(120.0);
    EXPECT_NEAR(factors.getDivergenceEfficiency(), divergenceKept(100.0, Fr) / 100, rounding);
    given.setNozzleLength(40.0);
    EXPECT_NEAR(factors.getDivergenceEfficiency(), divergenceKept(60.0, Fr) / 100, rounding);
}

TEST_F(CorrectionFactorsTest, TakeTheConeBeforeTheLengthAndPiToTwoDecimals)
{
    const CorrectionFactors factors(hydrogen);
    EfficiencyFactors& given = factorsOf(*hydrogen);
    given.setNozzleLength(70.0);
    given.setConeHalfAngle(15.0);
    EXPECT_NEAR(factors.getDivergenceEfficiency(), (std::cos(0.2616667) + 1) / 2, 1e-8);
    // With all of pi it is 1.7e-5 less.
    EXPECT_GT(factors.getDivergenceEfficiency() - (std::cos(0.26179939) + 1) / 2, 1.5e-5);
    given.setConeHalfAngle(0.0);
    EXPECT_EQ(factors.getDivergenceEfficiency(), 1.0);
    EXPECT_LT(factors.getFrictionEfficiency(), 1.0); // it is of the cone as of the bell
}

TEST_F(CorrectionFactorsTest, ReadTheFrictionAtTheRootOfTheAreaRatio)
{
    const CorrectionFactors factors(hydrogen);
    for (const double y : {0.0, 1.0, 9.0, 16.0}) {
        SCOPED_TRACE(y);
        EXPECT_NEAR(factors.getFrictionEfficiency(4.0, y), 1 - frictionLoss(2.0, y) / 100,
                    rounding);
        EXPECT_NEAR(factors.getFrictionEfficiency(1.0, y), 1 - frictionLoss(1.0, y) / 100,
                    rounding);
    }
    // A row of the table, at the ends of its falling axis and between.
    const double areaRatio = 5.00467 * 5.00467;
    EXPECT_NEAR(factors.getFrictionEfficiency(areaRatio, 16.0), 1 - 0.0083965, 1e-12);
    EXPECT_NEAR(factors.getFrictionEfficiency(areaRatio, 0.0), 1 - 0.0160954, 1e-12);
    EXPECT_NEAR(factors.getFrictionEfficiency(areaRatio, 9.0), 1 - (1.01791 + 1.09316) / 200,
                1e-12);
}

TEST_F(CorrectionFactorsTest, LimitTheAreaRatioBeforeItsRoot)
{
    const CorrectionFactors factors(hydrogen);
    const double last = std::sqrt(50.3367);
    for (const double areaRatio : {50.3367, 60.0, 400.0})
        EXPECT_NEAR(factors.getFrictionEfficiency(areaRatio, 9.0),
                    1 - frictionLoss(last, 9.0) / 100, rounding);
    EXPECT_EQ(factors.getFrictionEfficiency(0.5, 9.0), factors.getFrictionEfficiency(1.0, 9.0));
    EXPECT_EQ(factors.getFrictionEfficiency(4.0, 20.0), factors.getFrictionEfficiency(4.0, 16.0));
    EXPECT_EQ(factors.getFrictionEfficiency(4.0, -1.0), factors.getFrictionEfficiency(4.0, 0.0));
    EXPECT_EQ(factors.getFrictionEfficiency(), factors.getFrictionEfficiency(60.0, 9.0));

    const CorrectionFactors ofSolid(solid);
    EXPECT_EQ(ofSolid.getFrictionEfficiency(),
              ofSolid.getFrictionEfficiency(solid->getExitSection()->getFr(), 9.0));
}

TEST_F(CorrectionFactorsTest, HaveNoTwoPhaseLossWithoutCondensedProducts)
{
    ASSERT_EQ(hydrogen->getExitSection()->getDerivatives()->getZ(), 0.0);
    EXPECT_EQ(CorrectionFactors(hydrogen).getMultiphaseEfficiency(), 1.0);
}

/// The two-phase loss with the composition of \p section.
double twoPhase(TheoreticalPerformance& engine,
                const performance::equilibrium::NozzleSectionConditions& section)
{
    const double Z = section.getDerivatives()->getZ();
    const double c = section.getDerivatives()->getCpz_spec();
    const double Te = engine.getExitSection()->getT();
    const double w = engine.getExitSection()->getW();
    const double Tc = engine.getChamber()->getReaction(Chamber::INJECTION_PLANE)->getT();
    return 0.5 * (0.42 * (1 - Z / 2) +
                  1.58 * (1 - (Tc - (1 + std::log(Tc / Te)) * Te) * c * Z / (w * w)));
}

TEST_F(CorrectionFactorsTest, LoseImpulseByTheLagOfTheParticles)
{
    const auto& exit = *solid->getExitSection();
    // 18 % of aluminium burn to 34 % of alumina.
    EXPECT_NEAR(exit.getDerivatives()->getZ(), 0.34, 0.01);
    const double efficiency = CorrectionFactors(solid).getMultiphaseEfficiency();
    EXPECT_NEAR(efficiency, twoPhase(*solid, exit), rounding);
    EXPECT_GT(efficiency, 0.85);
    EXPECT_LT(efficiency, 0.97);
}

TEST_F(CorrectionFactorsTest, TakeTheParticlesOfAFrozenNozzleFromItsFreezingSection)
{
    auto document = aluminisedMotor(20.0);
    ketra_test::freeze(*document).setExpansionRatio(2.0);
    const auto engine = solved(std::move(document));
    const auto* chamber = dynamic_cast<const performance::frozen::Chamber*>(engine->getChamber());
    ASSERT_NE(chamber, nullptr);
    const auto& freezing = *chamber->getEquilibriumSection();
    ASSERT_GT(freezing.getDerivatives()->getZ(), 0.2);
    EXPECT_NEAR(CorrectionFactors(engine.get()).getMultiphaseEfficiency(),
                twoPhase(*engine, freezing), rounding);
}

TEST_F(CorrectionFactorsTest, TakeTheEfficiencyOfTheNozzleFromTheUser)
{
    const CorrectionFactors factors(solid);
    const double multiphase = factors.getMultiphaseEfficiency();
    EfficiencyFactors& given = factorsOf(*solid);
    given.setNozzleEfficiency(0.97);
    given.setConeHalfAngle(15.0);
    EXPECT_EQ(factors.getDivergenceEfficiency(), 1.0);
    EXPECT_EQ(factors.getFrictionEfficiency(), 1.0);
    EXPECT_EQ(factors.getMultiphaseEfficiency(), multiphase); // the only one that stays
    EXPECT_EQ(factors.getNozzleEfficiency(), 0.97);
    EXPECT_EQ(factors.getOverallEfficiency(), factors.getReactionEfficiency() * 0.97);
    // The read-outs with arguments are of the tables alone.
    EXPECT_NEAR(factors.getDivergenceEfficiency(100.0, 200.0), 0.991766, rounding);
    EXPECT_LT(factors.getFrictionEfficiency(4.0, 9.0), 1.0);
}

TEST_F(CorrectionFactorsTest, TakeTheEfficiencyOfTheReactionFromTheUser)
{
    const CorrectionFactors factors(hydrogen);
    factorsOf(*hydrogen).setReactionEfficiency(0.985);
    EXPECT_EQ(factors.getReactionEfficiency(), 0.985);
    EXPECT_EQ(factors.getChamberEfficiency(), 0.985);
    EXPECT_EQ(factors.getOverallEfficiency(), 0.985 * factors.getNozzleEfficiency());
}

/// Efficiency at the pressure \p p, Pa, of a reaction with the \p loss, percent, of the table.
double reactionEfficiency(double loss, double p)
{
    const double t = (2.1 - std::log(p / 2e6)) / 100;
    return (t > 0 ? 1 - t : 1.0) * (1 - loss / 100);
}

TEST_F(CorrectionFactorsTest, ReadTheReactionByOxidizerExcessAndProducts)
{
    // Neither carbon nor nitrogen: the first class.
    const double alpha = hydrogen->getPropellant()->getAlpha();
    EXPECT_NEAR(alpha, 0.75, 1e-12);
    EXPECT_NEAR(CorrectionFactors(hydrogen).getReactionEfficiency(),
                reactionEfficiency(reactionLoss(alpha, 1.0), 7e6), rounding);
    const auto kerosene = solved(keroseneEngine(10.0, 0.8));
    EXPECT_NEAR(CorrectionFactors(kerosene.get()).getReactionEfficiency(),
                reactionEfficiency(reactionLoss(kerosene->getPropellant()->getAlpha(), 2.0), 7e6),
                rounding);
    const auto storable = solved(withNozzle(
        bipropellantDocument({"N2O4(L)", 1.0}, {"N2H4(L)", 1.0}, 0.9, Ratio::ALPHA), 10.0));
    EXPECT_NEAR(CorrectionFactors(storable.get()).getReactionEfficiency(),
                reactionEfficiency(reactionLoss(storable->getPropellant()->getAlpha(), 3.0), 7e6),
                rounding);
}

TEST_F(CorrectionFactorsTest, LetTheFirstOfCarbonMonoxideAndNitrogenDecide)
{
    const auto engine = solved(withNozzle(
        bipropellantDocument({"N2O4(L)", 1.0}, {"CH6N2(L)", 1.0}, 0.8, Ratio::ALPHA), 10.0));
    std::vector<std::string> names;
    engine->getChamber()->getReaction(Chamber::INJECTION_PLANE)->getAllSpeciesNames(&names, 0.0);
    const auto carbonMonoxide = std::find(names.begin(), names.end(), "CO");
    const auto nitrogen = std::find(names.begin(), names.end(), "N2");
    ASSERT_TRUE(carbonMonoxide != names.end() && nitrogen != names.end());
    const double kind = carbonMonoxide < nitrogen ? 2.0 : 3.0;
    EXPECT_NEAR(CorrectionFactors(engine.get()).getReactionEfficiency(),
                reactionEfficiency(reactionLoss(engine->getPropellant()->getAlpha(), kind), 7e6),
                rounding);
    EXPECT_NE(reactionLoss(0.8, 2.0), reactionLoss(0.8, 3.0));
}

TEST_F(CorrectionFactorsTest, TakeAnExcessOfFourFifthsForAPremixedCharge)
{
    ASSERT_EQ(solid->getPropellant(), nullptr);
    const double loss = reactionLoss(0.8, 2.0); // CO stands before N2
    EXPECT_NEAR(CorrectionFactors(solid).getReactionEfficiency(), reactionEfficiency(loss, 6.2e6),
                rounding);
}

TEST_F(CorrectionFactorsTest, LimitTheOxidizerExcess)
{
    const auto lean = solved(hydrogenEngine(10.0, 7.0, 3.0));
    EXPECT_NEAR(CorrectionFactors(lean.get()).getReactionEfficiency(),
                reactionEfficiency(0.5393, 7e6), rounding);
    const auto rich = solved(hydrogenEngine(10.0, 7.0, 0.25));
    EXPECT_NEAR(CorrectionFactors(rich.get()).getReactionEfficiency(), reactionEfficiency(0.0, 7e6),
                rounding);
}

TEST_F(CorrectionFactorsTest, LoseLessInTheReactionTheHigherThePressure)
{
    const double kept = 1 - reactionLoss(0.75, 1.0) / 100;
    const auto efficiency = [](double MPa) {
        return CorrectionFactors(solved(hydrogenEngine(10.0, MPa)).get()).getReactionEfficiency();
    };
    EXPECT_NEAR(efficiency(2.0), (1 - 0.021) * kept, 1e-12);
    EXPECT_NEAR(efficiency(0.2), (1 - 0.021 - std::log(10.0) / 100) * kept, 1e-12);
    // 2 e^2.1 = 16.33 MPa
    EXPECT_NEAR(efficiency(16.3), (1 - (2.1 - std::log(8.15)) / 100) * kept, 1e-12);
    EXPECT_LT(efficiency(16.3), kept);
    EXPECT_NEAR(efficiency(16.4), kept, 1e-12);
    EXPECT_NEAR(efficiency(25.0), kept, 1e-12);
}

TEST_F(CorrectionFactorsTest, ReadThePresentResultsOfThePerformance)
{
    const auto engine = solved(hydrogenEngine(10.0));
    const CorrectionFactors factors(engine.get());
    const double before = factors.getOverallEfficiency();
    engine->getData()->getNozzleFlowOptions().getNozzleExitConditions().setAreaRatio(40.0, true);
    engine->solve(false);
    EXPECT_NE(factors.getOverallEfficiency(), before);
    EXPECT_NEAR(factors.getDivergenceEfficiency(),
                divergenceKept(80.0, engine->getExitSection()->getFr()) / 100, rounding);
}

TEST_F(CorrectionFactorsTest, NeedChamberAndExit)
{
    // Nothing is solved yet, and then no exit is asked for.
    auto document = hydrogenEngine(10.0);
    document->getNozzleFlowOptions().deleteNozzleExitConditions();
    document->getNozzleFlowOptions().setNozzleInletConditions();
    TheoreticalPerformance engine(document.release(), true);
    const CorrectionFactors factors(&engine);
    KETRA_EXPECT_THROW_CODE(factors.getReactionEfficiency(), thermo::Exception, 0);
    KETRA_EXPECT_THROW_CODE(factors.getMultiphaseEfficiency(), thermo::Exception, 0);
    KETRA_EXPECT_THROW_CODE(factors.getDivergenceEfficiency(), thermo::Exception, 0);
    KETRA_EXPECT_THROW_CODE(factors.getFrictionEfficiency(), thermo::Exception, 0);
    KETRA_EXPECT_THROW_CODE(factors.getOverallEfficiency(), thermo::Exception, 0);
    KETRA_EXPECT_THROW_CODE(CorrectionFactors(nullptr).getNozzleEfficiency(), thermo::Exception, 0);
    KETRA_EXPECT_THROW_CODE(CorrectionFactors(nullptr).getReactionEfficiency(), thermo::Exception,
                            0);
    KETRA_EXPECT_THROW_CODE(CorrectionFactors(nullptr).getMultiphaseEfficiency(), thermo::Exception,
                            0);
    // What needs no results is there.
    EXPECT_NEAR(factors.getDivergenceEfficiency(60.0, 10.0), 0.962228, rounding);
    factorsOf(engine).setConeHalfAngle(15.0);
    EXPECT_NEAR(factors.getDivergenceEfficiency(), 0.98298, 1e-5);
}

} // namespace
