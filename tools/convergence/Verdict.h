#pragma once

#include <ketra/verification/criteria/Grade.h>

#include <string>

namespace convergence {

/// How a calculation is posed: as a host does, with both, or as the method alone, with neither.
struct Method {
    bool persistent = true;
    bool warmStart = true;
};

/// What became of a case. A false success is one that the solver reports and the certificate
/// denies. A case is refused if its message, or the reason of its certificate, says that a state
/// lies outside the range of the data, and failed with any other message.
enum class Finding { GRADE_A, GRADE_B, REFUSED, FAILED, FALSE_SUCCESS };
constexpr int findingCount = 5;

/// Where the calculation of an engine stands.
enum class Stage { CHAMBER, EXIT, THROTTLING };

/// Where the flow of an engine ends.
enum class ExitRange { ABOVE_300, FROM_200_TO_300, BELOW_200, UNKNOWN };

struct Verdict {
    Finding finding = Finding::FAILED;
    std::string kind;   // of what went wrong: without numbers and names of species; else empty
    std::string detail; // the same in full
    double exitT = 0.0; // K, of an engine that is solved
    Stage stage = Stage::CHAMBER;         // of a failure
    ExitRange range = ExitRange::UNKNOWN; // of an engine that is not, where it was looked for
};

/// The finding of a finished calculation.
inline Finding findingOf(verification::Grade grade)
{
    using verification::Grade;
    if (grade == Grade::F) return Finding::FALSE_SUCCESS;
    return grade == Grade::A ? Finding::GRADE_A : Finding::GRADE_B;
}

inline bool isCertified(Finding finding)
{
    return finding == Finding::GRADE_A || finding == Finding::GRADE_B;
}

} // namespace convergence
