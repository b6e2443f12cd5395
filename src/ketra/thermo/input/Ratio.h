#pragma once

#include <ketra/thermo/input/UnitNode.h>

#include <cstdint>

namespace thermo::input {

/// The ratio between oxidizer and fuel, or why there is none.
class KETRA_API Ratio : public UnitNode
{
public:
    enum UNITS : std::int32_t {
        KM,      ///< oxidizer-to-fuel mass ratio
        ALPHA,   ///< oxidizer excess coefficient
        OPTIMAL, ///< no ratio given: it is to be found by optimisation
        MIXTURE, ///< the propellant is a mixture; no text of a document gives this
    };

    Ratio(const char* key, double initial, UNITS stated) : UnitNode(key, initial), unit(stated) {}

    /// Stores both. \returns the value
    double set(double newValue, UNITS in);
    double getValue() const { return value.get(); }
    UNITS getUnit() const { return unit; }
    const char* getRawUnit() const { return unitToRaw(unit); }

    static const char* unitToRaw(UNITS wanted);
    /// Logs a text that it does not know.
    /// \throws Exception 4, "Unknown component ratio unit"
    static UNITS rawToUnit(const char* text);

    /// A ratio without a unit is an oxidizer-to-fuel mass ratio.
    /// \throws libconfig::SettingNotFoundException if \p parent has no such group
    /// \throws Exception 4 for an unknown unit
    void read(const libconfig::Setting& parent) override;
    void write(libconfig::Setting& parent, bool all) override;

protected:
    /// \throws Exception 4
    void setRawUnit(const char* text) { unit = rawToUnit(text); }
    double getDefault() const { return value.getDefault(); }

private:
    UNITS unit;
};

} // namespace thermo::input
