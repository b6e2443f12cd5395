#include "Results.h"
#include "SpeciesText.h"

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/reaction/ReactingMixture.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/thermo/Propellant.h>
#include <ketra/thermo/Species.h>
#include <ketra/thermo/input/CombustionChamberConditions.h>
#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/GeneralOptions.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

namespace host {
namespace {

using Json = nlohmann::ordered_json; // keys stay in the order of writing
using reaction::Derivatives;
using reaction::Equilibrium;

/// A number of the state: its key, what it is, its unit and where it comes from.
struct Quantity {
    const char* key;
    const char* name;
    const char* unit;
    double (*value)(const Equilibrium&, const Derivatives&);
};

// clang-format off
constexpr Quantity quantities[] = {
    {"T", "temperature", "K", [](const Equilibrium& e, const Derivatives&) { return e.getT(); }},
    {"p", "pressure", "Pa", [](const Equilibrium&, const Derivatives& d) { return d.getP(); }},
    {"rho", "density", "kg/m^3", [](const Equilibrium&, const Derivatives& d) { return d.getRho(); }},
    {"rhoGas", "mass of gas per volume", "kg/m^3", [](const Equilibrium&, const Derivatives& d) { return d.getRhoGas(); }},
    {"H", "enthalpy", "J/mol", [](const Equilibrium& e, const Derivatives&) { return e.getH(); }},
    {"h", "specific enthalpy", "J/kg", [](const Equilibrium& e, const Derivatives&) { return e.getHspec(); }},
    {"S", "entropy", "J/(mol K)", [](const Equilibrium& e, const Derivatives&) { return e.getS(); }},
    {"s", "specific entropy", "J/(kg K)", [](const Equilibrium& e, const Derivatives&) { return e.getSspec(); }},
    {"U", "internal energy", "J/mol", [](const Equilibrium& e, const Derivatives&) { return e.getU(); }},
    {"u", "specific internal energy", "J/kg", [](const Equilibrium& e, const Derivatives&) { return e.getUspec(); }},
    {"G", "Gibbs energy", "J/mol", [](const Equilibrium& e, const Derivatives&) { return e.getG(); }},
    {"g", "specific Gibbs energy", "J/kg", [](const Equilibrium& e, const Derivatives&) { return e.getGspec(); }},
    {"M", "molar mass of the gas", "kg/mol", [](const Equilibrium&, const Derivatives& d) { return d.getMm2(); }},
    {"MW", "molar mass of the products", "kg/mol", [](const Equilibrium&, const Derivatives& d) { return d.getMm(); }},
    {"Cp", "equilibrium heat capacity at constant pressure", "J/(mol K)", [](const Equilibrium&, const Derivatives& d) { return d.getCp(); }},
    {"cp", "specific equilibrium heat capacity at constant pressure", "J/(kg K)", [](const Equilibrium&, const Derivatives& d) { return d.getCp_spec(); }},
    {"Cv", "equilibrium heat capacity at constant volume", "J/(mol K)", [](const Equilibrium&, const Derivatives& d) { return d.getCv(); }},
    {"cv", "specific equilibrium heat capacity at constant volume", "J/(kg K)", [](const Equilibrium&, const Derivatives& d) { return d.getCv_spec(); }},
    {"gamma", "ratio of heat capacities", "1", [](const Equilibrium&, const Derivatives& d) { return d.getGamma(); }},
    {"k", "isentropic exponent", "1", [](const Equilibrium&, const Derivatives& d) { return d.getK(); }},
    {"a", "speed of sound", "m/s", [](const Equilibrium&, const Derivatives& d) { return d.getA(); }},
    {"R", "gas constant of the gas", "J/(kg K)", [](const Equilibrium&, const Derivatives& d) { return d.getR_spec(); }},
    {"z", "mass fraction of condensed phases", "1", [](const Equilibrium&, const Derivatives& d) { return d.getZ(); }},
    {"dlnV_dlnT", "(d ln V / d ln T) at constant pressure", "1", [](const Equilibrium&, const Derivatives& d) { return d.get_d_lnV_d_lnT(); }},
    {"dlnV_dlnp", "(d ln V / d ln p) at constant temperature", "1", [](const Equilibrium&, const Derivatives& d) { return d.get_d_lnV_d_lnp(); }},
    {"dlnp_dlnT", "(d ln p / d ln T) along an isentrope", "1", [](const Equilibrium&, const Derivatives& d) { return d.get_d_lnp_d_lnT(); }},
    {"alpha_p", "coefficient of volume expansion", "1/K", [](const Equilibrium&, const Derivatives& d) { return d.getAlpha_p(); }},
    {"beta_T", "isothermal compressibility", "1/Pa", [](const Equilibrium&, const Derivatives& d) { return d.getBetta_t(); }},
    {"gamma_V", "pressure coefficient at constant volume", "1/K", [](const Equilibrium&, const Derivatives& d) { return d.getGamma_v(); }},
};
// clang-format on

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

Json inputOf(performance::TheoreticalPerformance& performance)
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

Json stateOf(const Equilibrium& equilibrium, const Derivatives& derivatives)
{
    Json state;
    for (const Quantity& q : quantities) state[q.key] = q.value(equilibrium, derivatives);
    return state;
}

Json legend()
{
    Json units;
    for (const Quantity& q : quantities) units[q.key] = {{"name", q.name}, {"unit", q.unit}};
    return units;
}

/// The products, the most plentiful first.
Json compositionOf(const Equilibrium& equilibrium)
{
    const std::unique_ptr<reaction::ReactingMixture> products(
        equilibrium.copyReactingMixture(/*condensed=*/true, /*ions=*/true));
    const std::unique_ptr<thermo::Mixture> mixture(products->copyResultingMixture());
    std::vector<int> order(static_cast<std::size_t>(mixture->size()));
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&mixture](int a, int b) {
        return mixture->getMolarFraction(a) > mixture->getMolarFraction(b);
    });
    Json list = Json::array();
    for (const int i : order) {
        const thermo::Species& species = *mixture->getSpecies(i);
        list.push_back({{"name", species.getName()},
                        {"phase", phaseOf(species)},
                        {"condensed", species.isCondensed()},
                        {"charge", chargeOf(species)},
                        {"M", species.getM() / 1000},
                        {"moleFraction", mixture->getMolarFraction(i)},
                        {"massFraction", mixture->getMassFraction(i)}});
    }
    return list;
}

} // namespace

std::string resultsAsJson(performance::TheoreticalPerformance& performance,
                          const std::string& document)
{
    const Equilibrium& equilibrium = *performance.getEquilibrium();
    const Derivatives& derivatives = *performance.getDerivatives();
    const Json results = {
        {"program", "ketra"},
        {"version", KETRA_VERSION},
        {"document", document},
        {"name", performance.getData()->getName()},
        {"info", performance.getData()->getInfo()},
        {"input", inputOf(performance)},
        {"process", processNames[equilibrium.getProcessType()]},
        {"state", stateOf(equilibrium, derivatives)},
        {"composition", compositionOf(equilibrium)},
        {"units",
         {{"state", legend()},
          {"input",
           {{"pressure", "Pa"}, {"H", "J/mol"}, {"MW", "kg/mol"}, {"T", "K"}, {"p", "Pa"}}},
          {"composition", {{"M", "kg/mol"}, {"charge", "elementary charges"}}}}},
    };
    // A name that is no UTF-8 must not cost the results.
    return results.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace host
