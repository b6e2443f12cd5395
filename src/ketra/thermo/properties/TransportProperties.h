#pragma once

#include <ketra/export.h>
#include <ketra/thermo/properties/TransportPropertiesCoefficients.h>

#include <memory>
#include <vector>

namespace thermo::properties {

/// Viscosity and thermal conductivity of one gas, or of one pair of gases, as lists of intervals,
/// which it owns. Copies are deep.
///
/// The lists are read by many threads at once without a lock.
class KETRA_API TransportProperties
{
public:
    TransportProperties();
    TransportProperties(const TransportProperties& other);
    TransportProperties& operator=(const TransportProperties& other);
    virtual ~TransportProperties();

    /// Appends an interval of the viscosity, micropoise, and takes ownership of it.
    void addV(TransportPropertiesCoefficients* interval);
    /// Appends an interval of the conductivity, microwatt/(cm K), and takes ownership of it.
    void addC(TransportPropertiesCoefficients* interval);

    /// Viscosity, micropoise, of the first interval that holds \p T, K; 0 if there are no intervals
    /// at all. \throws thermo::Exception 1 if none of them holds T.
    double getV(double T) const;
    /// Conductivity, microwatt/(cm K), likewise.
    double getC(double T) const;

    /// The first interval of the viscosity that holds \p T, K, null without one; it stays this
    /// object's.
    const TransportPropertiesCoefficients* findV(double T) const { return find(viscosity, T); }
    /// The same of the conductivity.
    const TransportPropertiesCoefficients* findC(double T) const { return find(conductivity, T); }

private:
    using Intervals = std::vector<std::unique_ptr<TransportPropertiesCoefficients>>;

    static const TransportPropertiesCoefficients* find(const Intervals& intervals, double T);
    static double valueAt(const Intervals& intervals, double T);

    Intervals viscosity;    // in file order
    Intervals conductivity; // in file order
};

} // namespace thermo::properties
