#include "Sections.h"

#include <ketra/thermo/Exception.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

// What holds along every nozzle: the flow keeps its entropy, its total enthalpy and its mass flow,
// gives more impulse the further it expands, and never less in equilibrium than frozen.

namespace {

using namespace ketra_test;

struct Engine {
    const char* name;
    std::function<std::unique_ptr<thermo::Mixture>()> mixture;
    double p;   // Pa
    double Fcr; // 0: infinite area
};

class Nozzle : public testing::TestWithParam<Engine>
{
protected:
    void SetUp() override
    {
        useShippedSpecies();
        const auto mixture = GetParam().mixture();
        chamber = std::make_unique<FrozenChamber>(*mixture, 1.3, FrozenChamber::EXPANSION_RATIO);
        chamber->setP(GetParam().p);
        if (GetParam().Fcr != 0.0) chamber->setFcr(GetParam().Fcr);
        chamber->solve(GetParam().Fcr != 0.0, false, false);
    }
    double throatFlux() const
    {
        const reaction::Derivatives& throat = *chamber->getDerivatives(Chamber::THROAT);
        return throat.getRho() * throat.getA();
    }

    static constexpr double areaRatios[] = {1.05, 1.5, 3.0, 8.0, 20.0, 60.0};
    std::unique_ptr<FrozenChamber> chamber;
};

TEST_P(Nozzle, KeepsEntropyEnthalpyAndMassFlow)
{
    const double S = stationOf(*chamber, Chamber::CHAMBER_END).getSspec();
    const double H0 = stationOf(*chamber, Chamber::INJECTION_PLANE).getHspec();
    for (const double Fr : areaRatios) {
        SCOPED_TRACE(Fr);
        const Section searched = byArea(*chamber, Fr);
        EXPECT_NEAR(searched.getS_spec(), S, 1e-5 * S);
        EXPECT_NEAR(searched.getH_spec() + searched.getW() * searched.getW() / 2, H0,
                    1e-12 * searched.getW() * searched.getW());
        // the search stops within 5e-4 of the area
        EXPECT_NEAR(searched.getMr() * Fr, throatFlux(), 5e-4 * throatFlux());
        const Section given = byPressure(*chamber, searched.getP());
        EXPECT_NEAR(given.getMr() * given.getFr(), throatFlux(), 1e-12 * throatFlux());
        EXPECT_NEAR(given.getS_spec(), S, 1e-5 * S);
    }
}

TEST_P(Nozzle, GivesMoreImpulseTheFurtherItExpands)
{
    double vacuum = 0.0, optimum = 0.0, p = GetParam().p;
    for (const double Fr : areaRatios) {
        SCOPED_TRACE(Fr);
        const Section s = byArea(*chamber, Fr);
        EXPECT_GT(s.getIs_v(0.0), vacuum);
        EXPECT_GT(s.getIs(0.0), optimum);
        EXPECT_LT(s.getP(), p);
        vacuum = s.getIs_v(0.0);
        optimum = s.getIs(0.0);
        p = s.getP();
        // thrust at optimum expansion is the largest at its own pressure
        EXPECT_NEAR(s.getIs_H(p, 0.0), optimum, 1e-12 * optimum);
    }
}

TEST_P(Nozzle, GivesNoMoreImpulseFrozenThanInEquilibrium)
{
    for (const double Fr : areaRatios) {
        if (Fr <= 1.3) continue; // upstream of the freezing section
        SCOPED_TRACE(Fr);
        const FrozenSection frozen(chamber.get(), Fr, Section::AREA_RATIO, false);
        const Section shifting = byPressure(*chamber, frozen.getP());
        // the frozen temperature is found within 5e-4, and with it the enthalpy and the velocity
        const double slack = 5e-4 * frozen.getCp_spec() * frozen.getT() / frozen.getW();
        EXPECT_LE(frozen.getIs_core(), shifting.getIs_core() + slack);
        // and the areas within 5e-4
        const Section sameArea = byArea(*chamber, Fr);
        EXPECT_LE(frozen.getIs_v_core(), sameArea.getIs_v_core() * (1 + 2e-4) + slack);
    }
}

std::string engineName(const testing::TestParamInfo<Engine>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(
    Engines, Nozzle,
    testing::Values(Engine{"LoxHydrogen", [] { return loxHydrogen(6.0); }, 20e6, 0.0},
                    Engine{"LoxHydrogenFinite", [] { return loxHydrogen(5.0); }, 3e6, 2.5},
                    Engine{"LoxKerosene", [] { return loxKerosene(2.6); }, 7e6, 0.0},
                    Engine{"NtoMmhFinite", [] { return ntoMmh(1.65); }, 1e6, 4.0},
                    Engine{"Lean", [] { return loxKerosene(8.0); }, 5e6, 0.0}),
    engineName);

// Where nothing reacts the frozen flow is the flow in equilibrium.
TEST(NozzleOfAnInertGas, IsTheSameFrozenAndInEquilibrium)
{
    useSpecies({{"A", {{"AR", 1.0}}, 20.0, 0, 0.0, {constantCp(50.0, 6000.0, 3.5, 0.0, 0.0)}},
                {"B", {{"HE", 1.0}}, 4.0, 0, 0.0, {constantCp(50.0, 6000.0, 2.5, 0.0, 0.0)}}});
    const auto mixture = mixtureOf({{"A", 2000.0, 0.7}, {"B", 2000.0, 0.3}});
    FrozenChamber chamber(*mixture, 1.1, FrozenChamber::EXPANSION_RATIO);
    chamber.setP(chamberP);
    chamber.solve(false, false, false);
    for (const double p : {2e6, 1e5, 1e4}) {
        const FrozenSection frozen(&chamber, p, Section::PRESSURE, false);
        const Section shifting = byPressure(chamber, p);
        EXPECT_NEAR(frozen.getT(), shifting.getT(), 5e-4 * shifting.getT());
        EXPECT_NEAR(frozen.getK(), shifting.getK(), 1e-6);
        EXPECT_NEAR(frozen.getW(), shifting.getW(), 5e-4 * shifting.getW());
        EXPECT_NEAR(frozen.getMm(), shifting.getMm(), 1e-9 * shifting.getMm());
    }
}

} // namespace
