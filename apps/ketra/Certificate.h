#pragma once

#include "StationResults.h"

#include <ketra/verification/criteria/Grade.h>

#include <string>
#include <vector>

namespace performance {
class TheoreticalPerformance;
}
namespace performance::equilibrium {
class NozzleSectionConditions;
}

namespace host {

/// The certificate of a calculation, ready to be shown.
struct Certificate {
    verification::Grade grade;
    std::string figures; ///< the residuals in short
    std::string reason;  ///< why the grade is not A
    Json results;        ///< all numbers

    /// "Certificate: A  (elements 3e-14, optimum 2e-09)", with the reason behind a grade of B.
    std::string line() const;
};

/// Of one equilibrium.
Certificate certificateOf(const reaction::Equilibrium& equilibrium);
/// Of a solved problem: of its equilibrium, or of its chamber with the sections of the document.
Certificate certificateOf(performance::TheoreticalPerformance& performance);

/// Of single stations of an engine.
struct StationCertificates {
    Certificate chamberEnd;
    Certificate throat;
    std::vector<Certificate> sections;
};
/// Of the chamber of a solved engine and sections of it, in the order given.
StationCertificates certificatesOf(
    performance::TheoreticalPerformance& performance,
    const std::vector<const performance::equilibrium::NozzleSectionConditions*>& sections);

/// The certificate and the attempts of an equilibrium, for a results file.
Json certificateResults(const reaction::Equilibrium& equilibrium);

/// What a user may be shown of a calculation: with F nothing, with \p strict only A.
/// \throws Failure
void requireGrade(const Certificate& certificate, const std::string& subject, bool strict);
/// Why a result may not be shown; empty if it may.
std::string refusalOf(const Certificate& certificate, bool strict);

} // namespace host
