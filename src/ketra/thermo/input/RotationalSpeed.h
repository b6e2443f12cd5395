#pragma once

#include <ketra/thermo/input/UnitValue.h>

namespace thermo::input {

struct RotationalSpeedUnits {
    enum UNITS : std::int32_t { RAD_PER_S = 1, RPM, HZ };
    static constexpr UNITS base = RAD_PER_S;
    static constexpr const char* what = "RotationalSpeed";
    // unit, rad/s in it, spellings
    // clang-format off
    static constexpr Unit<UNITS> table[] = {
        {RAD_PER_S, 1.0,                 {"rad/s"}},
        {RPM,       0.10471975511965977, {"rpm"}},
        {HZ,        6.283185307179586,   {"Hz"}},
    };
    // clang-format on
};

/// A rotational speed; base unit rad/s. The unit 0 has no name and counts as the base unit.
class KETRA_API RotationalSpeed : public UnitValue<RotationalSpeedUnits>
{
public:
    using UnitValue::UnitValue;
};

} // namespace thermo::input
