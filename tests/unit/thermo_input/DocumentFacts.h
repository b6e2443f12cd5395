#pragma once

#include <ketra/thermo/input/ConfigFile.h>

#include <unit/thermo_input/CoolingFacts.h>
#include <unit/thermo_input/FeedFacts.h>

namespace ketra_test {

inline void tell(FactWriter to, const thermo::input::ConfigFile& s)
{
    to.say("version", s.getVersion());
    to.say("name", s.getName());
    to.say("info", s.getInfo());
    tell(to.below("generalOptions"), s.getGeneralOptions());
    tell(to.below("combustionChamberConditions"), s.getCombustionChamberConditions());
    tell(to.below("nozzleFlow"), s.getNozzleFlowOptions());
    tell(to.below("propellant"), s.getPropellant());
    tell(to.below("engineSize"), s.getEngineSize());
    to.say("chamberCooling", s.isChamberCooling());
    if (s.isChamberCooling()) tell(to.below("chamberCooling"), s.getChamberCooling());
    tell(to.below("feedSystem"), s.getPropellantFeedSystem());
}

} // namespace ketra_test
