#pragma once

#include <ketra/export.h>

/// The standard atmosphere up to 86 km [USSA1976]: layers of constant temperature gradient in
/// geopotential altitude. Altitudes are in metres.
///
/// The temperature is counted from 298.15 K at sea level, while its ratio is formed with the
/// atmosphere's own 288.15 K: getTemperature() thus reads 3.5 % above the published temperatures,
/// and the other values do not.
class KETRA_API StandardAtmosphere
{
public:
    /// The conditions at sea level.
    StandardAtmosphere();

    /// Sets the geometric altitude \p h, m. It is not checked: above the last layer that layer goes
    /// on, and below sea level the first.
    void setAltitude(double h);
    /// Geometric altitude, m.
    double getAltitude() const { return altitude; }

    /// Density, pressure and temperature over those at sea level.
    double getDensityRatio() const { return densityRatio; }
    double getPressureRatio() const { return pressureRatio; }
    double getTemperatureRatio() const { return temperatureRatio; }

    /// Temperature, K, counted from 298.15 K at sea level.
    double getTemperature() const;
    /// Pressure, Pa.
    double getPressure() const;
    /// Density, g/cm3.
    double getDensity() const;
    /// Speed of sound, m/s.
    double getSpeedOfSound() const;

    /// Altitude up to which the layers are the standard's, m.
    double getMaxAltitude() const;

    /// Altitude, m, of the ambient pressure \p p, Pa: 0 within 0.1 % of sea level's and above it,
    /// 86,000 below 0.4 Pa.
    static double getAltitudeForPressure(double p);

    /// The layers' lower bounds: geopotential altitude, m; temperature, K; pressure ratio; and the
    /// gradient above the bound, K/m. The last bound is the end of the seventh and last layer.
    static const double htab[8];
    static const double ttab[8];
    static const double ptab[8];
    static const double gtab[8];

private:
    double altitude;
    double densityRatio;
    double pressureRatio;
    double temperatureRatio;
};
