#include <ketra/api/ketra.h>

#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/Exception.h>
#include <ketra/util/Log.h>

#include <memory>

using thermo::input::ConfigFile;

namespace {

constexpr unsigned int nullPointer = 2;

ConfigFile& require(ConfigFile* config)
{
    if (config != nullptr) return *config;
    util::Log::error("THERMO", "Could not obtain configuration: NULL pointer\n");
    throw thermo::input::Exception(nullPointer);
}

std::unique_ptr<ConfigFile> configAt(const char* path)
{
    return path != nullptr ? std::make_unique<ConfigFile>(path) : std::make_unique<ConfigFile>();
}

} // namespace

ConfigFile* newConfig(const char* path) { return configAt(path).release(); }

ConfigFile* newConfig(ConfigFile* config)
{
    return std::make_unique<ConfigFile>(require(config)).release();
}

ConfigFile* loadConfig(const char* path)
{
    std::unique_ptr<ConfigFile> config = configAt(path);
    config->read(nullptr);
    return config.release();
}

void writeConfig(ConfigFile* config, const char* path, bool all)
{
    require(config).write(path, all);
}
