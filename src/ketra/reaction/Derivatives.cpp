#include <ketra/reaction/Derivatives.h>

#include <ketra/math/matrix/Exception.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/reaction/QuasiProduct.h>
#include <ketra/reaction/ReactingMixture.h>
#include <ketra/reaction/detail/DeterminedSystem.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/GasMixture.h>
#include <ketra/util/Log.h>

#include <algorithm>
#include <cmath>
#include <vector>

using math::matrix::ColumnVector;
using math::matrix::LinearSystem;
using thermo::gasConstant;

namespace reaction {

namespace {

/// What a system determines: an element without products at this temperature, such as the electron
/// of ions that have all left, has an empty row. Null if its rows contradict each other.
std::unique_ptr<ColumnVector> determined(const LinearSystem& system, const ColumnVector& rhs)
{
    constexpr double consistent = 1e-9; // of the largest number on the right: what a row may miss
    const std::size_t n = rhs.size();
    std::vector<double> A(system.getData(), system.getData() + n * n);
    std::vector<double> b(rhs.getData(), rhs.getData() + n);
    std::vector<double> x;
    detail::solveWhatIsDetermined(A, b, x);
    double most = 0.0;
    for (unsigned int i = 0; i < n; ++i) most = std::max(most, std::fabs(rhs.at(i)));
    auto solution = std::make_unique<ColumnVector>(rhs.size());
    for (unsigned int i = 0; i < n; ++i) {
        double miss = -rhs.at(i);
        for (unsigned int k = 0; k < n; ++k) miss += system.at(i, k) * x[k];
        if (!(std::fabs(miss) <= consistent * most)) return nullptr;
        solution->set(i, x[i]);
    }
    return solution;
}

/// Solves by the quick method, and by the robust one if that does not converge; null if the system
/// has no solution. A \p persistent problem is content with what its system determines.
std::unique_ptr<ColumnVector> solved(const LinearSystem& system, const ColumnVector& rhs,
                                     bool persistent)
{
    constexpr unsigned int noConvergence = 4;
    try {
        return std::unique_ptr<ColumnVector>(system.solve(&rhs, /*first=*/true));
    } catch (const math::matrix::Exception& failure) {
        if (failure.getType() != noConvergence)
            return persistent ? determined(system, rhs) : nullptr;
    }
    try {
        return std::unique_ptr<ColumnVector>(system.solve(&rhs, /*first=*/false));
    } catch (const math::matrix::Exception&) {
        return persistent ? determined(system, rhs) : nullptr;
    }
}

/// Amount of an entry, mol. Of a group of merged phases the default method counts the first alone;
/// a \p persistent problem, which may hold two phases in earnest at their melting point, all.
double amountOf(const Product& entry, bool persistent)
{
    const auto* group = persistent ? dynamic_cast<const QuasiProduct*>(&entry) : nullptr;
    return group ? group->getTotalN() : entry.n();
}

/// Amount of the condensed entries, mol.
double condensedMoles(const ReactingMixture& mixture, bool persistent)
{
    double moles = 0.0;
    for (unsigned int j = mixture.gasSize(); j < mixture.size(); ++j)
        moles += amountOf(*mixture.product(j), persistent);
    return moles;
}

/// Mass of the entries from \p from up to but excluding \p to, g.
double massOf(const ReactingMixture& mixture, unsigned int from, unsigned int to, bool persistent)
{
    double mass = 0.0;
    for (unsigned int j = from; j < to; ++j) {
        const Product& entry = *mixture.product(j);
        mass += amountOf(entry, persistent) * entry.getM();
    }
    return mass;
}

} // namespace

Derivatives::Derivatives(Equilibrium* solvedProblem)
    : equilibrium(solvedProblem), mixture(solvedProblem->copyReactingMixture(true, true)),
      N(solvedProblem->getNg())
{
    init();
}

Derivatives::Derivatives(ReactingMixture* solvedMixture, double newT, double newP)
    : mixture(solvedMixture), T(newT), p(newP), N(solvedMixture->getNg())
{
    init();
}

Derivatives::~Derivatives() = default;

bool Derivatives::isConstantVolume() const
{
    return equilibrium && equilibrium->getProcessType() >= Equilibrium::VU;
}

bool Derivatives::isPersistent() const { return equilibrium && equilibrium->isPersistent(); }

double Derivatives::getP() const
{
    return equilibrium && !isConstantVolume() ? equilibrium->getP() : p;
}

double Derivatives::temperature() const { return equilibrium ? equilibrium->getT() : T; }

double Derivatives::gasMoles() const
{
    return equilibrium ? equilibrium->getNg() : mixture->getNg();
}

void Derivatives::init()
{
    // Of a group that is merged, the mixture knows the first phase alone.
    const bool persistent = isPersistent();
    if (persistent) resultingMixture.reset(mixture->copyResultingMixture());
    mixture->mergeCondensedPhases();
    if (!persistent) resultingMixture.reset(mixture->copyResultingMixture());
    const double condensed = condensedMoles(*mixture, persistent);
    N += condensed;

    const double Ng = gasMoles();
    gasMixture = std::make_shared<thermo::GasMixture>(temperature(), getP(),
                                                      thermo::_Species::MOLE_FRACTION);
    for (unsigned int j = 0; j < mixture->gasSize(); ++j)
        gasMixture->addSpecies(mixture->product(j), mixture->n(j) / Ng);

    Mm = resultingMixture->getMm();
    Mm2 = mixture->gasSize() < mixture->size() ? Mm / (1 - condensed / N) : Mm;
}

/// Matrix of the derivatives [RP1311, tables 2.3 and 2.4]; unknowns pi_k, ln n and n_c:
///
///     element i     sum a_ij a_kj n_j   sum a_ij n_j   a_ic
///     moles         sum a_kj n_j        0              0
///     condensed c   a_kc                0              0
LinearSystem* Derivatives::composeMatrix() const
{
    const ReactingMixture* m = mixture.get();
    const unsigned int elements = m->elSize(), gases = m->gasSize();
    const unsigned int condensed = m->size() - gases;
    const unsigned int lnN = elements, first = elements + 1;

    auto system = std::make_unique<LinearSystem>(first + condensed);
    for (unsigned int i = 0; i < elements; ++i) {
        for (unsigned int l = 0; l <= i; ++l) {
            const double sum = Equilibrium::sum_aan(i, l, 0, gases, m);
            system->set(i, l, sum);
            system->set(l, i, sum);
        }
        const double sum = Equilibrium::sum_an(i, 0, gases, m);
        system->set(i, lnN, sum);
        system->set(lnN, i, sum);
        for (unsigned int c = 0; c < condensed; ++c) {
            system->set(i, first + c, m->a(i, gases + c));
            system->set(first + c, i, m->a(i, gases + c));
        }
    }
    return system.release();
}

ColumnVector* Derivatives::solveSystemT(LinearSystem* system) const
{
    const ReactingMixture* m = mixture.get();
    const unsigned int elements = m->elSize(), gases = m->gasSize();
    ColumnVector rhs(system->rowCount());
    for (unsigned int i = 0; i < elements; ++i) rhs.set(i, -Equilibrium::sum_anH(i, 0, gases, m));
    rhs.set(elements, -Equilibrium::sum_nH(0, gases, m));
    for (unsigned int c = gases; c < m->size(); ++c)
        rhs.set(elements + 1 + c - gases, -m->product(c)->H0_tilde());
    return solved(*system, rhs, isPersistent()).release();
}

ColumnVector* Derivatives::solveSystemP(LinearSystem* system) const
{
    const ReactingMixture* m = mixture.get();
    const unsigned int elements = m->elSize(), gases = m->gasSize();
    ColumnVector rhs(system->rowCount());
    for (unsigned int i = 0; i < elements; ++i) rhs.set(i, Equilibrium::sum_an(i, 0, gases, m));
    rhs.set(elements, Equilibrium::sum_n(0, gases, m));
    return solved(*system, rhs, isPersistent()).release();
}

/// d ln n_j / d ln T = sum a_ij pi_i + d ln n + H_j/(R T)  [RP1311, 2.50]
ColumnVector* Derivatives::getNT(const ColumnVector* xT) const
{
    const unsigned int elements = mixture->elSize();
    auto nT = std::make_unique<ColumnVector>(mixture->gasSize());
    for (unsigned int j = 0; j < mixture->gasSize(); ++j) {
        double sum = 0.0;
        for (unsigned int i = 0; i < elements; ++i) sum += mixture->a(i, j) * xT->at(i);
        nT->set(j, sum + xT->at(elements) + mixture->product(j)->H0_tilde());
    }
    return nT.release();
}

/// d ln n_j / d ln p = sum a_ij pi_i + d ln n - 1  [RP1311, 2.51]
ColumnVector* Derivatives::getNP(const ColumnVector* xP) const
{
    const unsigned int elements = mixture->elSize();
    auto nP = std::make_unique<ColumnVector>(mixture->gasSize());
    for (unsigned int j = 0; j < mixture->gasSize(); ++j) {
        double sum = 0.0;
        for (unsigned int i = 0; i < elements; ++i) sum += mixture->a(i, j) * xP->at(i);
        nP->set(j, sum + xP->at(elements) - 1);
    }
    return nP.release();
}

void Derivatives::solve(bool transport)
{
    const std::unique_ptr<LinearSystem> system(composeMatrix());
    const std::unique_ptr<ColumnVector> xT(solveSystemT(system.get()));
    const std::unique_ptr<ColumnVector> xP(solveSystemP(system.get()));
    if (!xT || !xP) {
        util::Log::errorf("THERMO", "Could not obtain thermodynamic derivatives.%s", util::eol);
        throw thermo::Exception(12, "Could not obtain thermodynamic derivatives");
    }
    d_lnV_d_lnT = xT->at(mixture->elSize()) + 1;
    d_lnV_d_lnp = xP->at(mixture->elSize()) - 1;
    solveHeatCapacities(*xT);

    d_lnp_d_lnT = Cp * Mm2 / (d_lnV_d_lnT * gasConstant);
    k = -gamma / d_lnV_d_lnp;
    a = std::sqrt(-gamma * gasConstant * temperature() / (Mm2 * d_lnV_d_lnp));
    R_spec = gasConstant / Mm2;
    solveDensities();

    betta_t = -d_lnV_d_lnp / p;
    alpha_p = d_lnV_d_lnT / temperature();
    gamma_v = alpha_p / (p * betta_t);

    if (transport) calculateTransportProperties(0.0, /*reacting=*/true);
}

/// Heat capacity of the products with the heat of their reactions:
///   c = sum n_j Cp_j + sum_gas n_j H_j/T (d ln n_j / d ln T) + sum_c H_c/T (d n_c / d ln T),
///   c_v = c + n R (d ln V / d ln T)^2 / (d ln V / d ln p)  [RP1311, 2.59, 2.70]
void Derivatives::solveHeatCapacities(const ColumnVector& xT)
{
    const ReactingMixture& m = *mixture;
    const double T0 = temperature();
    const std::unique_ptr<ColumnVector> nT(getNT(&xT));
    const unsigned int first = m.elSize() + 1;
    const bool persistent = isPersistent();

    double c = 0.0;
    Cpz_spec = 0.0;
    for (unsigned int j = 0; j < m.gasSize(); ++j) {
        const Product& gas = *m.product(j);
        c += gas.n() * gas.Cp0() + gas.n() * gas.H0() * nT->at(j) / T0;
    }
    for (unsigned int j = m.gasSize(); j < m.size(); ++j) {
        const Product& phase = *m.product(j);
        const double reaction = phase.H0() * xT.at(first + j - m.gasSize()) / T0;
        const double amount = amountOf(phase, persistent);
        c += amount * phase.Cp0() + reaction;
        Cpz_spec += (amount * phase.Cp0() + reaction) / phase.getM();
    }
    Cpz_spec *= 1000;

    const double cv = gasMoles() * gasConstant * d_lnV_d_lnT * d_lnV_d_lnT / d_lnV_d_lnp + c;
    gamma = c / cv;
    Cp = c / N;
    Cv = cv / N;
}

void Derivatives::solveDensities()
{
    const unsigned int gases = mixture->gasSize();
    const double gasMass = massOf(*mixture, 0, gases, isPersistent());
    const double mass = gasMass + massOf(*mixture, gases, mixture->size(), isPersistent());
    Z = gases < mixture->size() ? 1 - gasMass / mass : 0.0;

    if (isConstantVolume()) {
        rho = 1 / equilibrium->getV();
        rhoGas = rho * gasMass / mass;
        p = R_spec * temperature() * rho;
    } else {
        if (equilibrium) p = equilibrium->getP();
        // p V = Ng R T; the masses are in g, so 1000 V
        const double volume = gasMoles() * 1000 * gasConstant * temperature() / p;
        rhoGas = gasMass / volume;
        rho = mass / volume;
    }
}

} // namespace reaction
