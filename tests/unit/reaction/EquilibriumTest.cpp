#include "MadeUpMixtures.h"

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Propellant.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>

using namespace ketra_test;
using reaction::Equilibrium;
using reaction::Product;
using reaction::ReactingMixture;
using thermo::gasConstant;

namespace {

using SpeciesList = std::vector<const thermo::Species*>;

class OpenEquilibrium : public Equilibrium
{
public:
    using Equilibrium::Equilibrium;
    using Equilibrium::setH;
    using Equilibrium::setHspec;
    using Equilibrium::setP;
    using Equilibrium::setS;
    using Equilibrium::setSspec;
    using Equilibrium::setU;
    using Equilibrium::setUspec;
    using Equilibrium::setV;
};

std::unique_ptr<thermo::Mixture> warmOxygenHydrogen()
{
    return mixtureOf({{"H2", 300.0, 0.6}, {"O2", 400.0, 0.4}}, thermo::_Species::MOLE_FRACTION);
}

constexpr double molarMass = (0.6 * 2.01588 + 0.4 * 31.9988) / 1000.0; // kg/mol of the above

class EquilibriumTest : public testing::Test
{
protected:
    EquilibriumTest()
    {
        useSpecies(sampleSpecies());
        initial = warmOxygenHydrogen();
    }

    /// ln(p / 1 bar), as the concentration term of the first gas holds it.
    static double lnP(const Equilibrium& problem)
    {
        const std::unique_ptr<ReactingMixture> products(problem.copyReactingMixture(true, true));
        return problem.L(0) - products->ln_n(0) + std::log(0.7); // after `reset` there are 0.7 mol
    }
    static double lnPv(const Equilibrium& problem)
    {
        const std::unique_ptr<ReactingMixture> products(problem.copyReactingMixture(true, true));
        return problem.L_V(0) - products->ln_n(0);
    }
    /// ln of the pressure, bar, of one mole of gas in the volume of one mole of initial mixture.
    static double expectedLnPv(double v, double T)
    {
        return std::log(gasConstant * T / (molarMass * v * 1e5));
    }

    LogCapture log;
    std::unique_ptr<thermo::Mixture> initial;
};

} // namespace

TEST_F(EquilibriumTest, AProblemOnAMixtureIsPosedWithItsEnergies)
{
    const Equilibrium problem(*initial);
    EXPECT_EQ(problem.getProcessType(), Equilibrium::PH);
    EXPECT_EQ(problem.getH(), initial->H());
    EXPECT_EQ(problem.getU(), initial->U());
    EXPECT_EQ(problem.getT(), 3600.0);
    EXPECT_NEAR(problem.getRT(), 29932.0992, 1e-9);
    EXPECT_EQ(problem.getP(), 0.0);
    EXPECT_EQ(problem.getV(), 0.0);
    EXPECT_EQ(problem.getS(), 0.0);
    EXPECT_EQ(problem.getG(), 0.0);
    EXPECT_EQ(problem.getNg(), 0.0);
    EXPECT_EQ(problem.getMaxCycles(), 50u);
    EXPECT_EQ(problem.getRelativeTolerance(), 1.0);
    EXPECT_TRUE(problem.isMultiphase());
    EXPECT_FALSE(problem.isIons());
    const Equilibrium gases(*initial, false, true);
    EXPECT_FALSE(gases.isMultiphase());
    EXPECT_TRUE(gases.isIons());
}

TEST_F(EquilibriumTest, AProblemOnAPropellantIsPosedWithItsEnergies)
{
    thermo::Propellant propellant(8.0);
    propellant.addComponent(thermo::Propellant::OXIDIZER, "O2");
    propellant.getComponent(thermo::Propellant::OXIDIZER)->setFraction(0, 1.0);
    propellant.addComponent(thermo::Propellant::FUEL, "H2");
    propellant.getComponent(thermo::Propellant::FUEL)->setFraction(0, 1.0);
    const Equilibrium problem(propellant);
    EXPECT_EQ(problem.getProcessType(), Equilibrium::PH);
    EXPECT_EQ(problem.getH(), propellant.H());
    EXPECT_EQ(problem.getU(), propellant.U());
    const Equilibrium gases(propellant, false, true);
    EXPECT_FALSE(gases.isMultiphase());
    EXPECT_TRUE(gases.isIons());
}

TEST_F(EquilibriumTest, AProblemOnAReactingMixtureWorksOnACopy)
{
    ReactingMixture mixture(*initial);
    mixture.reset();
    mixture.product(0)->setN(0.25);
    Equilibrium problem(mixture);
    EXPECT_EQ(problem.getProcessType(), Equilibrium::PT);
    EXPECT_EQ(problem.getH(), 0.0);
    EXPECT_EQ(problem.getU(), 0.0);
    const std::unique_ptr<ReactingMixture> products(problem.copyReactingMixture(true, true));
    EXPECT_EQ(products->n(0), 0.25);
    problem.reset(false);
    EXPECT_EQ(mixture.n(0), 0.25);
}

