#include <ketra/explosion/HeatOfExplosion.h>

#include <ketra/performance/equilibrium/Combustor.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/thermo/Propellant.h>
#include <ketra/util/Log.h>

#include <algorithm>
#include <cmath>

namespace explosion {

using performance::equilibrium::Combustor;
using reaction::Derivatives;
using reaction::Equilibrium;
using thermo::Mixture;

namespace {

constexpr double sampleShare = 0.001;     // mass fraction of the sample in argon
constexpr double samplesPerLoad = 1000.0; // its reciprocal
constexpr const char* argon = "Ar";

/// What \p calculation returns. A failure of the solver passes as it is; any other one, of the
/// linear algebra for instance, is one of this calculation: code 0 after the line \p message.
template <class Calculation> auto orFail(Calculation calculation, const char* message)
{
    try {
        return calculation();
    } catch (const thermo::Exception&) {
        throw;
    } catch (...) {
        util::Log::errorf("THERMO", "%s%s", message, util::eol);
        throw thermo::Exception(0);
    }
}

/// Internal energy of a mixture, J/kg.
double Uspec(const Mixture& mixture) { return mixture.getU() / mixture.getMm(); }

/// Puts other species into the place of products; what cannot be replaced stays.
void replaceProducts(Mixture& products, const std::map<std::string, std::string>& replacements)
{
    for (const auto& [product, replacement] : replacements) {
        try {
            products.replaceSpecies(product, replacement);
        } catch (...) {
            util::Log::warnf("THERMO", "HEX Exact Method: Could not replace %s with %s!%s",
                             product.c_str(), replacement.c_str(), util::eol);
        }
    }
}

/// Argon has to stay among the products of a sample that burns in it.
void keepArgon(std::vector<std::string>& included, std::vector<std::string>& omitted)
{
    if (!included.empty() && std::find(included.begin(), included.end(), argon) == included.end()) {
        included.push_back(argon);
        util::Log::warnf("THERMO",
                         "HEX Inert Diluent Method: \"Ar\" automatically added into the list of "
                         "included species!%s",
                         util::eol);
    }
    if (std::erase(omitted, argon) > 0)
        util::Log::warnf("THERMO",
                         "HEX Inert Diluent Method: \"Ar\" automatically removed into the list of "
                         "omitted species!%s",
                         util::eol);
}

} // namespace

HeatOfExplosion::HeatOfExplosion(std::unique_ptr<Mixture> sample, bool newMultiphase, bool newIons)
    : mixture(std::move(sample)), multiphase(newMultiphase), ions(newIons)
{
}

HeatOfExplosion::HeatOfExplosion(thermo::Propellant& propellant)
    : HeatOfExplosion(propellant, /*multiphase=*/true, /*ions=*/true)
{
}

HeatOfExplosion::HeatOfExplosion(thermo::Propellant& propellant, bool newMultiphase, bool newIons)
    : HeatOfExplosion(std::unique_ptr<Mixture>(propellant.getMixture()), newMultiphase, newIons)
{
}

HeatOfExplosion::HeatOfExplosion(Mixture& sample)
    : HeatOfExplosion(sample, /*multiphase=*/true, /*ions=*/true)
{
}

HeatOfExplosion::HeatOfExplosion(Mixture& sample, bool newMultiphase, bool newIons)
    : HeatOfExplosion(std::make_unique<Mixture>(sample), newMultiphase, newIons)
{
}

HeatOfExplosion::HeatOfExplosion(const HeatOfExplosion& other)
    : mixture(std::make_unique<Mixture>(*other.mixture)), multiphase(other.multiphase),
      ions(other.ions), persistent(other.persistent), reaction(other.reaction),
      derivatives(other.derivatives)
{
}

HeatOfExplosion& HeatOfExplosion::operator=(const HeatOfExplosion& other)
{
    *mixture = *other.mixture;
    multiphase = other.multiphase;
    ions = other.ions;
    persistent = other.persistent;
    derivatives = other.derivatives;
    reaction = other.reaction;
    return *this;
}

HeatOfExplosion::~HeatOfExplosion() = default;

void HeatOfExplosion::startRun()
{
    derivatives.reset();
    reaction.reset();
    mixture->checkFractions(/*correct=*/true);
}

void HeatOfExplosion::pose(Mixture& charge)
{
    reaction = std::make_shared<Equilibrium>(charge, multiphase, ions);
    reaction->setPersistent(persistent);
}

double HeatOfExplosion::runExactMethod(double rho, double T,
                                       std::map<std::string, std::string>& replacements,
                                       std::vector<std::string>& included,
                                       std::vector<std::string>& omitted)
{
    startRun();
    pose(*mixture);
    reaction->setVT(1.0 / rho, T);
    reaction->setSpecies(included, omitted);
    // The temperature stays fixed: the products are those of T, not of the adiabatic flame.
    orFail(
        [&] {
            return std::unique_ptr<Derivatives>(Combustor::solveReaction(
                reaction.get(), 1.0, /*expectCondensed=*/false, /*calculateTransport=*/true));
        },
        "HEX Exact Method: Could not find heat of explosion.");

    // The entries of the final state are products of this copy.
    const std::unique_ptr<reaction::ReactingMixture> burnt(
        reaction->copyReactingMixture(/*condensed=*/true, /*ions=*/true));
    const std::unique_ptr<Mixture> products(burnt->copyResultingMixture());
    products->setT(thermo::referenceTemperature, /*clamp=*/true);
    if (replacements.try_emplace("H2O", "H2O(L)").second)
        util::Log::warnf("THERMO",
                         "HEX Exact Method: Automatically added replacement H2O -> H2O(L)!%s",
                         util::eol);
    replaceProducts(*products, replacements);
    products->checkFractions(/*correct=*/true);
    return std::abs(Uspec(*products) - Uspec(*mixture));
}

double HeatOfExplosion::runExactMethod(double rho, double T,
                                       std::map<std::string, std::string>& replacements)
{
    std::vector<std::string> included, omitted;
    return runExactMethod(rho, T, replacements, included, omitted);
}

double HeatOfExplosion::runExactMethod(double rho, double T)
{
    std::map<std::string, std::string> replacements;
    return runExactMethod(rho, T, replacements);
}

double HeatOfExplosion::runInertDiluentMethod(double rho, double T,
                                              std::vector<std::string>& included,
                                              std::vector<std::string>& omitted)
{
    startRun();
    Mixture load(thermo::_Species::MASS_FRACTION);
    load.addSpecies(argon, T, 1.0 - sampleShare);
    load.addMixture(*mixture, sampleShare);
    load.checkFractions(/*correct=*/true);
    pose(load);
    reaction->setVU(1.0 / rho, load.getU());
    if (included.empty() && omitted.empty()) {
        util::Log::warnf("THERMO",
                         "HEX Inert Diluent Method: Included or omitted species are not defined.%s",
                         util::eol);
    } else {
        std::vector<std::string> only(included), without(omitted);
        keepArgon(only, without);
        reaction->setSpecies(only, without);
    }
    return orFail([&] { return burnInArgon(T); },
                  "HEX Inert Diluent Method: Could not find heat of explosion.");
}

double HeatOfExplosion::runInertDiluentMethod(double rho, double T)
{
    std::vector<std::string> included, omitted;
    return runInertDiluentMethod(rho, T, included, omitted);
}

// The transport properties are wanted for the frozen heat capacity; divided by gamma it is the heat
// capacity of the gas at constant volume, J/(kg K).
double HeatOfExplosion::burnInArgon(double T)
{
    derivatives.reset(Combustor::solveReaction(reaction.get(), 1.0, /*expectCondensed=*/false,
                                               /*calculateTransport=*/true));
    return std::abs((reaction->getT() - T) * derivatives->getCpfr() * samplesPerLoad /
                    derivatives->getGamma());
}

} // namespace explosion
