#include <ketra/verification/criteria/EquilibriumLimits.h>

#include <algorithm>

namespace verification {

namespace {

// Relative differences of potentials below this are rounding: potentials over R T reach a few
// hundred, and the factorisation loses some four digits where weights span ten powers of ten.
constexpr double rounding = 1e-10;

constexpr EquilibriumLimits limitsOfB{
    .elementResidual = 1e-5,
    .charge = 1e-5,
    .gasResidual = 1e-5,
    .optimality = 1e-4,
    .fractionResidual = 1e-6,
    .drivingForce = 1e-5,
    .missingFraction = 1e-6,
    .targetResidual = 1e-4,
    .hiddenForce = 1.5,
};

} // namespace

EquilibriumLimits EquilibriumLimits::of(Grade grade, double tolerance)
{
    const EquilibriumLimits& b = limitsOfB;
    if (grade != Grade::A) return b;
    const auto limit = [tolerance](double share, double ofB) {
        return std::min(std::max(share * tolerance, rounding), ofB);
    };
    return {
        .elementResidual = limit(0.1, b.elementResidual),
        .charge = limit(1.0, b.charge),
        .gasResidual = limit(10.0, b.gasResidual),
        .optimality = limit(10.0, b.optimality),
        .fractionResidual = limit(1.0, b.fractionResidual),
        .drivingForce = limit(10.0, b.drivingForce),
        .missingFraction = limit(1.0, b.missingFraction),
        .targetResidual = limit(10.0, b.targetResidual),
        .hiddenForce = limit(10.0, b.hiddenForce),
    };
}

} // namespace verification
