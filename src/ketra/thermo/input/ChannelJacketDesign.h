#pragma once

#include <ketra/thermo/input/Angle.h>
#include <ketra/thermo/input/ConvectiveCooling.h>
#include <ketra/thermo/input/TwoKeyLength.h>

namespace thermo::input {

/// A jacket whose coolant flows through channels between ribs. Their number is stated, or the
/// thickness of the ribs.
class KETRA_API ChannelJacketDesign : public ConvectiveCooling
{
public:
    ChannelJacketDesign() : ConvectiveCooling("channelJacketDesign") {}

    /// Height of a channel at the begin of the section; in m if \p si, else as stated.
    double getHc1(bool si) const { return hc1.valueFor(si); }
    double getHc1(Length::UNITS unit) const { return hc1.get(unit); }
    Length::UNITS getHc1Unit(bool si) const { return hc1.unitFor(si); }
    void setHc1(double height, Length::UNITS u, bool keepUnit) { hc1.set(height, u, keepUnit); }

    /// Smallest height within the section; in m if \p si, else as stated.
    bool isHcminSet() const { return hcmin.isSet(); }
    double getHcmin(bool si) const { return hcmin.valueFor(si); }
    double getHcmin(Length::UNITS unit) const { return hcmin.get(unit); }
    Length::UNITS getHcminUnit(bool si) const { return hcmin.unitFor(si); }
    void setHcmin(double height, Length::UNITS u, bool keepUnit) { hcmin.set(height, u, keepUnit); }
    void deleteHcmin() { hcmin.reset(); }

    /// Height of a channel at the end of the section; in m if \p si, else as stated.
    double getHc2(bool si) const { return hc2.valueFor(si); }
    double getHc2(Length::UNITS unit) const { return hc2.get(unit); }
    Length::UNITS getHc2Unit(bool si) const { return hc2.unitFor(si); }
    void setHc2(double height, Length::UNITS u, bool keepUnit) { hc2.set(height, u, keepUnit); }

    /// Width of a channel at the begin of the section; in m if \p si, else as stated.
    double getA1(bool si) const { return a1.valueFor(si); }
    double getA1(Length::UNITS unit) const { return a1.get(unit); }
    Length::UNITS getA1Unit(bool si) const { return a1.unitFor(si); }
    void setA1(double a, Length::UNITS u, bool keepUnit) { a1.set(a, u, keepUnit); }

    /// Smallest width within the section; in m if \p si, else as stated.
    bool isAminSet() const { return amin.isSet(); }
    /// A document has it under the key of the width at the begin, and a member read from there
    /// writes to that key. A member that the setter brings up writes to "amin", which is not read.
    double getAmin(bool si) const { return amin.valueFor(si); }
    double getAmin(Length::UNITS unit) const { return amin.get(unit); }
    Length::UNITS getAminUnit(bool si) const { return amin.unitFor(si); }
    void setAmin(double a, Length::UNITS u, bool keepUnit) { amin.set(a, u, keepUnit); }
    void deleteAmin() { amin.reset(); }

    /// Width of a channel at the end of the section; in m if \p si, else as stated.
    double getA2(bool si) const { return a2.valueFor(si); }
    double getA2(Length::UNITS unit) const { return a2.get(unit); }
    Length::UNITS getA2Unit(bool si) const { return a2.unitFor(si); }
    void setA2(double a, Length::UNITS u, bool keepUnit) { a2.set(a, u, keepUnit); }

    /// Number of channels; setting it drops the thicknesses of the ribs.
    bool isNSet() const { return n.isSet(); }
    int getN() const { return n.get(); }
    void setN(int number);
    void deleteN() { n.reset(); }

    /// Thickness of a rib at the begin of the section; in m if \p si, else as stated. Setting
    bool isB1Set() const { return b1.isSet(); }
    /// it drops the number of channels.
    double getB1(bool si) const { return b1.valueFor(si); }
    double getB1(Length::UNITS unit) const { return b1.get(unit); }
    Length::UNITS getB1Unit(bool si) const { return b1.unitFor(si); }
    void setB1(double b, Length::UNITS u, bool keepUnit);
    void deleteB1() { b1.reset(); }

