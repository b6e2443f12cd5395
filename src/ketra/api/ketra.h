#pragma once

#include <ketra/export.h>

// The library for a host that wants no classes: open a log, load the databases, load a document,
// run it, print or read the results, delete what was handed out, close the log.
//
// A pointer that a function returns is the caller's, who gives it back to the `delete...` function
// of its kind. All `delete...` functions accept a null pointer.

namespace performance {
class TheoreticalPerformance;
class ThrottlingPerformance;
} // namespace performance
namespace performance::efficiency {
class CorrectionFactors;
} // namespace performance::efficiency
namespace performance::equilibrium {
class NozzleSectionConditions;
} // namespace performance::equilibrium
namespace reaction {
class ReactingMixture;
} // namespace reaction
namespace thermo {
class ChemicalFormula;
class Mixture;
class Species;
} // namespace thermo
namespace thermo::input {
class ConfigFile;
} // namespace thermo::input

/// Opens the log of the process, under \p name, with a sink that writes to the console.
KETRA_API void createConsoleLog(const char* name);
/// The same with a sink that writes to \p file. \p size is the size of its buffer; 0 stands for
/// 10240.
KETRA_API void createFileLog(const char* name, const char* file, unsigned int size);
/// Ends the log. Everything is written when it returns.
KETRA_API void closeLog();

/// Folder of the user's own species and properties files.
KETRA_API void setDatabaseUsrLocation(const char* path);
/// Loads a file of species records, after dropping all species if \p clear. Must come before any
/// species or formula is used.
/// \throws runtime::Exception 0 when the file cannot be opened, 1 when it is no such file
KETRA_API void loadThermodynamicsDatabase(const char* path, bool clear);
/// Loads a file of property tables into the species loaded before.
/// \throws runtime::Exception 0 when the file cannot be opened, 1 when it is no such file
KETRA_API void loadPropertiesDatabase(const char* path);
/// Loads a file of viscosities and conductivities of gases into the species loaded before.
/// \throws runtime::Exception 0 when the file cannot be opened, 1 when it is no such file
KETRA_API void loadTransportPropertiesDatabase(const char* path);

/// A new document that keeps \p path, with all its values at their defaults; nothing is read.
KETRA_API thermo::input::ConfigFile* newConfig(const char* path);
/// A new document, a deep copy.
/// \throws thermo::input::Exception 2 for a null pointer
KETRA_API thermo::input::ConfigFile* newConfig(thermo::input::ConfigFile* config);
/// A new document, read from \p path.
/// \throws thermo::input::Exception 0 when it cannot be read, 1 when its version is too new, and
///         what its sections raise
KETRA_API thermo::input::ConfigFile* loadConfig(const char* path);
/// Writes a document to \p path, or to the path that it keeps if that is null; with \p all also
/// the values that are at their defaults.
/// \throws thermo::input::Exception 2 for a null document
KETRA_API void writeConfig(thermo::input::ConfigFile* config, const char* path, bool all);
/// Deletes a document.
KETRA_API void deleteConfig(thermo::input::ConfigFile* config);

/// A performance built on a document and not solved yet. With \p ownsConfig the document is the
/// performance's from the call on, also when this function throws.
/// \throws thermo::Exception 4 for a species that the database does not know
KETRA_API performance::TheoreticalPerformance* newPerformance(thermo::input::ConfigFile* config,
                                                              bool ownsConfig);
/// Solves the problem of a document, transport properties included; one that asks for the optimum
/// mixture ratio is searched from 0.2 to 1.8 times the stoichiometric ratio, and states the optimum
/// afterwards. The document stays the caller's and must outlive the result. Null if there is no
/// solution; the log tells why. Without an optimum between the bounds the log warns, and the result
/// is not solved: it has no chamber.
KETRA_API performance::TheoreticalPerformance* run(thermo::input::ConfigFile* config);
/// Solves what the engine of \p design delivers at \p ratio times its mass flow, 1e-6 to 2. The
/// design must be solved, and must outlive the result. Null if there is no solution; the log tells
/// why.
KETRA_API performance::ThrottlingPerformance* run(performance::TheoreticalPerformance* design,
                                                  double ratio, bool calculateTransport);
/// Losses of the real engine, read from a solved \p performance, which must outlive the result.
KETRA_API performance::efficiency::CorrectionFactors*
getCorrectionFactors(performance::TheoreticalPerformance* performance);
/// Deletes a performance, and its document if it owns one.
KETRA_API void deletePerformance(performance::TheoreticalPerformance* performance);
/// Deletes a throttled performance.
KETRA_API void deleteThrottlingPerformance(performance::ThrottlingPerformance* performance);
/// Deletes the losses of an engine.
KETRA_API void deleteCorrectionFactors(performance::efficiency::CorrectionFactors* factors);
/// Deletes a section of a nozzle.
KETRA_API void
deleteNozzleSectionConditions(performance::equilibrium::NozzleSectionConditions* section);

/// Deletes a mixture.
KETRA_API void deleteMixture(thermo::Mixture* mixture);
/// Deletes a reacting mixture.
KETRA_API void deleteReactingMixture(reaction::ReactingMixture* mixture);
/// Deletes a species that is not the database's.
KETRA_API void deleteSpecies(thermo::Species* species);
/// Deletes a formula.
KETRA_API void deleteChemicalFormula(thermo::ChemicalFormula* formula);
/// Releases a block that was allocated with `malloc`.
KETRA_API void freeObject(void* block);
