#pragma once

#include <ketra/thermo/input/UnitValue.h>

namespace thermo::input {

struct PressureUnits {
    enum UNITS : std::int32_t { MPA, ATM, BAR, PSI, PA, KG_PER_CM2 };
    static constexpr UNITS base = PA;
    static constexpr const char* what = "pressure";
    // unit, pascals in it, spellings
    // clang-format off
    static constexpr Unit<UNITS> table[] = {
        {MPA,        1000000.0,        {"MPa"}},
        {ATM,        101325.0,         {"atm"}},
        {BAR,        100000.0,         {"bar"}},
        {PSI,        6894.75729316836, {"psi", "psia"}},
        {PA,         1.0,              {"Pa"}},
        {KG_PER_CM2, 98066.5,          {"kg/cm2", "at"}},
    };
    // clang-format on
};

/// A pressure; base unit pascal.
class KETRA_API Pressure : public UnitValue<PressureUnits>
{
public:
    using UnitValue::UnitValue;
};

} // namespace thermo::input
