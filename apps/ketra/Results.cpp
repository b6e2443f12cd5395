#include "Results.h"
#include "EnginePerformance.h"

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/performance/frozen/Chamber.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/thermo/Propellant.h>
#include <ketra/thermo/Species.h>
#include <ketra/thermo/input/CombustionChamberConditions.h>
#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/GeneralOptions.h>

#include <optional>

namespace host {
namespace {

using performance::TheoreticalPerformance;
using performance::equilibrium::Chamber;
using performance::equilibrium::NozzleSectionConditions;

constexpr const char* processNames[] = {"p, H constant", "p, S constant", "p, T constant",
                                        "v, U constant", "v, S constant", "v, T constant"};

/// The entries of a mixture, as they were put in.
void addReactants(Json& list, const thermo::Mixture& mixture, const char* side, double share)
{
    for (int i = 0; i < mixture.size(); ++i) {
        const thermo::_Species& entry = mixture._getSpecies(i);
        list.push_back({{"name", entry.getSpecies()->getName()},
                        {"side", side},
                        {"massFraction", mixture.getMassFraction(i)},
                        {"massFractionOfAll", mixture.getMassFraction(i) * share},
                        {"T", entry.getT()},
                        {"p", entry.getP()}});
    }
}

Json inputOf(TheoreticalPerformance& performance)
{
    thermo::input::ConfigFile& config = *performance.getData();
    Json input = {
        {"pressure", config.getCombustionChamberConditions().getPressure(/*si=*/true)},
        {"multiphase", config.getGeneralOptions().isMultiphase()},
        {"ions", config.getGeneralOptions().isIons()},
    };
    Json reactants = Json::array();
    if (thermo::Propellant* const propellant = performance.getPropellant()) {
        input["O/F"] = propellant->getKm();
        input["alpha"] = propellant->getAlpha();
        input["O/F stoichiometric"] = propellant->getKm0();
        input["H"] = propellant->H();
        input["MW"] = propellant->getM() / 1000;
        addReactants(reactants, *propellant->getComponent(thermo::Propellant::OXIDIZER), "oxidizer",
                     propellant->getGOx());
        addReactants(reactants, *propellant->getComponent(thermo::Propellant::FUEL), "fuel",
                     propellant->getGFuel());
    } else if (thermo::Mixture* const mixture = performance.getMixture()) {
        input["H"] = mixture->H();
        input["MW"] = mixture->getMm();
        addReactants(reactants, *mixture, "mixture", 1.0);
    }
    input["reactants"] = std::move(reactants);
    return input;
}

Json impulseResults(const Impulse& impulse) { return {{"Is", impulse.Is}, {"Cf", impulse.Cf}}; }

Json ambientResults(const std::vector<AmbientImpulse>& list)
{
    Json results = Json::array();
    for (const AmbientImpulse& at : list)
        results.push_back(
            {{"pressure", at.pressure}, {"Is", at.impulse.Is}, {"Cf", at.impulse.Cf}});
    return results;
}

Json performanceResults(const SectionPerformance& section)
{
    return {{"vacuum", impulseResults(section.vacuum)},
            {"optimum", impulseResults(section.optimum)},
            {"ambient", ambientResults(section.ambient)}};
}

Json sectionResults(TheoreticalPerformance& performance, const NozzleSectionConditions* section,
                    bool transport)
{
    if (!section) return nullptr;
    Json results = stationResults(stationOf(*section), transport);
    const std::optional<SectionPerformance> delivers = performanceOf(performance, *section);
    results["performance"] = delivers ? performanceResults(*delivers) : Json(nullptr);
    return results;
}

/// \param corrections  null for the ideal engine
Json ambientResults(TheoreticalPerformance& performance, const Corrections* corrections)
{
    Json results = Json::array();
    for (const AmbientPerformance& at : ambientPerformanceOf(performance)) {
        Json entry = {{"pressure", at.pressure},
                      {"separated", at.separated},
                      {"Is", nullptr},
                      {"Cf", nullptr}};
        if (at.impulse)
            entry.update(
                impulseResults(corrections ? delivered(*at.impulse, *corrections) : *at.impulse));
        results.push_back(std::move(entry));
    }
    return results;
}

Json correctionResults(const Corrections& c)
{
    return {{"reaction", c.reaction},     {"divergence", c.divergence}, {"friction", c.friction},
            {"multiphase", c.multiphase}, {"nozzle", c.nozzle},         {"overall", c.overall}};
}

Json deliveredResults(TheoreticalPerformance& performance, const SectionPerformance& ideal,
                      const Corrections& corrections)
{
    return {{"cstar", performance.getChamber()->getCstar(0.0) * corrections.reaction},
            {"vacuum", impulseResults(delivered(ideal.vacuum, corrections))},
            {"optimum", impulseResults(delivered(ideal.optimum, corrections))},
            {"ambient", ambientResults(performance, &corrections)}};
}

/// Where the composition freezes.
Json freezingResults(Chamber& chamber)
{
    const auto* const frozen = dynamic_cast<performance::frozen::Chamber*>(&chamber);
    if (!frozen) return nullptr;
    const NozzleSectionConditions& section = *frozen->getEquilibriumSection();
    return {{"areaRatio", section.getFr()}, {"p", section.getP()}, {"T", section.getT()}};
}

Json chamberResults(Chamber& chamber)
{
    const Station end = chamberEndOf(chamber);
    return {{"cstar", chamber.getCstar(0.0)},
            {"contraction", end.areaRatio ? Json(*end.areaRatio) : Json(nullptr)},
            {"stagnationPressure", chamber.getPc_0()},
            {"stagnationPressureRatio", chamber.getSigmaC()},
            {"throatMassFlux", throatOf(chamber).massFlux()},
            {"freezing", freezingResults(chamber)}};
}

/// The keys of a nozzle, for an engine that has none.
Json withoutNozzle()
{
    return {{"PaCrit", nullptr},
            {"ambient", nullptr},
            {"corrections", nullptr},
            {"delivered", nullptr}};
}

Json nozzleResults(TheoreticalPerformance& performance)
{
    Json results = withoutNozzle();
    const NozzleSectionConditions* const exit = performance.getExitSection();
    const std::optional<SectionPerformance> ideal =
        exit ? performanceOf(performance, *exit) : std::nullopt;
    if (!ideal) return results;
    results["PaCrit"] = performance.getPaCrit();
    results["ambient"] = ambientResults(performance, nullptr);
    if (const std::optional<Corrections> corrections = correctionsOf(performance)) {
        results["corrections"] = correctionResults(*corrections);
        results["delivered"] = deliveredResults(performance, *ideal, *corrections);
    }
    return results;
}

} // namespace

Json stationsOf(TheoreticalPerformance& performance, bool transport)
{
    Json stations;
    const Chamber* const chamber = performance.getChamber();
    if (chamber) {
        stations["chamber"] = stationResults(injectionPlaneOf(*chamber), transport);
        stations["chamberEnd"] = stationResults(chamberEndOf(*chamber), transport);
        stations["throat"] = stationResults(throatOf(*chamber), transport);
    } else {
        stations["chamber"] = stationResults(
            stationOf(*performance.getEquilibrium(), *performance.getDerivatives()), transport);
        stations["chamberEnd"] = nullptr;
        stations["throat"] = nullptr;
    }
    stations["exit"] = sectionResults(performance, performance.getExitSection(), transport);
    stations["overExpansion"] =
        sectionResults(performance, performance.getOverExpansionSection(), transport);
    return stations;
}

Json engineOf(TheoreticalPerformance& performance)
{
    if (!performance.getChamber()) return nullptr;
    Json engine = chamberResults(*performance.getChamber());
    engine.update(nozzleResults(performance));
    return engine;
}

Json resultsHead(TheoreticalPerformance& performance, const std::string& document)
{
    return {{"program", "ketra"},
            {"version", KETRA_VERSION},
            {"document", document},
            {"name", performance.getData()->getName()},
            {"info", performance.getData()->getInfo()},
            {"input", inputOf(performance)}};
}

Json reactantsOf(const thermo::Mixture& mixture)
{
    Json list = Json::array();
    for (int i = 0; i < mixture.size(); ++i) {
        const thermo::_Species& entry = mixture._getSpecies(i);
        list.push_back({{"name", entry.getSpecies()->getName()},
                        {"massFraction", mixture.getMassFraction(i)},
                        {"T", entry.getT()},
                        {"p", entry.getP()}});
    }
    return list;
}

Json resultsLegend()
{
    Json legend = stationLegend();
    legend["engine"] = {{"cstar", "m/s"},
                        {"stagnationPressure", "Pa"},
                        {"throatMassFlux", "kg/(m^2 s)"},
                        {"PaCrit", "Pa"},
                        {"Is", "m/s"},
                        {"pressure", "Pa"},
                        {"p", "Pa"},
                        {"T", "K"}};
    legend["input"] = {
        {"pressure", "Pa"}, {"H", "J/mol"}, {"MW", "kg/mol"}, {"T", "K"}, {"p", "Pa"}};
    return legend;
}

std::string textOf(const Json& results)
{
    // A name that is no UTF-8 must not cost the results.
    return results.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

Json resultsOf(TheoreticalPerformance& performance, const std::string& document,
               const Certificate& certificate, bool transport)
{
    Json results = resultsHead(performance, document);
    const reaction::Equilibrium& problem = performance.getChamber()
                                               ? *performance.getChamber()->getReaction()
                                               : *performance.getEquilibrium();
    results["process"] = processNames[problem.getProcessType()];
    results["optimized"] = performance.isOptimized();
    results["engine"] = engineOf(performance);
    results["stations"] = stationsOf(performance, transport);
    results["certificate"] = certificate.results;
    results["units"] = resultsLegend();
    return results;
}

} // namespace host
