#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Propellant.h>

#include "Documents.h"

#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <support/Reactants.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace {

using ketra_test::bipropellantDocument;
using ketra_test::emptyDocument;
using ketra_test::mixtureDocument;
using performance::TheoreticalPerformance;
using thermo::input::Component;
using thermo::input::ConfigFile;
using thermo::input::Ratio;

const std::string noPropellant =
    "Could not solve theoretical performance problem: invalid propellant specification.\r\n";

std::unique_ptr<ConfigFile> methaneOxygen(double alpha)
{
    return bipropellantDocument({"O2", 1.0}, {"CH4", 1.0}, alpha, Ratio::ALPHA);
}

class WithoutDocument : public TheoreticalPerformance
{
};

class PropellantOfADocument : public testing::Test
{
protected:
    void SetUp() override { ketra_test::useShippedSpecies(); }
};

TEST_F(PropellantOfADocument, HasTheMassRatioOrTheOxidizerExcess)
{
    const auto byMass = bipropellantDocument({"O2", 1.0}, {"H2", 1.0}, 6.0, Ratio::KM);
    const TheoreticalPerformance massRatio(byMass.get(), false);
    ASSERT_NE(massRatio.getPropellant(), nullptr);
    EXPECT_EQ(massRatio.getMixture(), nullptr);
    EXPECT_EQ(massRatio.getPropellant()->getKm(), 6.0);

    const auto byExcess = bipropellantDocument({"O2", 1.0}, {"H2", 1.0}, 0.8, Ratio::ALPHA);
    const TheoreticalPerformance excess(byExcess.get(), false);
    ASSERT_NE(excess.getPropellant(), nullptr);
    EXPECT_EQ(excess.getPropellant()->getAlpha(), 0.8);
}

TEST_F(PropellantOfADocument, TakesFractionTemperatureAndPressureOfEachComponent)
{
    using thermo::Propellant;
    using thermo::input::Pressure;
    using thermo::input::Temperature;
    const auto document = emptyDocument(7.0);
    document->getPropellant().setRatio(2.0, Ratio::KM);
    document->getPropellant().addOxidizer(
        new Component("O2", 0.25, 26.85, Temperature::C, 2.0, Pressure::MPA));
    document->getPropellant().addOxidizer(new Component("N2", 0.75, 310.0));
    document->getPropellant().addFuel(new Component("H2", 1.0, 320.0));
    const TheoreticalPerformance performance(document.get(), false);

    thermo::Mixture& oxidizer = *performance.getPropellant()->getComponent(Propellant::OXIDIZER);
    ASSERT_EQ(oxidizer.size(), 2);
    EXPECT_EQ(oxidizer.getSpecies(0)->getName(), "O2");
    EXPECT_DOUBLE_EQ(oxidizer._getSpecies(0).getT(), 300.0);
    EXPECT_DOUBLE_EQ(oxidizer._getSpecies(0).getP(), 2e6);
    EXPECT_EQ(oxidizer._getSpecies(0).getG(), 0.25);
    EXPECT_EQ(oxidizer._getSpecies(1).getT(), 310.0);
    EXPECT_EQ(oxidizer._getSpecies(1).getP(), 101325.0);
    thermo::Mixture& fuel = *performance.getPropellant()->getComponent(Propellant::FUEL);
    ASSERT_EQ(fuel.size(), 1);
    EXPECT_EQ(fuel._getSpecies(0).getT(), 320.0);
}

TEST_F(PropellantOfADocument, IsAMixtureForAPremixedCharge)
{
    const auto document = mixtureDocument({{"H2", 0.25, 400.0}, {"O2", 0.75}});
    const TheoreticalPerformance performance(document.get(), false);
    EXPECT_EQ(performance.getPropellant(), nullptr);
    ASSERT_NE(performance.getMixture(), nullptr);
    ASSERT_EQ(performance.getMixture()->size(), 2);
    EXPECT_EQ(performance.getMixture()->_getSpecies(0).getT(), 400.0);
    EXPECT_EQ(performance.getMixture()->getMassFraction(0), 0.25);
}

