#pragma once

#include <ketra/thermo/input/UnitValue.h>

namespace thermo::input {

struct ThermalConductivityUnits {
    enum UNITS : std::int32_t { W_PER_M_K, BTU_PER_HR_FT_R, BTU_PER_S_IN_R };
    static constexpr UNITS base = W_PER_M_K;
    static constexpr const char* what = "thermal conductivity";
    // unit, W/(m K) in it, spellings
    // clang-format off
    static constexpr Unit<UNITS> table[] = {
        {W_PER_M_K,       1.0,                {"W/(m K)", "W_over_m_K", "W/(m·K)", "W/(m-K)"}},
        {BTU_PER_HR_FT_R, 0.9615192590952172, {"Btu/(hr ft R)", "Btu_over_hr_ft_R", "Btu/(hr·ft·R)", "Btu/(hr-ft-R)"}},
        {BTU_PER_S_IN_R,  41537.63199291339,  {"Btu/(s in R)", "Btu_over_s_in_R", "Btu/(s·in·R)", "Btu/(s-in-R)"}},
    };
    // clang-format on
};

/// A thermal conductivity; base unit W/(m K).
///
/// The factors of the two Btu units are 5/9 of the textbook ones; they are part of the format, and
/// documents depend on them.
class KETRA_API ThermalConductivity : public UnitValue<ThermalConductivityUnits>
{
public:
    using UnitValue::UnitValue;
};

} // namespace thermo::input