TEST_F(EquilibriumTest, ACopyReadsTheEntropyFromTheEnthalpy)
{
    Equilibrium problem(*initial);
    problem.setMaxCycles(77);
    problem.setRelativeTolerance(4.0);
    problem.setPH(2e5, -1234.0);
    problem.setT(2000.0);
    const Equilibrium ofPH(problem);
    EXPECT_EQ(ofPH.getProcessType(), Equilibrium::PH);
    EXPECT_EQ(ofPH.getH(), -1234.0);
    EXPECT_EQ(ofPH.getS(), 0.0);
    EXPECT_EQ(ofPH.getP(), 2e5);
    EXPECT_EQ(ofPH.getT(), 3600.0); // only a problem of given temperature hands it on
    EXPECT_EQ(ofPH.getMaxCycles(), 77u);
    EXPECT_EQ(ofPH.getRelativeTolerance(), 1.0);
    EXPECT_EQ(ofPH.getNg(), 0.0);

    problem.setPS(3e5, 250.0);
    const Equilibrium ofPS(problem);
    EXPECT_EQ(ofPS.getProcessType(), Equilibrium::PS);
    EXPECT_EQ(ofPS.getS(), problem.getH());
    EXPECT_EQ(ofPS.getS(), 0.0);
    EXPECT_EQ(ofPS.getH(), 0.0);

    problem.setPT(4e5, 1700.0);
    const Equilibrium ofPT(problem);
    EXPECT_EQ(ofPT.getT(), 1700.0);
    EXPECT_DOUBLE_EQ(ofPT.getRT(), 1700.0 * gasConstant);

    problem.setVT(0.5, 1700.0);
    Equilibrium ofVT(problem);
    EXPECT_EQ(ofVT.getProcessType(), Equilibrium::VT);
    EXPECT_EQ(ofVT.getV(), 0.5);
    EXPECT_EQ(ofVT.getP(), 0.0);
    EXPECT_EQ(ofVT.getT(), 3600.0);
    ofVT.reset(false);
    EXPECT_NEAR(lnPv(ofVT), expectedLnPv(0.5, 3600.0), 1e-12);
}

TEST_F(EquilibriumTest, TheCopyOfASolvedEntropyProblemTakesTheEnthalpyOfTheResult)
{
    Equilibrium problem(*initial);
    problem.setPT(1e6, 2500.0);
    problem.solve(false);
    const double S = problem.getS() * problem.getResultingMixtureQuantaty();
    problem.setPS(1e6, S);
    problem.solve(false);
    const Equilibrium copy(problem);
    EXPECT_EQ(copy.getS(), problem.getH());
    EXPECT_NE(copy.getS(), problem.getS());
}

TEST_F(EquilibriumTest, ConstantPressureClearsTheVolume)
{
    Equilibrium problem(*initial);
    problem.setVT(0.5, 3000.0);
    problem.reset(false);
    EXPECT_NEAR(lnPv(problem), expectedLnPv(0.5, 3000.0), 1e-12);

    problem.setPT(2e5, 2800.0);
    EXPECT_EQ(problem.getProcessType(), Equilibrium::PT);
    EXPECT_EQ(problem.getP(), 2e5);
    EXPECT_EQ(problem.getV(), 0.0);
    EXPECT_EQ(problem.getT(), 2800.0);
    EXPECT_NEAR(lnP(problem), std::log(2.0), 1e-12);
    EXPECT_NEAR(lnPv(problem), 0.0, 1e-12);

    problem.setVU(0.5, -7.0);
    problem.setPH(3e5, -4000.0);
    EXPECT_EQ(problem.getProcessType(), Equilibrium::PH);
    EXPECT_EQ(problem.getH(), -4000.0);
    EXPECT_EQ(problem.getU(), 0.0);
    EXPECT_EQ(problem.getS(), 0.0);
    EXPECT_EQ(problem.getV(), 0.0);
    EXPECT_EQ(problem.getT(), 2800.0); // T stays
    EXPECT_NEAR(lnP(problem), std::log(3.0), 1e-12);
    EXPECT_NEAR(lnPv(problem), 0.0, 1e-12);

    problem.setPS(1e5, 180.0);
    EXPECT_EQ(problem.getProcessType(), Equilibrium::PS);
    EXPECT_EQ(problem.getS(), 180.0);
    EXPECT_EQ(problem.getH(), 0.0);
    EXPECT_NEAR(lnP(problem), 0.0, 1e-12);
}

