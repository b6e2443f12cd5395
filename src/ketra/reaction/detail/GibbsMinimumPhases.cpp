// The last digits of a minimum: Newton steps with a set of phases that follows the driving forces.

#include <ketra/reaction/detail/DeterminedSystem.h>
#include <ketra/reaction/detail/GibbsMinimum.h>

#include <algorithm>
#include <cmath>

namespace reaction::detail {

namespace {

constexpr int changeLimit = 20;  // of the set of phases
constexpr int cycleLimit = 60;   // of the Newton steps with one set
constexpr double closed = 1e-12; // relative: amounts
constexpr double nearlyClosed = 1e-10;
constexpr int patience = 12;       // cycles without a gain
constexpr double met = 1e-9;       // miss of an equation: of all atoms, or of a potential over R T
constexpr double wantsIn = 1e-10;  // driving force over R T from which a phase enters
constexpr double dependent = 1e-9; // what is left of a row that is a sum of others
constexpr double noGas = 1e-11;    // of all atoms: a gas below it has gone
constexpr double firstGas = 1e-6;  // of all atoms: what a gas begins with

} // namespace

bool GibbsMinimum::finish(Assemblage& state)
{
    gasTerm(potentialsOf(state.pi));
    std::vector<double> gasAmounts = share;
    for (double& n : gasAmounts) n *= problem.constantPressure ? state.Ng : 1.0;
    chooseComponents(gasAmounts, state.nPhase);
    state.pi = potentialsOf(state.pi);
    const bool found = findPhases(state);
    state.pi = elementsFrom(state.pi);
    return found;
}

bool GibbsMinimum::findPhases(Assemblage& state)
{
    std::vector<std::size_t> present;
    for (std::size_t c = 0; c < problem.phases(); ++c)
        if (state.nPhase[c] > 0.0) present.push_back(c);
    if (problem.constantPressure && state.Ng < noGas * scale && !present.empty()) state.Ng = 0.0;
    for (int change = 0; change < changeLimit; ++change) {
        if (!newtonOnPhases(state, present)) return false;
        if (gasComesOrGoes(state, present)) continue;
        if (leave(state, present) || enter(state, present)) continue;
        if (problem.constantPressure && state.Ng == 0.0) saturateGas(state, present);
        return true;
    }
    return false;
}

// Where phases alone leave a potential open (an oxide that holds its elements exactly), it is moved
// to the end at which a gas would appear, if no other phase appears before: so that the traces that
// stand for the gas are in equilibrium with the phases.
void GibbsMinimum::saturateGas(Assemblage& state, const std::vector<std::size_t>& present)
{
    constexpr int limit = 100;
    constexpr double longest = 50.0; // change of a potential in one step
    std::vector<double> y = state.pi;
    const std::size_t count = present.size() + 1;
    for (int cycle = 0; cycle < limit; ++cycle) {
        const double F = gasTerm(y);
        if (std::abs(F) < closed) {
            for (std::size_t c = 0; c < problem.phases(); ++c)
                if (slack(c, y) < -wantsIn) return;
            state.pi = y;
            return;
        }
        std::vector<std::vector<double>> rows;
        std::vector<double> right, z;
        for (const std::size_t c : present) {
            rows.emplace_back(phaseRow(c), phaseRow(c) + m);
            right.push_back(slack(c, y));
        }
        rows.push_back(meanOfGas(y));
        right.push_back(-F);
        std::vector<double> normal(count * count);
        for (std::size_t r = 0; r < count; ++r)
            for (std::size_t q = 0; q < count; ++q)
                normal[r * count + q] = dot(rows[r].data(), rows[q]);
        solveWhatIsDetermined(normal, right, z);
        double most = 0.0;
        std::vector<double> dy(m, 0.0);
        for (std::size_t i = 0; i < m; ++i) {
            for (std::size_t q = 0; q < count; ++q) dy[i] += z[q] * rows[q][i];
            most = std::max(most, std::abs(dy[i]));
        }
        if (!std::isfinite(most)) return;
        const double lambda = most > longest ? longest / most : 1.0;
        for (std::size_t i = 0; i < m; ++i) y[i] += lambda * dy[i];
    }
}

std::vector<double> GibbsMinimum::meanOfGas(const std::vector<double>& y)
{
    const double F = gasTerm(y);
    std::vector<double> mean(m, 0.0);
    for (std::size_t j = 0; j < share.size(); ++j) {
        const double x = std::exp(dot(gasRow(j), y) - problem.gasG[j] - F);
        for (std::size_t i = 0; i < m; ++i) mean[i] += x * gasRow(j)[i];
    }
    return mean;
}

// At given pressure the gas is a phase like others: it is there if its pressure reaches the given
// one.
bool GibbsMinimum::gasComesOrGoes(Assemblage& state, const std::vector<std::size_t>& present)
{
    if (!problem.constantPressure) return false;
    if (state.Ng > 0.0) {
        if (state.Ng > noGas * scale || present.empty()) return false;
        state.Ng = 0.0;
        return true;
    }
    if (!(gasTerm(state.pi) > wantsIn)) return false;
    state.Ng = firstGas * scale;
    return true;
}

// Takes the phase out whose amount is most negative.
bool GibbsMinimum::leave(Assemblage& state, std::vector<std::size_t>& present) const
{
    auto worst = present.end();
    for (auto c = present.begin(); c != present.end(); ++c)
        if (state.nPhase[*c] <= 0.0 &&
            (worst == present.end() || state.nPhase[*c] < state.nPhase[*worst]))
            worst = c;
    if (worst == present.end()) return false;
    state.nPhase[*worst] = 0.0;
    present.erase(worst);
    return true;
}

// Lets the phase in that wants in most.
bool GibbsMinimum::enter(Assemblage& state, std::vector<std::size_t>& present)
{
    std::size_t best = problem.phases();
    double force = wantsIn;
    for (std::size_t c = 0; c < problem.phases(); ++c) {
        if (std::find(present.begin(), present.end(), c) != present.end()) continue;
        const double own = -slack(c, state.pi);
        if (!(own > force)) continue;
        force = own;
        best = c;
    }
    if (best == problem.phases()) return false;
    exchange(best, state, present);
    present.push_back(best);
    return true;
}

// Where the entering phase is a sum of the present ones and the gas, with shares beta, all of them
// cannot be at equilibrium together (the phase rule): it takes the place of the one that its growth
// uses up first.
void GibbsMinimum::exchange(std::size_t entering, Assemblage& state,
                            std::vector<std::size_t>& present)
{
    std::vector<std::vector<double>> rows;
    std::vector<double> amounts;
    for (const std::size_t c : present) {
        rows.emplace_back(phaseRow(c), phaseRow(c) + m);
        amounts.push_back(state.nPhase[c]);
    }
    const bool withGas = problem.constantPressure && state.Ng > 0.0;
    if (withGas) {
        rows.push_back(meanOfGas(state.pi));
        amounts.push_back(state.Ng);
    }
    const std::size_t count = rows.size();
    if (count == 0) return;
    std::vector<double> normal(count * count), right(count), beta;
    const std::vector<double> a(phaseRow(entering), phaseRow(entering) + m);
    for (std::size_t r = 0; r < count; ++r) {
        right[r] = dot(rows[r].data(), a);
        for (std::size_t q = 0; q < count; ++q)
            normal[r * count + q] = dot(rows[r].data(), rows[q]);
    }
    solveWhatIsDetermined(normal, right, beta);
    for (std::size_t i = 0; i < m; ++i) {
        double rest = a[i];
        for (std::size_t q = 0; q < count; ++q) rest -= beta[q] * rows[q][i];
        if (std::abs(rest) > dependent) return;
    }
    std::size_t leaving = count;
    for (std::size_t q = 0; q < count; ++q) {
        if (!(beta[q] > dependent)) continue;
        if (leaving == count || amounts[q] / beta[q] < amounts[leaving] / beta[leaving])
            leaving = q;
    }
    if (leaving == count) return;
    const double grown = amounts[leaving] / beta[leaving];
    state.nPhase[entering] = grown;
    for (std::size_t q = 0; q < present.size(); ++q) state.nPhase[present[q]] -= beta[q] * grown;
    if (withGas) state.Ng = leaving + 1 == count ? 0.0 : state.Ng - beta.back() * grown;
    if (withGas && leaving + 1 == count) return;
    state.nPhase[present[leaving]] = 0.0;
    present.erase(present.begin() + static_cast<std::ptrdiff_t>(leaving));
}

// With n_j = Ng exp(a_j pi - g_j) at every step, and so mu_j = a_j pi:
//   sum a_ij n_j (a_j dpi + dln Ng) + sum a_ic dn_c = b_i - sum a_ij n_j - sum a_ic n_c
//   sum n_j a_j dpi + (sum n_j - Ng) dln Ng         = Ng - sum n_j          given pressure
//   a_c dpi                                         = g_c - a_c pi          each phase
bool GibbsMinimum::newtonOnPhases(Assemblage& state, const std::vector<std::size_t>& present)
{
    const bool gasless = problem.constantPressure && state.Ng == 0.0;
    if (gasless && present.empty()) return false;
    const std::size_t moles = problem.constantPressure && !gasless ? 1 : 0;
    const std::size_t order = m + moles + present.size();
    double best = 1e300;
    int stalled = 0;
    for (int cycle = 0; cycle < cycleLimit; ++cycle) {
        gasTerm(state.pi);
        const double factor = problem.constantPressure ? state.Ng : 1.0;
        matrix.assign(order * order, 0.0);
        rhs.assign(order, 0.0);
        for (std::size_t i = 0; i < m; ++i) rhs[i] = b[i];
        double gas = 0.0;
        for (std::size_t j = 0; !gasless && j < share.size(); ++j) {
            const double n = factor * share[j];
            if (!std::isfinite(n)) return false;
            const double* a = gasRow(j);
            gas += n;
            for (std::size_t i = 0; i < m; ++i) {
                if (a[i] == 0.0) continue;
                rhs[i] -= a[i] * n;
                for (std::size_t k = 0; k < m; ++k) matrix[i * order + k] += a[i] * a[k] * n;
                if (moles) {
                    matrix[i * order + m] += a[i] * n;
                    matrix[m * order + i] += a[i] * n;
                }
            }
        }
        if (moles) {
            matrix[m * order + m] = gas - state.Ng;
            rhs[m] = state.Ng - gas;
        }
        for (std::size_t q = 0; q < present.size(); ++q) {
            const double* a = phaseRow(present[q]);
            const std::size_t at = m + moles + q;
            for (std::size_t i = 0; i < m; ++i) {
                rhs[i] -= a[i] * state.nPhase[present[q]];
                matrix[i * order + at] = a[i];
                matrix[at * order + i] = a[i];
            }
            rhs[at] = slack(present[q], state.pi);
        }
        double miss = 0.0;
        for (std::size_t i = 0; i < m + moles; ++i) miss = std::max(miss, std::abs(rhs[i]) / scale);
        for (std::size_t i = m + moles; i < order; ++i) miss = std::max(miss, std::abs(rhs[i]));
        solveWhatIsDetermined(matrix, rhs, step);

        double lambda = 1.0;
        const double dlnN = moles ? step[m] : 0.0;
        // Change of an amount, of all atoms.
        double largest = moles ? std::abs(dlnN) * state.Ng / scale : 0.0;
        if (std::abs(dlnN) > 2.0) lambda = 2.0 / std::abs(dlnN);
        const double whole = problem.constantPressure ? 1.0 : scale;
        for (std::size_t j = 0; !gasless && j < share.size(); ++j) {
            const double* a = gasRow(j);
            double d = dlnN;
            for (std::size_t i = 0; i < m; ++i) d += a[i] * step[i];
            const double x = share[j] / whole;
            largest = std::max(largest, std::abs(d) * factor * share[j] / scale);
            if (x > 1e-8)
                lambda = std::min(lambda, 2.0 / std::max(std::abs(d), 1e-30));
            else if (d > 0.0 && std::log(std::max(x, 1e-300)) + d > -9.2)
                lambda = std::min(lambda, (-9.2 - std::log(std::max(x, 1e-300))) / d);
        }
        for (std::size_t i = m + moles; i < order; ++i)
            largest = std::max(largest, std::abs(step[i]) / scale);
        if (!std::isfinite(largest) || !std::isfinite(dlnN)) return false;
        for (std::size_t i = 0; i < m; ++i) state.pi[i] += lambda * step[i];
        if (moles) state.Ng *= std::exp(lambda * dlnN);
        if (moles && state.Ng < 0.1 * noGas * scale && !present.empty()) return true;
        for (std::size_t q = 0; q < present.size(); ++q)
            state.nPhase[present[q]] += lambda * step[m + moles + q];
        if (lambda == 1.0 && largest < closed && miss < met) {
            if (!problem.constantPressure) {
                gasTerm(state.pi);
                state.Ng = 0.0;
                for (const double n : share) state.Ng += n;
            }
            return true;
        }
        // Rounding ends the descent before the strict limit where amounts differ by many powers.
        if (miss < best * 0.5) {
            best = miss;
            stalled = 0;
        } else if (++stalled > patience && lambda == 1.0 && largest < nearlyClosed) {
            return miss < met;
        }
    }
    return false;
}

} // namespace reaction::detail
