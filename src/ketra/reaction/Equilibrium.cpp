#include <ketra/reaction/Equilibrium.h>

#include <ketra/reaction/detail/SolvedState.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Propellant.h>

#include <algorithm>
#include <cmath>

using thermo::gasConstant;
using thermo::referencePressure;
using thermo::Species;

namespace reaction {

namespace {

constexpr double startTemperature = 3600.0; // K, from which the iteration practically never fails

double lnOfPressure(double p) { return std::log(p / referencePressure); }

} // namespace

Equilibrium::Equilibrium(thermo::Propellant& propellant) : Equilibrium(propellant, true, false) {}

Equilibrium::Equilibrium(thermo::Propellant& propellant, bool multiphase, bool ions)
    : processType(PH), mixture(std::make_unique<ReactingMixture>(propellant, multiphase, ions)),
      H(propellant.H()), U(propellant.U())
{
    storeTemperature(startTemperature);
}

Equilibrium::Equilibrium(thermo::Mixture& initial) : Equilibrium(initial, true, false) {}

Equilibrium::Equilibrium(thermo::Mixture& initial, bool multiphase, bool ions)
    : processType(PH), mixture(std::make_unique<ReactingMixture>(initial, multiphase, ions)),
      H(initial.H()), U(initial.U())
{
    storeTemperature(startTemperature);
}

Equilibrium::Equilibrium(const ReactingMixture& other)
    : processType(PT), mixture(std::make_unique<ReactingMixture>(other, true, true))
{
    storeTemperature(startTemperature);
}

// S takes its value from H of the source: a copy is posed anew before it is solved, and only the
// `set` operations pose a problem.
Equilibrium::Equilibrium(const Equilibrium& other)
    : maxCycles(other.maxCycles), traceLimit(other.traceLimit), baseTolerance(other.baseTolerance),
      processType(other.processType),
      mixture(std::make_unique<ReactingMixture>(*other.mixture, true, true)),
      H(processType == PH ? other.H : 0.0), S(processType == PS ? other.H : 0.0), p(other.p),
      v(other.v), lnP(p > 0.0 ? lnOfPressure(p) : 0.0), persistent(other.persistent),
      warmStart(other.warmStart)
{
    if (other.nearest) nearest = std::make_unique<detail::SolvedState>(*other.nearest);
    storeTemperature(processType == PT      ? other.T
                     : warmStart && nearest ? nearest->T
                                            : startTemperature);
    if (v > 0.0) lnPv = lnPvAt(T);
}

Equilibrium::~Equilibrium() = default;

void Equilibrium::setPT(double newP, double newT)
{
    setP(newP);
    setT(newT);
    processType = PT;
}

void Equilibrium::setPH(double newP, double newH)
{
    setP(newP);
    clearTargets();
    setH(newH);
}

void Equilibrium::setPHspec(double newP, double h) { setPH(newP, initialMm() * h); }

void Equilibrium::setPS(double newP, double newS)
{
    setP(newP);
    clearTargets();
    S = newS;
    processType = PS;
}

void Equilibrium::setPSspec(double newP, double s) { setPS(newP, initialMm() * s); }

void Equilibrium::setVT(double newV, double newT)
{
    setT(newT);
    setV(newV);
    processType = VT;
}

void Equilibrium::setVU(double newV, double newU)
{
    setV(newV);
    clearTargets();
    setU(newU);
}

void Equilibrium::setVUspec(double newV, double u) { setVU(newV, initialMm() * u); }

void Equilibrium::setVS(double newV, double newS)
{
    setV(newV);
    clearTargets();
    S = newS;
    processType = VS;
}

void Equilibrium::setVSspec(double newV, double s) { setVS(newV, initialMm() * s); }

void Equilibrium::setT(double newT)
{
    solved = false;
    storeTemperature(newT);
    if (v > 0.0) lnPv = lnPvAt(T);
}

// lnT and RT follow in `reset`.
void Equilibrium::adjustT(double newT)
{
    if (!(newT > T)) return;
    solved = false;
    T = newT;
    if (v > 0.0) lnPv = lnPvAt(T);
}

void Equilibrium::setRelativeTolerance(double tolerance)
{
    relativeTolerance = std::abs(tolerance);
}

void Equilibrium::setPersistent(bool newPersistent)
{
    persistent = newPersistent;
    if (persistent && solved && !nearest) rememberSolution();
}

void Equilibrium::setWarmStart(bool newWarmStart)
{
    warmStart = newWarmStart;
    if (warmStart && solved && !nearest) rememberSolution();
}

void Equilibrium::rememberSolution() { nearest = std::make_unique<detail::SolvedState>(*this); }

void Equilibrium::setP(double newP)
{
    solved = false;
    p = newP;
    v = 0.0;
    lnPv = 0.0;
    lnP = lnOfPressure(p);
}

void Equilibrium::setV(double newV)
{
    solved = false;
    p = 0.0;
    lnP = 0.0;
    v = newV;
    lnPv = lnPvAt(T);
}

void Equilibrium::setH(double newH)
{
    solved = false;
    H = newH;
    processType = PH;
}

void Equilibrium::setHspec(double h) { setH(initialMm() * h); }

void Equilibrium::setS(double newS)
{
    solved = false;
    S = newS;
    processType = p > 0.0 ? PS : VS;
}

void Equilibrium::setSspec(double s) { setS(initialMm() * s); }

void Equilibrium::setU(double newU)
{
    solved = false;
    U = newU;
    processType = VU;
}

void Equilibrium::setUspec(double u) { setU(initialMm() * u); }

double Equilibrium::target() const
{
    switch (processType) {
    case PH:
        return H;
    case PS:
    case VS:
        return S;
    case VU:
        return U;
    case PT:
    case VT:
        break;
    }
    return 0.0;
}

double Equilibrium::initialMm() const { return mixture->mixture->mm(); }

double Equilibrium::lnPvAt(double atT) const
{
    return std::log(gasConstant * atT / (initialMm() * v * referencePressure));
}

void Equilibrium::clearTargets() { H = Hspec = S = Sspec = U = Uspec = G = Gspec = 0.0; }

void Equilibrium::storeTemperature(double newT)
{
    T = newT;
    lnT = std::log(T);
    RT = gasConstant * T;
}

void Equilibrium::removeIons()
{
    solved = false;
    mixture->removeIons();
}

void Equilibrium::setSpecies(std::vector<std::string>& included, std::vector<std::string>& omitted)
{
    solved = false;
    mixture->setSpecies(included, omitted);
}

const Species* Equilibrium::getCondensedSpecies(unsigned int i) const
{
    return i < getNumberOfCondensedSpecies() ? mixture->product(mixture->gasSize() + i) : nullptr;
}

void Equilibrium::getCondensedSpecies(std::vector<const Species*>* out) const
{
    if (!out) return;
    out->clear();
    for (unsigned int c = mixture->gasSize(); c < mixture->size(); ++c)
        out->push_back(mixture->product(c));
}

void Equilibrium::getAllSpecies(std::vector<const Species*>* out, double minN) const
{
    if (!out) return;
    out->clear();
    for (unsigned int j = 0; j < mixture->size(); ++j)
        if (mixture->n(j) >= minN) out->push_back(mixture->product(j));
}

void Equilibrium::getAllSpeciesNames(std::vector<std::string>* out, double minN) const
{
    if (!out) return;
    out->clear();
    for (unsigned int j = 0; j < mixture->size(); ++j)
        if (mixture->n(j) >= minN) out->push_back(mixture->product(j)->getName());
}

void Equilibrium::getDifference(const std::vector<const Species*>* a,
                                const std::vector<const Species*>* b,
                                std::vector<const Species*>* out) const
{
    const auto appendMissing = [out](const auto& list, const auto& others) {
        for (const Species* species : list) {
            const bool known = std::any_of(others.begin(), others.end(),
                                           [&](const Species* other) { return *other == species; });
            if (!known) out->push_back(species);
        }
    };
    appendMissing(*a, *b);
    appendMissing(*b, *a);
}

ReactingMixture* Equilibrium::copyReactingMixture(bool condensed, bool ions) const
{
    return std::make_unique<ReactingMixture>(*mixture, condensed, ions).release();
}

} // namespace reaction
