#include <ketra/thermo/Database.h>

#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Species.h>
#include <ketra/util/Log.h>
#include <ketra/util/String.h>

#include <algorithm>
#include <mutex>

namespace thermo {

namespace {

constexpr const char* usrNASA9File = "resources/usr_thermo.inp";
constexpr const char* usrPropertiesFile = "resources/usr_properties.inp";

using Lock = std::lock_guard<util::concurrent::Mutex>;

} // namespace

// In this order: the lock is there before the singleton. The singleton is never destroyed, so that
// whatever a host still holds at the end of the process stays valid.
util::concurrent::Mutex Database::dbMutex(true);
int Database::speciesId = 0;
Database* Database::instance = new Database;

Database::Database()
    : species(std::make_unique<SpeciesMap>()), speciesList(std::make_unique<SpeciesList>())
{
}

Database::~Database() { clear(); }

void Database::remove(Database* db)
{
    std::unique_ptr<Database> owned(db);
    if (db == instance) (void)owned.release();
}

int Database::getNextSpeciesId()
{
    const Lock lock(dbMutex);
    return ++speciesId;
}

void Database::setUsrLocation(const char* path)
{
    const Lock lock(dbMutex);
    instance->usrLocation = path != nullptr ? path : "";
}

unsigned int Database::size() const { return static_cast<unsigned int>(speciesList->size()); }

const Species* Database::operator[](unsigned int i) const { return (*speciesList)[i].get(); }

const Species* Database::find(const std::string& name) const
{
    const Lock lock(dbMutex);
    const auto found = species->find(name);
    return found == species->end() ? nullptr : found->second;
}

Species* Database::findForUpdate(const std::string& name)
{
    const Lock lock(dbMutex);
    const auto found = species->find(name);
    return found == species->end() ? nullptr : found->second;
}

bool Database::isUserDefinedSpecies(const Species* entry) const
{
    const auto isFrom = [this](int id, const char* file) {
        const char* const path = id >= 0 ? getSource(id) : nullptr;
        return path != nullptr && util::String::endsWith(path, file);
    };
    return isFrom(entry->getSourceId(), usrNASA9File) ||
           isFrom(entry->getTableSourceId(), usrPropertiesFile);
}

std::string Database::usrPath(const char* file) const
{
    const bool separated = usrLocation.empty() || usrLocation.back() == '/';
    return usrLocation + (separated ? "" : "/") + file;
}

std::size_t Database::indexOf(const std::string& name) const
{
    // The list is searched only for a name that is known to be in it.
    if (species->find(name) == species->end()) return speciesList->size();
    const auto found =
        std::find_if(speciesList->begin(), speciesList->end(),
                     [&](const std::unique_ptr<Species>& s) { return s->getName() == name; });
    return static_cast<std::size_t>(found - speciesList->begin());
}

void Database::addNewSpecies(Species* added)
{
    if (added->getType() >= 0 && added->getSourceId() >= 0) return;
    const Lock lock(dbMutex);
    if (added->getSourceId() < 0) added->setSourceId(addSource(usrPath(usrNASA9File).c_str(), 0));
    if (added->getTableSourceId() < 0)
        added->setTableSourceId(addSource(usrPath(usrPropertiesFile).c_str(), 1));
    markModified(added->getSourceId());
    markModified(added->getTableSourceId());

    const std::string& name = added->getName();
    const std::size_t place = indexOf(name);
    if (place < speciesList->size()) {
        std::unique_ptr<Species>& old = (*speciesList)[place];
        if (this == instance)
            util::Log::infof("THERMO", "Replacing existing species %s with new one\n",
                             name.c_str());
        if (added->getType() < 0)
            added->setType(old->getType());
        else if (added->getType() != old->getType())
            throw Exception(4);
        if (added == old.get()) return;
        species->find(name)->second = added;
        old.reset(added);
        return;
    }
    // A species that bears an id is refused before it is in any table: it stays the caller's.
    added->setType(getNextSpeciesId());
    speciesList->emplace_back(added);
    (*species)[name] = added;
}

Species* Database::remove(const std::string& name, bool deleteSpecies)
{
    const Lock lock(dbMutex);
    const std::size_t place = indexOf(name);
    species->erase(name);
    if (place == speciesList->size()) return nullptr;
    std::unique_ptr<Species> removed = std::move((*speciesList)[place]);
    speciesList->erase(speciesList->begin() + static_cast<std::ptrdiff_t>(place));
    if (this == instance) util::Log::infof("THERMO", "Removing species %s\n", name.c_str());
    markModified(removed->getSourceId());
    markModified(removed->getTableSourceId());
    if (deleteSpecies) return nullptr;
    removed->resetIds();
    return removed.release();
}

int Database::addSource(const char* path, int type)
{
    const Lock lock(dbMutex);
    const auto [entry, added] = sources.try_emplace(path, static_cast<int>(sources.size()));
    sourceTypes[path] = type;
    sourceModified[entry->second] = false;
    return entry->second;
}

const char* Database::getSource(int id) const
{
    const Lock lock(dbMutex);
    for (const auto& [path, sourceId] : sources)
        if (sourceId == id) return path.c_str();
    return nullptr;
}

void Database::clear()
{
    const Lock lock(dbMutex);
    species->clear();
    speciesList->clear();
    sources.clear();
    sourceTypes.clear();
}

void Database::markModified(int sourceId)
{
    if (sourceId >= 0) sourceModified[sourceId] = true;
}

bool Database::isModified(int sourceId, int fileType) const
{
    const Lock lock(dbMutex);
    const char* const path = getSource(sourceId);
    if (path == nullptr || sourceTypes.at(path) != fileType) return false;
    const auto source = sourceModified.find(sourceId);
    if (source != sourceModified.end() && source->second) return true;
    const bool tables = fileType == 1;
    return std::any_of(speciesList->begin(), speciesList->end(), [=](const auto& s) {
        return tables ? s->getTableSourceId() == sourceId && s->isTableModified()
                      : s->getSourceId() == sourceId && s->isModified();
    });
}

bool Database::isNASA9Modified(int sourceId) const { return isModified(sourceId, 0); }

bool Database::isPropertiesModified(int sourceId) const { return isModified(sourceId, 1); }

} // namespace thermo
