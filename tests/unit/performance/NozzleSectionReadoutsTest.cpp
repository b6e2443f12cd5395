#include "Sections.h"

#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Propellant.h>

#include <support/Failures.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <vector>

// What a solved section can be asked.

namespace {

using namespace ketra_test;

class SectionWithLayer : public testing::Test
{
protected:
    static Chamber& chamber()
    {
        static const std::unique_ptr<Chamber> shared = layeredChamber(share);
        return *shared;
    }
    static const Section& section()
    {
        static const Section shared(&chamber(), 10.0, Section::AREA_RATIO, true, false, true, -1);
        return shared;
    }
    static constexpr double share = 0.1;
    static constexpr double pa = 101325.0; // Pa
};

class SectionWithoutLayer : public testing::Test
{
protected:
    static const Section& section()
    {
        static const std::unique_ptr<Chamber> chamber = hydrogenChamber();
        static const Section shared = byArea(*chamber, 10.0);
        return shared;
    }
};

TEST_F(SectionWithLayer, HasItsStateFromProblemAndDerivatives)
{
    for (const StateGetter& getter : stateGetters) {
        const double value = (section().*getter.core)();
        EXPECT_EQ(value, getter.source(*section().getReaction(), *section().getDerivatives()))
            << getter.name;
        EXPECT_NE(value, 0.0) << getter.name;
    }
}

TEST_F(SectionWithLayer, HasTheStateOfTheLayerFromThatOfTheLayer)
{
    ASSERT_TRUE(section().isBLC());
    for (const StateGetter& getter : stateGetters) {
        const double value = (section().*getter.layer)();
        EXPECT_EQ(value, getter.source(*section().getBlcReaction(), *section().getBlcDerivatives()))
            << getter.name;
        EXPECT_NE(value, 0.0) << getter.name;
        EXPECT_NE(value, (section().*getter.core)()) << getter.name;
    }
}

TEST_F(SectionWithoutLayer, HasNoStateOfALayer)
{
    EXPECT_FALSE(section().isBLC());
    EXPECT_EQ(section().getBlcReaction(), nullptr);
    EXPECT_EQ(section().getBlcDerivatives(), nullptr);
    for (const StateGetter& getter : stateGetters) {
        SCOPED_TRACE(getter.name);
        KETRA_EXPECT_THROW_MESSAGE((section().*getter.layer)(), thermo::Exception, 0,
                                   "Invalid state");
    }
}

TEST_F(SectionWithoutLayer, HasZerosForTheLayersFlow)
{
    EXPECT_EQ(section().getBLC(), 0.0);
    EXPECT_EQ(section().getFr_blc(), 0.0);
    EXPECT_EQ(section().getW_blc(), 0.0);
    EXPECT_EQ(section().getMach_blc(), 0.0);
    EXPECT_EQ(section().getF_blc(), 0.0);
    EXPECT_EQ(section().getIs_v_blc(), 0.0);
    EXPECT_EQ(section().getIs_blc(), 0.0);
    EXPECT_EQ(section().getKp_v_blc(), 0.0);
    EXPECT_EQ(section().getKp_blc(), 0.0);
}

TEST_F(SectionWithLayer, FollowsFromTheVelocityOfTheCore)
{
    const Section& s = section();
    const reaction::Equilibrium& injection = stationOf(chamber(), Chamber::INJECTION_PLANE);
    EXPECT_EQ(s.getW(), std::sqrt(2 * (injection.getHspec() - s.getH_spec())));
    EXPECT_EQ(s.getF(), 1 / (s.getRho() * s.getW()));
    EXPECT_EQ(s.getMr(), 1 / s.getF());
    EXPECT_EQ(s.getMach(), s.getW() / s.getA());
    EXPECT_EQ(s.getPi(), injection.getP() / s.getP());
    EXPECT_EQ(s.getIs_core(), s.getW());
    EXPECT_EQ(s.getIs_v_core(), s.getF() * s.getP() + s.getW());
    // c* of both streams, by the share of the layer
    const double Betta = chamber().getBetta(0.0);
    EXPECT_EQ(s.getKp_core(), s.getW() / Betta);
    EXPECT_EQ(s.getKp_v_core(), s.getIs_v_core() / Betta);
    EXPECT_NE(Betta, chamber().getBetta_core());
}

TEST_F(SectionWithLayer, FollowsFromTheVelocityOfTheLayer)
{
    const Section& s = section();
    EXPECT_EQ(s.getBLC(), share);
    EXPECT_EQ(s.getBlcReaction()->getP(), s.getP());
    const reaction::Equilibrium& injection = *chamber().getBlcReaction(Chamber::INJECTION_PLANE);
    const reaction::Derivatives& throat = *chamber().getBlcDerivatives(Chamber::THROAT);
    EXPECT_EQ(s.getW_blc(), std::sqrt(2 * (injection.getHspec() - s.getH_spec_blc())));
    EXPECT_EQ(s.getF_blc(), 1 / (s.getRho_blc() * s.getW_blc()));
    EXPECT_EQ(s.getMr_blc(), 1 / s.getF_blc());
    EXPECT_EQ(s.getMach_blc(), s.getW_blc() / s.getA_blc());
    EXPECT_EQ(s.getFr_blc(), throat.getRho() * throat.getA() / (s.getRho_blc() * s.getW_blc()));
    EXPECT_EQ(s.getIs_blc(), s.getW_blc());
    EXPECT_EQ(s.getIs_v_blc(), s.getF_blc() * s.getP() + s.getW_blc());
    EXPECT_EQ(s.getKp_blc(), s.getW_blc() / chamber().getBetta_blc());
    EXPECT_EQ(s.getKp_v_blc(), s.getIs_v_blc() / chamber().getBetta_blc());
}

TEST_F(SectionWithLayer, KeepsItsEntropy)
{
    const Section& s = section();
    EXPECT_NEAR(s.getS_spec_blc(), chamber().getBlcReaction(Chamber::CHAMBER_END)->getSspec(),
                1e-6 * s.getS_spec_blc());
}

// By the chamber's fraction with x = 0, by x otherwise. The layer gives its vacuum impulse to all.
TEST_F(SectionWithLayer, WeightsThePerformanceByTheFractionGivenOrByItsOwn)
{
    const Section& s = section();
    const double Betta = chamber().getBetta(0.0), layerBetta = chamber().getBetta_blc();
    for (const double x : {0.0, 0.25, 1.0}) {
        const double w = x == 0.0 ? share : x;
        const double vacuum = w * s.getIs_v_blc() + (1 - w) * s.getIs_v_core();
        const double optimum = w * s.getIs_v_blc() + (1 - w) * s.getIs_core();
        const double c = w * layerBetta + (1 - w) * Betta;
        EXPECT_DOUBLE_EQ(s.getIs_v(x), vacuum) << x;
        EXPECT_DOUBLE_EQ(s.getIs(x), optimum) << x;
        EXPECT_DOUBLE_EQ(s.getKp_v(x), vacuum / c) << x;
        EXPECT_DOUBLE_EQ(s.getKp(x), optimum / c) << x;
        const double ambient = w * (s.getIs_v_blc() - pa * s.getF_blc()) +
                               (1 - w) * (s.getIs_v_core() - s.getF() * pa);
        EXPECT_DOUBLE_EQ(s.getIs_H(pa, x), ambient) << x;
        EXPECT_DOUBLE_EQ(s.getKp_H(pa, x), ambient / c) << x;
    }
    EXPECT_NE(s.getIs_v_blc(), s.getIs_blc());
}

TEST_F(SectionWithLayer, HasThePerformanceOfEachStreamAtAnAmbientPressure)
{
    const Section& s = section();
    EXPECT_EQ(s.getIs_H_core(pa), s.getIs_v_core() - s.getF() * pa);
    EXPECT_EQ(s.getIs_H_blc(pa), s.getIs_v_blc() - s.getF_blc() * pa);
    // the numerator of the core's coefficient is the weighted impulse
    EXPECT_EQ(s.getKp_H_core(pa), s.getIs_H(pa, 0.0) / chamber().getBetta(0.0));
    EXPECT_EQ(s.getKp_H_blc(pa), (s.getIs_v_blc() - s.getF_blc() * pa) / chamber().getBetta_blc());
    EXPECT_EQ(s.getIs_H_core(0.0), s.getIs_v_core());
}

TEST_F(SectionWithoutLayer, HasThePerformanceOfTheCoreAsItStands)
{
    const Section& s = section();
    const double pa = 101325.0;
    EXPECT_EQ(s.getIs_v(0.0), s.getIs_v_core());
    EXPECT_EQ(s.getIs(0.0), s.getIs_core());
    EXPECT_EQ(s.getKp_v(0.0), s.getKp_v_core());
    EXPECT_EQ(s.getKp(0.0), s.getKp_core());
    EXPECT_EQ(s.getIs_H(pa, 0.0), s.getIs_H_core(pa));
    EXPECT_EQ(s.getKp_H(pa, 0.0), s.getIs_H_core(pa) / (s.getIs_v_core() / s.getKp_v_core()));
    EXPECT_EQ(s.getKp_H_core(pa), s.getKp_H(pa, 0.0));
    // a fraction is taken at its word, also without a layer
    EXPECT_DOUBLE_EQ(s.getIs_v(0.5), 0.5 * s.getIs_v_core());
}

TEST(SectionOfALayer, ThatIsSubsonicHasNoPerformance)
{
    const auto chamber = layeredChamber(0.1, 3.0);
    const Section section(chamber.get(), 2.0, Section::AREA_RATIO, false, false, false, -1);
    ASSERT_TRUE(section.isBLC());
    EXPECT_GT(section.getW_blc(), 0.0);
    EXPECT_GT(section.getFr_blc(), 0.0);
    EXPECT_EQ(section.getIs_v_blc(), 0.0);
    EXPECT_EQ(section.getIs_blc(), 0.0);
    EXPECT_EQ(section.getKp_v_blc(), 0.0);
    EXPECT_EQ(section.getKp_blc(), 0.0);
}

TEST(SectionOfALayer, TakesALayerOverThatIsAddedLater)
{
    const auto chamber = hydrogenChamber();
    Section section = byArea(*chamber, 10.0);
    chamber->setBLC(0.2, *loxHydrogen(2.0), false);
    EXPECT_FALSE(section.isBLC());
    section.blc_solve(chamber.get(), true, false, false);
    ASSERT_TRUE(section.isBLC());
    EXPECT_EQ(section.getBLC(), 0.2);
    EXPECT_GT(section.getV_blc(), 0.0); // transport is always computed
    const Section built = byArea(*chamber, 10.0);
    EXPECT_EQ(section.getIs_v_blc(), built.getIs_v_blc());
    EXPECT_EQ(section.getT_blc(), built.getT_blc());

    chamber->blc_clear();
    section.blc_solve(chamber.get(), true, false, false);
    EXPECT_FALSE(section.isBLC());
    EXPECT_EQ(section.getBlcDerivatives(), nullptr);
    KETRA_EXPECT_THROW_CODE(section.getT_blc(), thermo::Exception, 0);
}

// A layer of a propellant waits for the next solve of the chamber.
TEST(SectionOfALayer, ThatIsNotSolvedFailsCleanly)
{
    const auto chamber = hydrogenChamber();
    thermo::Propellant layer(2.0);
    layer.addComponent(thermo::Propellant::OXIDIZER, "O2", 298.15, 101325.0, 1.0);
    layer.addComponent(thermo::Propellant::FUEL, "H2", 298.15, 101325.0, 1.0);
    Section section = byArea(*chamber, 10.0);
    chamber->setBLC(0.1, layer, false);
    ASSERT_TRUE(chamber->isBLC());
    KETRA_EXPECT_THROW_CODE(section.blc_solve(chamber.get(), true, false, false), thermo::Exception,
                            0);
    EXPECT_FALSE(section.isBLC());
    KETRA_EXPECT_THROW_CODE(byArea(*chamber, 10.0), thermo::Exception, 0);
}

#if defined(__GXX_ABI_VERSION) && defined(__x86_64__)

/// Place of a virtual function in the table of its class, counted without the two destructors; -1
/// for one that is not virtual.
template <class Function> std::ptrdiff_t placeOf(Function function)
{
    struct {
        std::ptrdiff_t pointer, adjustment;
    } layout{};
    static_assert(sizeof layout == sizeof function);
    std::memcpy(&layout, &function, sizeof layout);
    constexpr std::ptrdiff_t destructors = 2, entry = sizeof(void*);
    return layout.pointer % 2 == 1 ? (layout.pointer - 1) / entry - destructors : -1;
}

// A host that was built against an earlier version of the library calls by place.
TEST(SectionTable, KeepsTheOrderOfItsFunctions)
{
    std::ptrdiff_t place = 0;
    const auto expectNext = [&](auto function, const char* name) {
        EXPECT_EQ(placeOf(function), place) << name;
        ++place;
    };
    expectNext(&Section::isBLC, "isBLC");
    expectNext(&Section::getFr, "getFr");
    expectNext(&Section::getFr_blc, "getFr_blc");
    expectNext(&Section::getReaction, "getReaction");
    expectNext(&Section::getBlcReaction, "getBlcReaction");
    expectNext(&Section::getDerivatives, "getDerivatives");
    expectNext(&Section::getBlcDerivatives, "getBlcDerivatives");
    for (const StateGetter& getter : stateGetters) {
        if (getter.core == &Section::getMm2) continue; // among the four of the molar mass
        expectNext(getter.core, getter.name);
        if (getter.core == &Section::getMm) expectNext(&Section::getMm2, "Mm2");
        expectNext(getter.layer, getter.name);
        if (getter.core == &Section::getMm) expectNext(&Section::getMm2_blc, "Mm2_blc");
    }
    expectNext(&Section::printHeader, "printHeader");
    expectNext(&Section::printConditions, "printConditions");
    EXPECT_EQ(place, 65); // 66 with the destructor
    expectNext(&FrozenSection::getResultingMixture, "getResultingMixture");
    EXPECT_EQ(placeOf(&Section::getP), -1);
}

#endif

} // namespace