TEST_F(PropellantOfADocument, LeavesComponentsWithoutAMassFractionOutWithAWarning)
{
    const auto document = bipropellantDocument({"O2", 1.0}, {"H2", 1.0}, 6.0, Ratio::KM);
    document->getPropellant().addOxidizer(new Component("O3", 0.0, 298.15));
    document->getPropellant().addOxidizer(new Component("N2", -0.1, 298.15));
    document->getPropellant().addFuel(new Component("CH4", 0.0, 298.15));
    ketra_test::LogCapture capture;
    TheoreticalPerformance performance(document.get(), false);
    EXPECT_EQ(capture.warnings(),
              (std::vector<std::string>{"Skipping O3 with mass fraction r=0\r\n",
                                        "Skipping N2 with mass fraction r=0\r\n",
                                        "Skipping CH4 with mass fraction r=0\r\n"}));
    EXPECT_EQ(capture.tagOf("Skipping O3 with mass fraction r=0\r\n"), "THERMO");
    performance.solve(false);
    EXPECT_TRUE(performance.isValid());
    ASSERT_NE(performance.getEquilibrium(), nullptr);
    EXPECT_NEAR(performance.getEquilibrium()->getT(), 3500.0, 200.0); // K, hydrogen and oxygen
}

TEST_F(PropellantOfADocument, LeavesSpeciesOfAMixtureOutLikewise)
{
    const auto document = mixtureDocument({{"H2", 0.25}, {"N2", 0.0}, {"O2", 0.75}});
    ketra_test::LogCapture capture;
    TheoreticalPerformance performance(document.get(), false);
    EXPECT_EQ(capture.warnings(),
              std::vector<std::string>{"Skipping N2 with mass fraction r=0\r\n"});
    EXPECT_EQ(performance.getMixture()->size(), 2);
    performance.solve(false);
    EXPECT_TRUE(performance.isValid());
}

TEST_F(PropellantOfADocument, MustNameKnownSpecies)
{
    const auto fuel = bipropellantDocument({"O2", 1.0}, {"Nonsensium", 1.0}, 6.0, Ratio::KM);
    KETRA_EXPECT_THROW_CODE(TheoreticalPerformance(fuel.get(), false), thermo::Exception, 4);
    const auto mixture = mixtureDocument({{"Nonsensium", 1.0}});
    KETRA_EXPECT_THROW_CODE(TheoreticalPerformance(mixture.get(), false), thermo::Exception, 4);
}

TEST_F(PropellantOfADocument, MayBeMissingUntilItIsSolved)
{
    for (const auto& document : {mixtureDocument({}), mixtureDocument({{"H2", 0.0}})}) {
        TheoreticalPerformance performance(document.get(), false);
        EXPECT_EQ(performance.getMixture(), nullptr);
        ketra_test::LogCapture capture;
        KETRA_EXPECT_THROW_MESSAGE(performance.solve(false), thermo::Exception, 14,
                                   "Could not solve problem");
        EXPECT_EQ(capture.errors(), std::vector<std::string>{noPropellant});
        EXPECT_EQ(capture.tagOf(noPropellant), "THERMO");
        EXPECT_EQ(performance.getEquilibrium(), nullptr);
    }
}

TEST_F(PropellantOfADocument, WithFractionsThatDoNotAddUpCannotBeSolved)
{
    const auto document = mixtureDocument({{"H2", 0.25}, {"O2", 0.5}});
    TheoreticalPerformance performance(document.get(), false);
    KETRA_EXPECT_THROW_CODE(performance.solve(false), thermo::Exception, 5);
    EXPECT_EQ(performance.getEquilibrium(), nullptr);
}

