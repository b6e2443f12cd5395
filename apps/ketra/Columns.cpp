#include "Columns.h"

#include <ketra/thermo/input/MassFlux.h>
#include <ketra/thermo/input/Pressure.h>
#include <ketra/thermo/input/Velocity.h>
#include <ketra/thermo/input/VolumetricMassDensity.h>

namespace host {

using namespace thermo::input;

namespace {

constexpr double gramsPerKilogram = 1000.0;
constexpr double rankinePerKelvin = 1.8;

} // namespace

Column plainColumn(const std::string& name, int decimals)
{
    return {name, {"", 1}, {"", 1}, decimals};
}

Column pressureColumn(const std::string& name)
{
    return {name,
            {"MPa", Pressure::convert(1, Pressure::PA, Pressure::MPA)},
            {"psi", Pressure::convert(1, Pressure::PA, Pressure::PSI)},
            6};
}

Column velocityColumn(const std::string& name)
{
    return {
        name, {"m/s", 1}, {"ft/s", Velocity::convert(1, Velocity::M_PER_S, Velocity::FT_PER_S)}, 2};
}

Column temperatureColumn(const std::string& name)
{
    return {name, {"K", 1}, {"R", rankinePerKelvin}, 2};
}

Column densityColumn(const std::string& name)
{
    using Density = VolumetricMassDensity;
    return {name,
            {"kg/m^3", 1},
            {"lbm/ft^3", Density::convert(1, Density::KG_PER_M3, Density::LBM_PER_FT3)},
            6};
}

Column massFluxColumn(const std::string& name)
{
    return {name,
            {"kg/(m^2 s)", 1},
            {"lbm/(ft^2 s)", MassFlux::convert(1, MassFlux::KG_PER_M2_S, MassFlux::LBM_PER_FT2_S)},
            3};
}

Column molarMassColumn(const std::string& name)
{
    return {name, {"g/mol", gramsPerKilogram}, {"g/mol", gramsPerKilogram}, 4};
}

} // namespace host
