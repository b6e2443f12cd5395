#include "PropellantCheck.h"
#include "SpeciesNames.h"
#include "SpeciesText.h"
#include "Text.h"

#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Species.h>
#include <ketra/thermo/input/Ratio.h>
#include <ketra/thermo/input/Temperature.h>

#include <algorithm>
#include <cmath>

namespace host {
namespace {

using libconfig::Setting;
using thermo::input::Ratio;
using thermo::input::Temperature;

constexpr double usualTemperature = 298.15; // K; of a component that states none
constexpr double sumTolerance = 1e-5;       // of fractions; a mixture refuses more

std::string textOf(const Setting& group, const char* key)
{
    std::string text;
    group.lookupValue(key, text);
    return text;
}

double fractionOf(const Setting& component)
{
    double fraction = 0.0;
    component.lookupValue("massFraction", fraction);
    return fraction;
}

/// The temperature a component states, K; 0 if it states none.
double temperatureOf(const Setting& component)
{
    if (!component.exists("T")) return 0.0;
    double value = 0.0;
    component["T"].lookupValue("value", value);
    const std::string unit = textOf(component["T"], "unit");
    return Temperature::convert(
        value, unit.empty() ? Temperature::K : Temperature::rawToUnit(unit.c_str()),
        Temperature::K);
}

bool hasDataAt(const thermo::Species& species, double T)
try {
    species.getT(T);
    return true;
} catch (const thermo::Exception&) {
    return false;
}

/// Whether a component can be put in at a temperature, K; 0 if none is stated. A component beside
/// others of its side falls back to a temperature of the species' own; a premixed one does not.
bool canEnter(const thermo::Species& species, double stated, bool premixed)
{
    if (hasDataAt(species, stated > 0.0 ? stated : usualTemperature)) return true;
    return !premixed &&
           (hasDataAt(species, usualTemperature) || hasDataAt(species, species.getT0()));
}

} // namespace

const Setting* PropellantCheck::form() const
{
    const Setting& root = document.root();
    if (!root.exists("propellant")) return nullptr;
    const Setting& propellant = root["propellant"];
    if (propellant.exists("components")) return &propellant["components"];
    return propellant.exists("mixture") ? &propellant["mixture"] : nullptr;
}

void PropellantCheck::checkRecipe()
{
    const Setting* const group = form();
    if (!group) {
        if (document.root().exists("propellant"))
            findings.fail(document.place(document.root()["propellant"]),
                          "neither \"components\" nor \"mixture\" is stated. Write components = { "
                          "ratio = ...; oxidizer = ( ... ); fuel = ( ... ); }; or mixture = { "
                          "species = ( ... ); };");
        return;
    }
    if (std::string(group->getName()) == "mixture") return checkList(*group, "species");
    checkRatio(*group);
    checkList(*group, "oxidizer");
    checkList(*group, "fuel");
}

void PropellantCheck::checkRatio(const Setting& components)
{
    if (!components.exists("ratio")) return;
    const Setting& ratio = components["ratio"];
    const std::string unit = textOf(ratio, "unit");
    if (!unit.empty() && Ratio::rawToUnit(unit.c_str()) == Ratio::OPTIMAL) return;
    double value = 0.0;
    ratio.lookupValue("value", value);
    if (!(value > 0.0))
        findings.fail(document.place(ratio), "the ratio is " + plainText(value) +
                                                 "; it must be above 0. For one component alone "
                                                 "use propellant.mixture");
}

void PropellantCheck::checkList(const Setting& group, const char* key)
{
    if (!group.exists(key) || group[key].getLength() == 0) {
        findings.fail(group.exists(key) ? document.place(group[key])
                                        : document.placeOfAbsent(group, key),
                      std::string("no component is stated. Add ") + key +
                          " = ( { name = \"...\"; massFraction = 1.0; } );");
        return;
    }
    const Setting& list = group[key];
    double sum = 0.0;
    for (int i = 0; i < list.getLength(); ++i) {
        if (textOf(list[i], "name").empty())
            findings.fail(document.place(list[i]),
                          "the component has no name. Add name = \"...\";");
        sum += checkFraction(list[i]);
    }
    checkSum(list, sum);
}

double PropellantCheck::checkFraction(const Setting& component)
{
    const double fraction = fractionOf(component);
    if (fraction < 0.0)
        findings.fail(document.place(component["massFraction"]),
                      "a mass fraction of " + plainText(fraction) + "; it must be from 0 to 1");
    else if (fraction == 0.0)
        findings.warn(document.place(component),
                      std::string("the component is left out, since its mass fraction is ") +
                          (component.exists("massFraction") ? "0" : "not stated"));
    return std::max(fraction, 0.0);
}

void PropellantCheck::checkSum(const Setting& list, double sum)
{
    if (std::fabs(1.0 - sum) <= sumTolerance) return;
    std::string what = "the mass fractions add up to " + plainText(sum) + " and not to 1";
    if (sum > 0.0) {
        what += ". Divide each by " + plainText(sum) + ":";
        for (int i = 0; i < list.getLength(); ++i)
            if (fractionOf(list[i]) > 0.0)
                what += " " + textOf(list[i], "name") + " " + plainText(fractionOf(list[i]) / sum);
    }
    findings.fail(document.place(list), what);
}

void PropellantCheck::checkSpecies()
{
    const Setting* const group = form();
    if (!group) return;
    for (const char* key : {"oxidizer", "fuel"})
        if (group->exists(key)) checkNames((*group)[key], /*premixed=*/false);
    if (group->exists("species")) checkNames((*group)["species"], /*premixed=*/true);
}

void PropellantCheck::checkNames(const Setting& list, bool premixed)
{
    for (int i = 0; i < list.getLength(); ++i) {
        const std::string name = textOf(list[i], "name");
        if (name.empty() || !(fractionOf(list[i]) > 0.0)) continue;
        const thermo::Species* const species = speciesOfComponent(name);
        if (!species)
            reportUnknown(list[i], name);
        else if (!canEnter(*species, temperatureOf(list[i]), premixed))
            reportTemperature(list[i], *species);
    }
}

void PropellantCheck::reportUnknown(const Setting& component, const std::string& name)
{
    findings.miss(document.place(component["name"]), unknownSpecies(name));
}

void PropellantCheck::reportTemperature(const Setting& component, const thermo::Species& species)
{
    const double stated = temperatureOf(component);
    const double T = stated > 0.0 ? stated : usualTemperature;
    const double least = species.getMinimalT();
    const double most = isFixed(species) ? least : species.getMaximalT();
    findings.fail(document.place(component),
                  species.getName() + " has no data at " + plainText(T) + " K" +
                      (stated > 0.0 ? "" : ", which stands for a temperature not stated") +
                      ", but " +
                      (isFixed(species) ? "at " + plainText(least)
                                        : "from " + plainText(least) + " to " + plainText(most)) +
                      " K. Write T = { value = " + realText(std::clamp(T, least, most)) +
                      "; unit = \"K\"; };");
}

} // namespace host
