#include "PropellantCheck.h"
#include "Nearest.h"
#include "SpeciesText.h"
#include "Text.h"

#include <ketra/thermo/Database.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Species.h>
#include <ketra/thermo/input/Ratio.h>
#include <ketra/thermo/input/Temperature.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace host {
namespace {

using libconfig::Setting;
using thermo::input::Ratio;
using thermo::input::Temperature;

constexpr double usualTemperature = 298.15; // K; of a component that states none
constexpr double sumTolerance = 1e-5;       // of fractions; a mixture refuses more
constexpr size_t mostSuggestions = 4;

/// What people call a substance, and its name among the species.
constexpr const char* trivialNames[][2] = {
    {"LOX", "O2(L)"},           {"LO2", "O2(L)"},       {"GOX", "O2"},
    {"LH2", "H2(L)"},           {"GH2", "H2"},          {"LCH4", "CH4(L)"},
    {"LNG", "CH4(L)"},          {"Kerosene", "RP-1"},   {"MMH", "CH6N2(L)"},
    {"UDMH", "C2H8N2(L),UDMH"}, {"NTO", "N2O4(L)"},     {"Hydrazine", "N2H4(L)"},
    {"HTP", "H2O2(L)"},         {"AP", "NH4CLO4(I)"},   {"AN", "NH4NO3(IV)"},
    {"Aluminium", "AL(cr)"},    {"Aluminum", "AL(cr)"}, {"Water", "H2O(L)"},
};

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

/// The generic crystal's name that stands in for a form of it, as "NH4CLO4(cr)" for "NH4CLO4(a)";
/// empty for any other name.
std::string genericCrystal(const std::string& name)
{
    const size_t open = name.rfind('(');
    if (open == std::string::npos || name.back() != ')' || open + 2 >= name.size()) return {};
    const std::string form = name.substr(open + 1, name.size() - open - 2);
    return form.find_first_not_of("IVabc") == std::string::npos ? name.substr(0, open) + "(cr)"
                                                                : std::string();
}

/// Whether a name is the substance \p stem itself, or the substance with a phase behind it, as
/// "AL(cr)" but not "AL(OH)2".
bool isPhaseOf(const std::string& name, const std::string& stem)
{
    const size_t open = name.find('(');
    return lowered(name.substr(0, open)) == stem &&
           (open == std::string::npos || name.find(')') == name.size() - 1);
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

/// Names the writer may have meant, the likeliest first.
std::vector<std::string> suggestions(const std::string& name)
{
    thermo::Database& database = *thermo::Database::getInstance();
    std::vector<std::string> result;
    const auto add = [&result](const std::string& candidate) {
        if (std::find(result.begin(), result.end(), candidate) == result.end())
            result.push_back(candidate);
    };
    for (const auto& [trivial, proper] : trivialNames)
        if (lowered(name) == lowered(trivial) && database.find(proper)) add(proper);

    std::vector<std::string> all;
    for (unsigned i = 0; i < database.size(); ++i) all.push_back(database[i]->getName());
    const std::string stem = lowered(name.substr(0, name.find('(')));
    for (const std::string& candidate : all)
        if (isPhaseOf(candidate, stem)) add(candidate);
    for (const std::string& candidate : nearest(name, all, mostSuggestions)) add(candidate);
    for (const std::string& candidate : all)
        if (stem.size() > 2 && lowered(candidate).find(stem) != std::string::npos) add(candidate);
    if (result.size() > mostSuggestions) result.resize(mostSuggestions);
    return result;
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
        const thermo::Database& database = *thermo::Database::getInstance();
        const std::string crystal = genericCrystal(name);
        const thermo::Species* species = database.find(name);
        if (!species && !crystal.empty()) species = database.find(crystal);
        if (!species)
            reportUnknown(list[i], name);
        else if (!canEnter(*species, temperatureOf(list[i]), premixed))
            reportTemperature(list[i], *species);
    }
}

void PropellantCheck::reportUnknown(const Setting& component, const std::string& name)
{
    const std::vector<std::string> near = suggestions(name);
    findings.miss(document.place(component["name"]),
                  "\"" + name + "\" is no species of the database. " +
                      (near.empty() ? "\"ketra species\" lists them"
                                    : "Did you mean " + quotedChoice(near) + "?"));
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