TEST_F(PropellantOfADocument, NeedsADocument)
{
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_CODE(TheoreticalPerformance(nullptr, false), thermo::Exception, 0);
    WithoutDocument performance;
    EXPECT_EQ(performance.getData(), nullptr);
    KETRA_EXPECT_THROW_CODE(performance.solve(false), thermo::Exception, 0);
    EXPECT_EQ(capture.errors().size(), 2U);
}

class Solving : public testing::Test
{
protected:
    void SetUp() override { ketra_test::useShippedSpecies(); }

    // Whether condensed phases were looked for before the first cycle of the first attempt, at the
    // temperature from which every new problem starts.
    static bool expectedCondensed(ConfigFile* document)
    {
        TheoreticalPerformance performance(document, false);
        ketra_test::LogCapture capture;
        performance.solve(false);
        const std::vector<std::string> lines = capture.warnings();
        return std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
            return line.rfind("T=3600.0000 Include ", 0) == 0;
        });
    }
};

TEST_F(Solving, FindsTheChamberEquilibriumOfAPropellant)
{
    const auto document = bipropellantDocument({"O2", 1.0}, {"H2", 1.0}, 6.0, Ratio::KM);
    TheoreticalPerformance performance(document.get(), false);
    EXPECT_EQ(performance.getEquilibrium(), nullptr);
    EXPECT_EQ(performance.getDerivatives(), nullptr);
    performance.solve(false);
    EXPECT_TRUE(performance.isValid());
    EXPECT_FALSE(performance.isInvalid());
    EXPECT_FALSE(performance.isOptimized());
    ASSERT_NE(performance.getEquilibrium(), nullptr);
    ASSERT_NE(performance.getDerivatives(), nullptr);
    const reaction::Equilibrium& problem = *performance.getEquilibrium();
    EXPECT_EQ(problem.getProcessType(), reaction::Equilibrium::PH);
    EXPECT_EQ(problem.getP(), 7e6);
    // Adiabatic: the products of one mole hold the enthalpy of that mole. Both gases are elements
    // near their reference temperature, so the scale is the heat of reaction, some 100 kJ/mol.
    EXPECT_NEAR(problem.getH() * problem.getResultingMixtureQuantaty(),
                performance.getPropellant()->H(), 1.0);
    EXPECT_GT(performance.getDerivatives()->getCp(), 0.0);
}

TEST_F(Solving, FindsTheChamberEquilibriumOfAMixture)
{
    const auto document = mixtureDocument({{"N2H4(L)", 1.0}}, 1.0);
    TheoreticalPerformance performance(document.get(), false);
    performance.solve(false);
    ASSERT_NE(performance.getEquilibrium(), nullptr);
    EXPECT_EQ(performance.getEquilibrium()->getP(), 1e6);
    EXPECT_NEAR(performance.getEquilibrium()->getH() *
                    performance.getEquilibrium()->getResultingMixtureQuantaty(),
                performance.getMixture()->H(), 1.0);
}

TEST_F(Solving, TakesTheGeneralOptionsOver)
{
    const auto document = mixtureDocument({{"N2H4(L)", 1.0}}, 1.0);
    for (const bool multiphase : {false, true})
        for (const bool ions : {false, true}) {
            document->getGeneralOptions().setMultiphase(multiphase);
            document->getGeneralOptions().setIons(ions);
            TheoreticalPerformance performance(document.get(), false);
            performance.solve(false);
            EXPECT_EQ(performance.getEquilibrium()->isMultiphase(), multiphase);
            EXPECT_EQ(performance.getEquilibrium()->isIons(), ions);
        }
}

TEST_F(Solving, ExpectsCondensedProductsOfMetals)
{
    EXPECT_FALSE(expectedCondensed(mixtureDocument({{"CH4", 0.2}, {"O2", 0.8}}).get()));
    EXPECT_TRUE(
        expectedCondensed(mixtureDocument({{"CH4", 0.1}, {"AL(cr)", 0.1}, {"O2", 0.8}}).get()));
    EXPECT_TRUE(expectedCondensed(
        bipropellantDocument({"O2", 1.0}, {"AL(cr)", 1.0}, 1.0, Ratio::ALPHA).get()));
}

