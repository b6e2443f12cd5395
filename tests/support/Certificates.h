#pragma once

#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/performance/frozen/NozzleSectionConditions.h>
#include <ketra/verification/EngineCertificate.h>

#include <algorithm>
#include <array>
#include <string>

// The certificates of what a test has solved.

namespace ketra_test {

/// The letter of a grade and, unless it is A, the reason: "B: a blend stands for a phase change".
template <class Certificate> std::string gradeOf(const Certificate& certificate)
{
    std::string text(1, letter(certificate.grade));
    return certificate.reason.empty() ? text : text + ": " + certificate.reason;
}

/// The certificate of a chamber without sections.
inline verification::EngineCertificate
certificateOf(const performance::equilibrium::Chamber& chamber)
{
    return verification::certify(chamber, {}, {});
}

/// The certificate of a chamber with one section, in equilibrium or frozen.
inline verification::EngineCertificate
certificateOf(const performance::equilibrium::Chamber& chamber,
              const performance::equilibrium::NozzleSectionConditions& section)
{
    using FrozenSection = performance::frozen::NozzleSectionConditions;
    if (const auto* frozen = dynamic_cast<const FrozenSection*>(&section))
        return verification::certify(chamber, {}, std::array{frozen});
    return verification::certify(chamber, std::array{&section}, {});
}

/// A blend of two phases stands in a station: B is the best grade then.
inline bool hasBlend(const verification::EngineCertificate& certificate)
{
    return std::any_of(certificate.stations.begin(), certificate.stations.end(),
                       [](const auto& station) { return station.equilibrium.blended; });
}

} // namespace ketra_test
