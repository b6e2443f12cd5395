#pragma once

#include <ketra/thermo/input/ConvectiveCooling.h>

namespace thermo::input {

/// A jacket of tubes that lie side by side and are the wall.
class KETRA_API TubularJacketDesign : public ConvectiveCooling
{
public:
    TubularJacketDesign() : ConvectiveCooling("tubularJacketDesign") {}

    /// Diameter of a tube, at the begin of the section if another one is stated for its end; in m
    /// if \p si, else as stated.
    double getD(bool si) const { return d.valueFor(si); }
    double getD(Length::UNITS unit) const { return d.get(unit); }
    Length::UNITS getDUnit(bool si) const { return d.unitFor(si); }
    void setD(double D, Length::UNITS u, bool keepUnit) { d.set(D, u, keepUnit); }

    /// The same member under the name that goes with the other diameters.
    double getD1(bool si) const { return getD(si); }
    double getD1(Length::UNITS unit) const { return getD(unit); }
    Length::UNITS getD1Unit(bool si) const { return getDUnit(si); }
    void setD1(double D, Length::UNITS u, bool keepUnit) { setD(D, u, keepUnit); }

    /// Smallest diameter within the section; in m if \p si, else as stated.
    bool isDminSet() const { return dmin.isSet(); }
    double getDmin(bool si) const { return dmin.valueFor(si); }
    double getDmin(Length::UNITS unit) const { return dmin.get(unit); }
    Length::UNITS getDminUnit(bool si) const { return dmin.unitFor(si); }
    void setDmin(double D, Length::UNITS u, bool keepUnit) { dmin.set(D, u, keepUnit); }
    void deleteDmin() { dmin.reset(); }

    /// Diameter at the end of the section; in m if \p si, else as stated.
    bool isD2Set() const { return d2.isSet(); }
    double getD2(bool si) const { return d2.valueFor(si); }
    double getD2(Length::UNITS unit) const { return d2.get(unit); }
    Length::UNITS getD2Unit(bool si) const { return d2.unitFor(si); }
    void setD2(double D, Length::UNITS u, bool keepUnit) { d2.set(D, u, keepUnit); }
    void deleteD2() { d2.reset(); }

    /// Number of tubes, a whole one.
    double getN() const { return n.get(); }
    /// \p number loses its fraction; what no `int` can hold becomes the nearest one that it can.
    void setN(double number);

    /// The tubes wind around the chamber.
    bool isHelix() const { return helix.get(); }
    void setHelix(bool winds) { helix.set(winds); }

protected:
    void fields(Fields& walk) override;

private:
    Length d{"d", 10.0, Length::MM};
    OptionalQuantity<Length> dmin{"dmin", 10.0, Length::MM, "dmin"};
    OptionalQuantity<Length> d2{"d2", 10.0, Length::MM, "d2"};
    DataValue<int> n{"n", 100};
    DataValue<bool> helix{"helix", false};
};

} // namespace thermo::input
