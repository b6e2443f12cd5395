#include <ketra/thermo/nasa9/NASA9Loader.h>

#include <ketra/thermo/Database.h>
#include <ketra/thermo/detail/TextFile.h>
#include <ketra/thermo/nasa9/NASA9Species.h>
#include <ketra/util/Log.h>

#include <algorithm>
#include <exception>
#include <fstream>

namespace thermo::nasa9 {

namespace {

// Characters; a line of a record has 80. What stands behind this is no data.
constexpr std::size_t longestLine = 4096;

bool isControl(std::string_view line)
{
    return line.starts_with('!') || line.starts_with("thermo") ||
           line.starts_with("END PRODUCTS") || line.starts_with("END REACTANTS");
}

auto sameName(const std::string& name)
{
    return [&name](const std::unique_ptr<Species>& entry) { return entry->getName() == name; };
}

} // namespace

struct NASA9Loader::State {
    int sourceId;
    NASA9Species* current = nullptr; // the record that was begun last; the tables own it
    bool reactant = false;           // behind "END PRODUCTS"
    unsigned int lineCount = 0;
    std::string buffer; // the line at hand
};

NASA9Loader::~NASA9Loader() = default;

void NASA9Loader::load(std::ifstream& stream, int sourceId)
{
    const std::string text = detail::readAll(stream);
    if (detail::hasBareReturnsOnly(text))
        util::Log::warnf("THERMO", "Ignoring species file whose lines have no line feeds\n");

    State state{sourceId, nullptr, false, 0, {}};
    detail::LineReader lines(text);
    for (std::string_view line; lines.next(line);) {
        state.lineCount = lines.getCount();
        readLine(line, state);
    }
}

void NASA9Loader::readLine(std::string_view line, State& state)
{
    if (line.find_first_not_of(detail::blanks) == std::string_view::npos) {
        if (state.current != nullptr && !state.current->isCompleted()) drop("incomplete", state);
        return;
    }
    if (isControl(line) || (state.current == nullptr && line.starts_with("    "))) {
        if (line.starts_with("thermo")) state.reactant = false;
        if (line.starts_with("END PRODUCTS")) state.reactant = true;
        return;
    }
    if (state.current != nullptr && !state.current->isCompleted())
        continueRecord(line, state);
    else
        startRecord(line, state);
}

void NASA9Loader::continueRecord(std::string_view line, State& state)
{
    NASA9Species& species9 = *state.current;
    try {
        state.buffer = line.substr(0, longestLine);
        if (species9.getNumberOfIntervals() == -1) {
            species9.loadHeader(state.buffer);
            if (species9.size() == 0)
                util::Log::warnf("THERMO",
                                 "Species %s %s has no known element and takes no part in "
                                 "reactions (line %u)\n",
                                 species9.getName().c_str(), species9.getDescr().c_str(),
                                 state.lineCount);
        } else {
            species9.loadPolynomial(state.buffer);
        }
    } catch (const std::exception&) {
        if (!species9.isCompleted()) drop("invalid", state);
    }
}

void NASA9Loader::startRecord(std::string_view line, State& state)
{
    if (line.size() > longestLine)
        util::Log::warnf("THERMO", "Cutting line %u of %zu characters\n", state.lineCount,
                         line.size());
    state.buffer = line.substr(0, longestLine);
    auto record = std::make_unique<NASA9Species>(state.buffer, state.reactant,
                                                 /*withPolynomial=*/false);
    record->setSourceId(state.sourceId);
    state.current = record.get();
    const std::string& name = record->getName();

    // The list is searched only for a name that is known to be in it.
    const auto [entry, added] = species->try_emplace(name, record.get());
    if (added) {
        record->setType(Database::getNextSpeciesId());
        speciesList->push_back(std::move(record));
        return;
    }
    const auto place = std::find_if(speciesList->begin(), speciesList->end(), sameName(name));
    util::Log::infof("THERMO", "Replacing existing species %s with new one %s %s (line %u)\n",
                     (*place)->getName().c_str(), name.c_str(), record->getDescr().c_str(),
                     state.lineCount);
    record->setType((*place)->getType());
    entry->second = record.get();
    *place = std::move(record);
}

void NASA9Loader::drop(const char* why, State& state)
{
    util::Log::warnf("THERMO", "Ignoring %s species %s %s (line %u)\n", why,
                     state.current->getName().c_str(), state.current->getDescr().c_str(),
                     state.lineCount);
    removeSpecies(state.current);
    state.current = nullptr;
}

void NASA9Loader::removeSpecies(Species* unfinished)
{
    if (unfinished == nullptr || unfinished->isCompleted()) return;
    species->erase(unfinished->getName());
    const auto place =
        std::find_if(speciesList->begin(), speciesList->end(), sameName(unfinished->getName()));
    if (place != speciesList->end()) speciesList->erase(place);
}

} // namespace thermo::nasa9
