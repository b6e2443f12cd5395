#include <ketra/reaction/detail/ReducedSystem.h>

#include <algorithm>

using math::matrix::ColumnVector;
using math::matrix::LinearSystem;

namespace reaction::detail {

Unknowns unknownsOf(Equilibrium::PROCESS_TYPE type, unsigned int elements, unsigned int condensed)
{
    Unknowns at{};
    at.hasLnN = type <= Equilibrium::PT;
    at.hasT = type != Equilibrium::PT && type != Equilibrium::VT;
    at.pi = at.hasLnN ? 1 : 0;
    at.lnT = at.pi + elements;
    at.dn = at.lnT + (at.hasT ? 1 : 0);
    at.order = at.dn + condensed;
    return at;
}

ReducedSystem::ReducedSystem(const ReactingMixture& newMixture, const ReactingState& newState)
    : mixture(newMixture), state(newState)
{
    const std::size_t m = state.elements();
    aan.resize(m * m);
    an.resize(m);
    anE.resize(m);
    anMu.resize(m);
}

void ReducedSystem::assemble(const Target& target)
{
    const unsigned int condensed = mixture.isMultiphase() ? state.size() - state.gasSize() : 0;
    at = unknownsOf(target.type, state.elements(), condensed);
    if (!A || A->rowCount() != at.order) {
        A = std::make_unique<LinearSystem>(at.order);
        rhs = std::make_unique<ColumnVector>(at.order);
    }
    gatherGases(target);
    for (unsigned int i = 0; i < state.elements(); ++i) elementRow(i);
    if (at.hasLnN) molesRow(target);
    if (at.hasT) {
        if (target.type == Equilibrium::PS || target.type == Equilibrium::VS)
            entropyRow(target);
        else
            energyRow(target);
    }
    for (unsigned int c = 0; c < condensed; ++c) condensedRow(c);
}

void ReducedSystem::solve(ColumnVector& x) { A->solveLU(*rhs, x); }

void ReducedSystem::solveDependent(const ColumnVector& present, ColumnVector& x)
{
    A->solveNearest(*rhs, present, at.pi, at.pi + state.elements(), x);
}

// One pass over the gases for all sums of the element and mole rows; the element block is symmetric
// and only its upper half is summed.
void ReducedSystem::gatherGases(const Target& target)
{
    const unsigned int m = state.elements();
    const unsigned int ng = state.gasSize();
    const std::vector<double>& E = energy();
    for (auto* sums : {&aan, &an, &anE, &anMu}) std::fill(sums->begin(), sums->end(), 0.0);
    sumN = sumNE = sumNMu = 0.0;
    psi.resize(ng);
    for (unsigned int j = 0; j < ng; ++j) {
        const double n = state.n[j];
        const double mu = state.G[j] + (state.lnN[j] + target.offset);
        psi[j] = mu;
        sumN += n;
        sumNE += n * E[j];
        sumNMu += n * mu;
        const double* a = state.row(j);
        for (unsigned int i = 0; i < m; ++i) {
            if (a[i] == 0.0) continue;
            const double ain = a[i] * n;
            an[i] += ain;
            anE[i] += ain * E[j];
            anMu[i] += ain * mu;
            double* sums = &aan[std::size_t{i} * m];
            for (unsigned int k = i; k < m; ++k) sums[k] += ain * a[k];
        }
    }
}

// Balance of element i, [RP1311] (2.24), (2.45):
//   sum a_ij n_j dln n + sum_k (sum a_ij a_kj n_j) pi_k + (sum a_ij n_j E_j) dln T + sum a_ic dn_c
//     = b_i - sum a_ij n_j + sum a_ij n_j mu_j
void ReducedSystem::elementRow(unsigned int i)
{
    const unsigned int m = state.elements();
    if (at.hasLnN) A->set(i, 0, an[i]);
    for (unsigned int k = 0; k < m; ++k)
        A->set(i, at.pi + k, aan[std::size_t{std::min(i, k)} * m + std::max(i, k)]);
    if (at.hasT) A->set(i, at.lnT, anE[i]);

    double present = an[i];
    for (unsigned int j = state.gasSize(); j < state.size(); ++j) {
        present += state.row(j)[i] * state.n[j];
        if (mixture.isMultiphase()) A->set(i, at.dn + j - state.gasSize(), state.row(j)[i]);
    }
    rhs->set(i, mixture.b(i) / mixture.element(i)->am() - present + anMu[i]);
}

// Balance of the moles of gas, [RP1311] (2.26).
void ReducedSystem::molesRow(const Target& target)
{
    const unsigned int m = state.elements();
    A->set(m, 0, sumN - target.Ng);
    for (unsigned int k = 0; k < m; ++k) A->set(m, at.pi + k, an[k]);
    if (at.hasT) A->set(m, at.lnT, sumNE);
    for (unsigned int c = at.dn; c < at.order; ++c) A->set(m, c, 0.0);
    rhs->set(m, target.Ng - sumN + sumNMu);
}

// Prescribed enthalpy, [RP1311] (2.27), or internal energy, (2.47).
void ReducedSystem::energyRow(const Target& target)
{
    const unsigned int m = state.elements();
    const unsigned int row = at.lnT;
    const std::vector<double>& E = energy();
    const std::vector<double>& C = heatCapacity();
    double squares = 0.0;
    double capacity = 0.0;
    double mixed = 0.0;
    for (unsigned int j = 0; j < state.gasSize(); ++j) {
        squares += state.n[j] * E[j] * E[j];
        mixed += state.n[j] * E[j] * psi[j];
    }
    double present = sumNE;
    for (unsigned int j = 0; j < state.size(); ++j) capacity += state.n[j] * C[j];
    for (unsigned int j = state.gasSize(); j < state.size(); ++j) present += state.n[j] * E[j];

    if (at.hasLnN) A->set(row, 0, sumNE);
    for (unsigned int k = 0; k < m; ++k) A->set(row, at.pi + k, anE[k]);
    A->set(row, at.lnT, squares + capacity);
    for (unsigned int c = at.dn; c < at.order; ++c) A->set(row, c, E[state.gasSize() + c - at.dn]);
    rhs->set(row, target.value - present + mixed);
}

// Prescribed entropy, [RP1311] (2.28), (2.48).
void ReducedSystem::entropyRow(const Target& target)
{
    const unsigned int m = state.elements();
    const unsigned int row = at.lnT;
    const std::vector<double>& E = energy();
    const std::vector<double>& C = heatCapacity();
    double entropy = 0.0; // of the gases
    double crossed = 0.0;
    double mixed = 0.0;
    std::vector<double>& weighted = an; // the moles and element rows are filled: reused
    std::fill(weighted.begin(), weighted.end(), 0.0);
    for (unsigned int j = 0; j < state.gasSize(); ++j) {
        const double n = state.n[j];
        const double s = state.S[j] - (state.lnN[j] + target.offset);
        const double w = s - 1.0;
        entropy += n * s;
        crossed += n * w * E[j];
        mixed += n * w * psi[j];
        const double* a = state.row(j);
        for (unsigned int k = 0; k < m; ++k) weighted[k] += a[k] * n * w;
    }
    double capacity = 0.0;
    for (unsigned int j = 0; j < state.size(); ++j) capacity += state.n[j] * C[j];
    double condensedEntropy = 0.0;
    for (unsigned int j = state.gasSize(); j < state.size(); ++j)
        condensedEntropy += state.n[j] * state.S[j];

    if (at.hasLnN) A->set(row, 0, entropy);
    for (unsigned int k = 0; k < m; ++k) A->set(row, at.pi + k, weighted[k]);
    A->set(row, at.lnT, crossed + capacity);
    for (unsigned int c = at.dn; c < at.order; ++c)
        A->set(row, c, state.S[state.gasSize() + c - at.dn]);
    rhs->set(row, target.value - entropy - condensedEntropy + mixed);
}

// A condensed phase in equilibrium, [RP1311] (2.25), (2.46): sum a_kc pi_k + E_c dln T = mu_c.
void ReducedSystem::condensedRow(unsigned int c)
{
    const unsigned int row = at.dn + c;
    const unsigned int j = state.gasSize() + c;
    if (at.hasLnN) A->set(row, 0, 0.0);
    for (unsigned int k = 0; k < state.elements(); ++k) A->set(row, at.pi + k, state.row(j)[k]);
    if (at.hasT) A->set(row, at.lnT, energy()[j]);
    for (unsigned int other = at.dn; other < at.order; ++other) A->set(row, other, 0.0);
    rhs->set(row, state.G[j]);
}

} // namespace reaction::detail
