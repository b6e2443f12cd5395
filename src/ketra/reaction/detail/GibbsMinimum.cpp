#include <ketra/reaction/detail/GibbsMinimum.h>

#include <ketra/reaction/detail/DeterminedSystem.h>
#include <ketra/reaction/detail/RowBasis.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace reaction::detail {

GibbsMinimum::GibbsMinimum(const GibbsProblem& newProblem)
    : problem(newProblem), m(newProblem.elements()), b(newProblem.b), gasRows(newProblem.gasRows),
      phaseRows(newProblem.phaseRows), share(newProblem.gases())
{
    for (const double atoms : problem.b) scale += std::abs(atoms);
    components.assign(m * m, 0.0);
    for (std::size_t i = 0; i < m; ++i) components[i * m + i] = 1.0;
    inverse = components;
}

bool GibbsMinimum::solve(Assemblage& state, bool warm)
{
    if (warm && state.pi.size() == m && state.nPhase.size() == problem.phases()) {
        Assemblage trial = state;
        if (finish(trial)) {
            state = std::move(trial);
            return true;
        }
    }
    return searchInside(state);
}

double GibbsMinimum::dot(const double* row, const std::vector<double>& pi) const
{
    double sum = 0.0;
    for (std::size_t i = 0; i < m; ++i) sum += row[i] * pi[i];
    return sum;
}

double GibbsMinimum::slack(std::size_t c, const std::vector<double>& pi) const
{
    return problem.phaseG[c] - dot(phaseRow(c), pi);
}

double GibbsMinimum::gasTerm(const std::vector<double>& pi)
{
    double largest = -std::numeric_limits<double>::infinity();
    for (std::size_t j = 0; j < share.size(); ++j) {
        share[j] = dot(gasRow(j), pi) - problem.gasG[j];
        largest = std::max(largest, share[j]);
    }
    if (share.empty()) return largest;
    double sum = 0.0;
    for (double& x : share) {
        sum += std::exp(x - largest);
        x = std::exp(x);
    }
    return largest + std::log(sum);
}

// Lower potentials of all elements make every phase less likely, and that of the electron
// everything with an extra one.
void GibbsMinimum::moveInside(std::vector<double>& pi) const
{
    const double room = 1.0;
    const double least = room + std::log(1.0 + static_cast<double>(problem.gases()));
    const auto isElectron = [&](std::size_t i) { return static_cast<int>(i) == problem.electron; };
    const auto missing = [&](const double* row, double g, double wanted) {
        double atoms = 0.0;
        for (std::size_t i = 0; i < m; ++i)
            if (!isElectron(i)) atoms += row[i];
        const double excess = dot(row, pi) - g + wanted;
        return atoms > 0.0 ? excess / atoms : 0.0;
    };
    for (std::size_t j = 0; problem.electron >= 0 && j < problem.gases(); ++j) {
        const double* row = problem.gasRow(j); // the free electron has no atoms
        double atoms = 0.0;
        for (std::size_t i = 0; i < m; ++i) atoms += isElectron(i) ? 0.0 : std::abs(row[i]);
        double& own = pi[static_cast<std::size_t>(problem.electron)];
        if (atoms == 0.0) own = std::min(own, problem.gasG[j] - least);
    }
    double shift = 0.0;
    for (std::size_t j = 0; j < problem.gases(); ++j)
        shift = std::max(shift, missing(problem.gasRow(j), problem.gasG[j], least));
    for (std::size_t c = 0; c < problem.phases(); ++c)
        shift = std::max(shift, missing(problem.phaseRow(c), problem.phaseG[c], room));
    for (std::size_t i = 0; i < m; ++i)
        if (!isElectron(i)) pi[i] -= shift;
}

// B(pi) = -b pi - mu (ln(-ln sum) + sum ln s_c); infinite outside.
double GibbsMinimum::barrierAt(const std::vector<double>& pi, double mu)
{
    constexpr double outside = std::numeric_limits<double>::infinity();
    double value = 0.0;
    for (std::size_t i = 0; i < m; ++i) value -= b[i] * pi[i];
    for (std::size_t c = 0; c < problem.phases(); ++c) {
        const double s = slack(c, pi);
        if (!(s > 0.0)) return outside;
        value -= mu * std::log(s);
    }
    const double F = gasTerm(pi);
    if (!problem.constantPressure) {
        for (const double n : share) value += n;
        return std::isfinite(value) ? value : outside;
    }
    if (!(F < 0.0)) return outside;
    return value - mu * std::log(-F);
}

// Gradient and matrix of the second derivatives of the barrier function, inside.
void GibbsMinimum::differentiate(const std::vector<double>& pi, double mu)
{
    const double F = gasTerm(pi);
    const double weight = problem.constantPressure ? mu / -F : 1.0; // moles of gas
    const double total = problem.constantPressure ? std::exp(F) : 1.0;
    gradient.assign(m, 0.0);
    matrix.assign(m * m, 0.0);
    std::vector<double> mean(m, 0.0);
    const auto add = [&](const double* row, double first, double second) {
        for (std::size_t i = 0; i < m; ++i) {
            if (row[i] == 0.0) continue;
            gradient[i] += first * row[i];
            for (std::size_t k = 0; k < m; ++k) matrix[i * m + k] += second * row[i] * row[k];
        }
    };
    for (std::size_t j = 0; j < share.size(); ++j) {
        const double x = share[j] / total;
        add(gasRow(j), weight * x, weight * x);
        for (std::size_t i = 0; i < m; ++i) mean[i] += x * gasRow(j)[i];
    }
    if (problem.constantPressure) {
        const double factor = weight / -F - weight; // curvature of the two logarithms
        for (std::size_t i = 0; i < m; ++i)
            for (std::size_t k = 0; k < m; ++k) matrix[i * m + k] += factor * mean[i] * mean[k];
    }
    for (std::size_t c = 0; c < problem.phases(); ++c) {
        const double s = slack(c, pi);
        add(phaseRow(c), mu / s, mu / (s * s));
    }
    for (std::size_t i = 0; i < m; ++i) gradient[i] -= b[i];
}

