#pragma once

#include <ketra/thermo/properties/TransportProperties.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>

// Made-up transport data.

namespace ketra_test {

/// A data line of a transport file.
inline std::string transportLine(char quantity, double T1, double T2, double A, double B, double C,
                                 double D)
{
    std::array<char, 100> line{};
    std::snprintf(line.data(), line.size(), " %c%9.1f%9.1f%15.8E%15.8E%15.8E%15.8E", quantity, T1,
                  T2, A, B, C, D);
    return line.data();
}

/// The line in front of the data of a species or of a pair.
inline std::string transportHead(const std::string& first, const std::string& second,
                                 int viscosities, int conductivities)
{
    std::array<char, 100> line{};
    std::snprintf(line.data(), line.size(), "%-15s %-15s   V%dC%d", first.c_str(), second.c_str(),
                  viscosities, conductivities);
    return line.data();
}

/// An interval on which ln f = A ln T + B/T + C/T^2 + D; the new object is the caller's.
inline thermo::properties::TransportPropertiesCoefficients*
newInterval(double T1, double T2, double A, double B, double C, double D)
{
    auto interval = std::make_unique<thermo::properties::TransportPropertiesCoefficients>(
        transportLine('V', T1, T2, 0.0, 0.0, 0.0, 0.0));
    interval->setA(A);
    interval->setB(B);
    interval->setC(C);
    interval->setD(D);
    return interval.release();
}

/// An interval of a constant value.
inline thermo::properties::TransportPropertiesCoefficients* newConstant(double T1, double T2,
                                                                        double value)
{
    return newInterval(T1, T2, 0.0, 0.0, 0.0, std::log(value));
}

/// The same viscosity, Pa s, and conductivity, W/(m K), from 200 to 20000 K; a 0 leaves one out.
/// The new object is the caller's.
inline thermo::properties::TransportProperties* newTransport(double viscosity, double conductivity)
{
    auto transport = std::make_unique<thermo::properties::TransportProperties>();
    if (viscosity > 0.0) transport->addV(newConstant(200.0, 20000.0, viscosity * 1e7));
    if (conductivity > 0.0) transport->addC(newConstant(200.0, 20000.0, conductivity * 1e4));
    return transport.release();
}

} // namespace ketra_test
