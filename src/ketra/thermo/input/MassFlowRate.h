#pragma once

#include <ketra/thermo/input/UnitValue.h>

namespace thermo::input {

struct MassFlowRateUnits {
    enum UNITS : std::int32_t { KG_PER_S, LBM_PER_S };
    static constexpr UNITS base = KG_PER_S;
    static constexpr const char* what = "mass flow rate";
    // unit, kg/s in it, spellings
    // clang-format off
    static constexpr Unit<UNITS> table[] = {
        {KG_PER_S,  1.0,        {"kg/s"}},
        {LBM_PER_S, 0.45359237, {"lbm/s"}},
    };
    // clang-format on
};

/// A mass flow rate; base unit kg/s.
class KETRA_API MassFlowRate : public UnitValue<MassFlowRateUnits>
{
public:
    using UnitValue::UnitValue;
};

} // namespace thermo::input
