#include <ketra/thermo/properties/TransportProperties.h>

#include <ketra/thermo/Exception.h>

namespace thermo::properties {

TransportProperties::TransportProperties() = default;

TransportProperties::TransportProperties(const TransportProperties& other) { *this = other; }

TransportProperties& TransportProperties::operator=(const TransportProperties& other)
{
    const auto copyOf = [](const Intervals& intervals) {
        Intervals copy;
        copy.reserve(intervals.size());
        for (const auto& interval : intervals)
            copy.push_back(std::make_unique<TransportPropertiesCoefficients>(*interval));
        return copy;
    };
    if (this != &other) {
        viscosity = copyOf(other.viscosity);
        conductivity = copyOf(other.conductivity);
    }
    return *this;
}

TransportProperties::~TransportProperties() = default;

void TransportProperties::addV(TransportPropertiesCoefficients* interval)
{
    std::unique_ptr<TransportPropertiesCoefficients> owned(interval);
    viscosity.push_back(std::move(owned));
}

void TransportProperties::addC(TransportPropertiesCoefficients* interval)
{
    std::unique_ptr<TransportPropertiesCoefficients> owned(interval);
    conductivity.push_back(std::move(owned));
}

double TransportProperties::getV(double T) const { return valueAt(viscosity, T); }

double TransportProperties::getC(double T) const { return valueAt(conductivity, T); }

const TransportPropertiesCoefficients* TransportProperties::find(const Intervals& intervals,
                                                                 double T)
{
    for (const auto& interval : intervals)
        if (interval->holds(T)) return interval.get();
    return nullptr;
}

double TransportProperties::valueAt(const Intervals& intervals, double T)
{
    if (intervals.empty()) return 0.0;
    const TransportPropertiesCoefficients* const interval = find(intervals, T);
    if (interval == nullptr) throw Exception(1);
    return interval->getValue(T);
}

} // namespace thermo::properties
