#include "SpeciesNames.h"
#include "Nearest.h"
#include "Text.h"

#include <ketra/thermo/Database.h>
#include <ketra/thermo/Species.h>

#include <algorithm>
#include <vector>

namespace host {
namespace {

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

const thermo::Species* speciesOfComponent(const std::string& name)
{
    const thermo::Database& database = *thermo::Database::getInstance();
    if (const thermo::Species* const species = database.find(name)) return species;
    const std::string crystal = genericCrystal(name);
    return crystal.empty() ? nullptr : database.find(crystal);
}

std::string unknownSpecies(const std::string& name)
{
    const std::vector<std::string> near = suggestions(name);
    return "\"" + name + "\" is no species of the database. " +
           (near.empty() ? "\"ketra species\" lists them"
                         : "Did you mean " + quotedChoice(near) + "?");
}

} // namespace host