// Damped Newton steps to the minimum of the barrier function. Where one gas is all of it the second
// derivatives are of rank one: a share of the unit matrix, as large as it takes to descend, keeps
// the step finite.
bool GibbsMinimum::newtonInside(std::vector<double>& pi, double mu)
{
    constexpr int limit = 100;
    constexpr double leastShare = 1e-14;
    constexpr double longest = 20.0; // change of a potential in one step
    double shareOfUnit = 0.0;
    std::vector<double> next(m);
    for (int count = 0; count < limit; ++count) {
        const double value = barrierAt(pi, mu);
        if (!std::isfinite(value)) return false;
        differentiate(pi, mu);
        double trace = 0.0;
        for (std::size_t i = 0; i < m; ++i) trace += matrix[i * m + i];
        for (std::size_t i = 0; i < m; ++i) matrix[i * m + i] += shareOfUnit * trace;
        rhs.resize(m);
        for (std::size_t i = 0; i < m; ++i) rhs[i] = -gradient[i];
        solveWhatIsDetermined(matrix, rhs, step);
        double decrease = 0.0;
        double most = 0.0;
        for (std::size_t i = 0; i < m; ++i) {
            decrease -= gradient[i] * step[i];
            most = std::max(most, std::abs(step[i]));
        }
        if (!std::isfinite(decrease)) return false;
        const bool settled = decrease <= 1e-4 * mu;
        if (settled && decrease >= 0.0) return true;
        double lambda = std::min(1.0, longest / most);
        bool moved = false;
        for (int halving = 0; decrease > 0.0 && halving < 40 && !moved; ++halving) {
            for (std::size_t i = 0; i < m; ++i) next[i] = pi[i] + lambda * step[i];
            moved = barrierAt(next, mu) <= value - 0.1 * lambda * decrease;
            lambda *= 0.5;
        }
        if (moved) {
            pi = next;
            shareOfUnit = shareOfUnit > leastShare ? 0.01 * shareOfUnit : 0.0;
        } else {
            if (shareOfUnit > 1.0) return std::abs(decrease) < mu; // as close as rounding allows
            shareOfUnit = std::max(1e3 * shareOfUnit, leastShare);
        }
    }
    return true;
}

void GibbsMinimum::readAmounts(const std::vector<double>& pi, double mu, Assemblage& state)
{
    const double F = gasTerm(pi);
    state.pi = elementsFrom(pi);
    state.Ng = 0.0;
    if (problem.constantPressure)
        state.Ng = share.empty() ? 0.0 : mu / -F;
    else
        for (const double n : share) state.Ng += n;
    state.nPhase.assign(problem.phases(), 0.0);
    const double within = 10.0 * std::sqrt(mu / scale); // where amount and slack are equal, scaled
    for (const std::size_t c : independentPhases(pi, within)) state.nPhase[c] = mu / slack(c, pi);
}

// Phases near their own equilibrium, the nearest first, that can be there together: neither their
// formulas nor, at given pressure, the gas depend on each other.
std::vector<std::size_t> GibbsMinimum::independentPhases(const std::vector<double>& pi,
                                                         double within)
{
    std::vector<std::size_t> order;
    for (std::size_t c = 0; c < problem.phases(); ++c)
        if (slack(c, pi) < within) order.push_back(c);
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t l, std::size_t r) { return slack(l, pi) < slack(r, pi); });
    RowBasis basis(m);
    if (problem.constantPressure && -gasTerm(pi) < within) basis.offer(meanOfGas(pi).data());
    std::vector<std::size_t> chosen;
    for (const std::size_t c : order)
        if (basis.offer(phaseRow(c))) chosen.push_back(c);
    return chosen;
}

// The barrier shrinks until the last digits can be had from where it leads to.
bool GibbsMinimum::searchInside(Assemblage& state)
{
    constexpr double first = 1e-2; // of all atoms: the barrier from which on that is tried
    constexpr double last = 1e-13;
    std::vector<double> pi = state.pi.size() == m ? state.pi : std::vector<double>(m, 0.0);
    moveInside(pi);
    for (double part = 1.0; part > last; part *= 0.1) {
        const double mu = part * scale;
        Assemblage trial;
        readAmounts(potentialsOf(pi), mu, trial);
        std::vector<double> gasAmounts = share; // in the unit of the phases
        const double factor = problem.constantPressure ? trial.Ng : 1.0;
        for (double& n : gasAmounts) n *= factor;
        std::vector<double> phaseAmounts(problem.phases());
        for (std::size_t c = 0; c < phaseAmounts.size(); ++c)
            phaseAmounts[c] = mu / slack(c, potentialsOf(pi));
        chooseComponents(gasAmounts, phaseAmounts);
        std::vector<double> y = potentialsOf(pi);
        if (!newtonInside(y, mu)) return false;
        pi = elementsFrom(y);
        if (part > first) continue;
        readAmounts(y, mu, trial);
        if (!finish(trial)) continue;
        state = std::move(trial);
        return true;
    }
    return false;
}

} // namespace reaction::detail
