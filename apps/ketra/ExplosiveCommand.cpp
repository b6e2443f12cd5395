#include "ExplosiveCommand.h"
#include "Explosion.h"
#include "Failure.h"
#include "HeldMessages.h"
#include "Output.h"
#include "Results.h"
#include "SpeciesText.h"
#include "Table.h"

#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Mixture.h>

namespace host {
namespace {

constexpr double leastShown = 0.0005; // mol per kg of sample

void requireSense(const ExplosiveOptions& options)
{
    requirePositive("--density", options.density, "kg/m^3");
    requirePositive("--temperature", temperatureOf(options), "K");
    if (!isExact(options) && !options.replacements.empty())
        throw Failure(USAGE, "--replace: products are replaced in the exact method only");
}

void requireReplacements(const ExplosiveOptions& options)
{
    if (!isExact(options)) return;
    for (const std::string& text : options.replacements) {
        requireKnown(text.substr(0, text.find('=')));
        requireKnown(text.substr(text.find('=') + 1));
    }
}

std::string headOf(const ExplosiveOptions& options, const Explosion& explosion)
{
    char line[200];
    std::string text;
    const auto row = [&](const char* name, double value, const char* unit) {
        std::snprintf(line, sizeof line, "%-20s %12.3f %s\n", name, value, unit);
        text += line;
    };
    row("Heat of explosion", explosion.getHeat() / 1000.0, "kJ/kg");
    row("Loading density", options.density, "kg/m^3");
    if (isExact(options)) {
        row("Products taken at", explosion.getTemperature(), "K");
        row("and cooled to", thermo::referenceTemperature, "K");
    } else {
        row("Argon before", explosion.getTemperature(), "K");
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
        table.add({name, explosion.finalOf(name), amount, product["moleFraction"].get<double>(),
                   product["massFraction"].get<double>()});
    }
    return table.text();
}

Json productsOf(const Explosion& explosion)
{
    const Composition composition = explosion.composition();
    Json list = compositionOf(composition.getMixture());
    for (Json& product : list) {
        product["amount"] = explosion.amount(product["massFraction"], product["M"]);
        product["finalState"] = explosion.finalOf(product["name"]);
    }
    return list;
}

std::string jsonOf(const ExplosiveOptions& options, const Explosion& explosion,
                   const Certificate& certificate)
{
    const ExplosiveSample& sample = explosion.getSample();
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
                    {"heatOfExplosion", explosion.getHeat()},
                    {"density", options.density},
                    {"temperature", explosion.getTemperature()},
                    {"replacements", explosion.getReplacements()},
                    {"included", options.sample.included},
                    {"omitted", options.sample.omitted},
                    {"temperatureRise", nullptr},
                    {"cv", nullptr},
                    {"products", productsOf(explosion)},
                    {"certificate", certificate.results}};
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
    SampleSource source("explosive", options.sample);
    Session session(options.session);
    requireReplacements(options);
    ExplosiveSample sample = source.take();
    HeldMessages messages(session.reports());
    const Explosion explosion(options, std::move(sample));
    const Certificate certificate = certificateOf(explosion.burnt());
    requireGrade(certificate, subjectOf(options.sample), options.sample.reading.strict);
    messages.recovered();
    if (options.json != "-")
        writeToStandardOutput(session.withLineEnds(headOf(options, explosion) + tableOf(explosion) +
                                                   "\n" + certificate.line() + "\n"));
    if (!options.json.empty()) writeToFile(options.json, jsonOf(options, explosion, certificate));
    session.finish();
    return GOOD;
}

} // namespace host
