#include <ketra/thermo/Species.h>

#include <ketra/thermo/Exception.h>

#include <cmath>

namespace thermo {

namespace {

constexpr double snapT = 1.0; // K, within which a fixed-temperature record answers for T

/// Not logged: running out of a species' range is an everyday event of the equilibrium iteration.
[[noreturn]] void invalidTemperature() { throw Exception(1); }

const Polynomial& required(const Polynomial* interval)
{
    if (interval == nullptr) invalidTemperature();
    return *interval;
}

} // namespace

const Polynomial* Species::findInterval(double T) const
{
    for (const auto& interval : data->intervals)
        if (interval->holds(T)) return interval.get();
    return nullptr;
}

bool Species::isFixedTemperature() const
{
    return data->intervals.size() == 1 && data->intervals.front()->getT2() == 0.0;
}

StandardState Species::evaluate(const TemperatureTerms& terms) const
{
    return required(findInterval(terms.T)).evaluate(terms);
}

double Species::getMinimalT() const
{
    return data->intervals.empty() ? 0.0 : data->intervals.front()->getT1();
}

double Species::getMaximalT() const
{
    return data->intervals.empty() ? 0.0 : data->intervals.back()->getT2();
}

double Species::getT(double T) const
{
    if (findInterval(T) != nullptr) return T;
    if (isFixedTemperature()) {
        if (checkCpTable(T)) return T;
        const double T1 = getMinimalT();
        if (std::fabs(T1 - T) < snapT) return T1;
    }
    invalidTemperature();
}

double Species::getT0() const
{
    if (isFixedTemperature()) return getMinimalT();
    return isCondensed() ? referenceTemperature : getT(referenceTemperature);
}

void Species::setT0(double T)
{
    if (!isFixedTemperature()) invalidTemperature();
    own().intervals.front()->setT1(T);
}

double Species::Cp0(double T) const { return required(findInterval(T)).Cp0(T); }

double Species::Cp0_tilde(double T) const { return required(findInterval(T)).Cp0_tilde(T); }

double Species::Cv0(double T) const
{
    // 298.15 and not R: Cv0 and Cv0_tilde * R differ on purpose.
    return isCondensed() ? Cp0(T) : Cp0(T) - 298.15;
}

double Species::Cv0_tilde(double T) const
{
    return isCondensed() ? Cp0_tilde(T) : Cp0_tilde(T) - 1.0;
}

double Species::H0(double T) const
{
    // Exactly the temperature of the record: elsewhere nothing is known of it.
    if (isFixedTemperature() && T == getMinimalT()) return dHf298_15;
    return required(findInterval(T)).H0(T);
}

double Species::H0_tilde(double T) const
{
    if (isFixedTemperature() && T == getMinimalT()) return dHf298_15 / (T * gasConstant);
    return required(findInterval(T)).H0_tilde(T);
}

double Species::U0(double T) const { return isCondensed() ? H0(T) : H0(T) - T * gasConstant; }

double Species::U0_tilde(double T) const { return isCondensed() ? H0_tilde(T) : H0_tilde(T) - 1.0; }

double Species::S0(double T) const { return required(findInterval(T)).S0(T); }

double Species::S0_tilde(double T) const { return required(findInterval(T)).S0_tilde(T); }

double Species::G0(double T) const { return required(findInterval(T)).G0(T); }

double Species::G0_tilde(double T) const { return required(findInterval(T)).G0_tilde(T); }

} // namespace thermo
