#include <support/Reactants.h>

#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/performance/frozen/Chamber.h>
#include <ketra/performance/frozen/NozzleSectionConditions.h>
#include <ketra/verification/EngineCertificate.h>

#include <gtest/gtest.h>

#include <array>
#include <memory>

using namespace ketra_test;
using performance::equilibrium::Chamber;
using verification::certify;
using verification::EngineCertificate;
using verification::Grade;
using Section = performance::equilibrium::NozzleSectionConditions;
using FrozenChamber = performance::frozen::Chamber;
using FrozenSection = performance::frozen::NozzleSectionConditions;

namespace {

constexpr double p = 7e6; // Pa

class EngineCertificates : public testing::Test
{
protected:
    EngineCertificates() { useShippedSpecies(); }

    static std::unique_ptr<Section> sectionAt(Chamber& chamber, double Fr)
    {
        return std::make_unique<Section>(&chamber, Fr, Section::AREA_RATIO, true, false, false, -1);
    }
    static void expectA(const EngineCertificate& certificate)
    {
        EXPECT_EQ(certificate.grade, Grade::A) << certificate.reason;
        EXPECT_TRUE(certificate.reason.empty());
    }
};

TEST_F(EngineCertificates, AChamberThatIsNotSolvedIsF)
{
    const auto charge = loxHydrogen(6.0);
    Chamber chamber(*charge);
    chamber.setP(p);
    EXPECT_EQ(certify(chamber, {}, {}).grade, Grade::F);
}

TEST_F(EngineCertificates, AnEngineInShiftingEquilibriumIsA)
{
    const auto charge = loxHydrogen(6.0);
    Chamber chamber(*charge);
    chamber.setP(p);
    chamber.solve(false, false, false);
    const auto near = sectionAt(chamber, 4.0);
    const auto far = sectionAt(chamber, 60.0);
    const std::array<const Section*, 2> sections{near.get(), far.get()};
    const EngineCertificate certificate = certify(chamber, sections, {});
    expectA(certificate);
    ASSERT_EQ(certificate.stations.size(), 4u);
    EXPECT_EQ(certificate.stations[0].place, "injection plane");
    EXPECT_EQ(certificate.stations[1].place, "throat");
    EXPECT_EQ(certificate.stations[3].place, "section");
    EXPECT_LT(certificate.entropy, 1e-9);
    EXPECT_LT(certificate.enthalpy, 1e-9);
    EXPECT_LT(certificate.mach, 1e-5);
    EXPECT_LE(certificate.throatFlux, 0.0);
    EXPECT_LT(certificate.massFlux, 5e-4);
    EXPECT_GT(certificate.massFlux, 0.0);
}

// A wide chamber is A; a narrow one passes less than the throat by a known part of its pressure.
TEST_F(EngineCertificates, AChamberOfFiniteAreaMissesTheMassFlowByItsMethod)
{
    for (const auto& [contraction, grade] : {std::pair(8.0, Grade::A), std::pair(1.6, Grade::B)}) {
        SCOPED_TRACE(contraction);
        const auto charge = loxHydrogen(6.0);
        Chamber chamber(*charge);
        chamber.setP(p);
        chamber.setFcr(contraction);
        chamber.solve(true, false, false);
        const EngineCertificate certificate = certify(chamber, {}, {});
        EXPECT_EQ(certificate.grade, grade) << certificate.reason;
        ASSERT_EQ(certificate.stations.size(), 3u);
        EXPECT_EQ(certificate.stations[1].place, "chamber end");
        EXPECT_NEAR(certificate.chamberFlux, 0.034 / contraction / contraction,
                    0.01 / contraction / contraction);
    }
}

TEST_F(EngineCertificates, AFrozenFlowIsABelowTheShiftingOne)
{
    const auto charge = loxHydrogen(6.0);
    FrozenChamber chamber(*charge, 1.2, FrozenChamber::EXPANSION_RATIO);
    chamber.setP(p);
    chamber.solve(false, false, false);
    const auto shifting = sectionAt(chamber, 20.0);
    const FrozenSection frozen(&chamber, 20.0, Section::AREA_RATIO, false);
    const std::array<const Section*, 1> sections{shifting.get()};
    const std::array<const FrozenSection*, 1> frozenSections{&frozen};
    const EngineCertificate certificate = certify(chamber, sections, frozenSections);
    expectA(certificate);
    EXPECT_TRUE(certificate.stations.back().frozen);
    EXPECT_LT(certificate.frozenAhead, -1e-3);
    EXPECT_LT(certificate.stations.back().entropy, 5e-4);
}

// Alumina has frozen as a liquid and cools far below its melting point, where there are no data.
TEST_F(EngineCertificates, AFrozenProductOutsideItsDataIsF)
{
    const auto charge = aluminisedSolid(0.18);
    FrozenChamber chamber(*charge, 1.2, FrozenChamber::EXPANSION_RATIO);
    chamber.setP(p);
    chamber.solve(false, false, false);
    const FrozenSection frozen(&chamber, 30.0, Section::AREA_RATIO, false);
    ASSERT_LT(frozen.getT(), 2000.0);
    const std::array<const FrozenSection*, 1> frozenSections{&frozen};
    const EngineCertificate certificate = certify(chamber, {}, frozenSections);
    EXPECT_EQ(certificate.grade, Grade::F);
    EXPECT_GT(certificate.stations.back().beyondData, 0.01);
    EXPECT_NE(certificate.reason.find("outside the range of its data"), std::string::npos)
        << certificate.reason;
}

// A persistent section lets it go on with its heat capacity, so that energy and entropy are kept.
TEST_F(EngineCertificates, AFrozenProductOutsideItsDataIsHeldByAPersistentSection)
{
    const auto charge = aluminisedSolid(0.18);
    FrozenChamber chamber(*charge, 1.2, FrozenChamber::EXPANSION_RATIO);
    chamber.setP(p);
    chamber.setPersistent(true);
    chamber.solve(false, false, false);
    const auto shifting = sectionAt(chamber, 30.0);
    const FrozenSection frozen(&chamber, 30.0, Section::AREA_RATIO, false);
    ASSERT_LT(frozen.getT(), 2000.0);
    const std::array<const Section*, 1> sections{shifting.get()};
    const std::array<const FrozenSection*, 1> frozenSections{&frozen};
    const EngineCertificate certificate = certify(chamber, sections, frozenSections);
    EXPECT_EQ(certificate.grade, Grade::B) << certificate.reason;
    EXPECT_GT(certificate.stations.back().beyondData, 0.0);
    EXPECT_LT(certificate.stations.back().beyondData, 2e-3);
    EXPECT_LT(certificate.frozenAhead, -1e-3);
    EXPECT_GT(certificate.frozenAhead, -0.1);
}

TEST_F(EngineCertificates, ALayerIsJudgedToo)
{
    const auto charge = loxHydrogen(6.0);
    Chamber chamber(*charge);
    chamber.setP(p);
    chamber.setBLC(0.1, *loxHydrogen(2.0), false);
    chamber.solve(false, false, false);
    const EngineCertificate certificate = certify(chamber, {}, {});
    expectA(certificate);
    EXPECT_EQ(certificate.stations.size(), 2u);
    ASSERT_EQ(certificate.layers.size(), 2u);
    EXPECT_EQ(certificate.layers.back().place, "layer");
    chamber.getBlcReaction(Chamber::THROAT)->setPT(1e5, 3000.0);
    EXPECT_EQ(certify(chamber, {}, {}).grade, Grade::F);
}

// Sections of another chamber: at another entropy, of another propellant.
TEST_F(EngineCertificates, SectionsOfAnotherEngineAreF)
{
    const auto charge = loxHydrogen(6.0);
    Chamber chamber(*charge);
    chamber.setP(p);
    chamber.solve(false, false, false);
    for (const double mixtureRatio : {6.0, 6.01}) {
        SCOPED_TRACE(mixtureRatio);
        const auto otherCharge = loxHydrogen(mixtureRatio);
        Chamber other(*otherCharge);
        other.setP(mixtureRatio == 6.0 ? 1.01 * p : p);
        other.solve(false, false, false);
        const auto section = sectionAt(other, 20.0);
        const std::array<const Section*, 1> sections{section.get()};
        EXPECT_EQ(certify(other, sections, {}).grade, Grade::A);
        EXPECT_EQ(certify(chamber, sections, {}).grade, Grade::F);
    }
}

// The station problems belong to the chamber: one that is posed anew tells so.
TEST_F(EngineCertificates, AStationThatIsPosedAnewIsF)
{
    const auto charge = loxHydrogen(6.0);
    Chamber chamber(*charge);
    chamber.setP(p);
    chamber.solve(false, false, false);
    chamber.getReaction(Chamber::THROAT)->setPT(1e5, 3000.0);
    EXPECT_EQ(certify(chamber, {}, {}).grade, Grade::F);
}

// A throat that is none: the state of a section in its place.
TEST_F(EngineCertificates, AThroatOffMachOneIsF)
{
    const auto charge = loxHydrogen(6.0);
    Chamber chamber(*charge);
    chamber.setP(p);
    chamber.solve(false, false, false);
    const double S = chamber.getReaction(Chamber::INJECTION_PLANE)->getSspec();
    reaction::Equilibrium& throat = *chamber.getReaction(Chamber::THROAT);
    throat.setPSspec(0.9 * throat.getP(), S);
    throat.solve(false);
    const EngineCertificate certificate = certify(chamber, {}, {});
    EXPECT_EQ(certificate.grade, Grade::F);
    EXPECT_GT(certificate.mach, 0.01);
}

TEST_F(EngineCertificates, LimitsFollowTheToleranceUpToThoseOfB)
{
    using verification::EngineLimits;
    EXPECT_DOUBLE_EQ(EngineLimits::of(Grade::A, 1.0).mach, 2e-5);
    EXPECT_DOUBLE_EQ(EngineLimits::of(Grade::A, 10.0).mach, 2e-4);
    EXPECT_DOUBLE_EQ(EngineLimits::of(Grade::A, 1e6).mach, EngineLimits::of(Grade::B, 1e6).mach);
}

} // namespace
