#pragma once

#include <ketra/thermo/input/UnitValue.h>

namespace thermo::input {

struct LengthUnits {
    enum UNITS : std::int32_t { MM, IN, FT, M };
    static constexpr UNITS base = M;
    static constexpr const char* what = "length";
    // unit, metres in it, spellings
    // clang-format off
    static constexpr Unit<UNITS> table[] = {
        {MM, 0.001,  {"mm"}},
        {IN, 0.0254, {"in"}},
        {FT, 0.3048, {"ft"}},
        {M,  1.0,    {"m"}},
    };
    // clang-format on
};

/// A length; base unit metre.
class KETRA_API Length : public UnitValue<LengthUnits>
{
public:
    using UnitValue::UnitValue;
};

} // namespace thermo::input
