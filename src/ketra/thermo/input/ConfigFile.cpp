#include <ketra/thermo/input/ConfigFile.h>

#include <ketra/thermo/input/Exception.h>
#include <ketra/thermo/input/detail/Document.h>
#include <ketra/thermo/input/detail/codes.h>
#include <ketra/util/Log.h>
#include <ketra/util/detail/NumericLocale.h>

#include <libconfig.h++>

using libconfig::Setting;

namespace thermo::input {

namespace {

constexpr double currentVersion = 1.2; // of the format

} // namespace

void ConfigFile::read(const char* file)
{
    if (file != nullptr) setPath(file);
    const util::NumericLocale numbers;
    const std::unique_ptr<libconfig::Config> document = detail::loadDocument(getPath());
    readSections(document->getRoot());
}

void ConfigFile::readSections(const Setting& root)
{
    version.read(root);
    requireKnownVersion();
    version.set(currentVersion);
    name.read(root);
    info.read(root);
    if (root.exists(generalOptions.getName())) generalOptions.read(root);
    chamberConditions.read(root);
    nozzleFlowOptions.read(root);
    propellant.read(root);
    if (root.exists(engineSize.getName())) engineSize.read(root);
    if (root.exists(chamberCooling.getKey())) chamberCooling.renew().read(root);
    if (root.exists(propellantFeedSystem.getName())) propellantFeedSystem.read(root);
}

void ConfigFile::requireKnownVersion() const
{
    if (!(version.get() > currentVersion)) return;
    util::Log::errorf("THERMO", "Incorrect version of configuration file %3.1f; expected v.%3.1f\n",
                      version.get(), currentVersion);
    throw Exception(codes::incorrectVersion);
}

void ConfigFile::write(const char* file, bool all)
{
    libconfig::Config document;
    document.setAutoConvert(true);
    writeSections(document.getRoot(), all);
    if (*getPath() == '\0') setPath(file);
    detail::saveDocument(document.getRoot(), file != nullptr ? file : getPath());
}

void ConfigFile::writeSections(Setting& root, bool all)
{
    version.write(root, true);
    name.write(root, all);
    info.write(root, all);
    generalOptions.write(root, all);
    chamberConditions.write(root, all);
    nozzleFlowOptions.write(root, all);
    propellant.write(root, all);
    engineSize.write(root, all);
    if (isChamberCooling()) getChamberCooling().write(root, all);
    propellantFeedSystem.write(root, all);
}

void ConfigFile::validate()
{
    generalOptions.validate();
    chamberConditions.validate();
    nozzleFlowOptions.validate();
    propellant.validate();
    engineSize.validate();
    chamberCooling.validate();
    propellantFeedSystem.validate();
}

} // namespace thermo::input
