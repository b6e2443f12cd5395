#include "SpeciesCommand.h"
#include "DatabaseSources.h"
#include "Failure.h"
#include "LogSession.h"
#include "Output.h"
#include "Resources.h"
#include "SpeciesText.h"
#include "Text.h"

#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Species.h>

#include <nlohmann/json.hpp>

#include <cstdio>
#include <vector>

#include <fnmatch.h>

namespace host {
namespace {

using thermo::Database;
using thermo::Species;

/// Whether a name holds the pattern, or matches it if it has one of * ? [; case does not count.
bool matches(const std::string& name, const std::string& pattern)
{
    if (pattern.find_first_of("*?[") == std::string::npos)
        return lowered(name).find(lowered(pattern)) != std::string::npos;
    return ::fnmatch(pattern.c_str(), name.c_str(), FNM_CASEFOLD) == 0;
}

std::string fixed(double value, int decimals)
{
    char text[48];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

std::vector<const Species*> select(const std::string& pattern)
{
    std::vector<const Species*> selected;
    Database& database = *Database::getInstance();
    for (unsigned i = 0; i < database.size(); ++i)
        if (matches(database[i]->getName(), pattern)) selected.push_back(database[i]);
    return selected;
}

std::string table(const std::vector<const Species*>& list)
{
    constexpr const char* format = "%-18s %-6s %-18s %12s %14s %17s  %s\n";
    std::string text;
    const auto row = [&text](const char* name, const char* phase, const char* formula,
                             const char* M, const char* H, const char* T, const char* source) {
        char line[512];
        std::snprintf(line, sizeof line, format, name, phase, formula, M, H, T, source);
        text += line;
    };
    row("name", "phase", "formula", "M, g/mol", "dHf, kJ/mol", "T, K", "source");
    for (const Species* species : list) {
        const std::string source =
            DatabaseSources::nameOf(*Database::getInstance(), species->getSourceId());
        const std::string range = isFixed(*species) ? fixed(species->getMinimalT(), 2) + " only"
                                                    : fixed(species->getMinimalT(), 1) + " - " +
                                                          fixed(species->getMaximalT(), 1);
        row(species->getName().c_str(), phaseOf(*species), formulaOf(*species).c_str(),
            fixed(species->getM(), 5).c_str(), fixed(species->getDHf298_15() / 1000, 3).c_str(),
            range.c_str(), source.substr(source.rfind('/') + 1).c_str());
    }
    return text;
}

std::string json(const std::vector<const Species*>& list)
{
    using Json = nlohmann::ordered_json;
    Json all = Json::array();
    for (const Species* species : list) {
        Json elements = Json::object();
        for (int i = 0; i < static_cast<int>(species->size()); ++i)
            elements[thermo::ChemicalElement::getName((*species)[i]->getType())] =
                (*species)[i]->getNumber();
        Json entry = {
            {"name", species->getName()},
            {"phase", phaseOf(*species)},
            {"formula", formulaOf(*species)},
            {"elements", std::move(elements)},
            {"charge", chargeOf(*species)},
            {"M", species->getM() / 1000},
            {"dHf", species->getDHf298_15()},
            {"fixedTemperature", isFixed(*species)},
            {"Tmin", species->getMinimalT()},
            {"Tmax", isFixed(*species) ? species->getMinimalT() : species->getMaximalT()},
            {"description", species->getDescr()},
            {"source", DatabaseSources::nameOf(*Database::getInstance(), species->getSourceId())},
        };
        all.push_back(std::move(entry));
    }
    const Json document = {
        {"program", "ketra"},
        {"version", KETRA_VERSION},
        {"units", {{"M", "kg/mol"}, {"dHf", "J/mol"}, {"Tmin", "K"}, {"Tmax", "K"}}},
        {"species", std::move(all)},
    };
    return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace

ExitCode listSpecies(const SpeciesOptions& options)
{
    const Resources resources(options.resources);
    const LogSession log(options.verbose, "", false);
    resources.load();
    const std::vector<const Species*> list = select(options.pattern);
    if (list.empty())
        throw Failure(DATA, "no species name holds \"" + options.pattern +
                                "\". A part of a name is enough; * and ? stand for other letters" +
                                (options.pattern.find(".json") != std::string::npos
                                     ? ". To write a file use --json=FILE"
                                     : ""));
    if (options.json.empty())
        writeToStandardOutput(table(list));
    else
        writeToFile(options.json, json(list));
    return GOOD;
}

} // namespace host
