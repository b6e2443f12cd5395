#include "StationResults.h"
#include "Certificate.h"
#include "SpeciesText.h"

#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/thermo/Species.h>

#include <algorithm>
#include <numeric>
#include <vector>

namespace host {
namespace {

using reaction::Derivatives;
using reaction::Equilibrium;
using Section = performance::equilibrium::NozzleSectionConditions;

/// A number of the state: its key, what it is, its unit and where it comes from, in equilibrium and
/// in a frozen section. Null where the latter does not tell.
struct Quantity {
    const char* key;
    const char* name;
    const char* unit;
    double (*value)(const Equilibrium&, const Derivatives&);
    double (*frozen)(const Section&);
};

// clang-format off
constexpr Quantity quantities[] = {
    {"T", "temperature", "K",
     [](const Equilibrium& e, const Derivatives&) { return e.getT(); }, [](const Section& s) { return s.getT(); }},
    {"p", "pressure", "Pa",
     [](const Equilibrium&, const Derivatives& d) { return d.getP(); }, [](const Section& s) { return s.getP(); }},
    {"rho", "density", "kg/m^3",
     [](const Equilibrium&, const Derivatives& d) { return d.getRho(); }, [](const Section& s) { return s.getRho(); }},
    {"rhoGas", "mass of gas per volume", "kg/m^3",
     [](const Equilibrium&, const Derivatives& d) { return d.getRhoGas(); }, nullptr},
    {"H", "enthalpy", "J/mol",
     [](const Equilibrium& e, const Derivatives&) { return e.getH(); }, [](const Section& s) { return s.getH(); }},
    {"h", "specific enthalpy", "J/kg",
     [](const Equilibrium& e, const Derivatives&) { return e.getHspec(); }, [](const Section& s) { return s.getH_spec(); }},
    {"S", "entropy", "J/(mol K)",
     [](const Equilibrium& e, const Derivatives&) { return e.getS(); }, [](const Section& s) { return s.getS_spec() * s.getMm(); }},
    {"s", "specific entropy", "J/(kg K)",
     [](const Equilibrium& e, const Derivatives&) { return e.getSspec(); }, [](const Section& s) { return s.getS_spec(); }},
    {"U", "internal energy", "J/mol",
     [](const Equilibrium& e, const Derivatives&) { return e.getU(); }, [](const Section& s) { return s.getU(); }},
    {"u", "specific internal energy", "J/kg",
     [](const Equilibrium& e, const Derivatives&) { return e.getUspec(); }, [](const Section& s) { return s.getU_spec(); }},
    {"G", "Gibbs energy", "J/mol",
     [](const Equilibrium& e, const Derivatives&) { return e.getG(); }, [](const Section& s) { return s.getG(); }},
    {"g", "specific Gibbs energy", "J/kg",
     [](const Equilibrium& e, const Derivatives&) { return e.getGspec(); }, [](const Section& s) { return s.getG_spec(); }},
    {"M", "molar mass of the gas", "kg/mol",
     [](const Equilibrium&, const Derivatives& d) { return d.getMm2(); }, [](const Section& s) { return s.getMm2(); }},
    {"MW", "molar mass of the products", "kg/mol",
     [](const Equilibrium&, const Derivatives& d) { return d.getMm(); }, [](const Section& s) { return s.getMm(); }},
    {"Cp", "equilibrium heat capacity at constant pressure", "J/(mol K)",
     [](const Equilibrium&, const Derivatives& d) { return d.getCp(); }, [](const Section& s) { return s.getCp(); }},
    {"cp", "specific equilibrium heat capacity at constant pressure", "J/(kg K)",
     [](const Equilibrium&, const Derivatives& d) { return d.getCp_spec(); }, [](const Section& s) { return s.getCp_spec(); }},
    {"Cv", "equilibrium heat capacity at constant volume", "J/(mol K)",
     [](const Equilibrium&, const Derivatives& d) { return d.getCv(); }, [](const Section& s) { return s.getCv(); }},
    {"cv", "specific equilibrium heat capacity at constant volume", "J/(kg K)",
     [](const Equilibrium&, const Derivatives& d) { return d.getCv_spec(); }, [](const Section& s) { return s.getCv_spec(); }},
    {"gamma", "ratio of heat capacities", "1",
     [](const Equilibrium&, const Derivatives& d) { return d.getGamma(); }, [](const Section& s) { return s.getGamma(); }},
    {"k", "isentropic exponent", "1",
     [](const Equilibrium&, const Derivatives& d) { return d.getK(); }, [](const Section& s) { return s.getK(); }},
    {"a", "speed of sound", "m/s",
     [](const Equilibrium&, const Derivatives& d) { return d.getA(); }, [](const Section& s) { return s.getA(); }},
    {"R", "gas constant of the gas", "J/(kg K)",
     [](const Equilibrium&, const Derivatives& d) { return d.getR_spec(); }, [](const Section& s) { return s.getR_spec() * s.getMm() / s.getMm2(); }},
    {"z", "mass fraction of condensed phases", "1",
     [](const Equilibrium&, const Derivatives& d) { return d.getZ(); }, nullptr},
    {"dlnV_dlnT", "(d ln V / d ln T) at constant pressure", "1",
     [](const Equilibrium&, const Derivatives& d) { return d.get_d_lnV_d_lnT(); }, nullptr},
    {"dlnV_dlnp", "(d ln V / d ln p) at constant temperature", "1",
     [](const Equilibrium&, const Derivatives& d) { return d.get_d_lnV_d_lnp(); }, nullptr},
    {"dlnp_dlnT", "(d ln p / d ln T) along an isentrope", "1",
     [](const Equilibrium&, const Derivatives& d) { return d.get_d_lnp_d_lnT(); }, nullptr},
    {"alpha_p", "coefficient of volume expansion", "1/K",
     [](const Equilibrium&, const Derivatives& d) { return d.getAlpha_p(); }, nullptr},
    {"beta_T", "isothermal compressibility", "1/Pa",
     [](const Equilibrium&, const Derivatives& d) { return d.getBetta_t(); }, nullptr},
    {"gamma_V", "pressure coefficient at constant volume", "1/K",
     [](const Equilibrium&, const Derivatives& d) { return d.getGamma_v(); }, nullptr},
};

/// A number of the transport properties, likewise.
struct TransportQuantity {
    const char* key;
    const char* name;
    const char* unit;
    double (*value)(const Derivatives&);
    double (*frozen)(const Section&);
};

constexpr TransportQuantity transportQuantities[] = {
    {"viscosity", "viscosity of the gas", "Pa s",
     [](const Derivatives& d) { return d.getV(); }, [](const Section& s) { return s.getV(); }},
    {"conductivityFrozen", "thermal conductivity at fixed composition", "W/(m K)",
     [](const Derivatives& d) { return d.getCfr(); }, [](const Section& s) { return s.getCfr(); }},
    {"cpFrozen", "specific heat capacity of the gas at fixed composition", "J/(kg K)",
     [](const Derivatives& d) { return d.getCpfr(); }, [](const Section& s) { return s.getCpfr(); }},
    {"PrFrozen", "Prandtl number at fixed composition", "1",
     [](const Derivatives& d) { return d.getPrfr(); }, [](const Section& s) { return s.getPrfr(); }},
    {"conductivity", "thermal conductivity with the reactions", "W/(m K)",
     [](const Derivatives& d) { return d.getCeql(); }, [](const Section& s) { return s.getCeql(); }},
    {"cp", "specific heat capacity of the gas with the reactions", "J/(kg K)",
     [](const Derivatives& d) { return d.getCpeql(); }, [](const Section& s) { return s.getCpeql(); }},
    {"Pr", "Prandtl number with the reactions", "1",
     [](const Derivatives& d) { return d.getPreql(); }, [](const Section& s) { return s.getPreql(); }},
};

/// A number of the flow.
struct FlowQuantity {
    const char* key;
    const char* name;
    const char* unit;
    double (*value)(const Station&);
};

constexpr FlowQuantity flowQuantities[] = {
    {"W", "velocity", "m/s", [](const Station& s) { return s.W; }},
    {"Mach", "Mach number", "1", [](const Station& s) { return s.Mach(); }},
    {"pressureRatio", "injection pressure over pressure", "1",
     [](const Station& s) { return s.pressureRatio; }},
    {"massFlux", "mass flux", "kg/(m^2 s)", [](const Station& s) { return s.massFlux(); }},
};
// clang-format on

Json stateOf(const Station& station, const Composition& composition)
{
    Json state;
    for (const Quantity& q : quantities) {
        if (!station.isFrozen())
            state[q.key] = q.value(*station.equilibrium, *station.derivatives);
        else
            state[q.key] = q.frozen ? Json(q.frozen(*station.section)) : Json(nullptr);
    }
    if (station.isFrozen()) {
        const double z = composition.condensedFraction();
        state["z"] = z;
        state["rhoGas"] = station.rho() * (1.0 - z);
    }
    return state;
}

Json flowOf(const Station& station)
{
    Json flow;
    flow["areaRatio"] = station.areaRatio ? Json(*station.areaRatio) : Json(nullptr);
    for (const FlowQuantity& q : flowQuantities) flow[q.key] = q.value(station);
    return flow;
}

Json transportOf(const Station& station)
{
    Json transport;
    for (const TransportQuantity& q : transportQuantities)
        transport[q.key] =
            station.isFrozen() ? q.frozen(*station.section) : q.value(*station.derivatives);
    return transport;
}

template <class Quantities> Json legendOf(const Quantities& list)
{
    Json units = Json::object();
    for (const auto& q : list) units[q.key] = {{"name", q.name}, {"unit", q.unit}};
    return units;
}

} // namespace

Json compositionOf(const thermo::Mixture& mixture)
{
    std::vector<int> order(static_cast<std::size_t>(mixture.size()));
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&mixture](int a, int b) {
        return mixture.getMolarFraction(a) > mixture.getMolarFraction(b);
    });
    Json list = Json::array();
    for (const int i : order) {
        const thermo::Species& species = *mixture.getSpecies(i);
        list.push_back({{"name", species.getName()},
                        {"phase", phaseOf(species)},
                        {"condensed", species.isCondensed()},
                        {"charge", chargeOf(species)},
                        {"M", species.getM() / 1000},
                        {"moleFraction", mixture.getMolarFraction(i)},
                        {"massFraction", mixture.getMassFraction(i)}});
    }
    return list;
}

Json stationResults(const Station& station, bool transport)
{
    const Composition composition(station);
    Json results = {
        {"frozen", station.isFrozen()},
        {"state", stateOf(station, composition)},
        {"flow", flowOf(station)},
    };
    if (transport) results["transport"] = transportOf(station);
    results["composition"] = compositionOf(composition.getMixture());
    results["certificate"] =
        station.isFrozen() ? Json(nullptr) : certificateResults(*station.equilibrium);
    return results;
}

Json stationLegend()
{
    Json flow = {{"areaRatio", {{"name", "area over throat area"}, {"unit", "1"}}}};
    flow.update(legendOf(flowQuantities));
    return {{"state", legendOf(quantities)},
            {"flow", std::move(flow)},
            {"transport", legendOf(transportQuantities)},
            {"composition", {{"M", "kg/mol"}, {"charge", "elementary charges"}}}};
}

} // namespace host
