#pragma once

#include "Document.h"
#include "Findings.h"
#include "HeldMessages.h"

#include <memory>
#include <string>

namespace performance {
class TheoreticalPerformance;
}
namespace thermo::input {
class ConfigFile;
}

namespace host {

struct Certificate;

/// How a document is taken.
struct ReadingOptions {
    bool strict = false; ///< warnings count as errors, and results of grade B as none
    bool allowInclude = false;
    bool literal = false; ///< solved by the default method alone
};

/// Reads a document with the library and has it validated. \throws Failure
std::unique_ptr<thermo::input::ConfigFile> loadDocument(const std::string& path);

/// One document on its road: read and checked, built, solved.
class Case
{
public:
    /// Reads the document and checks what needs no species. No log may be open. \throws Failure
    Case(const std::string& path, const ReadingOptions& options);
    Case(Case&&) noexcept;
    ~Case();

    /// Checks the species, and builds the propellant. \throws Failure
    void build();
    /// Solves the problem; where the document asks for the best mixture ratio, searches it.
    /// \throws Failure
    void solve(bool transport, HeldMessages& messages);

    /// Whether what was solved is a solution. \throws Failure if that cannot be told
    Certificate certify() const;

    const std::string& getPath() const { return document->getPath(); }
    /// Of a case that is built; its results once it is solved.
    performance::TheoreticalPerformance& getPerformance() const { return *performance; }

private:
    void requireGood();
    void solveNow(bool transport, HeldMessages& messages);
    void searchMixtureRatio(HeldMessages& messages);

    bool strict;
    bool literal;
    Findings findings;
    std::unique_ptr<Document> document;
    std::unique_ptr<thermo::input::ConfigFile> config;
    std::unique_ptr<performance::TheoreticalPerformance> performance; // refers to the config
};

} // namespace host
