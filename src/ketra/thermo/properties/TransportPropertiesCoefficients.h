#pragma once

#include <ketra/export.h>

#include <string>

namespace thermo::properties {

/// Viscosity or thermal conductivity of a gas, or of a pair of gases, over one interval of
/// temperature [McBride2002]:
///
///     ln f = A ln T + B/T + C/T^2 + D
///
/// with f in micropoise for a viscosity and in microwatt/(cm K) for a conductivity.
class KETRA_API TransportPropertiesCoefficients
{
public:
    /// An interval from a data line of a transport file; \throws as load().
    explicit TransportPropertiesCoefficients(const std::string& line);
    TransportPropertiesCoefficients(const TransportPropertiesCoefficients& other);
    TransportPropertiesCoefficients& operator=(const TransportPropertiesCoefficients& other);
    virtual ~TransportPropertiesCoefficients();

    /// Reads a data line. Blanks in place of the plus sign of an exponent are read as that sign.
    /// \returns true
    /// \throws runtime::Exception 1 if T1 is not above 0 K or is above 20000 K, or a number is not
    ///         finite
    bool load(const std::string& line);

    /// The interval holds \p T, K; its bounds belong to it.
    bool holds(double T) const { return T1 <= T && T <= T2; }
    /// Natural logarithm of the quantity. \throws thermo::Exception 1 for a \p T, K, outside.
    double getLogValue(double T) const;
    /// The quantity in the unit of the file. \throws thermo::Exception 1 for a \p T, K, outside.
    double getValue(double T) const;

    double getT1() const { return T1; }   ///< lower bound, K
    double getMinT() const { return T1; } ///< lower bound, K
    void setT1(double T) { T1 = T; }
    double getT2() const { return T2; }   ///< upper bound, K
    double getMaxT() const { return T2; } ///< upper bound, K
    void setT2(double T) { T2 = T; }

    double getA() const { return A; }
    void setA(double value) { A = value; }
    double getB() const { return B; } ///< K
    void setB(double value) { B = value; }
    double getC() const { return C; } ///< K^2
    void setC(double value) { C = value; }
    double getD() const { return D; }
    void setD(double value) { D = value; }

private:
    double T1 = 0.0; // K
    double T2 = 0.0; // K
    double A = 0.0;
    double B = 0.0; // K
    double C = 0.0; // K^2
    double D = 0.0;
};

} // namespace thermo::properties
