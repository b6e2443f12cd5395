#pragma once

#include <ketra/thermo/input/UnitValue.h>

namespace thermo::input {

struct VolumetricMassDensityUnits {
    enum UNITS : std::int32_t { KG_PER_M3, G_PER_CM3, LBM_PER_FT3, LBM_PER_IN3 };
    static constexpr UNITS base = KG_PER_M3;
    static constexpr const char* what = "volumetric mass density";
    // unit, kg/m3 in it, spellings
    // clang-format off
    static constexpr Unit<UNITS> table[] = {
        {KG_PER_M3,   1.0,                {"kg/m^3", "kg_over_m^3", "kg/m3"}},
        {G_PER_CM3,   1000.0,             {"g/cm3", "g/cm^3", "g_over_cm^3"}},
        {LBM_PER_FT3, 16.018463373960138, {"lbm/ft^3", "lbm_over_ft^3", "lbm/ft3"}},
        {LBM_PER_IN3, 27679.904710203125, {"lbm/in^3", "lbm_over_in^3", "lbm/in3"}},
    };
    // clang-format on
};

/// A density, mass per volume; base unit kg/m3.
class KETRA_API VolumetricMassDensity : public UnitValue<VolumetricMassDensityUnits>
{
public:
    using UnitValue::UnitValue;
};

} // namespace thermo::input
