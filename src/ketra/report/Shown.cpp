#include <ketra/report/Shown.h>

#include <ketra/thermo/input/Pressure.h>
#include <ketra/thermo/input/Temperature.h>

using thermo::input::Pressure;
using thermo::input::Temperature;

namespace report {

namespace {

constexpr double megapascal = 1000000.0;                      // Pa
constexpr double kilo = 1000.0;                               // J in a kJ
constexpr double metresPerFoot = 0.3048;                      // m/ft
constexpr double densityOfPoundPerFoot3 = 16.018463373960138; // kg/m^3 in lbm/ft^3
constexpr double molarBtu = 2.326;     // J/mol in Btu/lb-mol, with lb-mol in g
constexpr double specificBtu = 2326.0; // J/kg in Btu/lbm
// J/(kg K) in Btu/(lbm R). The molar lines of entropy and heat capacity take the same divisor.
constexpr double specificBtuPerRankine = 4186.8;
constexpr double kilogramsPerPound = 0.45359237; // kg/lbm
constexpr double gramsPerPound = 453.59237;      // g/lbm

} // namespace

Shown temperature(double T)
{
    return {T, "K", Temperature::convert(T, Temperature::K, Temperature::R), "R"};
}

Shown fahrenheit(double T)
{
    return {T, "K", Temperature::convert(T, Temperature::K, Temperature::F), "F"};
}

Shown pressure(double p)
{
    const double pMPa = p / megapascal;
    return {pMPa, "MPa", Pressure::convert(pMPa, Pressure::MPA, Pressure::PSI), "psi"};
}

Shown density(double rho) { return {rho, "kg/m^3", rho / densityOfPoundPerFoot3, "lbm/ft^3"}; }

Shown specificVolume(double v) { return {v, "m^3/kg", v * densityOfPoundPerFoot3, "ft^3/lbm"}; }

Shown velocity(double w) { return {w, "m/s", w / metresPerFoot, "ft/s"}; }

Shown molarEnergy(double h) { return {h, "J/mol", h / molarBtu, "Btu/lb-mol"}; }

Shown molarEnergyColumn(double h) { return {h / kilo, "kJ/mol", h / molarBtu, "Btu/lb-mol"}; }

Shown specificEnergy(double h) { return {h / kilo, "kJ/kg", h / specificBtu, "Btu/lbm"}; }

Shown molarEntropy(double s)
{
    return {s, "J/(mol K)", s / specificBtuPerRankine, "Btu/(lb-mol R)"};
}

Shown specificEntropy(double s)
{
    return {s / kilo, "kJ/(kg K)", s / specificBtuPerRankine, "Btu/(lbm R)"};
}

Shown gasConstant(double R) { return {R, "J/(kg K)", R / specificBtuPerRankine, "Btu/(lbm R)"}; }

Shown molarMass(double M)
{
    return {M, "x10^-3 kg/mol", M * 10000.0 * kilogramsPerPound / gramsPerPound,
            "x10^-6 lbm/lb-mol"};
}

} // namespace report
