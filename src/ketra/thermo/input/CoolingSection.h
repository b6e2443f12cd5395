#pragma once

#include <ketra/thermo/input/Length.h>
#include <ketra/thermo/input/OptionalQuantity.h>
#include <ketra/thermo/input/OptionalValue.h>
#include <ketra/thermo/input/Section.h>
#include <ketra/thermo/input/ThermalConductivity.h>

namespace thermo::input {

/// A part of the chamber wall that is cooled in one way: where it is and what it is made of.
/// How it is cooled is the business of the derived classes.
class KETRA_API CoolingSection : public Section
{
public:
    using Section::Section;

    /// Name by which other sections refer to this one.
    bool isIdSet() const { return id.isSet(); }
    const std::string& getId() const { return id.get(); }
    void setId(const std::string& text) { id.set(text); }
    void deleteId() { id.reset(); }

    /// Where along the chamber the section begins; in m if \p si, else as stated.
    double getLocation(bool si) const { return location.valueFor(si); }
    double getLocation(Length::UNITS unit) const { return location.get(unit); }
    Length::UNITS getLocationUnit(bool si) const { return location.unitFor(si); }
    const char* getLocationRawUnit(bool si) const { return Length::unitToRaw(getLocationUnit(si)); }
    void setLocation(double x, Length::UNITS u, bool keepUnit) { location.set(x, u, keepUnit); }

    /// Length of the section; in m if \p si, else as stated.
    double getLength(bool si) const { return length.valueFor(si); }
    double getLength(Length::UNITS unit) const { return length.get(unit); }
    Length::UNITS getLengthUnit(bool si) const { return length.unitFor(si); }
    void setLength(double l, Length::UNITS u, bool keepUnit) { length.set(l, u, keepUnit); }

    /// Thickness of the wall; in m if \p si, else as stated.
    double getH(bool si) const { return h.valueFor(si); }
    double getH(Length::UNITS unit) const { return h.get(unit); }
    Length::UNITS getHUnit(bool si) const { return h.unitFor(si); }
    void setH(double thickness, Length::UNITS u, bool keepUnit) { h.set(thickness, u, keepUnit); }

    /// Name of the wall's material; setting it drops the conductivity.
    bool isWallMaterialNameSet() const { return wallMaterial.isSet(); }
    const std::string& getWallMaterialName() const { return wallMaterial.get(); }
    void setWallMaterialName(const std::string& material);
    void deleteWallMaterialName() { wallMaterial.reset(); }

    /// Thermal conductivity of the wall; in W/(m K) if \p si, else as stated. Setting it drops the
    /// material.
    bool isLambdaSet() const { return lambda.isSet(); }
    double getLambda(bool si) const { return lambda.valueFor(si); }
    double getLambda(ThermalConductivity::UNITS unit) const { return lambda.get(unit); }
    ThermalConductivity::UNITS getLambdaUnit(bool si) const { return lambda.unitFor(si); }
    void setLambda(double conductivity, ThermalConductivity::UNITS unit, bool keepUnit);
    void deleteLambda() { lambda.reset(); }

    /// Thermal conductivity of the insulation; in W/(m K) if \p si, else as stated.
    bool isInsulationLambdaSet() const { return insLambda.isSet(); }
    double getInsulationLambda(bool si) const { return insLambda.valueFor(si); }
    double getInsulationLambda(ThermalConductivity::UNITS unit) const
    {
        return insLambda.get(unit);
    }
    ThermalConductivity::UNITS getInsulationLambdaUnit(bool si) const
    {
        return insLambda.unitFor(si);
    }
    void setInsulationLambda(double conductivity, ThermalConductivity::UNITS unit, bool keepUnit)
    {
        insLambda.set(conductivity, unit, keepUnit);
    }
    void deleteInsulationLambda() { insLambda.reset(); }

    /// Thickness of the insulation; in m if \p si, else as stated.
    bool isInsulationHSet() const { return insH.isSet(); }
    double getInsulationH(bool si) const { return insH.valueFor(si); }
    double getInsulationH(Length::UNITS unit) const { return insH.get(unit); }
    Length::UNITS getInsulationHUnit(bool si) const { return insH.unitFor(si); }
    void setInsulationH(double t, Length::UNITS u, bool keepUnit) { insH.set(t, u, keepUnit); }
    void deleteInsulationH() { insH.reset(); }

    /// A section that states neither material nor conductivity gets the conductivity of copper.
    /// \throws libconfig::SettingNotFoundException if \p parent has no such group
    /// \throws Exception 4 for an unknown unit
    void read(const libconfig::Setting& parent) override;

protected:
    /// The members of every section; a derived class shows its own ones after them.
    void fields(Fields& walk) override;

private:
    Length location{"location", 0.0, Length::M};
    Length length{"length", 0.0, Length::M};
    Length h{"wallThickness", 0.001, Length::M};
    OptionalValue<std::string> id{"id", "", "section ID"};
    OptionalValue<std::string> wallMaterial{"wallMaterial", "copper", "wall material name"};
    OptionalQuantity<ThermalConductivity> lambda{"wallConductivity", 360.0,
                                                 ThermalConductivity::W_PER_M_K, "lambda"};
    OptionalQuantity<ThermalConductivity> insLambda{"thermalInsulationConductivity", 3.0,
                                                    ThermalConductivity::W_PER_M_K,
                                                    "insulation lambda", "insulation Lambda unit"};
    OptionalQuantity<Length> insH{"thermalInsulationThickness", 0.0002, Length::M,
                                  "insulation thickness"};
};

} // namespace thermo::input
