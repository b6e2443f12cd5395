#pragma once

#include <ketra/thermo/input/ChamberCooling.h>
#include <ketra/thermo/input/EngineSize.h>

#include <unit/thermo_input/Facts.h>
#include <unit/thermo_input/Settings.h>

namespace ketra_test {

/// Which contour is there. A flag that is there and false shows in the written document only.
inline std::string contourOf(thermo::input::ChamberGeometry geometry)
{
    Settings settings;
    geometry.write(settings.root(), true);
    if (settings.has("chamberGeometry.TOC")) return "TOC";
    return settings.has("chamberGeometry.TOC_L") ? "TOC_L" : "parabola";
}

inline void tell(FactWriter to, const thermo::input::ChamberGeometry& s)
{
    to.say("length", s.getChamberLength(false), s.getChamberLengthUnit(false));
    to.say("characteristicLength", s.isCharacteristicLength());
    to.say("contractionAngle", s.getContractionAngle());
    to.say("R1_to_Rt_ratio", s.getR1ToRtRatio());
    to.say("Rn_to_Rt_ratio", s.getRnToRtRatio());
    to.say("R2_to_R2max_ratio", s.getR2ToR2maxRatio());
    to.say("TOC", s.isTOC());
    to.say("TOC_L", s.isTOC_L());
    if (s.isParabolicInitialAngle()) to.say("initialAngle", s.getParabolicInitialAngle());
    if (s.isParabolicExitAngle()) to.say("exitAngle", s.getParabolicExitAngle());
    if (s.isParabolicLength()) to.say("Le_to_Lc15", s.getParabolicLength());
    if (s.isTw_to_T0()) to.say("Tw_to_T0", s.getTwToT0());
    if (s.isLe()) to.say("Le", s.getLe());
    to.say("TOC_applyEfficiency", s.isTOCApplayEfficiency());
    to.say("contour", contourOf(s));
}

inline void tell(FactWriter to, const thermo::input::EngineSize& s)
{
    if (s.isThrustSet()) to.say("thrust", s.getThrust(false), s.getThrustUnit(false));
    if (s.isAmbientPressureSet())
        to.say("ambientConditions", s.getAmbientPressure(false), s.getAmbientPressureUnit(false));
    if (s.isMdotSet()) to.say("flowrate", s.getMdot(false), s.getMdotUnit(false));
    if (s.isThroatDSet()) to.say("throatDiameter", s.getThroatD(false), s.getThroatDUnit(false));
    to.say("chambersNo", static_cast<double>(s.getChambersNo()));
    tell(to.below("chamberGeometry"), s.getChamberGeometry());
}

inline void tell(FactWriter to, const thermo::input::HeatTransferParameters& s)
{
    to.say("relationsType", std::string(s.getRawRelationsType()));
    to.say("applyBLC", s.isApplyBLC());
    to.say("numberOfStations", static_cast<double>(s.getNumberOfStations()));
    to.say("radiationHeatTransfer", s.isRadiationHeatTransfer());
    to.say("hotSideWallSurfaceEmissivity", s.getWallSurfaceEmissivity());
    to.say("wallLayerHeight", s.getWallLayerHeight());
}

inline void tellWall(FactWriter to, const thermo::input::CoolingSection& s)
{
    to.say("location", s.getLocation(false), s.getLocationUnit(false));
    to.say("length", s.getLength(false), s.getLengthUnit(false));
    to.say("wallThickness", s.getH(false), s.getHUnit(false));
    if (s.isIdSet()) to.say("id", s.getId());
    if (s.isWallMaterialNameSet()) to.say("wallMaterial", s.getWallMaterialName());
    if (s.isLambdaSet()) to.say("wallConductivity", s.getLambda(false), s.getLambdaUnit(false));
    if (s.isInsulationLambdaSet())
        to.say("thermalInsulationConductivity", s.getInsulationLambda(false),
               s.getInsulationLambdaUnit(false));
    if (s.isInsulationHSet())
        to.say("thermalInsulationThickness", s.getInsulationH(false), s.getInsulationHUnit(false));
}

inline void tellCoolant(FactWriter to, const thermo::input::ConvectiveCooling& s)
{
    to.count("coolant", s.getCoolantListSize());
    for (unsigned int i = 0; i < s.getCoolantListSize(); ++i)
        tell(to.below("coolant", i), *s.getCoolant(i));
    if (s.isCoolantFromSet()) to.say("coolantFrom", s.getCoolantFrom());
    to.say("flowrate", s.getMdot());
    to.say("oppositeFlow", s.getOppositeFlow());
    to.say("twoPass", s.getTwoPass());
}

inline void tell(FactWriter to, const thermo::input::RadiationCooling& s)
{
    tellWall(to, s);
    to.say("coldSideWallSurfaceEmissivity", s.getSurfaceEmissivity());
}

inline void tell(FactWriter to, const thermo::input::SlotJacketDesign& s)
{
    tellWall(to, s);
    tellCoolant(to, s);
    to.say("height", s.getHc(false), s.getHcUnit(false));
}

inline void tell(FactWriter to, const thermo::input::ChannelJacketDesign& s)
{
    tellWall(to, s);
    tellCoolant(to, s);
    to.say("height1", s.getHc1(false), s.getHc1Unit(false));
    if (s.isHcminSet()) to.say("height_min", s.getHcmin(false), s.getHcminUnit(false));
    to.say("height2", s.getHc2(false), s.getHc2Unit(false));
    to.say("gamma", s.getGamma(false), s.getGammaUnit(false));
    to.say("a1", s.getA1(false), s.getA1Unit(false));
    if (s.isAminSet()) to.say("amin", s.getAmin(false), s.getAminUnit(false));
    to.say("a2", s.getA2(false), s.getA2Unit(false));
    if (s.isNSet()) to.say("n", static_cast<double>(s.getN()));
    if (s.isB1Set()) to.say("b1", s.getB1(false), s.getB1Unit(false));
    if (s.isBminSet()) to.say("bmin", s.getBmin(false), s.getBminUnit(false));
    if (s.isB2Set()) to.say("b2", s.getB2(false), s.getB2Unit(false));
    if (s.isRibsMaterialNameSet()) to.say("ribsMaterial", s.getRibsMaterialName());
    if (s.isRibsLambdaSet())
        to.say("ribsConductivity", s.getRibsLambda(false), s.getRibsLambdaUnit(false));
}

inline void tell(FactWriter to, const thermo::input::TubularJacketDesign& s)
{
    tellWall(to, s);
    tellCoolant(to, s);
    to.say("d", s.getD(false), s.getDUnit(false));
    if (s.isDminSet()) to.say("dmin", s.getDmin(false), s.getDminUnit(false));
    if (s.isD2Set()) to.say("d2", s.getD2(false), s.getD2Unit(false));
    to.say("n", s.getN());
    to.say("helix", s.isHelix());
}

/// The section as what it is; its name is the key of its class.
inline void tell(FactWriter to, const thermo::input::CoolingSection& s)
{
    using namespace thermo::input;
    const FactWriter below = to.below(s.getName());
    if (const auto* radiation = dynamic_cast<const RadiationCooling*>(&s)) tell(below, *radiation);
    if (const auto* slot = dynamic_cast<const SlotJacketDesign*>(&s)) tell(below, *slot);
    if (const auto* channel = dynamic_cast<const ChannelJacketDesign*>(&s)) tell(below, *channel);
    if (const auto* tubes = dynamic_cast<const TubularJacketDesign*>(&s)) tell(below, *tubes);
}

inline void tell(FactWriter to, const thermo::input::FilmSlot& s)
{
    to.say("location", s.getLocation(false), s.getLocationUnit(false));
    to.count("coolant", s.getCoolantListSize());
    for (unsigned int i = 0; i < s.getCoolantListSize(); ++i)
        tell(to.below("coolant", i), *s.getCoolant(i));
    to.say("flowrate", s.getMdot());
}

inline void tell(FactWriter to, const thermo::input::ChamberCooling& s)
{
    tell(to.below("heatTransfer"), s.getHeatTransferParameters());
    to.count("chamberCoolingSections", s.getSectionListSize());
    for (unsigned int i = 0; i < s.getSectionListSize(); ++i)
        tell(to.below("chamberCoolingSections", i), s.getSection(i));
    to.count("filmSlots", s.getFilmSlotsListSize());
    for (unsigned int i = 0; i < s.getFilmSlotsListSize(); ++i)
        tell(to.below("filmSlots", i), s.getFilmSlot(i));
}

} // namespace ketra_test
