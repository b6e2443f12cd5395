#include "Engines.h"

#include <support/EngineLaws.h>

#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/runtime/Exception.h>

#include <cmath>
#include <memory>
#include <optional>

namespace convergence {

using ketra_test::EngineCase;
using performance::equilibrium::Chamber;
using reaction::Equilibrium;

namespace {

constexpr double warm = 300.0, cold = 200.0; // K
constexpr double aside =
    0.01; // K by which a state stays clear of the first temperature of the data
/// The flow is followed down to this pressure, Pa.
constexpr double leastPressure = 1e-6;

/// The isentrope of a solved chamber.
class Isentrope
{
public:
    explicit Isentrope(const Chamber& chamber)
        : reactants(*chamber.getReaction(Chamber::INJECTION_PLANE)),
          end(*chamber.getReaction(Chamber::CHAMBER_END)), flux(ketra_test::throatFlux(chamber))
    {
    }

    /// Area over throat area where the flow has the temperature \p T, K. Nothing without such a
    /// state.
    std::optional<double> areaRatioAt(double T) const
    {
        // At fixed temperature the entropy falls as the pressure rises.
        double low = leastPressure, high = end.getP();
        for (int i = 0; i < 60 && high > low * (1.0 + 1e-9); ++i) {
            const double p = std::sqrt(low * high);
            const auto state = solved(p, T);
            if (!state) return std::nullopt;
            (state->getSspec() > end.getSspec() ? low : high) = p;
        }
        const auto state = solved(high, T);
        if (!state) return std::nullopt;
        const double kinetic = reactants.getHspec() - state->getHspec(); // J/kg
        if (kinetic <= 0.0) return std::nullopt;
        // kg of products, per mole of initial mixture
        const double mass =
            state->getS() / state->getSspec() * state->getResultingMixtureQuantaty();
        const double rho = high * mass / (state->getNg() * state->getRT());
        return flux / (rho * std::sqrt(2.0 * kinetic));
    }

private:
    std::unique_ptr<Equilibrium> solved(double p, double T) const
    {
        auto state = std::make_unique<Equilibrium>(end);
        state->setPersistent(true);
        state->setWarmStart(true);
        state->setPT(p, T);
        try {
            state->solve(false);
        } catch (const runtime::Exception&) {
            return nullptr;
        }
        return state;
    }

    const Equilibrium& reactants; // at the injection plane
    const Equilibrium& end;       // at the chamber end
    double flux;                  // at the throat, kg/(m2 s)
};

} // namespace

const char* nameOf(ExitRange range)
{
    switch (range) {
    case ExitRange::ABOVE_300:
        return "exit above 300 K";
    case ExitRange::FROM_200_TO_300:
        return "exit at 200 to 300 K";
    case ExitRange::BELOW_200:
        return "exit below 200 K";
    case ExitRange::UNKNOWN:
        return "exit unknown";
    }
    return "";
}

Verdict withExitRange(const EngineCase& engine, Verdict verdict)
{
    const bool refused = verdict.finding == Finding::REFUSED;
    if (engine.isFrozen() || (!refused && verdict.finding != Finding::FAILED)) return verdict;
    EngineCase failed = engine; // whose pressure follows its flow rate
    if (verdict.stage == Stage::THROTTLING) failed.p *= engine.throttling;
    verdict.range = exitRange(failed);
    const bool wrongly =
        refused && verdict.range != ExitRange::BELOW_200 && verdict.range != ExitRange::UNKNOWN;
    if (wrongly) verdict.finding = Finding::FAILED;
    const std::string start = std::string(nameOf(verdict.range)) + (wrongly ? ", refused: " : ": ");
    verdict.kind = start + verdict.kind;
    verdict.detail = start + verdict.detail;
    return verdict;
}

ExitRange exitRange(double exitT)
{
    if (exitT >= warm) return ExitRange::ABOVE_300;
    return exitT >= cold ? ExitRange::FROM_200_TO_300 : ExitRange::BELOW_200;
}

ExitRange exitRange(const EngineCase& engine)
{
    performance::TheoreticalPerformance solved(documentOf(engine).release(), true);
    solved.setPersistent(true);
    solved.setWarmStart(true);
    try {
        solved.solve(/*calculateTransport=*/false);
    } catch (const runtime::Exception&) { // the exit that fails; the chamber stays
    }
    const Chamber* const chamber = solved.getChamber();
    if (chamber == nullptr || chamber->getDerivatives(Chamber::THROAT) == nullptr)
        return ExitRange::UNKNOWN;
    const Isentrope isentrope(*chamber);
    const auto atWarm = isentrope.areaRatioAt(warm);
    if (atWarm && engine.areaRatio <= *atWarm) return ExitRange::ABOVE_300;
    const auto atCold = isentrope.areaRatioAt(cold + aside);
    if (!atCold) return ExitRange::UNKNOWN;
    return engine.areaRatio <= *atCold ? ExitRange::FROM_200_TO_300 : ExitRange::BELOW_200;
}

} // namespace convergence
