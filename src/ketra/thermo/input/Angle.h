#pragma once

#include <ketra/thermo/input/UnitValue.h>

namespace thermo::input {

struct AngleUnits {
    enum UNITS : std::int32_t { RADIANS, DEGREES };
    static constexpr UNITS base = DEGREES;
    static constexpr const char* what = "angle";
    // unit, degrees in it, spellings
    // clang-format off
    static constexpr Unit<UNITS> table[] = {
        {RADIANS, 57.29577951308232, {"radians", "radian", "rad", "r"}},
        {DEGREES, 1.0,               {"degrees", "degree", "deg"}},
    };
    // clang-format on
};

/// An angle; base unit degree.
class KETRA_API Angle : public UnitValue<AngleUnits>
{
public:
    using UnitValue::UnitValue;
};

} // namespace thermo::input
