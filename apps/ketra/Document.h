#pragma once

#include "Findings.h"

#include <libconfig.h++>

#include <string>

namespace host {

/// A document as text and as a tree of settings, read without the library: the library's own
/// reading repairs a file that does not parse by writing it anew, and a file that is no document
/// at all must stay as it is.
class Document
{
public:
    /// Reads and parses the file; what is wrong goes to \p findings.
    /// \param allowInclude whether a line `@include "file"` may bring in other files
    Document(const std::string& path, bool allowInclude, Findings& findings);
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    /// Whether there is a tree to look at.
    bool isParsed() const { return parsed; }
    const libconfig::Setting& root() const { return config.getRoot(); }
    const std::string& getPath() const { return path; }

    /// The place of a setting, for a finding.
    Place place(const libconfig::Setting& setting) const;
    /// The place of a key that is not there, in the group that should hold it.
    Place placeOfAbsent(const libconfig::Setting& group, const char* key) const;

private:
    void parse(Findings& findings);

    std::string path;
    libconfig::Config config;
    bool parsed = false;
};

} // namespace host