TEST_F(EquilibriumTest, ConstantVolumeClearsThePressure)
{
    Equilibrium problem(*initial);
    problem.setPH(2e5, -4000.0);
    problem.reset(false);
    problem.setVU(0.25, -5000.0);
    EXPECT_EQ(problem.getProcessType(), Equilibrium::VU);
    EXPECT_EQ(problem.getV(), 0.25);
    EXPECT_EQ(problem.getP(), 0.0);
    EXPECT_EQ(problem.getU(), -5000.0);
    EXPECT_EQ(problem.getH(), 0.0);
    EXPECT_NEAR(lnP(problem), 0.0, 1e-12);
    EXPECT_NEAR(lnPv(problem), expectedLnPv(0.25, 3600.0), 1e-12);

    problem.setVS(0.5, 190.0);
    EXPECT_EQ(problem.getProcessType(), Equilibrium::VS);
    EXPECT_EQ(problem.getS(), 190.0);
    EXPECT_EQ(problem.getU(), 0.0);
    EXPECT_NEAR(lnPv(problem), expectedLnPv(0.5, 3600.0), 1e-12);

    problem.setVT(0.5, 3000.0);
    EXPECT_EQ(problem.getProcessType(), Equilibrium::VT);
    EXPECT_EQ(problem.getP(), 0.0);
    EXPECT_EQ(problem.getT(), 3000.0);
    EXPECT_NEAR(lnPv(problem), expectedLnPv(0.5, 3000.0), 1e-12);

    problem.setT(1500.0);
    EXPECT_EQ(problem.getProcessType(), Equilibrium::VT);
    EXPECT_NEAR(lnPv(problem), expectedLnPv(0.5, 1500.0), 1e-12);
}

TEST_F(EquilibriumTest, SpecificTargetsArePerMoleOfInitialMixture)
{
    Equilibrium problem(*initial);
    problem.setPHspec(1e5, -2e6);
    EXPECT_EQ(problem.getProcessType(), Equilibrium::PH);
    EXPECT_NEAR(problem.getH(), -2e6 * molarMass, 1e-8);
    problem.setPSspec(1e5, 12000.0);
    EXPECT_EQ(problem.getProcessType(), Equilibrium::PS);
    EXPECT_NEAR(problem.getS(), 12000.0 * molarMass, 1e-10);
    problem.setVUspec(1.0, -3e6);
    EXPECT_EQ(problem.getProcessType(), Equilibrium::VU);
    EXPECT_NEAR(problem.getU(), -3e6 * molarMass, 1e-8);
    problem.setVSspec(1.0, 11000.0);
    EXPECT_EQ(problem.getProcessType(), Equilibrium::VS);
    EXPECT_NEAR(problem.getS(), 11000.0 * molarMass, 1e-10);
    EXPECT_EQ(problem.getV(), 1.0);
}

TEST_F(EquilibriumTest, ASubclassPosesOneQuantityAtATime)
{
    OpenEquilibrium problem(*initial);
    problem.reset(false);
    problem.setV(0.5);
    EXPECT_EQ(problem.getV(), 0.5);
    EXPECT_EQ(problem.getP(), 0.0);
    EXPECT_NEAR(lnPv(problem), expectedLnPv(0.5, 3600.0), 1e-12);
    problem.setS(100.0);
    EXPECT_EQ(problem.getProcessType(), Equilibrium::VS);
    EXPECT_EQ(problem.getS(), 100.0);
    problem.setU(-10.0);
    EXPECT_EQ(problem.getProcessType(), Equilibrium::VU);
    EXPECT_EQ(problem.getU(), -10.0);
    EXPECT_EQ(problem.getS(), 100.0); // the other targets stay
    problem.setUspec(-1e6);
    EXPECT_NEAR(problem.getU(), -1e6 * molarMass, 1e-8);
    problem.setP(2e5);
    EXPECT_EQ(problem.getP(), 2e5);
    EXPECT_EQ(problem.getV(), 0.0);
    EXPECT_NEAR(lnPv(problem), 0.0, 1e-12);
    EXPECT_NEAR(lnP(problem), std::log(2.0), 1e-12);
    EXPECT_EQ(problem.getProcessType(), Equilibrium::VU); // neither p nor v chooses
    problem.setSspec(9000.0);
    EXPECT_EQ(problem.getProcessType(), Equilibrium::PS);
    EXPECT_NEAR(problem.getS(), 9000.0 * molarMass, 1e-10);
    problem.setHspec(-1e6);
    EXPECT_EQ(problem.getProcessType(), Equilibrium::PH);
    EXPECT_NEAR(problem.getH(), -1e6 * molarMass, 1e-8);
    problem.setH(5.0);
    EXPECT_EQ(problem.getH(), 5.0);
}

TEST_F(EquilibriumTest, TheToleranceIsStoredWithoutItsSign)
{
    Equilibrium problem(*initial);
    problem.setRelativeTolerance(-2.0);
    EXPECT_EQ(problem.getRelativeTolerance(), 2.0);
}

