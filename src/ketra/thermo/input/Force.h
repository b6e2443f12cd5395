#pragma once

#include <ketra/thermo/input/UnitValue.h>

namespace thermo::input {

struct ForceUnits {
    enum UNITS : std::int32_t { KN, KG, LBF, N };
    static constexpr UNITS base = N;
    static constexpr const char* what = "force";
    // unit, newtons in it, spellings
    // clang-format off
    static constexpr Unit<UNITS> table[] = {
        {KN,  1000.0,          {"kN"}},
        {KG,  9.80665,         {"kg"}},
        {LBF, 4.4482216152605, {"lbf"}},
        {N,   1.0,             {"N"}},
    };
    // clang-format on
};

/// A force; base unit newton.
class KETRA_API Force : public UnitValue<ForceUnits>
{
public:
    using UnitValue::UnitValue;
};

} // namespace thermo::input
