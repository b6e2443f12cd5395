#include <ketra/performance/frozen/NozzleSectionConditions.h>

#include <ketra/performance/detail/Required.h>
#include <ketra/performance/frozen/Chamber.h>
#include <ketra/performance/frozen/detail/StreamSolver.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>

#include <algorithm>

using performance::detail::required;

namespace performance::frozen {

NozzleSectionConditions::NozzleSectionConditions(Chamber* chamber, double value,
                                                 CONDITION_TYPE type, bool calculateTransport)
    : persistent(chamber->isPersistent())
{
    const equilibrium::NozzleSectionConditions& freezing = *chamber->getEquilibriumSection();
    try {
        const reaction::Equilibrium& injection =
            required(chamber->getReaction(Chamber::INJECTION_PLANE));
        const reaction::Equilibrium& end = required(chamber->getReaction(Chamber::CHAMBER_END));
        StreamSolver solver(*this, frozenCore, core,
                            {injection, end, required(chamber->getDerivatives(Chamber::THROAT)),
                             chamber->getThroatFlux(), required(freezing.getReaction())});
        if (type == PRESSURE) {
            p = value;
            solver.expand(
                std::max(StreamSolver::floorT, solver.guessByPressure(value / end.getP())));
        } else if (type == PRESSURE_RATIO) {
            // The guess takes the ratio to the chamber end, though it is given to the injection.
            p = injection.getP() / value;
            solver.expand(std::max(StreamSolver::floorT, solver.guessByPressure(1 / value)));
        } else {
            solver.findAreaRatio(value, persistent);
        }
        solver.storeState();
        core.Fr = type == PRESSURE || type == PRESSURE_RATIO ? solver.areaRatio() : value;
        solver.storePerformance(chamber->getBetta(0.0));
        Pi = injection.getP() / p;
        solver.storeTransport(required(freezing.getDerivatives()), calculateTransport);
        blc_solve(chamber, calculateTransport);
    } catch (const thermo::Exception& failure) {
        throw thermo::Exception(failure.getType());
    }
}

NozzleSectionConditions::~NozzleSectionConditions() = default;

void NozzleSectionConditions::blc_solve(Chamber* chamber, bool calculateTransport)
{
    const equilibrium::NozzleSectionConditions& freezing = *chamber->getEquilibriumSection();
    if (!freezing.isBLC()) return;
    try {
        const reaction::Equilibrium& end = required(chamber->getBlcReaction(Chamber::CHAMBER_END));
        const auto& throat = required(chamber->getBlcDerivatives(Chamber::THROAT));
        StreamSolver solver(*this, frozenLayer, layer,
                            {required(chamber->getBlcReaction(Chamber::INJECTION_PLANE)), end,
                             throat, throat.getRho() * throat.getA(),
                             required(freezing.getBlcReaction())});
        BLC = freezing.getBLC();
        // It is the core that tells whether the start is too cold for the layer.
        const double guessed = solver.guessByPressure(p / end.getP());
        solver.expand(frozenCore.T < StreamSolver::floorT ? StreamSolver::floorT : guessed);
        solver.storeState();
        layer.Fr = solver.areaRatio();
        solver.storePerformance(chamber->getBetta(0.0));
        solver.storeTransport(required(freezing.getBlcDerivatives()), calculateTransport);
    } catch (const thermo::Exception& failure) {
        frozenLayer.mixture.reset();
        frozenLayer.products.reset();
        throw thermo::Exception(failure.getType());
    }
}

const NozzleSectionConditions::Frozen& NozzleSectionConditions::presentLayer() const
{
    if (!frozenLayer.products) throw thermo::Exception(0);
    return frozenLayer;
}

thermo::Mixture* NozzleSectionConditions::getResultingMixture() const
{
    return new thermo::Mixture(*frozenCore.mixture);
}

double NozzleSectionConditions::Frozen::R_spec() const { return thermo::gasConstant / Mm; }

double NozzleSectionConditions::Frozen::Mm2() const
{
    double condensed = 0.0;
    for (unsigned int j = products->gasSize(); j < products->size(); ++j)
        condensed += products->n(j);
    return products->gasSize() < products->size() ? Mm / (1 - condensed / N) : Mm;
}

} // namespace performance::frozen
