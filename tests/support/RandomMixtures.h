#pragma once

#include <support/Reactants.h>

#include <ketra/reaction/Equilibrium.h>
#include <ketra/reaction/TransitionProduct.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Constants.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <vector>

// Random charges and states with a fixed seed, and what the laws of equilibrium say of a solution.

namespace ketra_test {

/// A charge and a state of it.
struct RandomState {
    std::vector<Reactant> reactants; // by mass
    bool ions;
    double p; // Pa
    double T; // K
};

/// Draws random states; the same numbers on every machine, which the distributions of the standard
/// library do not promise.
class StateGenerator
{
public:
    explicit StateGenerator(unsigned seed) : engine(seed) {}

    /// Uniform in 0 to 1.
    double uniform() { return static_cast<double>(engine() >> 11) * 0x1p-53; }
    double uniform(double from, double to) { return from + (to - from) * uniform(); }
    double logUniform(double from, double to)
    {
        return from * std::exp(std::log(to / from) * uniform());
    }
    std::size_t below(std::size_t n) { return static_cast<std::size_t>(engine() % n); }

    /// A propellant in common use, from far fuel-rich to far oxidizer-rich, at any chamber or
    /// nozzle state from 600 to 4500 K.
    RandomState propellant()
    {
        struct Pair {
            Reactant oxidizer, fuel;
            double km; // near the one of highest impulse
        };
        static const std::vector<Pair> pairs{
            {{"O2(L)", 90.17, 1.0}, {"H2(L)", 20.27, 1.0}, 6.0},
            {{"O2(L)", 90.17, 1.0}, {"RP-1", 298.15, 1.0}, 2.4},
            {{"O2(L)", 90.17, 1.0}, {"CH4(L)", 111.643, 1.0}, 3.4},
            {{"O2(L)", 90.17, 1.0}, {"NH3(L)", 239.72, 1.0}, 1.4},
            {{"O2(L)", 90.17, 1.0}, {"C2H5OH(L)", 298.15, 1.0}, 1.7},
            {{"N2O4(L)", 298.15, 1.0}, {"CH6N2(L)", 298.15, 1.0}, 2.0},
            {{"N2O4(L)", 298.15, 1.0}, {"N2H4(L)", 298.15, 1.0}, 1.3},
            {{"N2O4(L)", 298.15, 1.0}, {"C2H8N2(L),UDMH", 298.15, 1.0}, 2.6},
            {{"H2O2(L)", 298.15, 1.0}, {"RP-1", 298.15, 1.0}, 7.0},
            {{"F2(L)", 85.02, 1.0}, {"H2(L)", 20.27, 1.0}, 8.0},
            {{"Air", 298.15, 1.0}, {"Jet-A(L)", 298.15, 1.0}, 15.0},
        };
        RandomState state;
        const std::size_t kind = below(pairs.size() + 2);
        if (kind < pairs.size()) {
            const Pair& pair = pairs[kind];
            const double km = pair.km * logUniform(0.4, 2.5);
            state.reactants = {{pair.fuel.name, pair.fuel.T, 1.0 / (1.0 + km)},
                               {pair.oxidizer.name, pair.oxidizer.T, km / (1.0 + km)}};
        } else {
            const double metal = kind == pairs.size() ? 0.0 : uniform(0.05, 0.2);
            const double binder = uniform(0.1, 0.2);
            state.reactants = {{"NH4CLO4(I)", 298.15, 1.0 - metal - binder},
                               {"(CH2)x(cr)", 298.15, binder}};
            if (metal > 0.0) state.reactants.push_back({"AL(cr)", 298.15, metal});
        }
        state.ions = uniform() < 0.1;
        state.p = logUniform(1e4, 3e7);
        state.T = uniform(600.0, 4500.0);
        return state;
    }

