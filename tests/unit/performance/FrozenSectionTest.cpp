#include "Sections.h"

#include <ketra/gasdynamics/gasdynamics.h>
#include <ketra/math/equation/Exception.h>
#include <ketra/reaction/ReactingMixture.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

// A section of fixed composition: how it is found, and what it can be asked.

namespace {

using namespace ketra_test;
using thermo::gasConstant;

constexpr double newton = 5e-4; // of ln T: what the temperature of a frozen section may be off

/// A frozen section that has its state summed up by the test.
struct Sums {
    double N = 0.0, Ngas = 0.0, mass = 0.0; // mol, mol, kg per mole of reactants
    double H = 0.0, U = 0.0, S = 0.0, G = 0.0, Cp = 0.0;

    Sums(reaction::ReactingMixture& products, double T, double p)
    {
        const double lnp = std::log(p / 1e5);
        for (unsigned int j = 0; j < products.gasSize(); ++j) Ngas += products.n(j);
        for (unsigned int j = 0; j < products.size(); ++j) {
            const reaction::Product& species = *products.product(j);
            const double n = species.n();
            const double mixing = j < products.gasSize() ? std::log(n / Ngas) + lnp : 0.0;
            N += n;
            mass += n * species.getM() / 1000;
            H += n * species.H0_tilde(T) * gasConstant * T;
            U += n * species.U0_tilde(T) * gasConstant * T;
            S += n * (species.S0_tilde(T) - mixing) * gasConstant;
            G += n * (species.G0_tilde(T) + mixing) * gasConstant * T;
            Cp += n * species.Cp0_tilde(T) * gasConstant;
        }
    }
};

class FrozenFlow : public testing::Test
{
protected:
    static FrozenChamber& chamber()
    {
        static const std::unique_ptr<FrozenChamber> shared = frozenChamber(2.0);
        return *shared;
    }
    static const FrozenSection& section()
    {
        static const FrozenSection shared(&chamber(), 40.0, Section::AREA_RATIO, true);
        return shared;
    }
    static const Section& freezing() { return *chamber().getEquilibriumSection(); }
    static double areaRatioOf(const FrozenSection& s)
    {
        const reaction::Derivatives& throat = *chamber().getDerivatives(Chamber::THROAT);
        return throat.getRho() * throat.getA() / (s.getRho() * s.getW());
    }
    static FrozenSection at(double value, Section::CONDITION_TYPE type)
    {
        return FrozenSection(&chamber(), value, type, false);
    }
};

TEST_F(FrozenFlow, HasTheTemperatureAtWhichItsCompositionKeepsTheEntropy)
{
    const std::unique_ptr<reaction::ReactingMixture> products(
        freezing().getReaction()->copyReactingMixture(true, true));
    const Sums sums(*products, section().getT(), section().getP());
    const double S = freezing().getS() * sums.N;
    EXPECT_EQ(section().getS(), freezing().getReaction()->getS() * products->getN());
    EXPECT_EQ(section().getS_spec(), freezing().getS_spec());
    EXPECT_LT(std::abs(S - sums.S) / sums.Cp, newton);
}

TEST_F(FrozenFlow, SumsItsStateOverTheFrozenProducts)
{
    const FrozenSection& s = section();
    const std::unique_ptr<reaction::ReactingMixture> products(
        freezing().getReaction()->copyReactingMixture(true, true));
    const Sums sums(*products, s.getT(), s.getP());
    const auto expectClose = [](double value, double expected) {
        EXPECT_NEAR(value, expected, 1e-11 * std::abs(expected));
    };
    const double Mm = sums.mass / sums.N;
    expectClose(s.getMm(), Mm);
    expectClose(s.getM(), Mm * 1000);
    expectClose(s.getR_spec(), gasConstant / Mm);
    expectClose(s.getH_spec(), sums.H / sums.mass);
    expectClose(s.getH(), sums.H / sums.N);
    expectClose(s.getU_spec(), sums.U / sums.mass);
    expectClose(s.getU(), sums.U / sums.N);
    expectClose(s.getG_spec(), sums.G / sums.mass);
    expectClose(s.getG(), sums.G / sums.N);
    expectClose(s.getCp(), sums.Cp / sums.N);
    expectClose(s.getCv(), s.getCp() - gasConstant);
    expectClose(s.getCp_spec(), s.getCp() / Mm);
    expectClose(s.getCv_spec(), s.getCv() / Mm);
    expectClose(s.getK(), s.getCp() / s.getCv());
    EXPECT_EQ(s.getGamma(), s.getK());
    expectClose(s.getA(), std::sqrt(s.getK() * gasConstant * s.getT() / Mm));
    expectClose(s.getRho(), s.getP() * sums.mass / (sums.Ngas * gasConstant * s.getT()));
    // one gas phase: H - T S is G, but for the step in entropy that the search has left
    EXPECT_NEAR(s.getG_spec(), s.getH_spec() - s.getT() * s.getS_spec(),
                newton * s.getCp_spec() * s.getT());
}

TEST_F(FrozenFlow, WithoutCondensedProductsHasOneMolarMass)
{
    EXPECT_EQ(section().getMm2(), section().getMm());
}

TEST_F(FrozenFlow, FollowsFromItsVelocity)
{
    const FrozenSection& s = section();
    const reaction::Equilibrium& injection = stationOf(chamber(), Chamber::INJECTION_PLANE);
    EXPECT_EQ(s.getW(), std::sqrt(2 * (injection.getHspec() - s.getH_spec())));
    EXPECT_EQ(s.getF(), 1 / (s.getW() * s.getRho()));
    EXPECT_EQ(s.getMach(), s.getW() / s.getA());
    EXPECT_EQ(s.getPi(), injection.getP() / s.getP());
    EXPECT_EQ(s.getIs_core(), s.getW());
    EXPECT_EQ(s.getIs_v_core(), s.getF() * s.getP() + s.getW());
    EXPECT_EQ(s.getKp_core(), s.getW() / chamber().getBetta(0.0));
    EXPECT_EQ(s.getKp_v_core(), s.getIs_v_core() / chamber().getBetta(0.0));
}

TEST_F(FrozenFlow, IsFoundByAreaRatioPressureAndPressureRatio)
{
    const FrozenSection& byFr = section();
    EXPECT_EQ(byFr.getFr(), 40.0);
    EXPECT_NEAR(areaRatioOf(byFr), 40.0, 5e-4 * 40.0);

    const FrozenSection byP = at(byFr.getP(), Section::PRESSURE);
    EXPECT_EQ(byP.getP(), byFr.getP());
    EXPECT_EQ(byP.getFr(), areaRatioOf(byP));
    EXPECT_NEAR(byP.getT(), byFr.getT(), 2 * newton * byP.getT());

    const FrozenSection byPi = at(1000.0, Section::PRESSURE_RATIO);
    EXPECT_EQ(byPi.getP(), stationOf(chamber(), Chamber::INJECTION_PLANE).getP() / 1000.0);
    EXPECT_NEAR(byPi.getPi(), 1000.0, 1e-9);
    EXPECT_NEAR(byPi.getT(), at(byPi.getP(), Section::PRESSURE).getT(), 2 * newton * byPi.getT());
    const FrozenSection other = at(40.0, static_cast<Section::CONDITION_TYPE>(9));
    EXPECT_EQ(other.getP(), byFr.getP());
}

/// A frozen section whose search for a temperature a test may use.
class OpenSection : public FrozenSection
{
public:
    using FrozenSection::FrozenSection;
    using FrozenSection::solveForFixedPressure;
};

// From the perfect gas at the area ratio, quadratic in the areas, and linear within 0.01; each
// temperature starts from the one before.
TEST_F(FrozenFlow, IsSearchedByAreaRatioWithStepsThatFitTheDistance)
{
    const OpenSection open(&chamber(), 40.0, Section::AREA_RATIO, false);
    const reaction::Equilibrium& injection = stationOf(chamber(), Chamber::INJECTION_PLANE);
    const reaction::Equilibrium& end = stationOf(chamber(), Chamber::CHAMBER_END);
    const reaction::Derivatives& throat = *chamber().getDerivatives(Chamber::THROAT);
    const std::unique_ptr<reaction::ReactingMixture> products(
        freezing().getReaction()->copyReactingMixture(true, true));
    const double S = freezing().getReaction()->getS() * products->getN();
    for (double Fr = 2.2; Fr < 300.0; Fr *= 1.4) {
        const double k = throat.getK(), lambda = gasdynamics::lambda_q(1 / Fr, k, true);
        double p = end.getP() * gasdynamics::gf_pi(lambda, k);
        double T = end.getT() * gasdynamics::gf_tau(lambda, k);
        for (int pass = 0; pass < 100; ++pass) {
            const double Ngas = Sums(*products, end.getT(), p).Ngas;
            T = open.solveForFixedPressure(S, products.get(), Ngas, std::log(p / 1e5), T);
            const Sums sums(*products, T, p);
            const double W = std::sqrt(2 * (injection.getHspec() - sums.H / sums.mass));
            const double rho = sums.mass * p / (Ngas * gasConstant * T);
            const double ratio = throat.getRho() * throat.getA() / (rho * W) / Fr;
            if (std::abs(1 - ratio) < 0.0005) break;
            p *= std::abs(1 - ratio) < 0.01 ? ratio : ratio * ratio;
        }
        EXPECT_NEAR(at(Fr, Section::AREA_RATIO).getP(), p, 1e-9 * p) << Fr;
    }
}

TEST_F(FrozenFlow, AtTheFreezingPressureIsTheFreezingSection)
{
    const FrozenSection s = at(freezing().getP(), Section::PRESSURE);
    EXPECT_NEAR(s.getT(), freezing().getT(), newton * s.getT());
    EXPECT_NEAR(s.getRho(), freezing().getRho(), newton * s.getRho());
    EXPECT_NEAR(s.getFr(), freezing().getFr(), 2e-3 * s.getFr());
}

TEST_F(FrozenFlow, KeepsItsCompositionAndGivesItAway)
{
    const std::unique_ptr<thermo::Mixture> first(section().getResultingMixture());
    const std::unique_ptr<thermo::Mixture> second(section().getResultingMixture());
    EXPECT_NE(first.get(), second.get());
    const std::unique_ptr<reaction::ReactingMixture> products(
        freezing().getReaction()->copyReactingMixture(true, true));
    const std::unique_ptr<thermo::Mixture> frozen(products->copyResultingMixture());
    ASSERT_EQ(first->size(), frozen->size());
    ASSERT_GT(first->size(), 4);
    for (int i = 0; i < first->size(); ++i) {
        EXPECT_EQ(first->getSpecies(i)->getName(), frozen->getSpecies(i)->getName());
        EXPECT_EQ(first->getMolarFraction(i), frozen->getMolarFraction(i));
    }
}

TEST_F(FrozenFlow, HasNoEquilibriumAndNoLayer)
{
    const FrozenSection& s = section();
    EXPECT_EQ(s.getReaction(), nullptr);
    EXPECT_EQ(s.getDerivatives(), nullptr);
    EXPECT_EQ(s.getBlcReaction(), nullptr);
    EXPECT_EQ(s.getBlcDerivatives(), nullptr);
    EXPECT_FALSE(s.isBLC());
    for (const StateGetter& getter : stateGetters) {
        SCOPED_TRACE(getter.name);
        KETRA_EXPECT_THROW_MESSAGE((s.*getter.layer)(), thermo::Exception, 0, "Invalid state");
        EXPECT_TRUE(std::isfinite((s.*getter.core)()));
        EXPECT_NE((s.*getter.core)(), 0.0);
    }
}

TEST_F(FrozenFlow, AnswersThroughTheBaseClass)
{
    const Section& base = section();
    EXPECT_EQ(base.getT(), section().getT());
    EXPECT_EQ(base.getIs_v(0.0), section().getIs_v_core());
    EXPECT_EQ(base.getKp(0.0), section().getKp_core());
    EXPECT_EQ(base.getIs_H(5e3, 0.0), section().getIs_v_core() - section().getF() * 5e3);
}

// The transport properties are computed where the composition is, in the derivatives of the
// freezing section.
TEST_F(FrozenFlow, HasTheTransportPropertiesOfTheFreezingSection)
{
    const auto own = frozenChamber(2.0);
    reaction::Derivatives& derivatives = *own->getEquilibriumSection()->getDerivatives();
    const FrozenSection without(own.get(), 40.0, Section::AREA_RATIO, false);
    EXPECT_EQ(without.getV(), 0.0);
    EXPECT_EQ(derivatives.getV(), 0.0);

    const FrozenSection with(own.get(), 40.0, Section::AREA_RATIO, true);
    EXPECT_GT(with.getV(), 0.0);
    EXPECT_EQ(with.getV(), derivatives.getV());
    EXPECT_EQ(with.getCfr(), derivatives.getCfr());
    EXPECT_EQ(with.getCpfr(), derivatives.getCpfr());
    EXPECT_EQ(with.getPrfr(), derivatives.getPrfr());
    EXPECT_EQ(with.getCeql(), with.getCfr());
    EXPECT_EQ(with.getCpeql(), with.getCpfr());
    EXPECT_EQ(with.getPreql(), with.getPrfr());

    // a section that does not compute them reads what the last one has left
    const FrozenSection later(own.get(), 10.0, Section::AREA_RATIO, false);
    EXPECT_EQ(later.getV(), with.getV());
    const FrozenSection computed(own.get(), 10.0, Section::AREA_RATIO, true);
    EXPECT_GT(computed.getV(), with.getV()); // hotter
}

TEST_F(FrozenFlow, NeedsAFreezingSection)
{
    useShippedSpecies();
    FrozenChamber unsolved(*loxHydrogen(6.0), 2.0, FrozenChamber::EXPANSION_RATIO);
    LogCapture log;
    KETRA_EXPECT_THROW_MESSAGE(FrozenSection(&unsolved, 40.0, Section::AREA_RATIO, false),
                               thermo::Exception, 0, "Not solved");
    EXPECT_EQ(log.errors(), std::vector<std::string>{
                                "Frozen Equilibrium Chamber: equilibrium section not solved\r\n"});
}

TEST_F(FrozenFlow, WithoutAFirstGuessFailsAsTheRootFinderDoes)
{
    KETRA_EXPECT_THROW_CODE(at(0.5, Section::AREA_RATIO), math::equation::Exception, 1);
}

TEST(FrozenLayer, IsExpandedToTheCoresPressure)
{
    const auto chamber = frozenChamber(2.0, true);
    const Section& freezing = *chamber->getEquilibriumSection();
    const FrozenSection s(chamber.get(), 40.0, Section::AREA_RATIO, true);
    ASSERT_TRUE(s.isBLC());
    EXPECT_EQ(s.getBLC(), 0.1);
    const std::unique_ptr<reaction::ReactingMixture> products(
        freezing.getBlcReaction()->copyReactingMixture(true, true));
    const Sums sums(*products, s.getT_blc(), s.getP());
    EXPECT_LT(std::abs(freezing.getS_blc() * sums.N - sums.S) / sums.Cp, newton);
    const auto expectClose = [](double value, double expected) {
        EXPECT_NEAR(value, expected, 1e-11 * std::abs(expected));
    };
    const double Mm = sums.mass / sums.N;
    expectClose(s.getH_spec_blc(), sums.H / sums.mass);
    expectClose(s.getH_blc(), sums.H / sums.N);
    expectClose(s.getU_blc(), sums.U / sums.N);
    expectClose(s.getU_spec_blc(), sums.U / sums.mass);
    expectClose(s.getG_blc(), sums.G / sums.N);
    expectClose(s.getG_spec_blc(), sums.G / sums.mass);
    expectClose(s.getCp_blc(), sums.Cp / sums.N);
    expectClose(s.getCv_blc(), s.getCp_blc() - gasConstant);
    expectClose(s.getCp_spec_blc(), s.getCp_blc() / Mm);
    expectClose(s.getCv_spec_blc(), s.getCv_blc() / Mm);
    expectClose(s.getK_blc(), s.getCp_blc() / s.getCv_blc());
    EXPECT_EQ(s.getGamma_blc(), s.getK_blc());
    expectClose(s.getA_blc(), std::sqrt(s.getK_blc() * gasConstant * s.getT_blc() / Mm));
    expectClose(s.getRho_blc(), s.getP() * sums.mass / (sums.Ngas * gasConstant * s.getT_blc()));
    expectClose(s.getMm_blc(), Mm);
    expectClose(s.getM_blc(), Mm * 1000);
    EXPECT_EQ(s.getMm2_blc(), s.getMm_blc());
    expectClose(s.getR_spec_blc(), gasConstant / Mm);
    EXPECT_EQ(s.getS_spec_blc(), freezing.getS_spec_blc());
    EXPECT_EQ(s.getS_blc(), freezing.getBlcReaction()->getS() * products->getN());

    const reaction::Equilibrium& injection = *chamber->getBlcReaction(Chamber::INJECTION_PLANE);
    const reaction::Derivatives& throat = *chamber->getBlcDerivatives(Chamber::THROAT);
    EXPECT_EQ(s.getW_blc(), std::sqrt(2 * (injection.getHspec() - s.getH_spec_blc())));
    EXPECT_EQ(s.getFr_blc(), throat.getRho() * throat.getA() / (s.getRho_blc() * s.getW_blc()));
    EXPECT_EQ(s.getF_blc(), 1 / (s.getW_blc() * s.getRho_blc()));
    EXPECT_EQ(s.getMach_blc(), s.getW_blc() / s.getA_blc());
    EXPECT_EQ(s.getIs_blc(), s.getW_blc());
    EXPECT_EQ(s.getIs_v_blc(), s.getF_blc() * s.getP() + s.getW_blc());
    // c* of the chamber, not of the layer
    EXPECT_EQ(s.getKp_blc(), s.getW_blc() / chamber->getBetta(0.0));
    EXPECT_EQ(s.getKp_v_blc(), s.getIs_v_blc() / chamber->getBetta(0.0));

    const reaction::Derivatives& derivatives = *freezing.getBlcDerivatives();
    EXPECT_GT(s.getV_blc(), 0.0);
    EXPECT_EQ(s.getV_blc(), derivatives.getV());
    EXPECT_EQ(s.getCfr_blc(), derivatives.getCfr());
    EXPECT_EQ(s.getCpfr_blc(), derivatives.getCpfr());
    EXPECT_EQ(s.getPrfr_blc(), derivatives.getPrfr());
    EXPECT_EQ(s.getCeql_blc(), derivatives.getCfr());
    EXPECT_EQ(s.getCpeql_blc(), derivatives.getCpfr());
    EXPECT_EQ(s.getPreql_blc(), derivatives.getPrfr());
    EXPECT_DOUBLE_EQ(s.getIs_v(0.0), 0.1 * s.getIs_v_blc() + 0.9 * s.getIs_v_core());
}

TEST(FrozenSolid, HasTheMassAndTheMolesOfItsCondensedProducts)
{
    useShippedSpecies();
    FrozenChamber chamber(*aluminisedSolid(0.16), 1.5, FrozenChamber::EXPANSION_RATIO);
    chamber.setP(chamberP);
    chamber.solve(false, false, false);
    const Section& freezing = *chamber.getEquilibriumSection();
    const FrozenSection s(&chamber, freezing.getP() * 0.95, Section::PRESSURE, false);

    const std::unique_ptr<reaction::ReactingMixture> products(
        freezing.getReaction()->copyReactingMixture(true, true));
    ASSERT_LT(products->gasSize(), products->size());
    double condensed = 0.0, mass = 0.0, gasMass = 0.0;
    for (unsigned int j = 0; j < products->size(); ++j) {
        const double m = products->n(j) * products->product(j)->getM();
        mass += m;
        (j < products->gasSize() ? gasMass : condensed) +=
            j < products->gasSize() ? m : products->n(j);
    }
    EXPECT_NEAR(s.getMm2(), s.getMm() / (1 - condensed / products->getN()), 1e-12 * s.getMm2());
    EXPECT_NEAR(s.getRho(), freezing.getRho() * 0.95, 0.01 * s.getRho());
    LogCapture log;
    s.printConditions(0);
    char line[80];
    std::snprintf(line, sizeof line, "%19s:\t %10.5f\t", "C-ph", 1 - gasMass / mass);
    EXPECT_NE(log.report().find(line), std::string::npos);
}

} // namespace
