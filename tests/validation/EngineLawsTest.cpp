#include <support/EngineSweep.h>

#include <ketra/performance/ThrottlingPerformance.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/thermo/input/Pressure.h>

#include <gtest/gtest.h>

#include <cctype>
#include <cmath>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

// Laws of nozzle flow over random engines with fixed seeds. docs/verification.md tells of engines
// far beyond these, and of the laws that a method's own tolerances do not let hold.

using namespace ketra_test;
using performance::ThrottlingPerformance;
using performance::equilibrium::Chamber;
using thermo::input::Pressure;

namespace {

/// Engines as they are built and somewhat beyond.
const EngineRange usual{.leastAlpha = 0.3,
                        .mostAlpha = 2.5,
                        .leastMPa = 0.3,
                        .mostMPa = 25.0,
                        .leastAreaRatio = 1.5,
                        .mostAreaRatio = 150.0};

std::vector<RandomEngine> enginesOf(std::size_t propellant, unsigned seed, std::size_t count)
{
    const std::size_t kinds = enginePropellants().size();
    std::vector<RandomEngine> chosen;
    for (const RandomEngine& engine : randomEngines(seed, count * kinds, usual))
        if (engine.propellant == propellant) chosen.push_back(engine);
    return chosen;
}

class EngineLaws : public testing::TestWithParam<std::size_t>
{
protected:
    void SetUp() override { useShippedSpecies(); }

