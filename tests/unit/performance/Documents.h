#pragma once

#include <ketra/thermo/input/Component.h>
#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/Propellant.h>
#include <ketra/thermo/input/Ratio.h>

#include <memory>
#include <string>

namespace ketra_test {

/// One ingredient of a document, at 298.15 K if not told otherwise.
struct Ingredient {
    const char* name;
    double massFraction;
    double T = 298.15; // K
};

inline thermo::input::Component* componentOf(const Ingredient& ingredient)
{
    return new thermo::input::Component(ingredient.name, ingredient.massFraction, ingredient.T);
}

/// A document without nozzle flow, without ions, and with nothing to burn yet.
inline std::unique_ptr<thermo::input::ConfigFile> emptyDocument(double MPa)
{
    auto document = std::make_unique<thermo::input::ConfigFile>();
    document->getGeneralOptions().setIons(false);
    document->getCombustionChamberConditions().setPressure(MPa, thermo::input::Pressure::MPA, true);
    document->getNozzleFlowOptions().setCalculateNozzleFlow(false);
    return document;
}

/// One oxidizer and one fuel.
inline std::unique_ptr<thermo::input::ConfigFile>
bipropellantDocument(const Ingredient& oxidizer, const Ingredient& fuel, double ratio,
                     thermo::input::Ratio::UNITS unit, double MPa = 7.0)
{
    auto document = emptyDocument(MPa);
    document->getPropellant().setRatio(ratio, unit);
    document->getPropellant().addOxidizer(componentOf(oxidizer));
    document->getPropellant().addFuel(componentOf(fuel));
    return document;
}

/// A premixed charge.
inline std::unique_ptr<thermo::input::ConfigFile>
mixtureDocument(std::initializer_list<Ingredient> ingredients, double MPa = 7.0)
{
    auto document = emptyDocument(MPa);
    document->getPropellant().setRatio(0.0, thermo::input::Ratio::MIXTURE);
    for (const Ingredient& ingredient : ingredients)
        document->getPropellant().addSpecies(componentOf(ingredient));
    return document;
}

} // namespace ketra_test
