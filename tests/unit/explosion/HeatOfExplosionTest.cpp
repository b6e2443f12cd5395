#include "Samples.h"

#include <ketra/explosion/HeatOfExplosion.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/thermo/Propellant.h>

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <type_traits>

namespace {

using explosion::HeatOfExplosion;
using ketra_test::sampleOf;
using reaction::Equilibrium;
using thermo::Propellant;

constexpr double rho = 100.0; // kg/m^3
constexpr double T = 1500.0;  // K

static_assert(std::has_virtual_destructor_v<HeatOfExplosion>);

/// Ammonium nitrate with kerosene.
std::unique_ptr<Propellant> propellant()
{
    ketra_test::useShippedSpecies();
    auto made = std::make_unique<Propellant>(16.0);
    made->addComponent(Propellant::OXIDIZER, "NH4NO3(IV)", 298.15, 101325.0, 1.0);
    made->addComponent(Propellant::FUEL, "RP-1", 298.15, 101325.0, 1.0);
    return made;
}

void expectFlags(HeatOfExplosion heat, bool multiphase, bool ions)
{
    EXPECT_EQ(heat.getReaction(), nullptr);
    EXPECT_EQ(heat.getDerivatives(), nullptr);
    heat.runExactMethod(rho, T);
    EXPECT_EQ(heat.getReaction()->isMultiphase(), multiphase);
    EXPECT_EQ(heat.getReaction()->isIons(), ions);
}

TEST(HeatOfExplosion, ConsidersCondensedPhasesAndIonsUnlessTold)
{
    const auto sample = sampleOf("RDX(cr)");
    expectFlags(HeatOfExplosion(*sample), true, true);
    expectFlags(HeatOfExplosion(*sample, true, false), true, false);
    expectFlags(HeatOfExplosion(*sample, false, true), false, true);
    const auto charge = propellant();
    expectFlags(HeatOfExplosion(*charge), true, true);
    expectFlags(HeatOfExplosion(*charge, false, false), false, false);
    expectFlags(HeatOfExplosion(*charge, true, false), true, false);
}

// Without condensed phases the carbon of TNT has to stay in the gas.
TEST(HeatOfExplosion, HandsItsFlagsToTheProblem)
{
    const auto sample = sampleOf("TNT(cr)");
    HeatOfExplosion with(*sample), without(*sample, false, true);
    const double Q = with.runExactMethod(rho, T);
    EXPECT_EQ(ketra_test::productsOf(*with.getReaction()).count("C(gr)"), 1U);
    EXPECT_LT(without.runExactMethod(rho, T), Q);
    EXPECT_EQ(ketra_test::productsOf(*without.getReaction()).count("C(gr)"), 0U);
}

TEST(HeatOfExplosion, TakesAPropellantAsItsMixture)
{
    const auto charge = propellant();
    const std::unique_ptr<thermo::Mixture> mixture(charge->getMixture());
    const double Q = HeatOfExplosion(*charge).runExactMethod(rho, T);
    EXPECT_DOUBLE_EQ(Q, HeatOfExplosion(*mixture).runExactMethod(rho, T));
    EXPECT_GT(Q, 3e6);
}

TEST(HeatOfExplosion, OutlivesItsSample)
{
    std::optional<HeatOfExplosion> heat;
    {
        const auto sample = sampleOf("RDX(cr)");
        heat.emplace(*sample);
    }
    EXPECT_GT(heat->runExactMethod(rho, T), 5e6);
}

TEST(HeatOfExplosion, RunsEitherMethodAgainAndAgain)
{
    HeatOfExplosion heat(*sampleOf("RDX(cr)"));
    const double exact = heat.runExactMethod(rho, T);
    EXPECT_EQ(heat.getReaction()->getProcessType(), Equilibrium::VT);
    EXPECT_EQ(heat.getDerivatives(), nullptr);
    const double diluted = heat.runInertDiluentMethod(1.0, 298.15);
    EXPECT_EQ(heat.getReaction()->getProcessType(), Equilibrium::VU);
    EXPECT_NE(heat.getDerivatives(), nullptr);
    EXPECT_EQ(heat.runExactMethod(rho, T), exact);
    EXPECT_EQ(heat.getReaction()->getProcessType(), Equilibrium::VT);
    EXPECT_EQ(heat.getDerivatives(), nullptr);
    EXPECT_EQ(heat.runInertDiluentMethod(1.0, 298.15), diluted);
}

TEST(HeatOfExplosion, SharesItsResultsWithACopy)
{
    auto source = std::make_unique<HeatOfExplosion>(*sampleOf("RDX(cr)"));
    const double Q = source->runInertDiluentMethod(1.0, 298.15);
    HeatOfExplosion copy(*source);
    EXPECT_EQ(copy.getReaction(), source->getReaction());
    EXPECT_EQ(copy.getDerivatives(), source->getDerivatives());
    source.reset();
    // The last run of the source is still there to be read, and the copy can run.
    EXPECT_GT(copy.getReaction()->getT(), 310.0);
    EXPECT_GT(copy.getDerivatives()->getP(), 0.0);
    EXPECT_EQ(copy.runInertDiluentMethod(1.0, 298.15), Q);
}

TEST(HeatOfExplosion, RunsWithoutItsCopyNoticing)
{
    HeatOfExplosion source(*sampleOf("RDX(cr)"));
    source.runInertDiluentMethod(1.0, 298.15);
    HeatOfExplosion copy(source);
    copy.runExactMethod(rho, T);
    EXPECT_EQ(source.getReaction()->getProcessType(), Equilibrium::VU);
    EXPECT_NE(source.getDerivatives(), nullptr);
    EXPECT_EQ(copy.getReaction()->getProcessType(), Equilibrium::VT);
}

TEST(HeatOfExplosion, CopiesItsFlagsAndItsSample)
{
    const HeatOfExplosion source(*sampleOf("TNT(cr)"), false, false);
    expectFlags(source, false, false);
    HeatOfExplosion first(source), second(source);
    EXPECT_EQ(first.runExactMethod(rho, T), second.runExactMethod(rho, T));
}

TEST(HeatOfExplosion, IsAssignedMemberByMember)
{
    HeatOfExplosion target(*sampleOf("TNT(cr)"), false, false);
    target.runExactMethod(rho, T);
    double Q = 0.0;
    {
        HeatOfExplosion source(*sampleOf("RDX(cr)"));
        Q = source.runInertDiluentMethod(1.0, 298.15);
        EXPECT_EQ(&(target = source), &target);
        EXPECT_EQ(target.getReaction(), source.getReaction());
        EXPECT_EQ(target.getDerivatives(), source.getDerivatives());
    }
    EXPECT_EQ(target.getReaction()->getProcessType(), Equilibrium::VU);
    EXPECT_EQ(target.runInertDiluentMethod(1.0, 298.15), Q);
    EXPECT_TRUE(target.getReaction()->isMultiphase());
    EXPECT_TRUE(target.getReaction()->isIons());
}

TEST(HeatOfExplosion, SurvivesAssignmentToItself)
{
    HeatOfExplosion heat(*sampleOf("RDX(cr)"));
    const double Q = heat.runExactMethod(rho, T);
    const Equilibrium* const solved = heat.getReaction();
    HeatOfExplosion& itself = heat;
    heat = itself;
    EXPECT_EQ(heat.getReaction(), solved);
    EXPECT_EQ(heat.runExactMethod(rho, T), Q);
}

TEST(HeatOfExplosion, HandsItsPersistenceToProblemsAndCopies)
{
    HeatOfExplosion heat(*sampleOf("RDX(cr)"));
    EXPECT_FALSE(heat.isPersistent());
    const double Q = heat.runExactMethod(rho, T);
    EXPECT_FALSE(heat.getReaction()->isPersistent());
    heat.setPersistent(true);
    // The first attempt is the default one, and succeeds.
    EXPECT_EQ(heat.runExactMethod(rho, T), Q);
    EXPECT_TRUE(heat.getReaction()->isPersistent());
    EXPECT_TRUE(HeatOfExplosion(heat).isPersistent());
    HeatOfExplosion other(*sampleOf("TNT(cr)"));
    other = heat;
    EXPECT_TRUE(other.isPersistent());
}

} // namespace
