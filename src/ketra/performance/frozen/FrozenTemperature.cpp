// The temperature of a fixed composition, and that of each of its species.

#include <ketra/performance/frozen/NozzleSectionConditions.h>

#include <ketra/performance/detail/BracketedRoot.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>
#include <ketra/util/Log.h>

#include <algorithm>
#include <cmath>
#include <limits>

using reaction::Product;
using thermo::gasConstant;
using util::eol;
using util::Log;

namespace performance::frozen {

namespace {

constexpr unsigned int noFrozenSection = 13; // code of a section that cannot be found
constexpr double widestExcess = 50.0;        // K, by which a gas may not yet leave its range

[[noreturn]] void failOutOfRange(const Product& product, double T, const char* direction)
{
    Log::errorf("THERMO",
                "Could not solve frozen equilibrium for nozzle section:%stemperature %7.3f K is "
                "too %s for species %s.%s%sPlease correct the frozen equilibrium model,%smoving "
                "freezing section downstream of the nozzle.%s",
                eol, T, direction, product.getName().c_str(), eol, eol, eol, eol);
    throw thermo::Exception(noFrozenSection);
}

// Below the range of a gas its entropy stays as it is, so that this need not lead to a temperature.
[[noreturn]] void failBelowData(double low)
{
    Log::errorf("THERMO",
                "Could not solve frozen equilibrium for nozzle section: the entropy of the flow "
                "lies below that of the products at %.2f K, where their data begin.%s",
                low, eol);
    throw thermo::Exception(noFrozenSection);
}

} // namespace

double NozzleSectionConditions::getT(Product* product, double T) const
{
    const double minT = product->getMinimalT();
    const double maxT = product->getMaximalT();
    if (T < minT) {
        if (minT - T >= widestExcess && !product->isCondensed()) failOutOfRange(*product, T, "low");
        Log::warnf("THERMO",
                   "Frozen equilibrium solver: the temperature %7.3f is lower than Tmin=%7.3f for "
                   "species %s. The temperature for the species is frozen as well. %s",
                   T, minT, product->getName().c_str(), eol);
        return minT;
    }
    if (T > maxT) {
        if (T - maxT >= widestExcess && !product->isCondensed())
            failOutOfRange(*product, T, "high");
        // The lower limit in place of the upper one belongs to the text.
        Log::warnf("THERMO",
                   "Frozen equilibrium solver: The temperature %7.3f is higher than Tmax=%7.3f for "
                   "species %s. The temperature for the species is frozen as well.%s",
                   T, minT, product->getName().c_str(), eol);
        return maxT;
    }
    return T;
}

/// Beyond its data a product keeps the functions over R T that it has at their end. A condensed one
/// of a persistent section keeps its heat capacity instead, from the end T_j of its data on, as an
/// undercooled drop or a superheated particle does:
///   H = H_j + Cp_j (T - T_j),  S = S_j + Cp_j ln(T / T_j)
NozzleSectionConditions::Held NozzleSectionConditions::heldAt(Product& product, double T) const
{
    const double ownT = getT(&product, T);
    Held held{product.H0_tilde(ownT), product.S0_tilde(ownT), product.Cp0_tilde(ownT)};
    if (persistent && ownT != T && product.isCondensed()) {
        held.H = (held.H * ownT + held.Cp * (T - ownT)) / T;
        held.S += held.Cp * std::log(T / ownT);
    }
    return held;
}

/// Entropy of a fixed composition and its slope, both over the gas constant:
///   S/R = sum n_j (S_j/R - ln(n_j / Ngas) - ln p),  dS / d ln T / R = sum n_j Cp_j/R
struct NozzleSectionConditions::FixedEntropy {
    double S;
    double Cp;
};

NozzleSectionConditions::FixedEntropy
NozzleSectionConditions::entropyAt(double T, reaction::ReactingMixture* products, double lnN,
                                   double lnp) const
{
    FixedEntropy sum{};
    for (unsigned int j = 0; j < products->size(); ++j) {
        Product& product = *products->product(j);
        const Held held = heldAt(product, T);
        const double mixing = product.isCondensed() ? 0.0 : -product.ln_n() + lnN - lnp;
        sum.S += product.n() * (held.S + mixing);
        sum.Cp += product.n() * held.Cp;
    }
    return sum;
}

double NozzleSectionConditions::solveForFixedPressure(double S, reaction::ReactingMixture* products,
                                                      double Ngas, double lnp, double T0) const
{
    const double lnN = std::log(Ngas);
    if (persistent) {
        // Between these temperatures no gas is too far outside its range.
        const GasRange data = dataOf(*products);
        const GasRange range{data.low - widestExcess, data.high + widestExcess};
        if (const auto T = iterateTemperature(S, products, lnN, lnp, T0, range)) return *T;
        if (const auto T = bracketTemperature(S, products, lnN, lnp, range)) return *T;
    }
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const auto T = iterateTemperature(S, products, lnN, lnp, T0, {-infinity, infinity});
    if (T) return *T;
    Log::errorf("THERMO",
                "Could not solve frozen equilibrium for nozzle section: maximum number of "
                "iterations is succeed.%s",
                eol);
    throw thermo::Exception(noFrozenSection);
}

/// The temperatures that the data of all gases of \p products have in common.
NozzleSectionConditions::GasRange
NozzleSectionConditions::dataOf(const reaction::ReactingMixture& products)
{
    GasRange range{0.0, std::numeric_limits<double>::infinity()};
    for (unsigned int j = 0; j < products.gasSize(); ++j) {
        range.low = std::max(range.low, products.product(j)->getMinimalT());
        range.high = std::min(range.high, products.product(j)->getMaximalT());
    }
    return range;
}

/// Newton's method for the entropy as a function of ln T.
/// \returns the temperature; nothing if the steps do not settle or leave \p range
std::optional<double>
NozzleSectionConditions::iterateTemperature(double S, reaction::ReactingMixture* products,
                                            double lnN, double lnp, double T0, GasRange range) const
{
    constexpr double tolerance = 0.0005; // of ln T
    constexpr int steps = 50;

    double T = T0;
    for (int step = 0; step < steps; ++step) {
        if (T <= range.low || T >= range.high) return std::nullopt;
        const FixedEntropy sum = entropyAt(T, products, lnN, lnp);
        const double dlnT = (S - sum.S * gasConstant) / (sum.Cp * gasConstant);
        if (std::abs(dlnT) < tolerance) return T;
        T = std::exp(std::log(T) + dlnT);
    }
    return std::nullopt;
}

/// The entropy rises with the temperature. \returns nothing if that of no temperature in \p range
/// is \p S
std::optional<double>
NozzleSectionConditions::bracketTemperature(double S, reaction::ReactingMixture* products,
                                            double lnN, double lnp, GasRange range) const
{
    constexpr double inside = 1e-6;    // K, by which the ends lie in the range
    constexpr double tolerance = 1e-9; // of the entropy, relative
    constexpr double narrowest = 1e-9; // K

    const auto excess = [&](double T) {
        return entropyAt(T, products, lnN, lnp).S * gasConstant / S - 1.0;
    };
    using performance::detail::BracketedRoot;
    BracketedRoot::Point low{range.low + inside, 0.0}, high{range.high - inside, 0.0};
    if (!(low.x < high.x) || !std::isfinite(high.x)) return std::nullopt;
    low.value = excess(low.x);
    if (low.value > 0.0) failBelowData(range.low + widestExcess);
    high.value = excess(high.x);
    if (!(low.value < 0.0 && high.value > 0.0)) return std::nullopt;
    Log::infof("THERMO",
               "Frozen nozzle section: the search for the temperature has left the range of the "
               "species. Searching between %.1f K and %.1f K.%s",
               low.x, high.x, eol);
    double T = 0.0;
    BracketedRoot root([&](double x) { return excess(T = x); }, low, high);
    return root.close(tolerance, narrowest) ? T : root.best().x;
}

} // namespace performance::frozen
