#pragma once

namespace report {

/// A value as the report shows it, in SI and in English units, each with the text of its unit.
struct Shown {
    double si;
    const char* siUnit;
    double english;
    const char* englishUnit;
};

/// A number without unit, the same in both systems.
inline Shown plain(double x) { return {x, "", x, ""}; }

// Each function takes the value in the SI unit of the library and gives it in the units of the
// report's line.

/// Temperature in K; "K" and Rankine "R".
Shown temperature(double T);
/// Temperature in K as degrees Fahrenheit "F": the second English line of a temperature. Its SI
/// side is the temperature in K.
Shown fahrenheit(double T);
/// Pressure in Pa; "MPa" and "psi".
Shown pressure(double p);
/// Density in kg/m^3; "kg/m^3" and "lbm/ft^3".
Shown density(double rho);
/// Specific volume in m^3/kg; "m^3/kg" and "ft^3/lbm".
Shown specificVolume(double v);
/// Velocity in m/s; "m/s" and "ft/s".
Shown velocity(double w);
/// Molar energy in J/mol; "J/mol" and "Btu/lb-mol".
Shown molarEnergy(double h);
/// Molar energy in J/mol; "kJ/mol" and "Btu/lb-mol": the columns of the composition table.
Shown molarEnergyColumn(double h);
/// Specific energy in J/kg; "kJ/kg" and "Btu/lbm".
Shown specificEnergy(double h);
/// Molar entropy or heat capacity in J/(mol K); "J/(mol K)" and "Btu/(lb-mol R)".
Shown molarEntropy(double s);
/// Specific entropy or heat capacity in J/(kg K); "kJ/(kg K)" and "Btu/(lbm R)".
Shown specificEntropy(double s);
/// Specific gas constant in J/(kg K); "J/(kg K)" and "Btu/(lbm R)".
Shown gasConstant(double R);
/// Molar mass in g/mol; "x10^-3 kg/mol" and "x10^-6 lbm/lb-mol".
Shown molarMass(double M);

/// Viscosity in Pa s; "x10^-4 kg/(m s)" and "x10^-4 lb/(ft s)".
Shown viscosity(double eta);
/// Thermal conductivity in W/(m K); "W/(m K)" and "Btu/(hr ft R)".
Shown conductivity(double lambda);

} // namespace report
