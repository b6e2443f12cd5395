#pragma once

#include <ketra/thermo/input/UnitValue.h>

namespace thermo::input {

struct TemperatureUnits {
    enum UNITS : std::int32_t { K, C, F, R };
    static constexpr UNITS base = K;
    static constexpr const char* what = "temperature";
    // Every scale but Rankine can be spelt; a temperature in Rankine is printed with the text of
    // the kelvin. The factors are not used.
    static constexpr Unit<UNITS> table[] = {
        {K, 0.0, {"K"}},
        {C, 0.0, {"C"}},
        {F, 0.0, {"F"}},
        {R, 0.0, {"K"}},
    };
    /// \p x on the scale \p from as read on the scale \p to.
    KETRA_API static double convert(double x, UNITS from, UNITS to);
};

/// A temperature; base unit kelvin. The scales have different zeros, so there are no factors.
class KETRA_API Temperature : public UnitValue<TemperatureUnits>
{
public:
    using UnitValue::UnitValue;

    /// Takes \p x given on the scale \p in; the stated scale always stays.
    /// \returns the new value in K
    double set(double x, UNITS in) { return UnitValue::set(x, in, /*keepUnit=*/true); }

    /// A temperature of 0 or less on its stated scale is not stated, and is left out altogether.
    void write(libconfig::Setting& parent, bool all) override;
};

} // namespace thermo::input
