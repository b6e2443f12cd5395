#pragma once

#include "Documents.h"

#include <memory>

namespace ketra_test {

/// Documents of small engines that are solved fast: gaseous oxygen and hydrogen, no ions, and no
/// nozzle exit yet.

inline std::unique_ptr<thermo::input::ConfigFile>
engineDocument(double ratio = 6.0, thermo::input::Ratio::UNITS unit = thermo::input::Ratio::KM,
               double MPa = 7.0)
{
    auto document = bipropellantDocument({"O2", 1.0}, {"H2", 1.0}, ratio, unit, MPa);
    document->getNozzleFlowOptions().setCalculateNozzleFlow(true);
    return document;
}

/// The same with a nozzle exit of the area ratio \p Fr.
inline std::unique_ptr<thermo::input::ConfigFile> engineWithExit(double Fr, double ratio = 6.0)
{
    auto document = engineDocument(ratio);
    document->getNozzleFlowOptions().setNozzleExitConditions().setAreaRatio(Fr, true);
    return document;
}

/// The same mixture, premixed.
inline std::unique_ptr<thermo::input::ConfigFile> premixedEngine(double Fr, double km = 6.0)
{
    auto document = mixtureDocument({{"O2", km / (1.0 + km)}, {"H2", 1.0 / (1.0 + km)}});
    document->getNozzleFlowOptions().setCalculateNozzleFlow(true);
    document->getNozzleFlowOptions().setNozzleExitConditions().setAreaRatio(Fr, true);
    return document;
}

/// Ambient pressure of the document, Pa.
inline void setAmbientPressure(thermo::input::ConfigFile& document, double pa)
{
    document.getNozzleFlowOptions().setAmbientConditions().setFixedPressure(
        pa, thermo::input::Pressure::PA, true);
}

/// Lets the composition freeze; the caller states where.
inline thermo::input::FreezingConditions& freeze(thermo::input::ConfigFile& document)
{
    auto& freezing = document.getNozzleFlowOptions().setFreezingConditions();
    freezing.setCalculate(true);
    return freezing;
}

} // namespace ketra_test
