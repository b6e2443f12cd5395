// The temperature of a fixed composition, and that of each of its species.

#include <ketra/performance/frozen/NozzleSectionConditions.h>

#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>
#include <ketra/util/Log.h>

#include <cmath>

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

/// Newton's method for the entropy S of a fixed composition, as a function of ln T:
///   S = R sum n_j (S_j/R - ln(n_j / Ngas) - ln p),  dS / d ln T = R sum n_j Cp_j/R
double NozzleSectionConditions::solveForFixedPressure(double S, reaction::ReactingMixture* products,
                                                      double Ngas, double lnp, double T0) const
{
    constexpr double tolerance = 0.0005; // of ln T
    constexpr int lastStep = 49;

    const double lnN = std::log(Ngas);
    double T = T0;
    for (int step = 0;; ++step) {
        double sumS = 0.0, sumCp = 0.0;
        for (unsigned int j = 0; j < products->size(); ++j) {
            Product& product = *products->product(j);
            const double ownT = getT(&product, T);
            const double mixing = product.isCondensed() ? 0.0 : -product.ln_n() + lnN - lnp;
            sumS += product.n() * (product.S0_tilde(ownT) + mixing);
            sumCp += product.n() * product.Cp0_tilde(ownT);
        }
        const double dlnT = (S - sumS * gasConstant) / (sumCp * gasConstant);
        if (std::abs(dlnT) < tolerance) return T;
        T = std::exp(std::log(T) + dlnT);
        if (step == lastStep) {
            Log::errorf("THERMO",
                        "Could not solve frozen equilibrium for nozzle section: maximum number of "
                        "iterations is succeed.%s",
                        eol);
            throw thermo::Exception(noFrozenSection);
        }
    }
}

} // namespace performance::frozen
