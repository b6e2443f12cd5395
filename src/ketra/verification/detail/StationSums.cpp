#include <ketra/verification/detail/StationSums.h>

#include <ketra/performance/frozen/NozzleSectionConditions.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/thermo/Species.h>

#include <algorithm>
#include <cmath>
#include <memory>

using thermo::gasConstant;

namespace verification::detail {

StationSums StationSums::of(const EquilibriumState& state)
{
    double gas = 0.0;
    for (const auto& c : state.candidates)
        if (c.present && c.isGas()) gas += c.amount;
    // The smallest amounts over another number would be 0.
    const double lnPerMole = std::log(state.p / thermo::referencePressure) - std::log(gas);
    double H = 0.0;
    double S = 0.0;
    double Cp = 0.0;
    for (const auto& c : state.candidates) {
        if (!c.present) continue;
        H += c.amount * c.H;
        Cp += c.amount * c.Cp;
        S += c.amount * c.S;
        if (c.isGas() && c.amount > 0.0) S -= c.amount * (std::log(c.amount) + lnPerMole);
    }
    StationSums sums;
    sums.T = state.T;
    sums.p = state.p;
    sums.h = H * gasConstant * state.T / state.mass;
    sums.s = S * gasConstant / state.mass;
    sums.cp = Cp * gasConstant / state.mass;
    sums.rho = state.p * state.mass / (gas * gasConstant * state.T);
    return sums;
}

// A condensed product outside the range of its data keeps the heat capacity of their end. A gas, of
// which the flow allows no more than a few K, keeps its functions over R T.
StationSums StationSums::of(const performance::frozen::NozzleSectionConditions& section)
{
    const std::unique_ptr<thermo::Mixture> products(section.getResultingMixture());
    StationSums sums;
    sums.T = section.getT();
    sums.p = section.getP();
    double gas = 0.0;
    for (int i = 0; i < products->size(); ++i)
        if (!products->getSpecies(i)->isCondensed()) gas += products->getMolarFraction(i);
    const double lnPerMole = std::log(sums.p / thermo::referencePressure) - std::log(gas);
    double H = 0.0;
    double S = 0.0;
    double Cp = 0.0;
    double mass = 0.0; // kg
    for (int i = 0; i < products->size(); ++i) {
        const thermo::Species& species = *products->getSpecies(i);
        const double x = products->getMolarFraction(i);
        mass += x * species.getM() / 1000.0;
        const double T = std::clamp(sums.T, species.getMinimalT(), species.getMaximalT());
        thermo::StandardState f = species.evaluate(thermo::TemperatureTerms(T));
        if (species.isCondensed() && T != sums.T) {
            f.H = (f.H * T + f.Cp * (sums.T - T)) / sums.T;
            f.S += f.Cp * std::log(sums.T / T);
            sums.beyondData = true;
        }
        H += x * f.H;
        S += x * f.S;
        Cp += x * f.Cp;
        if (!species.isCondensed() && x > 0.0) S -= x * (std::log(x) + lnPerMole);
    }
    sums.h = H * gasConstant * sums.T / mass;
    sums.s = S * gasConstant / mass;
    sums.cp = Cp * gasConstant / mass;
    sums.rho = sums.p * mass / (gas * gasConstant * sums.T);
    return sums;
}

} // namespace verification::detail
