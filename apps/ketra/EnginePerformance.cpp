#include "EnginePerformance.h"
#include "Certificate.h"

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/efficiency/CorrectionFactors.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/input/AmbientConditions.h>
#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/EfficiencyFactors.h>
#include <ketra/thermo/input/FreezingConditions.h>
#include <ketra/thermo/input/GeneralOptions.h>
#include <ketra/thermo/input/NozzleFlowOptions.h>

#include <cmath>
#include <memory>

namespace host {

using performance::TheoreticalPerformance;
using performance::equilibrium::NozzleSectionConditions;

namespace {

const thermo::input::NozzleFlowOptions& flowOf(const TheoreticalPerformance& performance)
{
    return performance.getData()->getNozzleFlowOptions();
}

/// Sections in equilibrium and frozen ones alike over the characteristic velocity of the chamber.
Impulse over(double Is, double cstar) { return {Is, Is / cstar}; }

/// The library leaves the impulse at 0 in a section that is not supersonic.
bool isSupersonic(const NozzleSectionConditions& section) { return section.getIs_v_core() > 0.0; }

bool separatesAt(TheoreticalPerformance& performance, double ambientPressure)
{
    return performance.getData()->getGeneralOptions().isFlowSeparation() &&
           ambientPressure > performance.getPaCrit();
}

/// The section at which the flow separates at an end of a range of ambient pressures; null if there
/// is none, or if its certificate shows that it is no solution. At a fixed pressure the library has
/// solved it.
std::unique_ptr<NozzleSectionConditions> separationAt(TheoreticalPerformance& performance,
                                                      double ambientPressure)
try {
    std::unique_ptr<NozzleSectionConditions> section(performance.solveNozzleSection(
        performance.getExitSection()->getP(), NozzleSectionConditions::PRESSURE,
        isFrozen(performance), /*overExpansion=*/true, ambientPressure, /*calculateTransport=*/true,
        /*supersonic=*/true));
    if (!section) return nullptr;
    const Certificate certificate = certificatesOf(performance, {section.get()}).sections.front();
    return certificate.grade == verification::Grade::F ? nullptr : std::move(section);
} catch (const runtime::Exception&) {
    return nullptr;
}

std::optional<Impulse> nozzleImpulse(TheoreticalPerformance& performance, double ambientPressure)
{
    const performance::equilibrium::Chamber& chamber = *performance.getChamber();
    if (ambientPressure >= chamber.getPc_0()) return std::nullopt; // nothing flows out
    const NozzleSectionConditions* end = performance.getExitSection();
    std::unique_ptr<NozzleSectionConditions> solved;
    if (separatesAt(performance, ambientPressure)) {
        const bool isFixed = flowOf(performance).getAmbientConditions().isFixedPressureSet();
        if (!isFixed) solved = separationAt(performance, ambientPressure);
        end = isFixed ? performance.getOverExpansionSection() : solved.get();
    }
    if (!end) return std::nullopt;
    return over(end->getIs_H(ambientPressure, 0.0), chamber.getCstar(0.0));
}

} // namespace

bool isFrozen(const TheoreticalPerformance& performance)
{
    const thermo::input::NozzleFlowOptions& flow = flowOf(performance);
    return flow.isFreezingConditionsSet() && flow.getFreezingConditions().isCalculate();
}

std::vector<double> ambientPressuresOf(const TheoreticalPerformance& performance)
{
    const thermo::input::NozzleFlowOptions& flow = flowOf(performance);
    if (!flow.isAmbientConditionsSet()) return {};
    const thermo::input::AmbientConditions& ambient = flow.getAmbientConditions();
    if (ambient.isFixedPressureSet()) return {ambient.getFixedPressure(/*si=*/true)};
    if (ambient.isRangePressureSet())
        return {ambient.getRangePressureMin(/*si=*/true), ambient.getRangePressureMax(/*si=*/true)};
    return {};
}

std::optional<SectionPerformance> performanceOf(TheoreticalPerformance& performance,
                                                const NozzleSectionConditions& section)
{
    if (!isSupersonic(section)) return std::nullopt;
    const double cstar = performance.getChamber()->getCstar(0.0);
    SectionPerformance result{
        over(section.getIs_v(0.0), cstar), over(section.getIs(0.0), cstar), {}};
    for (const double pa : ambientPressuresOf(performance))
        result.ambient.push_back({pa, over(section.getIs_H(pa, 0.0), cstar)});
    return result;
}

std::vector<AmbientPerformance> ambientPerformanceOf(TheoreticalPerformance& performance)
{
    std::vector<AmbientPerformance> list;
    for (const double pa : ambientPressuresOf(performance))
        list.push_back({pa, separatesAt(performance, pa), nozzleImpulse(performance, pa)});
    return list;
}

bool wantsCorrections(const TheoreticalPerformance& performance)
{
    const thermo::input::NozzleFlowOptions& flow = flowOf(performance);
    return flow.isEfficiencyFactorsSet() && flow.getEfficiencyFactors().isApplyEfficiencyFactors();
}

std::optional<Corrections> correctionsOf(TheoreticalPerformance& performance)
try {
    const NozzleSectionConditions* const exit = performance.getExitSection();
    if (!exit || !isSupersonic(*exit)) return std::nullopt;
    const performance::efficiency::CorrectionFactors factors(&performance);
    const Corrections result{factors.getReactionEfficiency(), factors.getDivergenceEfficiency(),
                             factors.getFrictionEfficiency(), factors.getMultiphaseEfficiency(),
                             factors.getNozzleEfficiency(),   factors.getOverallEfficiency()};
    return std::isfinite(result.overall) ? std::optional(result) : std::nullopt;
} catch (const runtime::Exception&) {
    return std::nullopt;
}

Impulse delivered(const Impulse& ideal, const Corrections& corrections)
{
    // The reaction takes its part of c*, the nozzle that of the thrust coefficient.
    return {ideal.Is * corrections.overall, ideal.Cf * corrections.nozzle};
}

} // namespace host
