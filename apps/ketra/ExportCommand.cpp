#include "ExportCommand.h"
#include "Failure.h"
#include "LogSession.h"
#include "Output.h"
#include "Resources.h"

#include <ketra/api/ketra.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Polynomial.h>
#include <ketra/thermo/Species.h>

#include <nlohmann/json.hpp>

namespace host {
namespace {

using Json = nlohmann::ordered_json;
using thermo::Database;
using thermo::Polynomial;
using thermo::Species;

constexpr int coefficients = 7;
constexpr int constants = 2; // of integration

Json elementsOf(const Species& s)
{
    Json list = Json::array();
    for (int i = 0; i < s.size(); ++i)
        list.push_back({{"name", thermo::ChemicalElement::getName(s[i]->getType())},
                        {"number", s[i]->getNumber()}});
    return list;
}

Json intervalOf(const Polynomial& interval)
{
    Json numbers = Json::array();
    for (int k = 0; k < coefficients; ++k) numbers.push_back(interval.getA(k));
    for (int k = 0; k < constants; ++k) numbers.push_back(interval.getB(k));
    return {{"T1", interval.getT1()},
            {"T2", interval.getT2()},
            {"exp", {-2.0, -1.0, 0.0, 1.0, 2.0, 3.0, 4.0, 0.0}},
            {"coefficients", std::move(numbers)}};
}

Json jsonOf(const Species& s)
{
    Json intervals = Json::array();
    for (int i = 0; !s.isFixedTemperature() && i < s.getIntervalSize(); ++i)
        intervals.push_back(intervalOf(*s.getInterval(static_cast<unsigned>(i))));
    Json object = {{"name", s.getName()},
                   {"descr", s.getDescr()},
                   {"ref", s.getRef()},
                   {"elements", elementsOf(s)},
                   {"condensed", s.getCondensed()},
                   {"M", s.getM()},
                   {"dHf298_15", s.getDHf298_15()},
                   {"dH298_15_0", s.getDH298_15_0()},
                   {"intervals", std::move(intervals)}};
    if (s.isFixedTemperature()) object["T"] = s.getMinimalT();
    return object;
}

/// The same data as in the library's form, to the last digit, and the temperature of the records
/// that have a single one.
std::string strictJson(Database& database)
{
    Json species = Json::array();
    for (unsigned i = 0; i < database.size(); ++i) species.push_back(jsonOf(*database[i]));
    const Json document = {{"program", "ketra"},
                           {"version", KETRA_VERSION},
                           {"units",
                            {{"M", "g/mol"},
                             {"dHf298_15", "J/mol"},
                             {"dH298_15_0", "J/mol"},
                             {"T", "K"},
                             {"T1", "K"},
                             {"T2", "K"}}},
                           {"species", std::move(species)}};
    return document.dump(1, ' ', false, Json::error_handler_t::replace) + "\n";
}

void load(const ExportOptions& options)
{
    if (options.species.empty()) {
        Resources(options.resources).load();
        return;
    }
    try {
        loadThermodynamicsDatabase(options.species.c_str(), /*clear=*/true);
    } catch (...) {
        throw describeException(Stage::LOADING, options.species);
    }
    if (Database::getInstance()->size() == 0)
        throw Failure(DATA, options.species + ": the file holds no species");
}

} // namespace

ExitCode exportSpecies(const ExportOptions& options)
{
    const bool toOutput = options.file == "-";
    if (toOutput && !options.strict)
        throw Failure(USAGE, "standard output gets real JSON only. Add --strict, or name a file");
    const LogSession log(options.verbose, "", false);
    load(options);
    Database& database = *Database::getInstance();
    try {
        if (options.strict)
            writeToFile(options.file, strictJson(database));
        else
            database.saveNASA9AsJSON(options.file.c_str(), -1);
    } catch (const runtime::Exception&) {
        throw Failure(INTERNAL, "cannot write " + options.file);
    }
    if (!toOutput)
        writeToStandardOutput(options.file + ": " + std::to_string(database.size()) + " species\n");
    return GOOD;
}

} // namespace host
