#pragma once

#include <ketra/thermo/input/Length.h>
#include <ketra/thermo/input/OptionalValue.h>
#include <ketra/thermo/input/Section.h>

namespace thermo::input {

/// The contour of chamber and nozzle.
///
/// The divergent part is a thrust-optimised contour, one with prescribed length, or a parabola. A
/// document can hold members of several of them; what is written is the first that is there.
class KETRA_API ChamberGeometry : public Section
{
public:
    ChamberGeometry() : Section("chamberGeometry") {}

    /// Length of the chamber, or its characteristic length; in m if \p si, else as stated.
    double getChamberLength(bool si) const { return length.valueFor(si); }
    double getChamberLength(Length::UNITS unit) const { return length.get(unit); }
    Length::UNITS getChamberLengthUnit(bool si) const { return length.unitFor(si); }
    void setChamberLength(double l, Length::UNITS u, bool keepUnit) { length.set(l, u, keepUnit); }

    /// The length is the characteristic one: chamber volume over throat area.
    bool isCharacteristicLength() const { return characteristicLength.get(); }
    void setCharacteristicLength(bool is) { characteristicLength.set(is); }

    /// Half angle of the convergent part, in degrees.
    double getContractionAngle() const { return contractionAngle.get(); }
    void setContractionAngle(double degrees) { contractionAngle.set(degrees); }

    /// Radius of the contour before the throat, over the throat radius.
    double getR1ToRtRatio() const { return R1ToRt.get(); }
    void setR1ToRtRatio(double ratio) { R1ToRt.set(ratio); }

    /// Radius of the contour behind the throat, over the throat radius.
    double getRnToRtRatio() const { return RnToRt.get(); }
    void setRnToRtRatio(double ratio) { RnToRt.set(ratio); }

    /// Radius of the contour at the inlet of the convergent part, over the largest one possible.
    double getR2ToR2maxRatio() const { return R2ToR2max.get(); }
    void setR2ToR2maxRatio(double ratio) { R2ToR2max.set(ratio); }

    /// The contour is thrust-optimised; false while this is not stated.
    bool isTOC() const { return TOC.getOr(false); }
    /// Drops the angles of the parabola, the contour with prescribed length and its length.
    void setTOC(bool is);
    /// Drops what belongs to the contour too: the wall temperature and the use of the efficiency.
    void deleteTOC() { input::clear(TOC, TwToT0, applyEfficiency); }

    /// The contour is thrust-optimised with prescribed length; false while this is not stated.
    bool isTOC_L() const { return TOC_L.getOr(false); }
    /// Drops the angles of the parabola and the plain thrust-optimised contour.
    void setTOC_L(bool is);
    /// Drops the prescribed length, the wall temperature and the use of the efficiency too.
    void deleteTOC_L() { input::clear(TOC_L, TwToT0, Le, applyEfficiency); }

    /// Parabola: its angle at the begin.
    bool isParabolicInitialAngle() const { return initialAngle.isSet(); }
    double getParabolicInitialAngle() const { return initialAngle.get(); }
    void setParabolicInitialAngle(double angle) { initialAngle.set(angle); }
    void deleteParabolicInitialAngle() { initialAngle.reset(); }

    /// Parabola: its angle at the nozzle exit.
    bool isParabolicExitAngle() const { return exitAngle.isSet(); }
    double getParabolicExitAngle() const { return exitAngle.get(); }
    void setParabolicExitAngle(double angle) { exitAngle.set(angle); }
    void deleteParabolicExitAngle() { exitAngle.reset(); }

    /// Parabola: its length over that of a cone of 15 degrees.
    bool isParabolicLength() const { return LeToLc15.isSet(); }
    double getParabolicLength() const { return LeToLc15.get(); }
    void setParabolicLength(double ratio) { LeToLc15.set(ratio); }
    void deleteParabolicLength() { LeToLc15.reset(); }

    /// Wall temperature over stagnation temperature.
    bool isTw_to_T0() const { return TwToT0.isSet(); }
    double getTwToT0() const { return TwToT0.get(); }
    void setTwToT0(double ratio) { TwToT0.set(ratio); }
    void deleteTwToT0() { TwToT0.reset(); }

    /// Nozzle length over throat diameter.
    bool isLe() const { return Le.isSet(); }
    double getLe() const { return Le.get(); }
    void setLe(double ratio) { Le.set(ratio); }
    void deleteLe() { Le.reset(); }

    /// The efficiencies are applied to the contour; false while this is not stated.
    bool isTOCApplayEfficiency() const { return applyEfficiency.getOr(false); }
    void setTOCApplayEfficiency(bool apply) { applyEfficiency.set(apply); }
    void deleteTOCApplayEfficiency() { applyEfficiency.reset(); }

    /// Numbers at their defaults, the length in m, and no contour. Whether the length is the
    /// characteristic one stays.
    void clear();

private:
    void fields(Fields& walk) override;

    Length length{"length", 1.0, Length::M};
    DataValue<bool> characteristicLength{"characteristicLength", true};
    DataValue<double> contractionAngle{"contractionAngle", 30.0}; // degrees
    DataValue<double> R1ToRt{"R1_to_Rt_ratio", 1.5};
    DataValue<double> RnToRt{"Rn_to_Rt_ratio", 0.382};
    DataValue<double> R2ToR2max{"R2_to_R2max_ratio", 0.5};
    OptionalValue<bool> TOC{"TOC", false, "TOC"};
    OptionalValue<bool> TOC_L{"TOC_L", false, "TOC_L"};
    OptionalValue<double> initialAngle{"initialAngle", 0.0, "parabola initial angle"};
    OptionalValue<double> exitAngle{"exitAngle", 0.0, "parabola exit angle"};
    OptionalValue<double> LeToLc15{"Le_to_Lc15", 0.0, "parabola relative length"};
    OptionalValue<double> TwToT0{"Tw_to_T0", 0.3, "Tw/T0"};
    OptionalValue<double> Le{"Le", 5.0, "Le/Dt"};
    OptionalValue<bool> applyEfficiency{"TOC_applyEfficiency", false, "TOC_applyEfficiency"};
};

} // namespace thermo::input