    CauseLog log;
};

std::string nameOf(const testing::TestParamInfo<std::size_t>& info)
{
    std::string name;
    for (const char* c = enginePropellants()[info.param].name; *c != '\0'; ++c)
        if (std::isalnum(static_cast<unsigned char>(*c)) != 0) name += *c;
    return name;
}
INSTANTIATE_TEST_SUITE_P(Propellants, EngineLaws,
                         testing::Range<std::size_t>(0, enginePropellants().size()), nameOf);

/// Every law holds but the ones of a frozen flow whose condensed products leave their range: the
/// enthalpy of such a product goes on with the temperature of the gas, while its state stands
/// still.
void expectLaws(const Outcome& outcome)
{
    for (const Violation& violation : outcome.violations)
        if (violation.where.find("misplaced") == std::string::npos)
            ADD_FAILURE() << violation.text();
    EXPECT_LE(outcome.throat, 1e-5);
    if (!outcome.solved || outcome.misplaced > 0) return;
    const auto best =
        hasBlend(outcome.certificate) ? verification::Grade::B : verification::Grade::A;
    EXPECT_EQ(outcome.certificate.grade, best) << gradeOf(outcome.certificate);
}

TEST_P(EngineLaws, HoldFromChamberToExit)
{
    int failures = 0;
    int compared = 0;
    const auto engines = enginesOf(GetParam(), 31, 10);
    for (const RandomEngine& engine : engines) {
        SCOPED_TRACE(describe(engine));
        const EngineOutcome outcome = examine(engine);
        {
            SCOPED_TRACE("shifting");
            expectLaws(outcome.shifting);
            EXPECT_EQ(outcome.shifting.misplaced, 0);
        }
        {
            SCOPED_TRACE("frozen");
            expectLaws(outcome.frozen);
        }
        for (const Outcome* flow : {&outcome.shifting, &outcome.frozen})
            if (!flow->solved) {
                ++failures;
                EXPECT_TRUE(flow->clean) << flow->failure;
            }
        compared += outcome.compared;
    }
    // Cold exits have no solution: the products that the search starts from do not exist there.
    EXPECT_LE(failures, 8);
    EXPECT_GE(compared, 6);
}

/// A solved engine with a chamber of finite area, null if it has no solution.
SolvedEngine withContraction(const RandomEngine& drawn, double contraction)
{
    auto document = documentOf(drawn, /*frozen=*/false);
    document->getNozzleFlowOptions().setNozzleInletConditions().setContractionAreaRatio(
        contraction);
    auto engine = std::make_unique<performance::TheoreticalPerformance>(document.release(), true);
    try {
        engine->solve(/*calculateTransport=*/false);
    } catch (const thermo::Exception&) {
        return nullptr;
    }
    return engine;
}

// The stagnation pressure at the chamber end is taken as p + rho w^2/2, without compression: the
// mass flow there misses that of the throat by 0.034/c^2 at a contraction c.
constexpr double endFlux = 0.04;

TEST_P(EngineLaws, HoldInAChamberOfFiniteArea)
{
    StateGenerator random(41);
    int solved = 0;
    for (const RandomEngine& drawn : enginesOf(GetParam(), 43, 10)) {
        const double contraction = random.logUniform(1.3, 8.0);
        SCOPED_TRACE(describe(drawn) + ", contraction " + std::to_string(contraction));
        const SolvedEngine engine = withContraction(drawn, contraction);
        if (!engine) continue;
        ++solved;
        const Chamber& chamber = *engine->getChamber();
        EXPECT_LE(throatMiss(chamber), 1e-5);
        const StationLaws laws = lawsOf(chamber, /*finiteArea=*/true);
        EXPECT_LE(laws.enthalpy, 2.1e-5); // the Mach number squared
        EXPECT_LE(laws.entropy, 1e-5);
        EXPECT_LE(laws.elements, 1e-6);
        EXPECT_LE(laws.flux, endFlux / (contraction * contraction));
        // The momentum of the burning gas: p + rho w^2 is the pressure at the injection plane.
        const reaction::Derivatives& end = *chamber.getDerivatives(Chamber::CHAMBER_END);
        const double impulse = chamber.getReaction(Chamber::CHAMBER_END)->getP() +
                               end.getRho() * chamber.getWc() * chamber.getWc();
        EXPECT_LE(miss(impulse, chamber.getReaction(Chamber::INJECTION_PLANE)->getP()), 2e-5);
        EXPECT_NEAR(chamber.getMr(), end.getRho() * chamber.getWc(), 1e-12 * chamber.getMr());
        EXPECT_LT(chamber.getSigmaC(), 1.0);

        const StationLaws exit = lawsOf(chamber, *engine->getExitSection());
        EXPECT_LE(exit.entropy, 1e-5);
        EXPECT_LE(exit.flux, 5e-4);

        const auto certificate = certificateOf(chamber, *engine->getExitSection());
        EXPECT_NE(certificate.grade, verification::Grade::F) << gradeOf(certificate);
        EXPECT_LE(certificate.chamberFlux, endFlux / (contraction * contraction));
    }
    EXPECT_GE(solved, 3); // of hydrazine, whose colder exits fail; 5 and more of all others
}

TEST_P(EngineLaws, GiveAThrottledEngineItsMassFlux)
{
    StateGenerator random(51);
    int solved = 0, failures = 0;
    for (const RandomEngine& drawn : enginesOf(GetParam(), 53, 6)) {
        const double contraction = random.logUniform(1.3, 8.0);
        const SolvedEngine design = withContraction(drawn, contraction);
        if (!design) continue;
        for (const double ratio : {0.1, 0.4, 0.75, 1.15}) {
            SCOPED_TRACE(describe(drawn) + ", ratio " + std::to_string(ratio));
            Outcome outcome;
            std::unique_ptr<ThrottlingPerformance> throttled;
            const bool found = succeeds(outcome, "throttled engine", [&] {
                throttled = std::make_unique<ThrottlingPerformance>(design.get(), ratio, false);
            });
            if (!found) {
                ++failures;
                EXPECT_TRUE(outcome.clean) << outcome.failure;
                continue;
            }
            ++solved;
            const Chamber& chamber = *throttled->getChamber();
            EXPECT_LE(miss(chamber.getMr(), ratio * design->getChamber()->getMr()), 1e-8);
            EXPECT_EQ(chamber.getFcr(), design->getChamber()->getFcr());
            EXPECT_NEAR(throttled->getExitSection()->getFr(), drawn.areaRatio,
                        1e-9 + 5e-4 * drawn.areaRatio);
            EXPECT_LE(throatMiss(chamber), 1e-5);
            const auto certificate = certificateOf(chamber, *throttled->getExitSection());
            EXPECT_NE(certificate.grade, verification::Grade::F) << gradeOf(certificate);
        }
    }
    // An exit that is colder than the design's may have no solution.
    EXPECT_LE(failures, 5);
    EXPECT_GE(solved, 4); // of hydrazine; 12 and more of all others
}

TEST_P(EngineLaws, DoNotDependOnTheUnitOfThePressure)
{
    for (const RandomEngine& drawn : enginesOf(GetParam(), 61, 2)) {
        SCOPED_TRACE(describe(drawn));
        std::vector<double> impulses, temperatures;
        for (const auto unit : {Pressure::MPA, Pressure::ATM, Pressure::BAR, Pressure::PSI,
                                Pressure::PA, Pressure::KG_PER_CM2}) {
            auto document = documentOf(drawn, /*frozen=*/false);
            document->getCombustionChamberConditions().setPressure(
                Pressure::convert(drawn.MPa, Pressure::MPA, unit), unit, true);
            performance::TheoreticalPerformance engine(document.release(), true);
            try {
                engine.solve(/*calculateTransport=*/false);
            } catch (const thermo::Exception&) {
                continue; // then in all units
            }
            impulses.push_back(engine.getExitSection()->getIs_v(0.0));
            temperatures.push_back(engine.getExitSection()->getT());
        }
        ASSERT_TRUE(impulses.empty() || impulses.size() == 6U);
        for (std::size_t i = 1; i < impulses.size(); ++i) {
            // The conversion rounds the pressure.
            EXPECT_LE(miss(impulses[i], impulses[0]), 1e-11) << i;
            EXPECT_LE(miss(temperatures[i], temperatures[0]), 1e-11) << i;
        }
    }
}

// n ln n vanishes with n, but the logarithm of a fraction that is rounded to 0 is infinite.
TEST(FrozenFlow, HasAGibbsEnergyWithTracesNearTheSmallestNumber)
{
    useShippedSpecies();
    const RandomEngine drawn{5, 8.3524, 14.2482, 11.147, 1.994}; // freezes at 684 K
    performance::TheoreticalPerformance engine(documentOf(drawn, /*frozen=*/true).release(), true);
    engine.solve(/*calculateTransport=*/false);
    const NozzleSection& exit = *engine.getExitSection();
    ASSERT_TRUE(isFrozen(exit));
    const auto& chamber = dynamic_cast<const performance::frozen::Chamber&>(*engine.getChamber());
    const std::unique_ptr<reaction::ReactingMixture> products(
        chamber.getEquilibriumSection()->getReaction()->copyReactingMixture(true, true));
    bool hasTrace = false;
    for (unsigned int j = 0; j < products->size(); ++j)
        hasTrace = hasTrace || (products->n(j) > 0.0 && products->n(j) < 1e-320);
    ASSERT_TRUE(hasTrace);
    EXPECT_LE(miss(entropyOf(exit), exit.getS_spec()), entropyLimit(exit));
}

} // namespace
