#include <ketra/performance/equilibrium/NozzleSectionConditions.h>

#include <ketra/gasdynamics/gasdynamics.h>
#include <ketra/performance/detail/Required.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/detail/NozzleSectionSolver.h>
#include <ketra/thermo/Exception.h>

#include <cmath>

using performance::detail::required;

namespace performance::equilibrium {

NozzleSectionConditions::NozzleSectionConditions() = default;

NozzleSectionConditions::NozzleSectionConditions(Chamber* chamber, double value,
                                                 CONDITION_TYPE type, bool supersonic,
                                                 bool expectCondensed, bool calculateTransport,
                                                 int tableSize)
{
    try {
        Solver solver(*this, *chamber, supersonic, expectCondensed, calculateTransport, tableSize);
        solver.solve(value, type);
        blc_solve(chamber, solver.isSupersonic(), expectCondensed, calculateTransport);
    } catch (const thermo::Exception& failure) {
        throw thermo::Exception(failure.getType());
    }
}

NozzleSectionConditions::~NozzleSectionConditions() = default;

const reaction::Equilibrium& NozzleSectionConditions::Stream::solved() const
{
    if (!problem) throw thermo::Exception(0);
    return *problem;
}

const reaction::Derivatives& NozzleSectionConditions::Stream::derived() const
{
    if (!derivatives) throw thermo::Exception(0);
    return *derivatives;
}

void NozzleSectionConditions::Stream::store(double p, bool supersonic)
{
    F = 1 / (derivatives->getRho() * W);
    Mach = W / derivatives->getA();
    if (!supersonic) return;
    Is_v = F * p + W;
    Is = W;
    Kp_v = Is_v / Betta;
    Kp = W / Betta;
}

void NozzleSectionConditions::blc_solve(Chamber* chamber, bool supersonic, bool expectCondensed,
                                        bool)
{
    layer.derivatives.reset();
    layer.problem.reset();
    if (!chamber->isBLC()) return;

    const auto& injection = required(chamber->getBlcReaction(Chamber::INJECTION_PLANE));
    const auto& end = required(chamber->getBlcReaction(Chamber::CHAMBER_END));
    const auto& endDerivatives = required(chamber->getBlcDerivatives(Chamber::CHAMBER_END));
    const auto& throat = required(chamber->getBlcDerivatives(Chamber::THROAT));
    const double S = end.getResultingMixtureQuantaty() * end.getS();
    const bool warm = chamber->isWarmStart();
    auto problem = std::make_unique<reaction::Equilibrium>(
        warm && supersonic ? required(chamber->getBlcReaction(Chamber::THROAT)) : end);
    problem->setPersistent(chamber->isPersistent());
    problem->setWarmStart(warm);
    problem->setPS(p, S);
    if (!warm) {
        const double k = supersonic ? throat.getK() : (endDerivatives.getK() + throat.getK()) * 0.5;
        const double lambda = gasdynamics::lambda_pi(p / end.getP(), k, supersonic);
        problem->setT(startTemperature(end.getT() * gasdynamics::gf_tau(lambda, k)));
    }
    layer.derivatives.reset(Combustor::solveReaction(problem.get(),
                                                     injection.getRelativeTolerance(),
                                                     expectCondensed, /*calculateTransport=*/true));
    layer.problem = std::move(problem);

    BLC = chamber->getBLC();
    layer.Betta = chamber->getBetta_blc();
    layer.W = std::sqrt(2 * (injection.getHspec() - layer.problem->getHspec()));
    layer.Fr = throat.getRho() * throat.getA() / (layer.derivatives->getRho() * layer.W);
    layer.store(p, supersonic);
}

double NozzleSectionConditions::weightedBetta(double w) const
{
    return w * layer.Betta + (1 - w) * core.Betta;
}

double NozzleSectionConditions::getIs_v(double x) const
{
    const double w = weightOf(x);
    return w == 0.0 ? core.Is_v : w * layer.Is_v + (1 - w) * core.Is_v;
}

double NozzleSectionConditions::getIs(double x) const
{
    const double w = weightOf(x);
    return w == 0.0 ? core.Is : w * layer.Is_v + (1 - w) * core.Is;
}

double NozzleSectionConditions::getKp_v(double x) const
{
    const double w = weightOf(x);
    return w == 0.0 ? core.Kp_v : getIs_v(x) / weightedBetta(w);
}

double NozzleSectionConditions::getKp(double x) const
{
    const double w = weightOf(x);
    return w == 0.0 ? core.Kp : getIs(x) / weightedBetta(w);
}

double NozzleSectionConditions::getIs_H(double pa, double x) const
{
    const double w = weightOf(x);
    return w == 0.0 ? core.impulseAt(pa) : w * layer.impulseAt(pa) + (1 - w) * core.impulseAt(pa);
}

double NozzleSectionConditions::getKp_H(double pa, double x) const
{
    const double w = weightOf(x);
    return getIs_H(pa, x) / (w == 0.0 ? core.Betta : weightedBetta(w));
}

double NozzleSectionConditions::getKp_H_core(double pa) const
{
    return getIs_H(pa, 0.0) / core.Betta;
}

double NozzleSectionConditions::getKp_H_blc(double pa) const
{
    return layer.impulseAt(pa) / layer.Betta;
}

} // namespace performance::equilibrium
