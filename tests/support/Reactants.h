#pragma once

#include <support/MadeUpSpecies.h>

#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Mixture.h>

#include <memory>
#include <string>
#include <vector>

namespace ketra_test {

/// What the database of the process holds at present: true for the shipped species file. Tests of
/// one program may load files of their own; each names the one it needs.
inline bool& shippedSpeciesLoaded()
{
    static bool loaded = false;
    return loaded;
}

/// Loads the shipped species file, at most once as long as no other file takes its place. No
/// properties tables: the enthalpy of a reactant has no pressure term then.
inline void useShippedSpecies()
{
    if (shippedSpeciesLoaded()) return;
    thermo::ChemicalElement::initAtoms();
    thermo::Database::loadDatabase(KETRA_SOURCE_DIR "/resources/thermo.inp", /*clear=*/true);
    shippedSpeciesLoaded() = true;
}

/// Replaces all species of the process by made-up ones.
inline void useSpecies(const std::vector<Record>& products)
{
    const SpeciesFile file(products);
    thermo::ChemicalElement::initAtoms();
    thermo::Database::loadDatabase(file.path.c_str(), /*clear=*/true);
    shippedSpeciesLoaded() = false;
}

/// One component of a charge.
struct Reactant {
    std::string name;
    double T;        // K
    double fraction; // by mass or by moles of the whole
};

inline std::unique_ptr<thermo::Mixture>
mixtureOf(const std::vector<Reactant>& reactants,
          thermo::_Species::FractionType type = thermo::_Species::MASS_FRACTION)
{
    auto mixture = std::make_unique<thermo::Mixture>(type);
    for (const Reactant& reactant : reactants)
        mixture->addSpecies(reactant.name, reactant.T, reactant.fraction);
    return mixture;
}

/// An oxidizer and a fuel at the mass ratio \p km.
inline std::unique_ptr<thermo::Mixture> bipropellant(const Reactant& oxidizer, const Reactant& fuel,
                                                     double km)
{
    return mixtureOf(
        {{fuel.name, fuel.T, 1.0 / (1.0 + km)}, {oxidizer.name, oxidizer.T, km / (1.0 + km)}});
}

/// Liquid oxygen and hydrogen at their boiling points.
inline std::unique_ptr<thermo::Mixture> loxHydrogen(double km)
{
    return bipropellant({"O2(L)", 90.17, 1.0}, {"H2(L)", 20.27, 1.0}, km);
}

/// Liquid oxygen and kerosene.
inline std::unique_ptr<thermo::Mixture> loxKerosene(double km)
{
    return bipropellant({"O2(L)", 90.17, 1.0}, {"RP-1", 298.15, 1.0}, km);
}

/// Nitrogen tetroxide and monomethylhydrazine.
inline std::unique_ptr<thermo::Mixture> ntoMmh(double km)
{
    return bipropellant({"N2O4(L)", 298.15, 1.0}, {"CH6N2(L)", 298.15, 1.0}, km);
}

/// A solid propellant with \p aluminium of the mass, the rest perchlorate and polyethylene 5 to 1.
inline std::unique_ptr<thermo::Mixture> aluminisedSolid(double aluminium)
{
    const double rest = 1.0 - aluminium;
    return mixtureOf({{"NH4CLO4(I)", 298.15, rest * 5.0 / 6.0},
                      {"AL(cr)", 298.15, aluminium},
                      {"(CH2)x(cr)", 298.15, rest / 6.0}});
}

} // namespace ketra_test