    /// Smallest thickness within the section; in m if \p si, else as stated. Setting it drops
    bool isBminSet() const { return bmin.isSet(); }
    /// the number of channels. It is read under "bmin"; a member that the setter brings up writes
    /// to "amin".
    double getBmin(bool si) const { return bmin.valueFor(si); }
    double getBmin(Length::UNITS unit) const { return bmin.get(unit); }
    Length::UNITS getBminUnit(bool si) const { return bmin.unitFor(si); }
    void setBmin(double b, Length::UNITS u, bool keepUnit);
    void deleteBmin() { bmin.reset(); }

    /// Thickness of a rib at the end of the section; in m if \p si, else as stated. Setting it
    bool isB2Set() const { return b2.isSet(); }
    /// drops the number of channels.
    double getB2(bool si) const { return b2.valueFor(si); }
    double getB2(Length::UNITS unit) const { return b2.get(unit); }
    Length::UNITS getB2Unit(bool si) const { return b2.unitFor(si); }
    void setB2(double b, Length::UNITS u, bool keepUnit);
    void deleteB2() { b2.reset(); }

    /// Angle between channel and wall contour; in degrees if \p si, else as stated.
    double getGamma(bool si) const { return gamma.valueFor(si); }
    double getGamma(Angle::UNITS unit) const { return gamma.get(unit); }
    Angle::UNITS getGammaUnit(bool si) const { return gamma.unitFor(si); }
    void setGamma(double angle, Angle::UNITS u, bool keepUnit) { gamma.set(angle, u, keepUnit); }

    /// Name of the material of the ribs; setting it drops their conductivity.
    bool isRibsMaterialNameSet() const { return ribsMaterial.isSet(); }
    const std::string& getRibsMaterialName() const { return ribsMaterial.get(); }
    void setRibsMaterialName(const std::string& material);
    void deleteRibsMaterialName() { ribsMaterial.reset(); }

    /// Thermal conductivity of the ribs; in W/(m K) if \p si, else as stated. Setting it drops the
    bool isRibsLambdaSet() const { return ribsLambda.isSet(); }
    /// material.
    double getRibsLambda(bool si) const { return ribsLambda.valueFor(si); }
    double getRibsLambda(ThermalConductivity::UNITS unit) const { return ribsLambda.get(unit); }
    ThermalConductivity::UNITS getRibsLambdaUnit(bool si) const { return ribsLambda.unitFor(si); }
    void setRibsLambda(double conductivity, ThermalConductivity::UNITS u, bool keepUnit);
    void deleteRibsLambda() { ribsLambda.reset(); }

    /// Ribs that state neither material nor conductivity get the conductivity of copper.
    /// \throws libconfig::SettingNotFoundException if \p parent has no such group
    /// \throws Exception 4 for an unknown unit
    void read(const libconfig::Setting& parent) override;

protected:
    void fields(Fields& walk) override;

private:
    Length hc1{"height1", 4.0, Length::MM};
    OptionalQuantity<Length> hcmin{"height_min", 4.0, Length::MM, "hcmin"};
    Length hc2{"height2", 4.0, Length::MM};
    Angle gamma{"gamma", 90.0, Angle::DEGREES};
    Length a1{"a1", 2.0, Length::MM};
    // Two members whose key in a document is not the one that their setters give them.
    TwoKeyLength amin{"a1", "amin", 1.0, Length::MM, "amin"};
    Length a2{"a2", 2.0, Length::MM};
    OptionalValue<int> n{"n", 0, "n"};
    OptionalQuantity<Length> b1{"b1", 1.0, Length::MM, "b1"};
    TwoKeyLength bmin{"bmin", "amin", 1.0, Length::MM, "bmin"};
    OptionalQuantity<Length> b2{"b2", 1.0, Length::MM, "b2"};
    OptionalValue<std::string> ribsMaterial{"ribsMaterial", "copper", "ribs material name"};
    OptionalQuantity<ThermalConductivity> ribsLambda{"ribsConductivity", 360.0,
                                                     ThermalConductivity::W_PER_M_K, "ribs lambda"};
};

} // namespace thermo::input
