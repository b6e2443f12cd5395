#pragma once

#include <ketra/thermo/input/UnitValue.h>

namespace thermo::input {

struct VelocityUnits {
    enum UNITS : std::int32_t { IN_PER_S = 1, FT_PER_S, M_PER_S };
    static constexpr UNITS base = M_PER_S;
    static constexpr const char* what = "velocity";
    // unit, m/s in it, spellings
    // clang-format off
    static constexpr Unit<UNITS> table[] = {
        {IN_PER_S, 0.0254, {"in/s"}},
        {FT_PER_S, 0.3048, {"ft/s"}},
        {M_PER_S,  1.0,    {"m/s"}},
    };
    // clang-format on
};

/// A velocity; base unit m/s. The unit 0 has no name and counts as the base unit.
class KETRA_API Velocity : public UnitValue<VelocityUnits>
{
public:
    using UnitValue::UnitValue;
};

} // namespace thermo::input
