#include <ketra/thermo/Database.h>

#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Species.h>
#include <ketra/thermo/detail/Columns.h>
#include <ketra/thermo/detail/DatabaseText.h>
#include <ketra/thermo/detail/SafeFile.h>
#include <ketra/util/Log.h>
#include <ketra/util/detail/NumericLocale.h>

#include <mutex>
#include <string>

namespace thermo {

namespace {

using Lock = std::unique_lock<util::concurrent::Mutex>;

constexpr std::size_t recordWidth = 80;

bool belongsTo(int source, int sourceId) { return sourceId < 0 || source == sourceId; }

} // namespace

std::string Database::nasa9Text(int sourceId) const
{
    std::string text = detail::nasa9Head(/*userFile=*/sourceId >= 1);
    detail::appendLine(text, "thermo", recordWidth);
    detail::appendLine(text, "    200.00   1000.00   6000.00  20000.", recordWidth);
    // A fixed-temperature record among the products has no curve to react with and drops out.
    for (const auto& s : *speciesList)
        if (!s->isReactantOnly() && !s->isFixedTemperature() &&
            belongsTo(s->getSourceId(), sourceId))
            s->writeTo(text, sourceId);
    detail::appendLine(text, "END PRODUCTS", recordWidth);
    for (const auto& s : *speciesList)
        if (s->isReactantOnly() && belongsTo(s->getSourceId(), sourceId))
            s->writeTo(text, sourceId);
    detail::appendLine(text, "END REACTANTS", recordWidth);
    return text;
}

std::string Database::propertiesText(int sourceId) const
{
    std::string text = detail::propertiesHead();
    for (const auto& s : *speciesList)
        if (belongsTo(s->getTableSourceId(), sourceId)) s->writePropertiesTo(text, sourceId);
    return text + detail::propertiesFoot();
}

void Database::saveNASA9(const char* path, int sourceId)
{
    const util::NumericLocale numbers;
    try {
        std::string text;
        {
            const Lock lock(dbMutex);
            text = nasa9Text(sourceId);
        }
        // The lock is free while the disk is at work.
        if (!detail::replaceFile(path, text)) throw runtime::Exception(0);
    } catch (const std::exception&) {
        util::Log::errorf("ROOT", "Database: could not save thermodynamic database %s\n", path);
        throw runtime::Exception(0);
    }
    const Lock lock(dbMutex);
    for (const auto& s : *speciesList)
        if ((s->isReactantOnly() || !s->isFixedTemperature()) &&
            belongsTo(s->getSourceId(), sourceId))
            s->setModified(false);
    if (sourceId >= 0) sourceModified[sourceId] = false;
}

void Database::saveProperties(const char* path, int sourceId)
{
    const util::NumericLocale numbers;
    try {
        std::string text;
        {
            const Lock lock(dbMutex);
            text = propertiesText(sourceId);
        }
        if (!detail::replaceFile(path, text)) throw runtime::Exception(0);
    } catch (const std::exception&) {
        util::Log::errorf("ROOT", "Database: could not save properties database %s\n", path);
        throw runtime::Exception(0);
    }
    const Lock lock(dbMutex);
    for (const auto& s : *speciesList)
        if (belongsTo(s->getTableSourceId(), sourceId)) s->setTableModified(false);
    if (sourceId >= 0) sourceModified[sourceId] = false;
}

std::string Database::nasa9JSONText(int sourceId) const
{
    std::string text = "/*\n * SIX-CHARACTER REFERENCE-DATE CODES\n * Generated in JSON-ready "
                       "format by Ketra\n */\n\n{[";
    const char* separator = "\n";
    for (const auto& s : *speciesList) {
        if (!belongsTo(s->getSourceId(), sourceId)) continue;
        text += separator;
        s->writeToAsJSON(text, sourceId);
        separator = ",\n";
    }
    return text + "\n]}";
}

void Database::saveNASA9AsJSON(const char* path, int sourceId)
{
    try {
        std::string text;
        {
            const Lock lock(dbMutex);
            text = nasa9JSONText(sourceId);
        }
        if (!detail::replaceFile(path, text)) throw runtime::Exception(0);
    } catch (const std::exception&) {
        util::Log::errorf("ROOT", "Database: could not save thermodynamic database %s\n", path);
        throw runtime::Exception(0);
    }
}

void Database::saveDatabase(const char* path, int type)
{
    Lock lock(dbMutex);
    try {
        if (type == 0) instance->saveNASA9(path, -1);
        if (type == 1) instance->saveProperties(path, -1);
    } catch (const std::exception&) {
        lock.unlock();
        util::Log::errorf("THERMO", "Database: could not save thermodynamic database %s\n", path);
        throw Exception(0, (std::string("Could not save thermodynamic database ") + path).c_str());
    }
}

void Database::saveDatabase(int sourceId, bool save)
{
    Lock lock(dbMutex);
    if (!save) return;
    try {
        const int count = static_cast<int>(instance->sources.size());
        for (int id = 0; id < count; ++id) {
            const char* const source = instance->getSource(id);
            if (source == nullptr || (sourceId >= 0 && sourceId != id)) continue;
            const std::string path = source;
            if (instance->isNASA9Modified(id)) {
                util::Log::infof("THERMO", "Database: updating thermodynamic database %s\n",
                                 path.c_str());
                instance->saveNASA9(path.c_str(), id);
            } else if (instance->isPropertiesModified(id)) {
                util::Log::infof("THERMO", "Database: updating properties database %s\n",
                                 path.c_str());
                instance->saveProperties(path.c_str(), id);
            }
        }
    } catch (const std::exception&) {
        lock.unlock();
        util::Log::error("THERMO", "Database: could not save thermodynamic database");
        throw Exception(0, "Could not save thermodynamic database");
    }
}

void Database::savePropertiesDatabase(const char*, int) {}

} // namespace thermo
