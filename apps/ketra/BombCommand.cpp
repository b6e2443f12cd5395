#include "BombCommand.h"
#include "Certificate.h"
#include "Columns.h"
#include "ConstantVolume.h"
#include "Failure.h"
#include "HeldMessages.h"
#include "Output.h"
#include "Results.h"

#include <ketra/performance/equilibrium/Combustor.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Mixture.h>

#include <cstdio>

namespace host {
namespace {

constexpr double leastShown = 1e-6;             // mole fraction
constexpr double joulesPerBtuPerPound = 2326.0; // J/kg in 1 Btu/lbm

/// The charge and what has become of it.
class Vessel
{
public:
    Vessel(const BombOptions& options, ExplosiveSample takenSample)
        : sample(std::move(takenSample)), rho(options.density),
          energy(sample.mixture->getU() / sample.mixture->getMm()),
          products(std::make_unique<reaction::Equilibrium>(*sample.mixture, sample.multiphase,
                                                           sample.ions))
    {
        std::vector<std::string> included = options.sample.included,
                                 omitted = options.sample.omitted;
        if (!included.empty() || !omitted.empty()) products->setSpecies(included, omitted);
        if (options.sample.reading.literal)
            burnLiterally();
        else
            burn();
    }

    Station station() const { return stationOf(*products, *derivatives); }
    const ExplosiveSample& getSample() const { return sample; }
    double getDensity() const { return rho; }
    double getEnergy() const { return energy; } ///< of the charge, J/kg
    double productEnergy() const { return internalEnergyOf(*products); }
    double p() const { return derivatives->getP(); }
    Certificate certify() const { return certificateOf(*products); }
    double condensed() const { return derivatives->getZ(); }
    /// Work that a kg of charge could do against a constant pressure, J/kg: n R T of the gas.
    double force() const { return p() / rho; }

private:
    void burn()
    {
        products->setPersistent(true);
        products->setWarmStart(true);
        derivatives = solveAtConstantVolume(*products, Kept::ENERGY, 1.0 / rho, energy,
                                            /*calculateTransport=*/false);
    }

    void burnLiterally()
    {
        products->setVU(1.0 / rho, sample.mixture->getU());
        derivatives.reset(performance::equilibrium::Combustor::solveReaction(
            products.get(), 1.0, /*expectCondensed=*/false, /*calculateTransport=*/false));
    }

    ExplosiveSample sample;
    double rho;    // kg/m^3
    double energy; // J/kg
    std::unique_ptr<reaction::Equilibrium> products;
    std::unique_ptr<reaction::Derivatives> derivatives; // refer to the products
};

Vessel burnt(const BombOptions& options, ExplosiveSample sample)
{
    try {
        return {options, std::move(sample)};
    } catch (...) {
        throw describeException(Stage::SOLVING, subjectOf(options.sample));
    }
}

Column energyColumn(const std::string& name)
{
    return {name, {"kJ/kg", 1e-3}, {"Btu/lbm", 1 / joulesPerBtuPerPound}, 3};
}

std::string headOf(const Vessel& vessel, bool english)
{
    const Station station = vessel.station();
    std::string text;
    const auto row = [&](const Column& column, double value) {
        const Scale& scale = english ? column.english : column.si;
        char line[200];
        std::snprintf(line, sizeof line, "%-28s %14.*f %s", column.name.c_str(), column.decimals,
                      value * scale.factor, scale.unit);
        text += line;
        text.erase(text.find_last_not_of(' ') + 1);
        text += "\n";
    };
    row(densityColumn("Loading density"), vessel.getDensity());
    row(energyColumn("Internal energy"), vessel.getEnergy());
    row(temperatureColumn("Temperature"), station.T());
    row(pressureColumn("Pressure"), vessel.p());
    row(energyColumn("Force n R T"), vessel.force());
    row(molarMassColumn("Molar mass of the gas"), station.M());
    row(plainColumn("Ratio of heat capacities", 5), station.gamma());
    row(plainColumn("Condensed mass fraction", 5), vessel.condensed());
    return text + "\n";
}

std::string tableOf(const Vessel& vessel)
{
    Table table({plainColumn("product", 0), plainColumn("phase", 0),
                 Column{"amount", {"mol/kg", 1}, {"mol/kg", 1}, 4}, plainColumn("mole fraction", 7),
                 plainColumn("mass fraction", 7)},
                /*inEnglishUnits=*/false);
    const Composition composition(vessel.station());
    for (const Json& product : compositionOf(composition.getMixture())) {
        const double x = product["moleFraction"], y = product["massFraction"], M = product["M"];
        if (x < leastShown) continue;
        table.add(
            {product["name"].get<std::string>(), product["phase"].get<std::string>(), y / M, x, y});
    }
    return table.text();
}

/// The station, with the energy that the products have: see `internalEnergyOf`.
Json stationJson(const Vessel& vessel)
{
    Json station = stationResults(vessel.station(), /*transport=*/false);
    Json& state = station["state"];
    state["u"] = vessel.productEnergy();
    state["U"] = vessel.productEnergy() * state["MW"].get<double>();
    return station;
}

std::string jsonOf(const BombOptions& options, const Vessel& vessel, const Certificate& certificate)
try {
    const ExplosiveSample& sample = vessel.getSample();
    Json results = {{"program", "ketra"},
                    {"version", KETRA_VERSION},
                    {"document", sample.document.empty() ? Json(nullptr) : Json(sample.document)},
                    {"name", sample.name},
                    {"info", sample.info},
                    {"input",
                     {{"multiphase", sample.multiphase},
                      {"ions", sample.ions},
                      {"reactants", reactantsOf(*sample.mixture)}}},
                    {"density", vessel.getDensity()},
                    {"energy", vessel.getEnergy()},
                    {"force", vessel.force()},
                    {"included", options.sample.included},
                    {"omitted", options.sample.omitted},
                    {"vessel", stationJson(vessel)},
                    {"certificate", certificate.results}};
    results["units"] = stationLegend();
    results["units"]["density"] = "kg/m^3";
    results["units"]["energy"] = "J/kg";
    results["units"]["force"] = "J/kg";
    results["units"]["input"] = {{"T", "K"}, {"p", "Pa"}};
    return textOf(results);
} catch (...) {
    throw describeException(Stage::WRITING, vessel.getSample().document);
}

} // namespace

ExitCode burnInVessel(const BombOptions& options)
{
    requirePositive("--density", options.density, "kg/m^3");
    SampleSource source("bomb", options.sample);
    Session session(options.session);
    ExplosiveSample sample = source.take();
    HeldMessages messages(session.reports());
    const Vessel vessel = burnt(options, std::move(sample));
    const Certificate certificate = vessel.certify();
    requireGrade(certificate, subjectOf(options.sample), options.sample.reading.strict);
    messages.recovered();
    if (options.json != "-")
        writeToStandardOutput(session.withLineEnds(
            headOf(vessel, options.english) + tableOf(vessel) + "\n" + certificate.line() + "\n"));
    if (!options.json.empty()) writeToFile(options.json, jsonOf(options, vessel, certificate));
    session.finish();
    return GOOD;
}

} // namespace host
