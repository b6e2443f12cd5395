#pragma once

#include "DataText.h"
#include "Findings.h"

#include <map>
#include <memory>
#include <string>

namespace thermo::nasa9 {
class NASA9Species;
}

namespace host {

/// Where the records of the species stand that are known so far, by name.
using KnownSpecies = std::map<std::string, Place>;

/// Looks for faults of a species file: records that the library drops or reads otherwise than they
/// are meant, and data that do not fit each other. The limits of the latter stand in CurveLint.cpp.
class SpeciesLint
{
public:
    /// \param knownSpecies the species of the files before; those of this file are added to it
    SpeciesLint(const DataText& speciesFile, Findings& found, KnownSpecies& knownSpecies);
    ~SpeciesLint();

    /// \returns the number of records that the library keeps
    size_t run();

private:
    struct Record;

    void readLine(std::string_view line);
    void startRecord(std::string_view line);
    void continueRecord(std::string_view line);
    void checkHeader(std::string_view line);
    void checkFormula(std::string_view line);
    void checkInterval(std::string_view line);
    void checkCoefficients(std::string_view line, bool last);
    void checkTexts();
    void checkRecord();
    void drop(const std::string& why);
    void finish();
    /// Says so if a field holds anything but a number. \returns false then
    bool expectNumber(std::string_view line, size_t from, size_t to, const std::string& what);
    void expectBlank(std::string_view line, size_t from, size_t to);

    Place here(bool ofRecord = false) const;

    const DataText& text;
    Findings& findings;
    Findings unheard;
    Findings* out; // one of the two
    KnownSpecies& known;
    unsigned lineNumber = 0;
    bool reactant = false;   // behind "END PRODUCTS"
    bool started = false;    // a record has been begun and not dropped
    bool astray = false;     // in the lines of a dropped record
    bool behindMark = false; // the line before is "thermo"
    size_t kept = 0;
    std::map<std::string, Place> ofThisFile;
    std::map<std::string, std::string> shortened; // names by what a saved file has of them
    std::unique_ptr<Record> record;               // not complete yet
};

} // namespace host
