#include <ketra/thermo/Species.h>

#include <ketra/thermo/Exception.h>
#include <ketra/thermo/properties/TransportProperties.h>

namespace thermo {

using properties::TransportProperties;
using properties::TransportPropertiesCoefficients;

namespace {

constexpr double micropoisePerPascalSecond = 1e7;
constexpr double conductivityDivisor = 1000.0; // microwatt/(cm K) in mW/(cm K)

double valueOf(const TransportPropertiesCoefficients* interval, double T)
{
    return interval != nullptr ? interval->getValue(T) : 0.0;
}

/// Puts data into their place unless they stand there already.
void replace(std::unique_ptr<TransportProperties>& place, TransportProperties* transport)
{
    if (transport != place.get()) place.reset(transport);
}

const TransportProperties& demand(const TransportProperties* transport)
{
    if (transport == nullptr) throw Exception(0);
    return *transport;
}

} // namespace

void Species::setTransportProperties(TransportProperties* transport)
{
    replace(own().transport, transport);
}

void Species::setTransportProperties(const std::string& other, TransportProperties* transport)
{
    replace(own().interactions[other], transport);
}

double Species::getViscosity(double T) const
{
    return demand(data->transport.get()).getV(T) / micropoisePerPascalSecond;
}

double Species::getConductivity(double T) const
{
    return demand(data->transport.get()).getC(T) / conductivityDivisor;
}

double Species::getViscosity(const Species* other, double T) const
{
    const auto found = data->interactions.find(other->getName());
    if (found == data->interactions.end()) throw Exception(0);
    return demand(found->second.get()).getV(T) / micropoisePerPascalSecond;
}

double Species::getConductivity(const Species*, double) const { throw Exception(0); }

double Species::findViscosity(double T) const
{
    const TransportProperties* const own = data->transport.get();
    return own != nullptr ? valueOf(own->findV(T), T) / micropoisePerPascalSecond : 0.0;
}

double Species::findConductivity(double T) const
{
    const TransportProperties* const own = data->transport.get();
    return own != nullptr ? valueOf(own->findC(T), T) / conductivityDivisor : 0.0;
}

double Species::findViscosity(const Species* other, double T) const
{
    if (data->interactions.empty()) return 0.0;
    const auto found = data->interactions.find(other->getName());
    if (found == data->interactions.end() || !found->second) return 0.0;
    return valueOf(found->second->findV(T), T) / micropoisePerPascalSecond;
}

} // namespace thermo
