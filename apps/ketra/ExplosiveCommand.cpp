#include "ExplosiveCommand.h"
#include "ExplosiveSample.h"
#include "Failure.h"
#include "HeldMessages.h"
#include "Output.h"
#include "Results.h"
#include "SpeciesNames.h"
#include "SpeciesText.h"
#include "Table.h"
#include "Text.h"

#include <ketra/explosion/HeatOfExplosion.h>
#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/ChemicalFormula.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/thermo/Species.h>

#include <cmath>
#include <map>
#include <memory>

namespace host {
namespace {

using explosion::HeatOfExplosion;

// Where the products of explosives of C, H, N and O stop reacting while they cool.
constexpr double freezingTemperature = 1500.0; // K
constexpr double sampleInArgon = 0.001;        // kg per kg of load, of the inert diluent method
constexpr double balanceBand = 0.01;           // of an element of the sample, relative
constexpr double leastShown = 0.0005;          // mol per kg of sample

bool isExact(const ExplosiveOptions& options) { return options.method == "exact"; }

double temperatureOf(const ExplosiveOptions& options)
{
    return options.temperature.value_or(isExact(options) ? freezingTemperature
                                                         : thermo::referenceTemperature);
}

using Replacements = std::map<std::string, std::string>;

/// What stands for which product; water is liquid unless the user says otherwise.
Replacements replacementsOf(const ExplosiveOptions& options)
{
    Replacements replacements;
    for (const std::string& text : options.replacements) {
        const size_t equals = text.find('=');
        if (equals == 0 || equals == std::string::npos || equals + 1 == text.size())
            throw Failure(USAGE, "--replace " + text + ": write PRODUCT=SPECIES, as H2O=H2O(L)");
        if (!replacements.emplace(text.substr(0, equals), text.substr(equals + 1)).second)
            throw Failure(USAGE, "--replace " + text + ": " + text.substr(0, equals) +
                                     " is replaced already");
    }
    replacements.emplace("H2O", "H2O(L)");
    return replacements;
}

void requirePositive(const char* option, double value, const char* unit)
{
    if (!(value > 0.0 && std::isfinite(value)))
        throw Failure(USAGE, std::string(option) + " " + plainText(value) + ": a number of " +
                                 unit + " above 0 is needed");
}

void requireSense(const ExplosiveOptions& options)
{
    if (options.document.empty() == options.mixture.empty())
        throw Failure(USAGE, options.document.empty()
                                 ? "explosive: which one? Name a document, or state --mixture"
                                 : "explosive: a document and --mixture are one sample too many");
    requirePositive("--density", options.density, "kg/m^3");
    requirePositive("--temperature", temperatureOf(options), "K");
    if (!isExact(options) && !options.replacements.empty())
        throw Failure(USAGE, "--replace: products are replaced in the exact method only");
}

void requireKnown(const std::string& name)
{
    if (!thermo::Database::getInstance()->find(name)) throw Failure(DATA, unknownSpecies(name));
}

void requireSpecies(const ExplosiveOptions& options)
{
    for (const std::string& name : options.included) requireKnown(name);
    for (const std::string& name : options.omitted) requireKnown(name);
    if (!isExact(options)) return;
    for (const std::string& text : options.replacements) {
        requireKnown(text.substr(0, text.find('=')));
        requireKnown(text.substr(text.find('=') + 1));
    }
}

ExplosiveSample takeSample(const ExplosiveOptions& options, std::unique_ptr<Case>& engine)
{
    if (!engine) return sampleOf(options.mixture);
    engine->build();
    return sampleOf(*engine);
}

/// A run of one of the two methods, and what it found.
struct Explosion {
    Explosion(const ExplosiveOptions& options, ExplosiveSample takenSample)
        : sample(std::move(takenSample)), T(temperatureOf(options)),
          calculation(*sample.mixture, sample.multiphase, sample.ions)
    {
        std::vector<std::string> included = options.included, omitted = options.omitted;
        if (isExact(options)) {
            replacements = replacementsOf(options);
            Q = calculation.runExactMethod(options.density, T, replacements, included, omitted);
        } else {
            Q = calculation.runInertDiluentMethod(options.density, T, included, omitted);
            share = sampleInArgon;
        }
    }

    const reaction::Equilibrium& burnt() const { return *calculation.getReaction(); }
    /// Of the inert diluent method.
    double rise() const { return burnt().getT() - T; }
    /// Heat capacity of its gas at constant volume, J/(kg K).
    double cv() const
    {
        const reaction::Derivatives& gas = *calculation.getDerivatives();
        return gas.getCpfr() / gas.getGamma();
    }
    Composition composition() const
    {
        Station station;
        station.equilibrium = &burnt();
        return Composition(station);
    }
    /// Moles per kg of sample of a product with that share of the mass.
    double amount(double massFraction, double M) const { return massFraction / M / share; }

