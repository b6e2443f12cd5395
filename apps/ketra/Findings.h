#pragma once

#include "ExitCode.h"

#include <string>
#include <vector>

namespace host {

/// A place in a document.
struct Place {
    std::string file;
    unsigned line = 0; ///< from 1; 0 if no line can be named
    std::string key;   ///< path of the key, as "propellant.components.fuel[0].name"; may be empty
};

/// What a check of a document has found, in the order of finding.
class Findings
{
public:
    /// Something that the calculation can live with, but that the writer should know.
    void warn(const Place& place, const std::string& what);
    /// A fault: the document cannot be used, or would not mean what its writer meant.
    void fail(const Place& place, const std::string& what);
    /// A fault of the data rather than of the document: a species that is not there.
    void miss(const Place& place, const std::string& what);

    size_t errors() const { return faults + missing; }
    size_t warnings() const { return lines.size() - errors(); }
    /// GOOD without errors, DATA if only species are missing, DOCUMENT otherwise.
    ExitCode code() const;
    /// "2 errors, 1 warning", or "no faults found".
    std::string summary() const;

    /// Prints the lines found since the last call to standard error.
    void print();

private:
    void add(const Place& place, const char* severity, const std::string& what);

    std::vector<std::string> lines;
    size_t printed = 0;
    size_t faults = 0;
    size_t missing = 0;
};

} // namespace host
