#pragma once

#include "Case.h"

#include <memory>
#include <string>
#include <vector>

namespace thermo {
class Mixture;
}

namespace host {

/// What the user states of a sample.
struct SampleOptions {
    std::string document; ///< it is its propellant; empty: stated as a recipe
    std::string mixture;  ///< "NAME=FRACTION,..."; empty: stated by a document
    ReadingOptions reading;
    std::vector<std::string> included; ///< the only products to consider; empty: all
    std::vector<std::string> omitted;
};

/// An energetic material, and what may become of it.
struct ExplosiveSample {
    std::unique_ptr<thermo::Mixture> mixture;
    bool multiphase = true; ///< with condensed products
    bool ions = true;
    std::string document; ///< the path; empty for a sample from the command line
    std::string name;
    std::string info;
};

/// Where a sample comes from: it is read before the species are loaded, and made afterwards.
class SampleSource
{
public:
    /// Reads the document, if there is one. \param command  for messages \throws Failure
    SampleSource(const char* command, const SampleOptions& options);
    ~SampleSource();
    /// The sample, with the species loaded. A recipe is taken at 298.15 K; a single name needs no
    /// fraction. \throws Failure for an unknown product, too
    ExplosiveSample take();

private:
    const SampleOptions& options;
    std::unique_ptr<Case> engine; // null for a recipe
};

/// What messages call it.
inline const std::string& subjectOf(const SampleOptions& options)
{
    return options.document.empty() ? options.mixture : options.document;
}

/// \throws Failure if the species is not known
void requireKnown(const std::string& name);
/// \throws Failure unless the value of the option is a finite number above 0
void requirePositive(const char* option, double value, const char* unit);

} // namespace host
