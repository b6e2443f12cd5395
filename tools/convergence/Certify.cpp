#include "Certify.h"

#include <support/EngineSweep.h>

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/performance/frozen/NozzleSectionConditions.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/verification/EngineCertificate.h>

#include <algorithm>
#include <array>
#include <regex>
#include <vector>

namespace convergence {

namespace {

/// Without the certificate's numbers, for counting.
std::string kindOfReason(const std::string& reason)
{
    static const std::regex number("[-+]?\\b[0-9]+(\\.[0-9]+)?(e[-+]?[0-9]+)?");
    return std::regex_replace(reason, number, "#");
}

Verdict verdictOf(verification::Grade grade, const std::string& reason)
{
    Verdict verdict;
    verdict.finding = findingOf(grade);
    if (verdict.finding == Finding::FALSE_SUCCESS && saysOutsideData(reason))
        verdict.finding = Finding::REFUSED; // by its certificate
    verdict.detail = reason;
    verdict.kind = kindOfReason(reason);
    return verdict;
}

} // namespace

Verdict certify(performance::TheoreticalPerformance& engine)
{
    using Shifting = performance::equilibrium::NozzleSectionConditions;
    using Frozen = performance::frozen::NozzleSectionConditions;
    std::vector<const Shifting*> shifting;
    std::vector<const Frozen*> frozen;
    for (const Shifting* section : {engine.getExitSection(), engine.getOverExpansionSection()}) {
        if (const auto* const one = dynamic_cast<const Frozen*>(section))
            frozen.push_back(one);
        else if (section != nullptr)
            shifting.push_back(section);
    }
    const verification::EngineCertificate certificate =
        verification::certify(*engine.getChamber(), shifting, frozen);
    Verdict verdict = verdictOf(certificate.grade, certificate.reason);
    verdict.exitT = engine.getExitSection()->getT();
    return verdict;
}

Verdict certify(const reaction::Equilibrium& state)
{
    const verification::EquilibriumCertificate certificate = state.certificate();
    return verdictOf(certificate.grade, certificate.reason);
}

bool saysOutsideData(const std::string& message)
{
    static const std::array<const char*, 4> sayings{
        "where their data begin", "where their data end", "is too low for species",
        "outside the range of its data"};
    return std::any_of(sayings.begin(), sayings.end(), [&](const char* saying) {
        return message.find(saying) != std::string::npos;
    });
}

} // namespace convergence
