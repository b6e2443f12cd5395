#pragma once

#include <ketra/thermo/input/UnitValue.h>

namespace thermo::input {

struct MassFluxUnits {
    enum UNITS : std::int32_t { KG_PER_M2_S, LBM_PER_FT2_S };
    static constexpr UNITS base = KG_PER_M2_S;
    static constexpr const char* what = "mass flux";
    // unit, kg/(m2 s) in it, spellings
    // clang-format off
    static constexpr Unit<UNITS> table[] = {
        {KG_PER_M2_S,   1.0,              {"kg/(m2-s)", "kg/(m2·s)", "kg/(s·m2)", "kg/(s-m2)"}},
        {LBM_PER_FT2_S, 4.88242763638305, {"lbm/(ft2-s)", "lbm/(ft2·s)", "lbm/(s·ft2)", "lbm/(s-ft2)"}},
    };
    // clang-format on
};

/// A mass flux, the mass flow rate per area; base unit kg/(m2 s).
class KETRA_API MassFlux : public UnitValue<MassFluxUnits>
{
public:
    using UnitValue::UnitValue;
};

} // namespace thermo::input
