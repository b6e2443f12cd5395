#pragma once

#include <ketra/io/File.h>
#include <ketra/thermo/input/ChamberCooling.h>
#include <ketra/thermo/input/CombustionChamberConditions.h>
#include <ketra/thermo/input/EngineSize.h>
#include <ketra/thermo/input/GeneralOptions.h>
#include <ketra/thermo/input/NozzleFlowOptions.h>
#include <ketra/thermo/input/Propellant.h>
#include <ketra/thermo/input/PropellantFeedSystem.h>

namespace thermo::input {

/// One whole problem statement: the configuration document in memory. It says what to calculate;
/// it is filled from a file or by calls, checked with `validate`, handed to the calculation, and
/// can be written back. Copies are deep.
class KETRA_API ConfigFile : public io::File
{
public:
    ConfigFile() = default;
    /// A document at its defaults that knows its path; nothing is read.
    explicit ConfigFile(const char* file) : io::File(file) {}

    /// Reads the file \p file, or the one at the stored path if \p file is null; a given path is
    /// stored. A document with broken line ends is repaired: the file gets CR LF at every line end
    /// and is read anew. Lists append to what they hold, so an object is read once.
    /// \throws Exception 0 if the file cannot be read or is no document, 1 if its version is newer
    ///         than 1.2, and what the sections throw
    /// \throws libconfig::SettingNotFoundException if a mandatory group is missing
    void read(const char* file);
    /// Writes the document to \p file, or to the stored path if \p file is null; a path is stored
    /// if there is none yet. Without \p all only what differs from the defaults is written, numbers
    /// without their units. Every number is written so that reading it gives the same number. The
    /// file is replaced in one step.
    /// \throws Exception 0 if the file cannot be written or a value is not a number
    void write(const char* file, bool all);

    /// Version of the format; a document that was read is of the current one.
    double getVersion() const { return version.get(); }
    const std::string& getName() const { return name.get(); }
    void setName(const char* text) { name.set(text != nullptr ? text : ""); }
    const std::string& getInfo() const { return info.get(); }
    void setInfo(const char* text) { info.set(text != nullptr ? text : ""); }

    GeneralOptions& getGeneralOptions() { return generalOptions; }
    const GeneralOptions& getGeneralOptions() const { return generalOptions; }
    CombustionChamberConditions& getCombustionChamberConditions() { return chamberConditions; }
    const CombustionChamberConditions& getCombustionChamberConditions() const
    {
        return chamberConditions;
    }
    NozzleFlowOptions& getNozzleFlowOptions() { return nozzleFlowOptions; }
    const NozzleFlowOptions& getNozzleFlowOptions() const { return nozzleFlowOptions; }
    Propellant& getPropellant() { return propellant; }
    const Propellant& getPropellant() const { return propellant; }
    EngineSize& getEngineSize() { return engineSize; }
    const EngineSize& getEngineSize() const { return engineSize; }
    /// The geometry that belongs to the size of the engine.
    ChamberGeometry& getChamberGeometry() { return engineSize.getChamberGeometry(); }
    const ChamberGeometry& getChamberGeometry() const { return engineSize.getChamberGeometry(); }
    PropellantFeedSystem& getPropellantFeedSystem() { return propellantFeedSystem; }
    const PropellantFeedSystem& getPropellantFeedSystem() const { return propellantFeedSystem; }

    /// How the chamber is cooled, the one section that may be absent.
    bool isChamberCooling() const { return chamberCooling.isSet(); }
    /// Makes the section if it is absent. \returns it
    ChamberCooling& setChamberCooling() { return chamberCooling.create(); }
    ChamberCooling& getChamberCooling() { return chamberCooling.at("ChamberCooling"); }
    const ChamberCooling& getChamberCooling() const { return chamberCooling.at("ChamberCooling"); }
    void deleteChamberCooling() { chamberCooling.reset(); }

    /// Checks every section in the order of the document; the first fault throws.
    /// \throws Exception 7
    virtual void validate();

private:
    void readSections(const libconfig::Setting& root);
    void writeSections(libconfig::Setting& root, bool all);
    void requireKnownVersion() const;

    DataValue<double> version{"version", 1.2};
    DataValue<std::string> name{"name", ""};
    DataValue<std::string> info{"info", ""};
    GeneralOptions generalOptions;
    CombustionChamberConditions chamberConditions;
    NozzleFlowOptions nozzleFlowOptions;
    Propellant propellant;
    EngineSize engineSize;
    Optional<ChamberCooling> chamberCooling;
    PropellantFeedSystem propellantFeedSystem;
};

} // namespace thermo::input