TEST_F(Solving, ExpectsCondensedProductsOfVeryLeanAndVeryRichPropellants)
{
    EXPECT_FALSE(expectedCondensed(methaneOxygen(1.0).get()));
    EXPECT_FALSE(expectedCondensed(methaneOxygen(1.85).get()));
    EXPECT_TRUE(expectedCondensed(methaneOxygen(2.0).get()));
    EXPECT_FALSE(expectedCondensed(methaneOxygen(0.15).get()));
    EXPECT_TRUE(expectedCondensed(methaneOxygen(0.05).get()));
}

TEST_F(Solving, OfTheSameDocumentAgainDropsTheResultsAndFollowsTheDocument)
{
    const auto document = methaneOxygen(0.9);
    TheoreticalPerformance performance(document.get(), false);
    performance.solve(false);
    const double T = performance.getEquilibrium()->getT();
    const thermo::Propellant* propellant = performance.getPropellant();
    document->getCombustionChamberConditions().setPressure(0.1, thermo::input::Pressure::MPA, true);
    document->getPropellant().setRatio(0.5, Ratio::ALPHA);
    performance.solve(false);
    EXPECT_EQ(performance.getEquilibrium()->getP(), 1e5);
    EXPECT_LT(performance.getEquilibrium()->getT(), T); // more dissociation at lower pressure
    EXPECT_EQ(performance.getPropellant(), propellant); // the propellant is kept
    EXPECT_EQ(performance.getPropellant()->getAlpha(), 0.9);
}

TEST_F(Solving, StartsFromTheDocumentAgainAfterAClearForRestart)
{
    const auto document = methaneOxygen(0.9);
    TheoreticalPerformance performance(document.get(), false);
    performance.solve(false);
    document->getPropellant().setRatio(0.5, Ratio::ALPHA);

    performance.clearForRestart(false);
    EXPECT_EQ(performance.getEquilibrium(), nullptr);
    EXPECT_EQ(performance.getDerivatives(), nullptr);
    ASSERT_NE(performance.getPropellant(), nullptr);
    EXPECT_EQ(performance.getPropellant()->getAlpha(), 0.9);

    performance.clearForRestart(true);
    EXPECT_EQ(performance.getPropellant(), nullptr);
    performance.solve(false);
    ASSERT_NE(performance.getPropellant(), nullptr);
    EXPECT_EQ(performance.getPropellant()->getAlpha(), 0.5);
}

TEST_F(Solving, TakesThePropellantsOwnEnthalpyWhateverWasSetForAChamber)
{
    const auto document = methaneOxygen(1.0);
    TheoreticalPerformance plain(document.get(), false);
    plain.solve(false);
    TheoreticalPerformance performance(document.get(), false);
    performance.setH(-500000.0);
    performance.solve(false);
    EXPECT_EQ(performance.getEquilibrium()->getT(), plain.getEquilibrium()->getT());
    performance.removeH();
    performance.solve(false);
    EXPECT_EQ(performance.getEquilibrium()->getT(), plain.getEquilibrium()->getT());
}

TEST_F(Solving, HandsTheAbsoluteToleranceToTheProblem)
{
    const auto document = methaneOxygen(1.0);
    TheoreticalPerformance performance(document.get(), false);
    EXPECT_EQ(performance.getRelativeTolerance(), 1.0);
    performance.setRelativeTolerance(-0.5);
    EXPECT_EQ(performance.getRelativeTolerance(), 0.5);
    performance.solve(false);
    EXPECT_EQ(performance.getEquilibrium()->getRelativeTolerance(), 0.5);
}

} // namespace
