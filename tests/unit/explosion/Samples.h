#pragma once

#include <support/CapturingLogger.h>
#include <support/Reactants.h>

#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/thermo/Species.h>

#include <algorithm>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace ketra_test {

/// Names of products and of the species that stand for them in the final state.
using Replacements = std::map<std::string, std::string>;
using Names = std::vector<std::string>;

inline const thermo::Species& speciesOf(const std::string& name)
{
    const thermo::Species* const found = thermo::Database::getInstance()->find(name);
    if (!found) throw std::runtime_error(name + " is not in the species file");
    return *found;
}

/// A sample of one species at 298.15 K, or of several by mass.
inline std::unique_ptr<thermo::Mixture> sampleOf(const std::string& name)
{
    useShippedSpecies();
    return mixtureOf({{name, 298.15, 1.0}});
}
inline std::unique_ptr<thermo::Mixture> sampleOf(const std::vector<Reactant>& reactants)
{
    useShippedSpecies();
    return mixtureOf(reactants);
}

/// Internal energy from the record of a species, J/mol: H of a condensed species, H - R T of a gas.
/// Where the record does not reach the temperature, its nearest bound counts.
inline double recordedU(const std::string& name, double T)
{
    const thermo::Species& species = speciesOf(name);
    T = std::clamp(T, species.getMinimalT(), species.getMaximalT());
    const double H = species.H0(T);
    return species.isCondensed() ? H : H - thermo::gasConstant * T;
}

/// Internal energy of a sample of one species with an assigned enthalpy, J/kg.
inline double sampleUspec(const std::string& name)
{
    const thermo::Species& species = speciesOf(name);
    return species.H0(species.getT0()) / (species.getM() / 1000.0);
}

/// The products of a solved problem, mol per mole of products, by name.
inline std::map<std::string, double> productsOf(const reaction::Equilibrium& solved)
{
    const std::unique_ptr<reaction::ReactingMixture> burnt(solved.copyReactingMixture(true, true));
    const std::unique_ptr<thermo::Mixture> mixture(burnt->copyResultingMixture());
    mixture->checkFractions(true);
    std::map<std::string, double> amounts;
    for (int i = 0; i < mixture->size(); ++i)
        amounts[mixture->getSpecies(i)->getName()] += mixture->getMolarFraction(i);
    return amounts;
}

/// Internal energy of the products at 298.15 K, J/kg, summed up species by species; those that
/// \p finalState names are counted as the species that it gives.
inline double productsUspec(const reaction::Equilibrium& solved, const Replacements& finalState)
{
    double U = 0.0, mass = 0.0;
    for (const auto& [name, n] : productsOf(solved)) {
        const auto replaced = finalState.find(name);
        const std::string& counted = replaced == finalState.end() ? name : replaced->second;
        U += n * recordedU(counted, 298.15);
        mass += n * speciesOf(name).getM() / 1000.0;
    }
    return U / mass;
}

/// The warnings of this calculation, without those of the species.
inline Names ownWarnings(const LogCapture& capture)
{
    Names own;
    for (const std::string& text : capture.warnings())
        if (text.rfind("HEX ", 0) == 0) own.push_back(text);
    return own;
}

} // namespace ketra_test
