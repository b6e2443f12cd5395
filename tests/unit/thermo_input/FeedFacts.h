#pragma once

#include <ketra/thermo/input/PropellantFeedSystem.h>

#include <unit/thermo_input/Facts.h>

#include <string>

namespace ketra_test {

template <class Line> void tellLine(FactWriter to, const Line& s)
{
    if (s.isPumpEtaSet()) to.say("pumpEta", s.getPumpEta());
    if (s.isValveDpSet()) to.say("valveDp", s.getValveDp(false), s.getValveDpUnit(false));
    if (s.isValveZetaSet()) to.say("valveZeta", s.getValveZeta());
    if (s.isCoolingDpSet()) to.say("coolingDp", s.getCoolingDp(false), s.getCoolingDpUnit(false));
    if (s.isCoolingDtSet()) to.say("coolingDt", s.getCoolingDt(false), s.getCoolingDtUnit(false));
}

inline void tell(FactWriter to, const thermo::input::ChamberFeedSubsystemParameters& s)
{
    to.say("side", s.getName());
    to.say("inletPressure", s.getInletPressure(false), s.getInletPressureUnit(false));
    to.say("inletVelocity", s.getInletVelocity(false), s.getInletVelocityUnit(false));
    tellLine(to, s);
    if (s.isInjectorDpSet())
        to.say("injectorDp", s.getInjectorDp(false), s.getInjectorDpUnit(false));
    if (s.isInjectorMuSet()) to.say("injectorMu", s.getInjectorMu());
}

inline void tell(FactWriter to, const thermo::input::BoostPumpParameters& s)
{
    to.say("inletPressure", s.getInletPressure(false), s.getInletPressureUnit(false));
    to.say("dischargePressure", s.getDischargePressure(false), s.getDischargePressureUnit(false));
    if (s.isPumpEtaSet()) to.say("pumpEta", s.getPumpEta());
    if (s.isHydraulicTurbineSet()) to.say("hydraulicTurbine", s.getHydraulicTurbine());
    if (s.isTurbinePiSet()) to.say("turbinePi", s.getTurbinePi());
    if (s.isTurbineEtaSet()) to.say("turbineEta", s.getTurbineEta());
    if (s.isRotationalSpeedSet())
        to.say("rotationalSpeed", s.getRotationalSpeed(false), s.getRotationalSpeedUnit(false));
}

inline void tell(FactWriter to, const thermo::input::BranchParameters& s)
{
    to.say("name", s.getName());
    if (s.isMdotSet()) to.say("mdot", s.getMdot());
    if (s.isDischargePressureSet())
        to.say("dischargePressure", s.getDischargePressure(false),
               s.getDischargePressureUnit(false));
    if (s.isAbarSet()) to.say("Abar", s.getAbar());
    tellLine(to, s);
    if (s.isFixedDpSet()) to.say("fixedDp", s.getFixedDp(false), s.getFixedDpUnit(false));
    if (s.isFixedPiSet()) to.say("fixedPi", s.getFixedPi());
    if (s.isConnectToSet()) to.say("connectTo", s.getConnectTo());
    if (s.isDischargeToSet()) to.say("dischargeTo", s.getDischargeTo());
}

inline void tell(FactWriter to, const thermo::input::GasGeneratorBranchParameters& s)
{
    tell(to, static_cast<const thermo::input::BranchParameters&>(s));
    tellIfSet([&] { to.say("pipeDp", s.getPipeDp(false), s.getPipeDpUnit(false)); });
    tellIfSet([&] { to.say("injectorDp", s.getInjectorDp(false), s.getInjectorDpUnit(false)); });
    tellIfSet([&] { to.say("injectorMu", s.getInjectorMu()); });
}

inline void tell(FactWriter to, const thermo::input::GasGeneratorParameters& s)
{
    to.count("type", s.getType());
    if (s.isPressureSet()) to.say("pressure", s.getPressure(false), s.getPressureUnit(false));
    if (s.isSigmaSet()) to.say("sigma", s.getSigma());
    if (s.isTmaxSet()) to.say("Tmax", s.getTmax(false), s.getTmaxUnit(false));
}

inline void tell(FactWriter to, const thermo::input::TurbineParameters& s)
{
    to.count("type", s.getType());
    if (s.isPiSet()) to.say("pi", s.getPi());
    if (s.isEtaSet()) to.say("eta", s.getEta());
    if (s.isRotationalSpeedSet())
        to.say("rotationalSpeed", s.getRotationalSpeed(false), s.getRotationalSpeedUnit(false));
}

inline void tellSides(FactWriter to, const thermo::input::FeedSystem& s)
{
    const FactWriter oxidizer = to.below("oxidizer"), fuel = to.below("fuel");
    if (s.isOxidizerFeedSystem()) tell(oxidizer.below("feed"), s.getOxidizerFeedSystem());
    for (unsigned int i = 0; i < s.getOxidizerBranchesListSize(); ++i)
        tell(oxidizer.below("branch", i), *s.getOxidizerBranch(i));
    if (s.isFuelFeedSystem()) tell(fuel.below("feed"), s.getFuelFeedSystem());
    for (unsigned int i = 0; i < s.getFuelBranchesListSize(); ++i)
        tell(fuel.below("branch", i), *s.getFuelBranch(i));
}

inline void tell(FactWriter to, const thermo::input::PressurizedFeedSystem& s)
{
    to.count("type", s.getType());
    tellSides(to, s);
}

inline void tell(FactWriter to, const thermo::input::TurbopumpFeedSystem& s)
{
    to.count("cycle", s.getCycle());
    tellSides(to, s);
    if (s.isOxidizerBoostPump()) tell(to.below("oxidizer/boostPump"), s.getOxidizerBoostPump());
    if (s.isFuelBoostPump()) tell(to.below("fuel/boostPump"), s.getFuelBoostPump());
    if (s.isGG1()) tell(to.below("GG1/self"), s.getGG1());
    if (s.isOxidizerGGBranch1()) tell(to.below("GG1/oxidizer"), s.getOxidizerGGBranch1());
    if (s.isFuelGGBranch1()) tell(to.below("GG1/fuel"), s.getFuelGGBranch1());
    if (s.isGG2()) tell(to.below("GG2/self"), s.getGG2());
    if (s.isOxidizerGGBranch2()) tell(to.below("GG2/oxidizer"), s.getOxidizerGGBranch2());
    if (s.isFuelGGBranch2()) tell(to.below("GG2/fuel"), s.getFuelGGBranch2());
    if (s.isTurbine1()) tell(to.below("turbine1"), s.getTurbine1());
    if (s.isTurbine2()) tell(to.below("turbine2"), s.getTurbine2());
}

inline void tell(FactWriter to, const thermo::input::PropellantFeedSystem& s)
{
    to.say("estimateDryMass", s.isEstimateDryMass());
    to.say("pressurized", s.isPressurizedFeedSystemSet());
    to.say("turbopump", s.isTurbopumpFeedSystemSet());
    if (s.isPressurizedFeedSystemSet()) tell(to.below("gas"), s.getPressurizedFeedSystem());
    if (s.isTurbopumpFeedSystemSet()) tell(to.below("pump"), s.getTurbopumpFeedSystem());
}

} // namespace ketra_test
