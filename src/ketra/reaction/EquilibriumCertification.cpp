// The finished state in plain numbers, for the certificate.

#include <ketra/reaction/Equilibrium.h>

#include <ketra/reaction/TransitionProduct.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/StandardState.h>
#include <ketra/verification/criteria/EquilibriumState.h>

#include <algorithm>
#include <cmath>
#include <vector>

using thermo::TemperatureTerms;
using verification::EquilibriumState;

namespace reaction {

namespace {

using Kind = EquilibriumState::Kind;
using Candidate = EquilibriumState::Candidate;
using Target = EquilibriumState::Target;

/// Appends products to a state, with functions evaluated at its temperature and not those that the
/// products hold.
class Description
{
public:
    Description(EquilibriumState& newState, unsigned int newElements)
        : state(newState), elements(newElements), terms(newState.T)
    {
    }

    /// A product that is not there is appended only if its data say something of it.
    void add(const Product& product, bool present)
    {
        const bool condensed = product.isCondensed();
        const auto* transition =
            condensed ? dynamic_cast<const TransitionProduct*>(&product) : nullptr;
        Candidate c;
        c.name = product.getName();
        c.kind = condensed ? Kind::CONDENSED : Kind::GAS;
        c.present = present;
        c.amount = present ? product.n() : 0.0;
        c.charge = product.getCharge();
        c.minT = product.getMinimalT();
        c.maxT = product.getMaximalT();
        const bool inRange = c.minT <= state.T && state.T <= c.maxT;
        if (!inRange && !present) return;
        if (transition && transition->isBlend()) {
            c.kind = Kind::BLEND;
            if (inRange) addBlend(*transition, c);
        } else if (const thermo::Polynomial* interval = product.findInterval(state.T)) {
            store(interval->evaluate(terms), 1.0, c);
        } else if (!present) {
            return; // a gap between the intervals
        } else {
            c.maxT = c.minT; // nothing is known of it here
        }
        append(product, c);
    }

private:
    static void store(const thermo::StandardState& functions, double weight, Candidate& c)
    {
        c.H += weight * functions.H;
        c.S += weight * functions.S;
        c.Cp += weight * functions.Cp;
    }

    /// The means of the two phases, and each phase by itself where its own data hold.
    void addBlend(const TransitionProduct& blend, Candidate& c)
    {
        const double upper = (state.T - c.minT) / (c.maxT - c.minT);
        addPhase(*blend.getPhase1(), 1.0 - upper, blend, c);
        addPhase(*blend.getPhase2(), upper, blend, c);
    }

    void addPhase(const Product& phase, double weight, const Product& blend, Candidate& c)
    {
        const double low = phase.getMinimalT();
        const double high = phase.getMaximalT();
        const double T = std::clamp(state.T, low, high);
        if (!phase.findInterval(T)) return;
        const auto functions = phase.evaluate(T == state.T ? terms : TemperatureTerms(T));
        store(functions, weight, c);
        if (T != state.T) return;
        Candidate hidden;
        hidden.name = phase.getName();
        hidden.kind = Kind::HIDDEN_PHASE;
        hidden.minT = low;
        hidden.maxT = high;
        store(functions, 1.0, hidden);
        append(blend, hidden);
    }

    void append(const Product& product, const Candidate& c)
    {
        double* row = state.atoms.data() + state.candidates.size() * elements;
        for (unsigned int i = 0; i < elements; ++i) row[i] = product.a(i);
        state.candidates.push_back(c);
    }

    EquilibriumState& state;
    unsigned int elements;
    TemperatureTerms terms;
};

Target targetOf(Equilibrium::PROCESS_TYPE type)
{
    switch (type) {
    case Equilibrium::PH:
        return Target::ENTHALPY;
    case Equilibrium::PS:
    case Equilibrium::VS:
        return Target::ENTROPY;
    case Equilibrium::VU:
        return Target::ENERGY;
    case Equilibrium::PT:
    case Equilibrium::VT:
        break;
    }
    return Target::TEMPERATURE;
}

} // namespace

verification::EquilibriumCertificate Equilibrium::certificate() const
{
    return verification::judge(describe());
}

EquilibriumState Equilibrium::describe() const
{
    EquilibriumState state;
    state.solved = solved && T > 0.0;
    if (!state.solved) return state;
    state.T = T;
    state.p = p;
    state.mass = initialMm();
    state.V = state.mass * v;
    state.target = targetOf(processType);
    state.wanted = isFixedTemperature() ? T : posedTarget;
    state.Ng = Ng;
    state.tolerance = baseTolerance * relativeTolerance;

    const unsigned int m = mixture->elSize();
    state.elements.resize(m);
    for (unsigned int i = 0; i < m; ++i) {
        const thermo::ChemicalElement& element = *mixture->element(i);
        state.elements[i] = mixture->b(i) / element.am();
        if (element.getType() == thermo::Atom::E) state.electron = static_cast<int>(i);
    }

    const std::vector<Product*>& reacting = *mixture->reacting;
    const std::vector<Product*>& products = *mixture->products;
    // Room for every product and the two phases of each blend, which are three products.
    state.candidates.reserve(2 * products.size());
    state.atoms.resize(2 * products.size() * m);
    Description description(state, m);
    for (const Product* product : reacting) description.add(*product, true);
    // Both lists have their gases in one order, so that a present one stands where the search for
    // the one before it has ended.
    const auto condensed = reacting.begin() + mixture->gasSize();
    auto next = reacting.begin();
    for (const Product* product : products) {
        const bool gas = !product->isCondensed();
        if (gas && next != condensed && *next == product) {
            ++next;
            continue;
        }
        const auto end = gas ? condensed : reacting.end();
        const auto found = std::find(gas ? reacting.begin() : condensed, end, product);
        if (found == end) {
            if (!product->isIon() || isIons()) description.add(*product, false);
        } else if (gas) {
            next = found + 1;
        }
    }
    state.atoms.resize(state.candidates.size() * m);
    return state;
}

} // namespace reaction
