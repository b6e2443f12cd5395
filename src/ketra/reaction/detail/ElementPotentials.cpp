#include <ketra/reaction/detail/ElementPotentials.h>

#include <ketra/reaction/Equilibrium.h>
#include <ketra/reaction/detail/Iteration.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>

#include <algorithm>
#include <cmath>

using thermo::gasConstant;

namespace reaction::detail {

namespace {

constexpr double hotT = 3600.0;     // K, where a minimum is found from any start
constexpr double coldestT = 1.0;    // K, below which no product has data
constexpr double walkT = 0.9;       // from one temperature to the next on the way down
constexpr double absentGas = 1e-14; // mol, of the traces that stand for a gas that is not there

} // namespace

ElementPotentials::ElementPotentials(Equilibrium& newProblem)
    : eq(newProblem), wanted(newProblem.posedTarget)
{
    const ReactingMixture& mixture = *eq.mixture;
    for (Product* product : *mixture.products) {
        if (product->isIon() && !mixture.isIons()) continue;
        if (product->isCondensed() && !mixture.isMultiphase()) continue;
        candidates.push_back(product);
    }
    minimum.constantPressure = eq.isConstantPressure();
    for (unsigned int i = 0; i < mixture.elSize(); ++i) {
        const thermo::ChemicalElement& element = *mixture.element(i);
        const bool electron = element.getType() == thermo::Atom::TYPE(0);
        if (electron) minimum.electron = static_cast<int>(i);
        minimum.b.push_back(electron ? 0.0 : mixture.b(i) / element.am());
    }
}

bool ElementPotentials::hasData(const Product& product, double T)
{
    return product.getMinimalT() <= T && T <= product.getMaximalT();
}

// Brings all products to the temperature and poses the minimisation among those with data there.
void ElementPotentials::pose(double T, Point& point)
{
    const thermo::TemperatureTerms terms(T);
    point = {};
    point.T = T;
    for (auto* list : {&minimum.gasRows, &minimum.gasG, &minimum.phaseRows, &minimum.phaseG})
        list->clear();
    const double offset = eq.isConstantPressure() ? eq.lnP : eq.lnPvAt(T);
    for (Product* product : candidates) {
        if (!hasData(*product, T)) continue;
        try {
            product->setT(terms);
        } catch (const thermo::Exception&) {
            continue; // a gap between two intervals
        }
        const double G = product->reduced().G;
        const bool condensed = product->isCondensed();
        (condensed ? point.phases : point.gases).push_back(product);
        (condensed ? minimum.phaseG : minimum.gasG).push_back(condensed ? G : G + offset);
        auto& rows = condensed ? minimum.phaseRows : minimum.gasRows;
        for (unsigned int i = 0; i < minimum.b.size(); ++i) rows.push_back(product->a(i));
    }
}

// From the last minimum, else from none, else down from a hot one.
bool ElementPotentials::evaluate(double T, Point& point)
{
    if (minimise(T, point)) return true;
    last = {};
    if (minimise(T, point)) return true;
    if (!(T < hotT && T > coldestT)) return false;
    for (double t = hotT; t > T; t *= walkT)
        if (!minimise(t, point)) last = {};
    return minimise(T, point);
}

bool ElementPotentials::minimise(double T, Point& point)
{
    pose(T, point);
    Assemblage state;
    state.pi = last.pi;
    state.Ng = last.Ng;
    state.nPhase.assign(point.phases.size(), 0.0);
    const bool warm = !last.pi.empty();
    for (std::size_t c = 0; warm && c < lastPhases.size(); ++c) {
        const auto found = std::find(point.phases.begin(), point.phases.end(), lastPhases[c]);
        if (found != point.phases.end())
            state.nPhase[static_cast<std::size_t>(found - point.phases.begin())] = last.nPhase[c];
    }
    if (!GibbsMinimum(minimum).solve(state, warm)) return false;
    last = std::move(state);
    lastPhases = point.phases;
    takeAmounts(point);
    return true;
}

void ElementPotentials::takeAmounts(Point& point)
{
    // Where there is no gas, the gases that there would be stand for it as traces.
    const double Ng = last.Ng > 0.0 ? last.Ng : absentGas;
    const double lnNg = minimum.constantPressure ? std::log(Ng) : 0.0;
    const double RT = gasConstant * point.T;
    const bool entropy = eq.processType == Equilibrium::PS || eq.processType == Equilibrium::VS;
    const bool volume = !minimum.constantPressure;
    const std::size_t ng = point.gases.size();
    point.n.resize(ng + point.phases.size());
    point.lnN.resize(ng);
    const double offset = volume ? eq.lnPvAt(point.T) : eq.lnP;
    for (std::size_t j = 0; j < point.n.size(); ++j) {
        const bool gas = j < ng;
        const Product& product = *(gas ? point.gases[j] : point.phases[j - ng]);
        double lnX = 0.0;
        if (gas) {
            const double* a = minimum.gasRow(j);
            for (std::size_t i = 0; i < minimum.b.size(); ++i) lnX += a[i] * last.pi[i];
            lnX -= minimum.gasG[j];
            point.lnN[j] = lnX + lnNg;
            point.n[j] = std::exp(point.lnN[j]);
            point.Ng += point.n[j];
        } else {
            point.n[j] = last.nPhase[j - ng];
        }
        const double n = point.n[j];
        if (n == 0.0) continue;
        const ReducedFunctions f = product.reduced();
        point.capacity += n * gasConstant * (volume && gas ? f.Cp - 1.0 : f.Cp);
        if (entropy)
            point.value += n * gasConstant * (f.S - (gas ? lnX + offset : 0.0));
        else
            point.value += n * RT * (volume && gas ? f.H - 1.0 : f.H);
    }
    point.Ng = std::max(point.Ng, absentGas * absentGas);
    if (entropy) point.capacity /= point.T; // dS/dT
}

// Both sides of a phase change at one temperature: every mixture of them is a minimum, and one of
// them meets the target.
ElementPotentials::Point ElementPotentials::mixed(const Point& low, const Point& high) const
{
    const double share = (wanted - low.value) / (high.value - low.value); // of the upper side
    Point point = low;
    for (double& n : point.n) n *= 1.0 - share;
    point.Ng = (1.0 - share) * low.Ng + share * high.Ng;
    const std::size_t ng = low.gases.size();
    for (std::size_t j = 0; j < high.n.size(); ++j) {
        const bool gas = j < high.gases.size();
        Product* product = gas ? high.gases[j] : high.phases[j - high.gases.size()];
        auto& list = gas ? point.gases : point.phases;
        const auto at =
            static_cast<std::size_t>(std::find(list.begin(), list.end(), product) - list.begin());
        if (at < list.size()) {
            const std::size_t k = gas ? at : at + ng;
            if (k < point.n.size()) point.n[k] += share * high.n[j];
        } else if (!gas && high.n[j] > 0.0) {
            point.phases.push_back(product);
            point.n.push_back(share * high.n[j]);
        }
    }
    for (std::size_t j = 0; j < ng; ++j)
        point.lnN[j] = point.n[j] > 0.0 ? std::log(point.n[j]) : low.lnN[j];
    return point;
}

// The present list, the amounts and the state as an iteration leaves them.
void ElementPotentials::store(const Point& point)
{
    ReactingMixture& mixture = *eq.mixture;
    mixture.reset();
    mixture.reacting->clear();
    const std::size_t ng = point.gases.size();
    for (std::size_t j = 0; j < point.n.size(); ++j) {
        Product* product = j < ng ? point.gases[j] : point.phases[j - ng];
        if (j >= ng && !(point.n[j] > 0.0)) continue;
        product->setT(std::clamp(point.T, product->getMinimalT(), product->getMaximalT()));
        product->setN(point.n[j], j < ng ? point.lnN[j] : 0.0);
        mixture.reacting->push_back(product);
    }
    mixture.sortProducts(true);
    eq.storeTemperature(point.T);
    if (!eq.isConstantPressure()) eq.lnPv = eq.lnPvAt(point.T);
    eq.Ng = point.Ng;
    eq.lnNg = std::log(point.Ng);
    Iteration(eq).storeResults();
}

} // namespace reaction::detail
