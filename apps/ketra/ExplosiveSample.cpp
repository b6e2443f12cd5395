#include "ExplosiveSample.h"
#include "Failure.h"
#include "SpeciesNames.h"
#include "Text.h"

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/thermo/Propellant.h>
#include <ketra/thermo/Species.h>
#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/GeneralOptions.h>
#include <ketra/thermo/input/Propellant.h>
#include <ketra/thermo/input/Ratio.h>

#include <charconv>
#include <cmath>

namespace host {
namespace {

constexpr double sumTolerance = 1e-5; // of fractions; a mixture refuses more

/// A component as the command line states it.
struct Share {
    std::string name;
    double fraction;
};

[[noreturn]] void refuse(const std::string& recipe, const std::string& why)
{
    throw Failure(USAGE, "--mixture \"" + recipe + "\": " + why);
}

/// Reads "NAME=FRACTION" from the front of \p rest and takes it away. A name can hold commas, but
/// no "=".
Share nextShare(const std::string& recipe, std::string& rest)
{
    const size_t equals = rest.find('=');
    if (equals == std::string::npos || equals == 0)
        refuse(recipe, "\"" + rest + "\" is not of the form NAME=FRACTION");
    Share share{rest.substr(0, equals), 0.0};
    const char* const begin = rest.c_str() + equals + 1;
    const char* const end = rest.c_str() + rest.size();
    const std::from_chars_result number = std::from_chars(begin, end, share.fraction);
    if (number.ec != std::errc() || !(share.fraction > 0.0) || !std::isfinite(share.fraction))
        refuse(recipe, "the mass fraction of " + share.name + " is no number above 0");
    if (number.ptr != end && *number.ptr != ',')
        refuse(recipe, "\"" + std::string(number.ptr) + "\" stands where a comma belongs");
    rest.erase(0, static_cast<size_t>(number.ptr - rest.c_str()) + (number.ptr == end ? 0 : 1));
    if (number.ptr != end && rest.empty()) refuse(recipe, "nothing stands behind the last comma");
    return share;
}

std::vector<Share> sharesOf(const std::string& recipe)
{
    if (recipe.find('=') == std::string::npos) return {{recipe, 1.0}};
    std::vector<Share> shares;
    double sum = 0.0;
    for (std::string rest = recipe; !rest.empty();) {
        shares.push_back(nextShare(recipe, rest));
        sum += shares.back().fraction;
    }
    if (std::fabs(1.0 - sum) > sumTolerance)
        refuse(recipe, "the mass fractions add up to " + plainText(sum) + " and not to 1");
    return shares;
}

/// Adds a component at the pressure at which its enthalpy needs no correction.
void add(thermo::Mixture& mixture, const Share& share)
try {
    const thermo::Species* const species = speciesOfComponent(share.name);
    if (!species) throw Failure(DATA, unknownSpecies(share.name));
    mixture.addSpecies(species, thermo::referenceTemperature,
                       species->isCondensed() ? thermo::referencePressure
                                              : thermo::standardPressure,
                       share.fraction);
} catch (...) {
    throw describeException(Stage::READING, share.name);
}

/// The propellant of a document that is built.
ExplosiveSample sampleOf(const Case& engine)
try {
    performance::TheoreticalPerformance& performance = engine.getPerformance();
    const thermo::input::ConfigFile& config = *performance.getData();
    if (config.getPropellant().getRatioType() == thermo::input::Ratio::OPTIMAL)
        throw Failure(DOCUMENT, engine.getPath() +
                                    ": a sample needs a mixture ratio, and the document leaves it "
                                    "open. State ratio = { value = ...; unit = \"O/F\"; };");
    ExplosiveSample sample;
    if (const thermo::Propellant* const propellant = performance.getPropellant())
        sample.mixture.reset(propellant->getMixture());
    else
        sample.mixture = std::make_unique<thermo::Mixture>(*performance.getMixture());
    sample.multiphase = config.getGeneralOptions().isMultiphase();
    sample.ions = config.getGeneralOptions().isIons();
    sample.document = engine.getPath();
    sample.name = config.getName();
    sample.info = config.getInfo();
    return sample;
} catch (...) {
    throw describeException(Stage::READING, engine.getPath());
}

ExplosiveSample sampleOf(const std::string& recipe)
{
    ExplosiveSample sample;
    sample.mixture = std::make_unique<thermo::Mixture>(thermo::_Species::MASS_FRACTION);
    for (const Share& share : sharesOf(recipe)) add(*sample.mixture, share);
    return sample;
}

} // namespace

SampleSource::SampleSource(const char* command, const SampleOptions& sampleOptions)
    : options(sampleOptions)
{
    if (options.document.empty() == options.mixture.empty())
        throw Failure(USAGE, std::string(command) +
                                 (options.document.empty()
                                      ? ": which one? Name a document, or state --mixture"
                                      : ": a document and --mixture are one sample too many"));
    if (!options.document.empty())
        engine = std::make_unique<Case>(options.document, options.reading);
}

SampleSource::~SampleSource() = default;

ExplosiveSample SampleSource::take()
{
    for (const std::string& name : options.included) requireKnown(name);
    for (const std::string& name : options.omitted) requireKnown(name);
    if (engine) engine->build();
    return engine ? sampleOf(*engine) : sampleOf(options.mixture);
}

void requireKnown(const std::string& name)
{
    if (!thermo::Database::getInstance()->find(name)) throw Failure(DATA, unknownSpecies(name));
}

void requirePositive(const char* option, double value, const char* unit)
{
    if (!(value > 0.0 && std::isfinite(value)))
        throw Failure(USAGE, std::string(option) + " " + plainText(value) + ": a number of " +
                                 unit + " above 0 is needed");
}

} // namespace host