    ExplosiveSample sample;
    double T; // K
    HeatOfExplosion calculation;
    Replacements replacements;
    double Q = 0.0;     // J/kg
    double share = 1.0; // of the sample in what burns, by mass
};

Explosion run(const ExplosiveOptions& options, ExplosiveSample sample)
{
    const std::string subject = sample.document.empty() ? options.mixture : sample.document;
    try {
        return Explosion(options, std::move(sample));
    } catch (...) {
        throw describeException(Stage::SOLVING, subject);
    }
}

/// Atoms per kg of a mixture, mol, by element.
std::map<thermo::Atom::TYPE, double> elementsOf(const thermo::Mixture& mixture)
{
    const std::unique_ptr<thermo::ChemicalFormula> formula(mixture.copyFormula());
    std::map<thermo::Atom::TYPE, double> elements;
    for (int i = 0; i < static_cast<int>(formula->size()); ++i)
        elements[(*formula)[i]->getType()] += (*formula)[i]->getNumber() / mixture.getMm();
    return elements;
}

/// In a thousandfold of argon the solver's balance of the elements may close without the sample's.
void requireBalance(const Explosion& explosion)
{
    const Composition composition = explosion.composition();
    auto after = elementsOf(composition.getMixture());
    for (const auto& [element, n] : elementsOf(*explosion.sample.mixture)) {
        const double change = after[element] / explosion.share / n - 1.0;
        if (!(std::fabs(change) > balanceBand)) continue;
        throw Failure(NOT_CONVERGED,
                      "the products hold " + plainText(std::fabs(100.0 * change)) + " % " +
                          (change < 0.0 ? "less " : "more ") +
                          thermo::ChemicalElement::getName(element) +
                          " than the sample. Name the likely products with --include, or take "
                          "another density");
    }
}

/// The species that stands for a product in the final state.
std::string finalOf(const Explosion& explosion, const std::string& product)
{
    const auto replaced = explosion.replacements.find(product);
    return replaced == explosion.replacements.end() ? product : replaced->second;
}

std::string headOf(const ExplosiveOptions& options, const Explosion& explosion)
{
    char line[200];
    std::string text;
    const auto row = [&](const char* name, double value, const char* unit) {
        std::snprintf(line, sizeof line, "%-20s %12.3f %s\n", name, value, unit);
        text += line;
    };
    row("Heat of explosion", explosion.Q / 1000.0, "kJ/kg");
    row("Loading density", options.density, "kg/m^3");
    if (isExact(options)) {
        row("Products taken at", explosion.T, "K");
        row("and cooled to", thermo::referenceTemperature, "K");
    } else {
        row("Argon before", explosion.T, "K");
        row("Temperature rise", explosion.rise(), "K");
        row("Heat capacity cv", explosion.cv(), "J/(kg K)");
    }
    return text + "\n";
}

std::string tableOf(const Explosion& explosion)
{
    Table table({{"product", {"", 1}, {"", 1}, 0},
                 {"final state", {"", 1}, {"", 1}, 0},
                 {"amount", {"mol/kg", 1}, {"mol/kg", 1}, 4},
                 {"mole fraction", {"", 1}, {"", 1}, 7},
                 {"mass fraction", {"", 1}, {"", 1}, 7}},
                /*inEnglishUnits=*/false);
    const Composition composition = explosion.composition();
    for (const Json& product : compositionOf(composition.getMixture())) {
        const std::string name = product["name"];
        const double amount = explosion.amount(product["massFraction"], product["M"]);
        if (amount < leastShown) continue;
        table.add({name, finalOf(explosion, name), amount, product["moleFraction"].get<double>(),
                   product["massFraction"].get<double>()});
    }
    return table.text();
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

Json productsOf(const Explosion& explosion)
{
    const Composition composition = explosion.composition();
    Json list = compositionOf(composition.getMixture());
    for (Json& product : list) {
        product["amount"] = explosion.amount(product["massFraction"], product["M"]);
        product["finalState"] = finalOf(explosion, product["name"]);
    }
    return list;
}

std::string jsonOf(const ExplosiveOptions& options, const Explosion& explosion)
{
    const ExplosiveSample& sample = explosion.sample;
    const bool fromDocument = !sample.document.empty();
    Json results = {{"program", "ketra"},
                    {"version", KETRA_VERSION},
                    {"document", fromDocument ? Json(sample.document) : Json(nullptr)},
                    {"name", sample.name},
                    {"info", sample.info},
                    {"input",
                     {{"multiphase", sample.multiphase},
                      {"ions", sample.ions},
                      {"reactants", reactantsOf(*sample.mixture)}}},
                    {"method", options.method},
                    {"heatOfExplosion", explosion.Q},
                    {"density", options.density},
                    {"temperature", explosion.T},
                    {"replacements", explosion.replacements},
                    {"included", options.included},
                    {"omitted", options.omitted},
                    {"temperatureRise", nullptr},
                    {"cv", nullptr},
                    {"products", productsOf(explosion)}};
    if (!isExact(options)) {
        results["temperatureRise"] = explosion.rise();
        results["cv"] = explosion.cv();
    }
    results["units"] = {{"heatOfExplosion", "J/kg"},
                        {"density", "kg/m^3"},
                        {"temperature", "K"},
                        {"temperatureRise", "K"},
                        {"cv", "J/(kg K)"},
                        {"amount", "mol/kg"},
                        {"M", "kg/mol"},
                        {"T", "K"},
                        {"p", "Pa"}};
    return textOf(results);
}

} // namespace

ExitCode explode(const ExplosiveOptions& options)
{
    requireSense(options);
    replacementsOf(options);
    std::unique_ptr<Case> engine;
    if (!options.document.empty())
        engine = std::make_unique<Case>(options.document, options.reading);
    Session session(options.session);
    requireSpecies(options);
    ExplosiveSample sample = takeSample(options, engine);
    HeldMessages messages(session.reports());
    const Explosion explosion = run(options, std::move(sample));
    requireBalance(explosion);
    messages.recovered();
    if (options.json != "-")
        writeToStandardOutput(
            session.withLineEnds(headOf(options, explosion) + tableOf(explosion)));
    if (!options.json.empty()) writeToFile(options.json, jsonOf(options, explosion));
    session.finish();
    return GOOD;
}

} // namespace host