TEST_F(EquilibriumTest, AdjustTOnlyEverRaisesTheTemperature)
{
    Equilibrium problem(*initial);
    problem.adjustT(250.0);
    EXPECT_EQ(problem.getT(), 3600.0);
    problem.setVT(0.5, 200.0);
    problem.reset(false);
    problem.adjustT(250.0);
    EXPECT_EQ(problem.getT(), 250.0);
    EXPECT_NEAR(lnPv(problem), expectedLnPv(0.5, 250.0), 1e-12);
    EXPECT_DOUBLE_EQ(problem.getRT(), 200.0 * gasConstant); // until the next start
    problem.reset(false);
    EXPECT_DOUBLE_EQ(problem.getRT(), 250.0 * gasConstant);
}

TEST_F(EquilibriumTest, CondensedProductsAreListedAfterTheGases)
{
    const auto charge = mixtureOf({{"AL(cr)", 300.0, 4.0 / 7.0}, {"O2", 300.0, 3.0 / 7.0}},
                                  thermo::_Species::MOLE_FRACTION);
    Equilibrium problem(*charge);
    problem.setPT(1e5, 800.0);
    problem.reset(false);
    EXPECT_FALSE(problem.hasCondensedPhase());
    EXPECT_EQ(problem.getNumberOfCondensedSpecies(), 0u);
    EXPECT_EQ(problem.getCondensedSpecies(0u), nullptr);
    problem.reset(true);
    EXPECT_TRUE(problem.hasCondensedPhase());
    ASSERT_EQ(problem.getNumberOfCondensedSpecies(), 1u);
    EXPECT_EQ(problem.getCondensedSpecies(0u)->getName(), "AL2O3(a)");
    EXPECT_EQ(problem.getCondensedSpecies(1u), nullptr);
    SpeciesList list{nullptr, nullptr, nullptr};
    problem.getCondensedSpecies(&list);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0], problem.getCondensedSpecies(0u));
    problem.getCondensedSpecies(static_cast<SpeciesList*>(nullptr));
}

TEST_F(EquilibriumTest, SpeciesAreListedFromAnAmountOn)
{
    Equilibrium problem(*initial);
    problem.setPT(1e5, 2000.0);
    problem.solve(false);
    const std::unique_ptr<ReactingMixture> products(problem.copyReactingMixture(true, true));
    const double limit = products->n(0); // H, the least of all
    SpeciesList list{nullptr};
    problem.getAllSpecies(&list, 0.0);
    EXPECT_EQ(list.size(), 4u);
    problem.getAllSpecies(&list, limit);
    EXPECT_GE(list.size(), 1u);
    Names names{"stale"};
    problem.getAllSpeciesNames(&names, 0.0);
    EXPECT_EQ(names, (Names{"H", "H2", "H2O", "O2"}));
    problem.getAllSpeciesNames(&names, 0.1);
    for (unsigned j = 0; j < products->size(); ++j) {
        const auto& name = products->product(j)->getName();
        const bool listed = std::find(names.begin(), names.end(), name) != names.end();
        EXPECT_EQ(listed, products->n(j) >= 0.1) << name;
    }
    problem.getAllSpecies(nullptr, 0.0);
    problem.getAllSpeciesNames(nullptr, 0.0);
}

TEST_F(EquilibriumTest, TheDifferenceOfTwoListsIsSymmetric)
{
    const Equilibrium problem(*initial);
    auto* database = thermo::Database::getInstance();
    const thermo::Species* h2 = database->find("H2");
    const thermo::Species* o2 = database->find("O2");
    const thermo::Species* water = database->find("H2O");
    const SpeciesList a{h2, o2}, b{water, o2};
    SpeciesList out;
    problem.getDifference(&a, &a, &out);
    EXPECT_TRUE(out.empty());
    problem.getDifference(&a, &b, &out);
    EXPECT_EQ(out, (SpeciesList{h2, water}));
    const Product copy(*h2); // equal by identity of the species, not by address
    const SpeciesList c{&copy, o2};
    problem.getDifference(&a, &c, &out);
    EXPECT_EQ(out, (SpeciesList{h2, water})); // appended to, not cleared
}

TEST_F(EquilibriumTest, SpeciesListsAndIonsAreForwardedToTheMixture)
{
    Equilibrium problem(*initial, true, true);
    EXPECT_TRUE(problem.isIons());
    problem.removeIons();
    EXPECT_FALSE(problem.isIons());
    Names none, omitted{"H"};
    problem.setSpecies(none, omitted);
    Names names;
    problem.getAllSpeciesNames(&names, 0.0);
    EXPECT_EQ(names, (Names{"H2", "H2O", "O2"}));
    EXPECT_EQ(problem.getResultingMixtureQuantaty(), 0.0);
}
