#include "Explosion.h"
#include "ConstantVolume.h"
#include "Failure.h"
#include "Text.h"

#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/ChemicalFormula.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/util/Log.h>

#include <algorithm>
#include <cmath>

namespace host {
namespace {

// Where the products of explosives of C, H, N and O stop reacting while they cool.
constexpr double freezingTemperature = 1500.0; // K
constexpr double sampleInArgon = 0.001;        // kg per kg of load, of the inert diluent method
constexpr double balanceBand = 0.01;           // of an element of the sample, relative
constexpr const char* argon = "Ar";

/// Atoms per kg of a mixture, mol, by element.
std::map<thermo::Atom::TYPE, double> elementsOf(const thermo::Mixture& mixture)
{
    const std::unique_ptr<thermo::ChemicalFormula> formula(mixture.copyFormula());
    std::map<thermo::Atom::TYPE, double> elements;
    for (int i = 0; i < static_cast<int>(formula->size()); ++i)
        elements[(*formula)[i]->getType()] += (*formula)[i]->getNumber() / mixture.getMm();
    return elements;
}

/// The sample in argon of \p T, which is a product whatever the user says of the products.
std::unique_ptr<reaction::Equilibrium>
problemInArgon(const ExplosiveSample& sample, thermo::Mixture& load, const SampleOptions& options)
{
    auto problem = std::make_unique<reaction::Equilibrium>(load, sample.multiphase, sample.ions);
    std::vector<std::string> only = options.included, without = options.omitted;
    if (!only.empty() && std::find(only.begin(), only.end(), argon) == only.end())
        only.emplace_back(argon);
    if (std::erase(without, argon) > 0)
        util::Log::warnf("THERMO", "Argon cannot be omitted: it stays among the products%s",
                         util::eol);
    if (!only.empty() || !without.empty()) problem->setSpecies(only, without);
    return problem;
}

} // namespace

bool isExact(const ExplosiveOptions& options) { return options.method == "exact"; }

double temperatureOf(const ExplosiveOptions& options)
{
    return options.temperature.value_or(isExact(options) ? freezingTemperature
                                                         : thermo::referenceTemperature);
}

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

Explosion::Explosion(const ExplosiveOptions& options, ExplosiveSample takenSample)
    : sample(std::move(takenSample)), T(temperatureOf(options)),
      calculation(*sample.mixture, sample.multiphase, sample.ions)
{
    try {
        run(options);
    } catch (...) {
        throw describeException(Stage::SOLVING, subjectOf(options.sample));
    }
    requireBalance();
}

Explosion::~Explosion() = default;

void Explosion::run(const ExplosiveOptions& options)
{
    std::vector<std::string> included = options.sample.included, omitted = options.sample.omitted;
    calculation.setPersistent(!options.sample.reading.literal);
    if (isExact(options)) {
        replacements = replacementsOf(options);
        Q = calculation.runExactMethod(options.density, T, replacements, included, omitted);
        return;
    }
    share = sampleInArgon;
    if (options.sample.reading.literal)
        Q = calculation.runInertDiluentMethod(options.density, T, included, omitted);
    else
        burnInArgon(options);
}

void Explosion::burnInArgon(const ExplosiveOptions& options)
{
    thermo::Mixture load(thermo::_Species::MASS_FRACTION);
    load.addSpecies(argon, T, 1.0 - sampleInArgon);
    load.addMixture(*sample.mixture, sampleInArgon);
    load.checkFractions(/*correct=*/true);
    inArgon = problemInArgon(sample, load, options.sample);
    inArgon->setPersistent(true);
    inArgon->setWarmStart(true);
    inArgonDerivatives =
        solveAtConstantVolume(*inArgon, Kept::ENERGY, 1.0 / options.density,
                              load.getU() / load.getMm(), /*calculateTransport=*/true);
    Q = std::abs(rise()) * cv() / sampleInArgon;
}

const reaction::Equilibrium& Explosion::burnt() const
{
    return inArgon ? *inArgon : *calculation.getReaction();
}

const reaction::Derivatives& Explosion::derivatives() const
{
    return inArgon ? *inArgonDerivatives : *calculation.getDerivatives();
}

double Explosion::rise() const { return burnt().getT() - T; }

double Explosion::cv() const { return derivatives().getCpfr() / derivatives().getGamma(); }

Composition Explosion::composition() const
{
    Station station;
    station.equilibrium = &burnt();
    return Composition(station);
}

/// In a thousandfold of argon the solver's balance of the elements may close without the sample's.
void Explosion::requireBalance() const
{
    const Composition burntComposition = composition();
    auto after = elementsOf(burntComposition.getMixture());
    for (const auto& [element, n] : elementsOf(*sample.mixture)) {
        const double change = after[element] / share / n - 1.0;
        if (!(std::fabs(change) > balanceBand)) continue;
        throw Failure(NOT_CONVERGED,
                      "the products hold " + plainText(std::fabs(100.0 * change)) + " % " +
                          (change < 0.0 ? "less " : "more ") +
                          thermo::ChemicalElement::getName(element) +
                          " than the sample. Name the likely products with --include, or take "
                          "another density");
    }
}

std::string Explosion::finalOf(const std::string& product) const
{
    const auto replaced = replacements.find(product);
    return replaced == replacements.end() ? product : replaced->second;
}

} // namespace host