    /// Two to five elements at random, by random parts.
    RandomState elements()
    {
        static const std::vector<std::string> kinds{
            "H2",    "O2",     "N2",     "F2",    "CL2",    "C(gr)", "AL(cr)", "B(b)", "Li(cr)",
            "Be(a)", "Mg(cr)", "Na(cr)", "K(cr)", "Si(cr)", "Ti(a)", "Fe(a)",  "Ar"};
        std::vector<std::string> chosen{kinds[below(5)]}; // one gas at least
        const std::size_t wanted = 2 + below(4);
        while (chosen.size() < wanted) {
            const std::string& next = kinds[below(kinds.size())];
            if (std::find(chosen.begin(), chosen.end(), next) == chosen.end())
                chosen.push_back(next);
        }
        RandomState state;
        double sum = 0.0;
        for (const std::string& name : chosen) {
            const double part = -std::log(1.0 - uniform()) + 1e-3;
            sum += part;
            state.reactants.push_back({name, 298.15, part});
        }
        for (Reactant& reactant : state.reactants) reactant.fraction /= sum;
        state.ions = uniform() < 0.25;
        state.p = logUniform(1e3, 3e7);
        state.T = uniform(300.0, 6000.0);
        return state;
    }

private:
    std::mt19937_64 engine;
};

/// Solves M y = r for a symmetric M, leaving out directions that depend on others.
inline std::vector<double> solveSymmetric(std::vector<std::vector<double>> M, std::vector<double> r)
{
    const std::size_t m = r.size();
    std::vector<bool> used(m, false);
    std::vector<double> scale(m);
    for (std::size_t i = 0; i < m; ++i) scale[i] = M[i][i];
    std::vector<std::size_t> order;
    for (std::size_t step = 0; step < m; ++step) {
        std::size_t k = m;
        double best = 1e-11;
        for (std::size_t i = 0; i < m; ++i)
            if (!used[i] && scale[i] > 0.0 && M[i][i] / scale[i] > best) {
                best = M[i][i] / scale[i];
                k = i;
            }
        if (k == m) break;
        used[k] = true;
        order.push_back(k);
        for (std::size_t i = 0; i < m; ++i) {
            if (i == k) continue;
            const double factor = M[i][k] / M[k][k];
            for (std::size_t j = 0; j < m; ++j) M[i][j] -= factor * M[k][j];
            r[i] -= factor * r[k];
        }
    }
    std::vector<double> y(m, 0.0);
    for (const std::size_t k : order) y[k] = r[k] / M[k][k];
    return y;
}

/// What the laws say of a solved problem.
struct LawFindings {
    double balance = 0.0;     // largest miss of an element, of the largest element
    double charge = 0.0;      // net charge, of the largest element
    double leastAmount = 0.0; // mol; below 0 only if wrong
    double descent = 0.0;     // most by which a feasible change lowers G/(R T N); below 0 if any
    double drive = 0.0;       // lowest gain G/(R T) of a condensed phase that is not present
    std::string missing;      // its name
    double energies = 0.0;    // G against H - T S and U against H - p v, of R T
    bool transition = false;
    bool blend = false;
};

inline LawFindings findingsOf(const reaction::Equilibrium& problem, double p,
                              StateGenerator& random)
{
    using reaction::TransitionProduct;
    const std::unique_ptr<reaction::ReactingMixture> copy(problem.copyReactingMixture(true, true));
    const reaction::ReactingMixture& m = *copy;
    LawFindings found;
    const unsigned N = m.size(), ng = m.gasSize(), el = m.elSize();
    const double T = problem.getT(), RT = thermo::gasConstant * T, lnP = std::log(p / 1e5);

    double largest = 0.0;
    for (unsigned i = 0; i < el; ++i) largest = std::max(largest, m.b(i) / m.element(i)->am());
    std::vector<double> n(N);
    double charge = 0.0, total = 0.0;
    for (unsigned j = 0; j < N; ++j) {
        n[j] = m.n(j);
        total += n[j];
        charge += m.product(j)->getCharge() * n[j];
        found.leastAmount = std::min(found.leastAmount, n[j]);
        if (const auto* transition = dynamic_cast<const TransitionProduct*>(m.product(j))) {
            found.transition = true;
            found.blend = found.blend || transition->isBlend();
        }
    }
    found.charge = std::abs(charge) / largest;
    for (unsigned i = 0; i < el; ++i) {
        double present = 0.0;
        for (unsigned j = 0; j < N; ++j) present += m.a(i, j) * n[j];
        found.balance =
            std::max(found.balance, std::abs(present - m.b(i) / m.element(i)->am()) / largest);
    }

    // H = sum n H0 and so on, per mole of products.
    double gas = 0.0;
    for (unsigned j = 0; j < ng; ++j) gas += n[j];
    const double G = problem.getH() - T * problem.getS();
    found.energies = std::abs(problem.getG() - G) / RT;
    if (!found.transition)
        found.energies = std::max(
            found.energies, std::abs(problem.getU() - problem.getH() + RT * gas / total) / RT);

    // Changes n_j (z_j - sum a_ij lambda_i) with random z and lambda such that the elements
    // balance.
    const auto gibbs = [&](const std::vector<double>& amounts) {
        double sumGas = 0.0;
        for (unsigned j = 0; j < ng; ++j) sumGas += amounts[j];
        double sum = 0.0;
        for (unsigned j = 0; j < N; ++j) {
            if (amounts[j] <= 0.0) continue;
            sum += amounts[j] * m.product(j)->G0_tilde();
            if (j < ng) sum += amounts[j] * (std::log(amounts[j] / sumGas) + lnP);
        }
        return sum;
    };
    const auto normal = [&](unsigned upTo) {
        std::vector<std::vector<double>> M(el, std::vector<double>(el, 0.0));
        for (unsigned i = 0; i < el; ++i)
            for (unsigned k = 0; k < el; ++k)
                for (unsigned j = 0; j < upTo; ++j) M[i][k] += m.a(i, j) * m.a(k, j) * n[j];
        return M;
    };
    const auto all = normal(N);
    const double least = gibbs(n);
    for (int trial = 0; trial < 4; ++trial) {
        std::vector<double> z(N), r(el, 0.0);
        for (unsigned j = 0; j < N; ++j) {
            z[j] = random.uniform(-1.0, 1.0);
            for (unsigned i = 0; i < el; ++i) r[i] += m.a(i, j) * n[j] * z[j];
        }
        const std::vector<double> lambda = solveSymmetric(all, r);
        std::vector<double> changed(n);
        bool feasible = true;
        for (unsigned j = 0; j < N; ++j) {
            double share = z[j];
            for (unsigned i = 0; i < el; ++i) share -= m.a(i, j) * lambda[i];
            changed[j] += 1e-3 * n[j] * share;
            feasible = feasible && changed[j] >= 0.0;
        }
        if (feasible) found.descent = std::min(found.descent, (gibbs(changed) - least) / total);
    }

    // Multipliers by least squares over the gases present, and the gain of each absent phase.
    // Phases near a phase change are left out: there a blend stands for them.
    std::vector<double> r(el, 0.0);
    for (unsigned j = 0; j < ng; ++j) {
        if (n[j] <= 0.0) continue;
        const double mu = m.product(j)->G0_tilde() + std::log(n[j] / gas) + lnP;
        for (unsigned i = 0; i < el; ++i) r[i] += m.a(i, j) * n[j] * mu;
    }
    const std::vector<double> pi = solveSymmetric(normal(ng), r);
    thermo::Database& database = *thermo::Database::getInstance();
    for (unsigned s = 0; problem.isMultiphase() && s < database.size(); ++s) {
        const thermo::Species* species = database[s];
        if (!species->isCondensed() || species->isReactantOnly() || species->size() == 0) continue;
        if (T - 105.0 < species->getMinimalT() || T + 105.0 > species->getMaximalT()) continue;
        std::vector<double> a(el, 0.0);
        bool relevant = true;
        for (unsigned k = 0; k < static_cast<unsigned>(species->size()); ++k) {
            bool known = false;
            for (unsigned i = 0; i < el; ++i)
                if (*species->get(static_cast<int>(k)) == *m.element(i)) {
                    a[i] += species->get(static_cast<int>(k))->getNumber();
                    known = true;
                }
            relevant = relevant && known;
        }
        if (!relevant) continue;
        double gain = 0.0, atoms = 0.0;
        try {
            gain = species->G0_tilde(T);
        } catch (const runtime::Exception&) {
            continue; // a gap between two intervals
        }
        for (unsigned i = 0; i < el; ++i) {
            gain -= a[i] * pi[i];
            atoms += a[i];
        }
        if (gain / atoms < found.drive) {
            found.drive = gain / atoms;
            found.missing = species->getName();
        }
    }
    return found;
}

} // namespace ketra_test
