#pragma once

#include <ketra/thermo/input/Pressure.h>
#include <ketra/thermo/input/Temperature.h>

namespace thermo::input {

/// One ingredient of a propellant: a species by name, how much of it, and its initial state.
///
/// A component is an element of a list of the document and has no key of its own; it reads and
/// writes the very group it is given.
class KETRA_API Component : public Node
{
public:
    Component() : Node("") {}
    /// A component of the species \p speciesName, with the mass fraction \p mf, at \p T in K unless
    /// a scale is given, and at \p p in \p pUnit. What is not given has its default.
    explicit Component(const char* speciesName);
    Component(const char* speciesName, double mf);
    Component(const char* speciesName, double mf, double initialT);
    Component(const char* speciesName, double mf, double initialT, double initialP,
              Pressure::UNITS pUnit);
    Component(const char* speciesName, double mf, double initialT, Temperature::UNITS TUnit,
              double initialP, Pressure::UNITS pUnit);

    /// Name of the species as the database knows it.
    const std::string& getName() const override { return species.get(); }

    /// Mass fraction within its list.
    double getMf() const { return massFraction.get(); }
    void setMf(double mf) { massFraction.set(mf); }

    /// Initial temperature, in K if \p si, else as stated; 0 is not stated.
    double getT(bool si) const { return T.valueFor(si); }
    double getT(Temperature::UNITS unit) const { return T.get(unit); }
    Temperature::UNITS getTUnit() const { return T.getUnit(); }
    /// The stated scale stays.
    void setT(double newT, Temperature::UNITS unit) { T.set(newT, unit); }

    /// Initial pressure, in Pa if \p si, else as stated.
    double getP(bool si) const { return p.valueFor(si); }
    double getP(Pressure::UNITS unit) const { return p.get(unit); }
    Pressure::UNITS getPUnit() const { return p.getUnit(); }
    /// \p unit becomes the stated unit.
    void setP(double newP, Pressure::UNITS unit) { p.set(newP, unit, /*keepUnit=*/false); }

    /// Reads the element \p item of a list.
    /// \throws Exception 4 for an unknown unit
    void read(const libconfig::Setting& item) override;
    void write(libconfig::Setting& item, bool all) override;

private:
    DataValue<std::string> species{"name", ""};
    DataValue<double> massFraction{"massFraction", 0.0};
    Temperature T{"T", 0.0, Temperature::K};
    Pressure p{"p", 101325.0, Pressure::PA};
};

} // namespace thermo::input
