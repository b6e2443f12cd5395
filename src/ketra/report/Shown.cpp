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
constexpr double kilogramsPerPound = 0.45359237;               // kg/lbm
constexpr double gramsPerPound = 453.59237;                    // g/lbm
constexpr double viscosityScale = 10000.0;                     // Pa s in 1e-4 kg/(m s)
constexpr double viscosityOfPoundPerFoot = 1.4881639435695537; // Pa s in lb/(ft s)
// W/(m K) in the reports' Btu/(hr ft R), which counts the degree as 1.8 R once more.
constexpr double conductivityOfBtu = 0.9615192590952172;

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

Shown viscosity(double eta)
{
    const double scaled = eta * viscosityScale;
    return {scaled, "x10^-4 kg/(m s)", scaled / viscosityOfPoundPerFoot, "x10^-4 lb/(ft s)"};
}

Shown conductivity(double lambda)
{
    return {lambda, "W/(m K)", lambda / conductivityOfBtu, "Btu/(hr ft R)"};
}

} // namespace report
